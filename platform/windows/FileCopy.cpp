#include "platform/FileCopy.h"

#include "platform/Path.h"
#include "platform/windows/FolderBody.h"

namespace qv::platform {

Status CopyWholeFile(const char* from, const char* to) {
    return sys::CopyFileA(NativePath(from).c_str(), NativePath(to).c_str(), FALSE).statusAt(from);
}

Status CopyFileIn(const Folder& from, const std::string& name, LastName, const Folder& to, const std::string& newName) {
    return CopyWholeFile(PathIn(from, name).c_str(), PathIn(to, newName).c_str());
}

}  // namespace qv::platform
