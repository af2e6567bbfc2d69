#pragma once

#include <string>

#include "platform/Path.h"
#include "platform/Status.h"
#include "platform/posix/FolderBody.h"

namespace qv::platform {

/// The base of a name, and the name: a path relative to the current folder, or the name of an entry of an open folder.
struct Location {
    int folder = AT_FDCWD;
    std::string name;  ///< in the system's form

    /// `path` may use "\".
    static Location OfPath(const char* path) { return {.name = NativePath(path)}; }
    /// `name` is in the library's form.
    static Location In(const Folder& folder, const std::string& name) {
        return {.folder = DescriptorOf(folder), .name = NativePath(name)};
    }

    /// A missing folder is distinguished from a missing file only if the name is a path.
    template <class Value>
    Status StatusOf(const Result<Value>& call) const {
        return folder == AT_FDCWD ? call.statusAt(LibraryPath(name).c_str()) : call.status();
    }
};

}  // namespace qv::platform
