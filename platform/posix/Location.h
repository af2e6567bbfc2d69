#pragma once

#include <string>

#include "platform/Path.h"
#include "platform/Status.h"
#include "platform/posix/FolderBody.h"

namespace qv::platform {

/// Where a name begins, and the name: a path from the current folder, or the name of an entry of an open folder.
struct Location {
    int folder = AT_FDCWD;
    std::string name;  ///< the system's own

    /// `path` may use "\".
    static Location OfPath(const char* path) { return {.name = NativePath(path)}; }
    /// `name` is in the library's form.
    static Location In(const Folder& folder, const std::string& name) {
        return {.folder = DescriptorOf(folder), .name = NativePath(name)};
    }

    /// A missing folder is told from a missing file only where the name is a path.
    template <class Value>
    Status StatusOf(const Result<Value>& call) const {
        return folder == AT_FDCWD ? call.statusAt(LibraryPath(name).c_str()) : call.status();
    }
};

}  // namespace qv::platform
