#pragma once

#include "platform/Folder.h"
#include "platform/windows/UniqueHandle.h"

namespace qv::platform {

/// The handle keeps the folder from being renamed or replaced, so that the path goes on to mean it.
struct Folder::Body {
    UniqueHandle handle;
    std::string path;  ///< with its final separator
};

/// The path of an entry; an empty one, which names nothing, while the folder is not open.
inline std::string PathIn(const Folder& folder, const std::string& name) {
    const Folder::Body* const body = folder.GetBody();
    return body ? body->path + name : std::string();
}

}  // namespace qv::platform
