#include "platform/ShellOperation.h"

namespace qv::platform {

std::optional<bool> RunShellOperation(ShellFunction, const char*, const char*, unsigned short, WindowHandle,
                                      const char*) {
    return std::nullopt;
}

}  // namespace qv::platform
