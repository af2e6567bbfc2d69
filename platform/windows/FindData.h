#pragma once

#include "platform/FileSearch.h"
#include "platform/windows/FileTime.h"
#include "platform/windows/names/WidePath.h"

namespace qv::platform {

inline bool IsDots(const WIN32_FIND_DATAW& data) {
    const std::wstring_view name = data.cFileName;
    return name == L"." || name == L"..";
}

/// Returns the tag of a reparse point. Layers over other file systems show links to folders without one.
inline std::uint32_t TagOf(const WIN32_FIND_DATAW& data) {
    if (!(data.dwFileAttributes & kReparsePoint)) return 0;
    return data.dwReserved0 ? data.dwReserved0 : kSymbolicLinkTag;
}

/// Returns whether the path's last name, without a trailing separator, is a link to a folder.
bool IsFolderLinkAt(const std::wstring& path);

/// Returns the attributes of the file at the path. Only links to other places have FILE_ATTRIBUTE_REPARSE_POINT: other
/// reparse points, such as the folders of cloud storage, are like plain files and folders.
Result<DWORD> LinkAttributesAt(std::wstring path);
/// Returns whether the path is a link to another place.
bool IsLinkAt(const std::wstring& path);

/// Copies what the system's searches report of an entry except its names, on disks and on servers.
template <class Data>
void CopyFindStatus(const Data& data, FoundEntry& entry) {
    entry.attributes = data.dwFileAttributes;
    entry.created = TicksOf(data.ftCreationTime);
    entry.accessed = TicksOf(data.ftLastAccessTime);
    entry.written = TicksOf(data.ftLastWriteTime);
    entry.size = Joined(data.nFileSizeHigh, data.nFileSizeLow);
}

/// Copies the record of an entry under a name that can be used in paths: its own, else the short one. Fails if neither
/// can.
inline Status CopyFindData(const WIN32_FIND_DATAW& data, FoundEntry& entry) {
    CopyFindStatus(data, entry);
    entry.tag = TagOf(data);
    entry.shortName = ReachableName(data.cAlternateFileName).value_or(std::string());
    if (IsDots(data))
        entry.name = ShownPath(data.cFileName);
    else
        entry.name = ReachableName(data.cFileName).value_or(entry.shortName);
    if (!entry.name.empty()) return {};
    return Status::OfError(IsPlainWideName(data.cFileName) ? ERROR_NO_UNICODE_TRANSLATION : ERROR_INVALID_NAME);
}

}  // namespace qv::platform
