#pragma once

#include "platform/FileSearch.h"
#include "platform/windows/FileTime.h"

namespace qv::platform {

/// Copies the record that the system's searches give, on disks and on servers.
inline void CopyFindData(const WIN32_FIND_DATAA& data, FoundEntry& entry) {
    entry.attributes = data.dwFileAttributes;
    entry.created = TicksOf(data.ftCreationTime);
    entry.accessed = TicksOf(data.ftLastAccessTime);
    entry.written = TicksOf(data.ftLastWriteTime);
    entry.size = Joined(data.nFileSizeHigh, data.nFileSizeLow);
    entry.tag = data.dwFileAttributes & kReparsePoint ? data.dwReserved0 : 0;
    entry.name = data.cFileName;
    entry.shortName = data.cAlternateFileName;
}

}  // namespace qv::platform
