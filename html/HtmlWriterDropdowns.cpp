#include "html/DropdownRestoreScript.h"
#include "html/DropdownScript.h"
#include "html/ScriptText.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/HtmlWriter.h"

void CHtmlWriter::SetDropdowns(int enabled, const char* imageDirectory) {
    m_bDropdowns = enabled;
    m_strDropdownImageDir = imageDirectory;
}

void CHtmlWriter::OpenDropdownSection() {
    OpenTag("div", "id=\"DropDownSection\"");
}

void CHtmlWriter::OpenDropdownHotspot() {
    OpenTag("div", "id=\"DropDownHotspot\" onClick=\"displaySection(this)\" style=\"cursor:hand\"");
}

void CHtmlWriter::OpenDropdownText() {
    OpenTag("div", "id=\"DropDownText\" style=\"display:none\"");
}

void CHtmlWriter::AddDropdownImage(const char* directory) {
    CString attributes;
    attributes.Format("src=\"%sclosed.gif\" id=\"DropDownImage\"", CFileUtils::TerminateDir(directory));
    AddTag("img", attributes);
}

void CHtmlWriter::AddDropdownTitle(int level, std::string_view text) {
    if (!m_bDropdowns) {
        AddHeading(level, text, alignNone);
        return;
    }
    CString tag;
    tag.Format("H%d", level);
    OpenDropdownSection();
    OpenDropdownHotspot();
    OpenTag(tag);
    AddDropdownImage(m_strDropdownImageDir);
    AddText(text);
    CloseTag(tag);
    CloseDropdownHotspot();
}

void CHtmlWriter::StartDropdownText() {
    if (m_bDropdowns) OpenDropdownText();
}

void CHtmlWriter::EndDropdownText() {
    if (!m_bDropdowns) return;
    CloseDropdownText();
    CloseDropdownSection();
}

void CHtmlWriter::AddDropdownScript(const char* imageDirectory) {
    const CString directory = qv::html::ScriptPath(CFileUtils::TerminateDir(imageDirectory));
    AddFormattedText(qv::html::FillScript(qv::html::kDropdownScript, {{"{imageDirectory}", directory}}));
}

void CHtmlWriter::AddDropdownCookie() {
    AddFormattedText(qv::html::kDropdownRestoreScript);
}
