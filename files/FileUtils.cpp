#include "qvcommon/FileUtils.h"

#include <algorithm>
#include <limits>

#include "framework/PathText.h"
#include "platform/Error.h"
#include "platform/FileStatus.h"
#include "platform/Volume.h"
#include "qvcommon/framework/File.h"
#include "qvcommon/framework/FileFind.h"

namespace {

void CreateFoldersAbove(const CString& path) {
    const std::string text = CFileUtils::UnterminateDir(path).AsStd();
    const auto next = [&](std::size_t from) { return qv::FindFirstOf(text, qv::kSeparators, from); };
    for (std::size_t i = next(0); i != text.npos; i = next(i + 1))
        // A failure to create a parent shows when the last folder is created.
        if (i > 0) qv::platform::CreateFolder(text.substr(0, i).c_str()).IgnoreError();
}

}  // namespace

bool CFileUtils::IsExist(const char* path) {
    CFileStatus status;
    return CFile::GetStatus(path, status) || IsVolume(path);
}

bool CFileUtils::IsVolume(const char* path) {
    return qv::platform::IsVolume(TerminateDir(path));
}

bool CFileUtils::IsDirectory(const char* path) {
    CString folder = UnterminateDir(path);
    if (folder.IsEmpty()) folder = path;  // the root
    CFileStatus status;
    return CFile::GetStatus(folder, status) ? (status.m_attribute & CFile::directory) != 0 : IsVolume(folder);
}

CString CFileUtils::GetFileSystem(const char* path) {
    return CString(qv::platform::FileSystemOf(path));
}

bool CFileUtils::MakeWritable(const char* path) {
    CFileStatus status;
    if (!CFile::GetStatus(path, status)) return true;
    status.m_attribute = static_cast<BYTE>(status.m_attribute & ~CFile::readOnly);
    try {
        CFile::SetStatus(path, status);
        return true;
    } catch (CFileException* error) {
        error->Delete();
        return false;
    }
}

std::int32_t CFileUtils::GetFilesize(const char* path) {
    CFileStatus status;
    if (!CFile::GetStatus(path, status)) return -1;
    constexpr std::uint64_t kLargest = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::min(status.m_size, kLargest));
}

int CFileUtils::HasMatching(const char* pattern) {
    return CFileFind().FindFile(pattern);
}

CString CFileUtils::GetShortPath(const char* path) {
    return CString(qv::platform::ShortPath(CString(path)));
}

CString CFileUtils::GetUppercaseShortPath(const char* path) {
    CString text = GetShortPath(path);
    text.MakeUpper();
    return text;
}

int CFileUtils::MatchesPathFormat(const char* path) {
    const std::string_view text = path ? path : "";
    if (text.size() < 3) return 0;
    if (text.starts_with("\\\\") && qv::FindFirstOf(text, "\\", 2) != text.npos) return 1;
    const char letter = static_cast<char>(text[0] | 0x20);
    return letter >= 'a' && letter <= 'z' && text[1] == ':' && text[2] == '\\';
}

int QvCreateDirectory(const char* path) {
    const CString name = path;
    qv::platform::Status status = qv::platform::CreateFolder(name);
    if (!status.ok()) {
        CreateFoldersAbove(name);
        status = qv::platform::CreateFolder(name);
    }
    if (!status.ok()) qv::platform::SetLastError(status.error());
    return status.ok();
}
