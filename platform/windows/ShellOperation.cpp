#include "platform/ShellOperation.h"

#include "platform/windows/System.h"

namespace qv::platform {

std::optional<bool> RunShellOperation(ShellFunction function, const char* from, const char* to, unsigned short flags,
                                      WindowHandle owner, const char* title) {
    SHFILEOPSTRUCTA operation = {};
    operation.hwnd = owner;
    operation.wFunc = static_cast<UINT>(function);
    operation.pFrom = from;
    operation.pTo = to;
    operation.fFlags = flags;
    operation.lpszProgressTitle = title;
    return sys::SHFileOperationA(&operation).ok() && !operation.fAnyOperationsAborted;
}

}  // namespace qv::platform
