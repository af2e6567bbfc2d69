#pragma once

#include "platform/Folder.h"
#include "platform/posix/SameFile.h"
#include "platform/posix/UniqueFd.h"

namespace qv::platform {

/// The folder's descriptor and, while LetGo has closed it, the folder that it was.
struct Folder::Body {
    UniqueFd descriptor;
    FileIdentity identity = {};
    FolderUse use = FolderUse::Listed;
};

/// What calls take that look names up in the folder; an invalid descriptor while it is not open.
inline int DescriptorOf(const Folder& folder) {
    const Folder::Body* const body = folder.GetBody();
    return body ? body->descriptor.Get() : -1;
}

}  // namespace qv::platform
