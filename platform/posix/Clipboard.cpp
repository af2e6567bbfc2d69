#include "platform/Clipboard.h"

namespace qv::platform {

std::optional<std::string> ReadClipboard(WindowHandle, unsigned) {
    return std::nullopt;
}

bool WriteClipboard(WindowHandle, std::string_view, unsigned) {
    return false;
}

WaitCursor::WaitCursor() = default;

WaitCursor::~WaitCursor() {}

}  // namespace qv::platform
