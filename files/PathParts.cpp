#include "files/PathParts.h"

#include "framework/PathText.h"
#include "platform/Path.h"

namespace qv {
namespace {

/// Returns the index at which the last name begins.
std::size_t StartOfName(std::string_view path) {
    const auto separator = FindLastOf(path, kSeparators);
    if (separator != path.npos) return separator + 1;
    return platform::HasDriveLetters() && path.size() > 1 && path[1] == ':' ? 2 : 0;
}

}  // namespace

CString WithExtension(const CString& path, const char* extension) {
    const std::string& whole = path.AsStd();
    const auto point = whole.rfind('.');
    const bool has = point != whole.npos && point >= StartOfName(whole);
    return CString(whole.substr(0, has ? point : whole.npos) + '.' + extension);
}

CString FolderOf(const CString& path) {
    const std::string& whole = path.AsStd();
    const std::string folder = whole.substr(0, StartOfName(whole));
    const bool isRoot = folder.size() == 1;
    return CString(EndsWithOneOf(folder, "\\") && !isRoot ? folder.substr(0, folder.size() - 1) : folder);
}

CString TitleOf(const CString& path) {
    const std::string& whole = path.AsStd();
    const std::string name = whole.substr(StartOfName(whole));
    return CString(name.substr(0, name.rfind('.')));
}

}  // namespace qv
