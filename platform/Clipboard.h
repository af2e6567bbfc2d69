#pragma once

/// @file The clipboard and the wait cursor. Linux has neither.

#include <optional>
#include <string>
#include <string_view>

#include "platform/WindowHandle.h"

namespace qv::platform {

/// The clipboard's data of the format, up to its first zero byte; none when it has no such data or cannot be opened.
std::optional<std::string> ReadClipboard(WindowHandle window, unsigned format);

/// Empties the clipboard and puts the text there with a final zero byte. False when a step fails.
bool WriteClipboard(WindowHandle window, std::string_view text, unsigned format);

/// Shows the wait cursor as long as it lives.
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
