#pragma once

#include <optional>

#include "platform/WindowHandle.h"

namespace qv::platform {

enum class ShellFunction : unsigned { Copy = 2, Delete = 3 };

/// Copies or deletes files and trees by the system's shell. Both path lists end with two zero bytes; `to` is null for a
/// deletion. @return whether everything was done and nothing cancelled; nullopt on systems without such a shell
/// (Linux).
std::optional<bool> RunShellOperation(ShellFunction function, const char* from, const char* to, unsigned short flags,
                                      WindowHandle owner, const char* title);

}  // namespace qv::platform
