#include "tools/qv/WholeFile.h"

#include "qvcommon/FileUtils.h"
#include "tools/qv/Command.h"
#include "tools/qv/Utf8Path.h"

namespace qv::tool {

WholeFile::WholeFile(const std::string& path) : m_path(path) {
    const CString folder = CFileUtils::GetDirectoryFromPath(path.c_str());
    const std::string named = folder.IsEmpty() ? "." : folder.AsStd();
    if (!std::filesystem::is_directory(PathFromArgument(named))) throw Failed(named + ": no such folder");
    m_temporary.SetDirectory(CFileUtils::TerminateDir(named.c_str()));
    m_temporary.Create();
    CFileException error;
    if (!m_file.Open(m_temporary.GetFilename(), CFile::modeWrite | CFile::typeBinary, &error))
        AfxThrowFileException(error.m_cause, error.m_lOsError, error.m_strFileName);
}

void WholeFile::Commit() {
    m_file.Close();
    std::filesystem::rename(PathFromArgument(m_temporary.GetFilename().AsStd()), PathFromArgument(m_path));
    m_temporary.SetDeleteOnDtor(0);
}

}  // namespace qv::tool
