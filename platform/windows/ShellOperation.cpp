#include "platform/ShellOperation.h"

#include "platform/windows/System.h"
#include "platform/windows/names/WidePath.h"

namespace qv::platform {
namespace {

/// Each path ends with a zero, the list with one more. Returns nullopt for a list that is not valid in the code page:
/// the shell could take replacement characters for wildcards.
std::optional<std::wstring> PathList(const char* paths) {
    std::wstring list;
    for (; paths && *paths; paths += std::string_view(paths).size() + 1) {
        const std::optional<std::wstring> path = ToSystemExactly(paths);
        if (!path) return std::nullopt;
        list += *path + L'\0';
    }
    return list + L'\0';
}

}  // namespace

std::optional<bool> RunShellOperation(ShellFunction function, const char* from, const char* to, unsigned short flags,
                                      WindowHandle owner, const char* title) {
    const std::optional<std::wstring> wideFrom = PathList(from), wideTo = PathList(to);
    const std::wstring wideTitle = ToSystem(title ? title : "");
    if (!wideFrom || !wideTo) return false;
    SHFILEOPSTRUCTW operation = {};
    operation.hwnd = owner;
    operation.wFunc = static_cast<UINT>(function);
    operation.pFrom = wideFrom->c_str();
    operation.pTo = to ? wideTo->c_str() : nullptr;
    operation.fFlags = flags;
    operation.lpszProgressTitle = title ? wideTitle.c_str() : nullptr;
    return sys::SHFileOperationW(&operation).ok() && !operation.fAnyOperationsAborted;
}

}  // namespace qv::platform
