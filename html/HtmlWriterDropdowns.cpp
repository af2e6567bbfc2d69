#include "html/DropdownScript.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/HtmlWriter.h"

void CHtmlWriter::SetDropdowns(int enabled, const char* imageDirectory) {
    m_bDropdowns = enabled;
    m_strDropdownImageDir = imageDirectory;
}

void CHtmlWriter::AddDropdownScript(const char* imageDirectory) {
    CString directory = CFileUtils::TerminateDir(imageDirectory), script(qv::html::kDropdownScript);
    directory.Replace("\\", "\\\\");
    script.Replace("{imageDirectory}", directory);
    AddFormattedText(script);
}
