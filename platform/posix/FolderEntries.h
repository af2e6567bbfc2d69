#pragma once

#include "platform/Folder.h"
#include "platform/posix/System.h"

namespace qv::platform {

inline bool IsDots(const char* name) {
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

/// Returns the kind of an entry, querying the system only if its listing does not contain it.
EntryKind KindOf(int folder, const dirent64& entry);

/// Calls `see` with the dirent64 of each entry of an open folder except "." and "..", in no particular order. After a
/// failure it was called for those that were read.
template <class See>
Status ForEachEntry(int folder, See see) {
    alignas(dirent64) char buffer[32 * 1024];
    for (;;) {
        const auto size = sys::getdents64(folder, buffer, sizeof buffer);
        if (!size.ok() || size.value() == 0) return size.status();
        for (const char* next = buffer; next < buffer + size.value();) {
            const auto& entry = *reinterpret_cast<const dirent64*>(next);
            if (!IsDots(entry.d_name)) see(entry);
            next += entry.d_reclen;
        }
    }
}

}  // namespace qv::platform
