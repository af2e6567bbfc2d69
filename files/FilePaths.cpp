#include "framework/PathText.h"
#include "platform/Ascii.h"
#include "platform/Path.h"
#include "qvcommon/FilePath.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/StringHelper.h"

using qv::EndsWithOneOf;
using qv::FindFirstOf;
using qv::FindLastOf;
using qv::kSeparators;

namespace {

constexpr std::size_t kLongestPart = 255, kLongestPath = 259;

void Store(CString& part, std::string_view text, int replaceAll) {
    if (replaceAll || !text.empty()) part = text.substr(0, kLongestPart);
}

std::string_view Given(const char* text) {
    return text ? text : "";
}

}  // namespace

void CFilePath::SplitPath(const char* path, int replaceAll) {
    std::string_view rest = Given(path);
    const std::size_t driveLength = qv::platform::HasDriveLetters() && rest.size() > 1 && rest[1] == ':' ? 2 : 0;
    const std::string_view drive = rest.substr(0, driveLength);
    rest.remove_prefix(driveLength);
    const std::string_view directory = rest.substr(0, FindLastOf(rest, kSeparators) + 1);
    rest.remove_prefix(directory.size());
    const std::size_t point = std::min(rest.rfind('.'), rest.size());
    Store(m_drive, drive, replaceAll);
    Store(m_dir, directory, replaceAll);
    Store(m_file, rest.substr(0, point), replaceAll);
    Store(m_ext, rest.substr(point), replaceAll);
}

CString CFilePath::GetPath(int terminate) const {
    const CString path = MakePath(m_drive, m_dir, "", "");
    return terminate ? CFileUtils::TerminateDir(path) : CFileUtils::UnterminateDir(path);
}

CString CFilePath::MakePath(const char* drive, const char* directory, const char* file, const char* extension) {
    const std::string_view driveText = Given(drive), folder = Given(directory), ending = Given(extension);
    std::string path(driveText);
    if (!driveText.empty() && driveText.back() != ':') path += ':';
    path += folder;
    if (!folder.empty() && !EndsWithOneOf(folder, kSeparators)) path += '\\';
    path += Given(file);
    if (!ending.empty() && ending.front() != '.') path += '.';
    path += ending;
    if (path.size() > kLongestPath) path.resize(kLongestPath);
    return CString(std::move(path));
}

CString CFileUtils::TerminateDir(const char* path) {
    CString text = path;
    if (!text.IsEmpty() && !EndsWithOneOf(text, "\\")) text += '\\';
    return text;
}

CString CFileUtils::UnterminateDir(const char* path) {
    CString text = path;
    if (EndsWithOneOf(text, "\\")) text.AsStd().pop_back();
    return text;
}

CString CFileUtils::GetFilenameFromPath(const CString& path) {
    return path.Mid(path.ReverseFind('\\') + 1);
}

CString CFileUtils::GetDirectoryFromPath(const CString& path) {
    return path.Left(path.ReverseFind('\\') + 1);
}

CString CFileUtils::StripInvalidFilenameChars(const char* text) {
    constexpr std::string_view kInvalid = "\\/:*?\"<>|";
    const std::string_view all = Given(text);
    CString stripped;
    for (std::size_t from = 0, end; from < all.size(); from = end + 1) {
        end = std::min(FindFirstOf(all, kInvalid, from), all.size());
        stripped += all.substr(from, end - from);
    }
    stripped.TrimLeft();
    stripped.TrimRight();
    return stripped;
}

CString CFileUtils::FileNameToFileUrl(const char* name) {
    CString url = CString("file://") + name;
    url.Replace('\\', '/');
    return url;
}

CString CFileUtils::FileUrlToFileName(const char* url) {
    constexpr std::string_view kScheme = "file:///";
    CString name = CStringHelper::UnEscapeUrl(CString(url));
    if (qv::ascii::EqualsIgnoreCase(name.Left(kScheme.size()), kScheme))
        name.Delete(0, static_cast<int>(kScheme.size()));
    name.Replace('/', '\\');
    return name;
}

CString CFileUtils::GetNativePath(const char* path) {
    return CString(qv::platform::NativePath(Given(path)));
}

CString CFileUtils::GetLibraryPath(const char* nativePath) {
    return CString(qv::platform::LibraryPath(Given(nativePath)));
}
