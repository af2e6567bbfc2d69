#include "platform/FileCopy.h"

#include <windows.h>

#include "platform/Path.h"

namespace qv::platform {

FileFailure CopyWholeFile(const char* from, const char* to) {
    return ::CopyFileA(NativePath(from).c_str(), NativePath(to).c_str(), FALSE) ? FileFailure{} : LastFailureAt(from);
}

}  // namespace qv::platform
