#include "platform/Clipboard.h"

namespace qv::platform {

std::optional<std::string> ReadClipboard(HWND, unsigned) {
    return std::nullopt;
}

bool WriteClipboard(HWND, std::string_view, unsigned) {
    return false;
}

WaitCursor::WaitCursor() = default;

WaitCursor::~WaitCursor() = default;

}  // namespace qv::platform
