#pragma once

#include "platform/Folder.h"
#include "platform/windows/UniqueHandle.h"
#include "platform/windows/names/WidePath.h"

namespace qv::platform {

/// The handle prevents renaming or replacing the folder, so that the path remains valid.
struct Folder::Body {
    static Status Open(std::wstring path, LastName lastName, std::unique_ptr<Body>& made);

    UniqueHandle handle;
    std::wstring path;  ///< in the extended form, with its trailing separator
};

/// Returns the path of an entry, or of the folder itself for an empty name. Empty, which names nothing, while the
/// folder is not open and for a name that is not valid in the code page.
inline std::wstring PathIn(const Folder& folder, const std::string& name) {
    const Folder::Body* const body = folder.GetBody();
    const std::wstring wide = WideName(name);
    return body && wide.empty() == name.empty() ? body->path + wide : std::wstring();
}

}  // namespace qv::platform
