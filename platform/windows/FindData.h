#pragma once

#include "platform/FileSearch.h"
#include "platform/windows/FileTime.h"
#include "platform/windows/names/WidePath.h"

namespace qv::platform {

inline bool IsDots(const WIN32_FIND_DATAW& data) {
    const std::wstring_view name = data.cFileName;
    return name == L"." || name == L"..";
}

/// The tag of a reparse point. Layers over other file systems show links to folders without one.
inline std::uint32_t TagOf(const WIN32_FIND_DATAW& data) {
    if (!(data.dwFileAttributes & kReparsePoint)) return 0;
    return data.dwReserved0 ? data.dwReserved0 : kSymbolicLinkTag;
}

/// Whether the path's last name, without a final separator, is a link to a folder.
bool IsFolderLinkAt(const std::wstring& path);

/// Copies what the system's searches report of an entry besides its names, on disks and on servers.
template <class Data>
void CopyFindStatus(const Data& data, FoundEntry& entry) {
    entry.attributes = data.dwFileAttributes;
    entry.created = TicksOf(data.ftCreationTime);
    entry.accessed = TicksOf(data.ftLastAccessTime);
    entry.written = TicksOf(data.ftLastWriteTime);
    entry.size = Joined(data.nFileSizeHigh, data.nFileSizeLow);
}

/// Copies the record of an entry under the name by which paths reach it: its own, else the short one. A failure when
/// neither does.
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
