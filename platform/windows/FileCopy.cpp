#include "platform/FileCopy.h"

#include "platform/Path.h"
#include "platform/windows/System.h"

namespace qv::platform {

Status CopyWholeFile(const char* from, const char* to) {
    return sys::CopyFileA(NativePath(from).c_str(), NativePath(to).c_str(), FALSE).statusAt(from);
}

}  // namespace qv::platform
