#pragma once

/// @file The clipboard and the wait cursor. Not available on Linux.

#include <optional>
#include <string>
#include <string_view>

#include "platform/WindowHandle.h"

namespace qv::platform {

/// Returns the clipboard's data of the format, up to its first zero byte; nullopt if it has no such data or cannot be
/// opened.
std::optional<std::string> ReadClipboard(WindowHandle window, unsigned format);

/// Replaces the clipboard's content by the text and a terminating zero byte. Returns false if a step fails.
bool WriteClipboard(WindowHandle window, std::string_view text, unsigned format);

/// Shows the wait cursor during its lifetime.
class WaitCursor {
public:
    WaitCursor();
    ~WaitCursor();
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;

private:
    [[maybe_unused]] void* m_before = nullptr;
};

}  // namespace qv::platform
