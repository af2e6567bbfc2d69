#pragma once

#include "platform/Folder.h"
#include "platform/posix/SameFile.h"
#include "platform/posix/UniqueFd.h"

namespace qv::platform {

/// The folder's descriptor or, while Suspend has closed it, the folder's identity.
struct Folder::Body {
    UniqueFd descriptor;
    FileIdentity identity = {};
    FolderUse use = FolderUse::Listed;
};

/// Returns the descriptor for calls that look up names in the folder; invalid while it is not open.
inline int DescriptorOf(const Folder& folder) {
    const Folder::Body* const body = folder.GetBody();
    return body ? body->descriptor.Get() : -1;
}

}  // namespace qv::platform
