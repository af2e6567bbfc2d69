#include "platform/ShellOperation.h"

#include <windows.h>

#include <shellapi.h>

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
    return ::SHFileOperationA(&operation) == 0 && !operation.fAnyOperationsAborted;
}

}  // namespace qv::platform
