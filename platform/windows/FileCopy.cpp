#include "platform/FileCopy.h"

#include "platform/windows/FolderBody.h"

namespace qv::platform {

Status CopyWholeFile(const char* from, const char* to) {
    return sys::CopyFileW(WidePath(from).c_str(), WidePath(to).c_str(), FALSE).statusAt(from);
}

Status CopyFileIn(const Folder& from, const std::string& name, LastName, const Folder& to, const std::string& newName) {
    return sys::CopyFileW(PathIn(from, name).c_str(), PathIn(to, newName).c_str(), FALSE).status();
}

}  // namespace qv::platform
