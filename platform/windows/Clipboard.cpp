#include "platform/Clipboard.h"

#include <windows.h>

#include <cstring>

namespace qv::platform {
namespace {

class OpenedClipboard {
public:
    explicit OpenedClipboard(HWND window) : m_open(::OpenClipboard(window)) {}
    ~OpenedClipboard() {
        if (m_open) ::CloseClipboard();
    }
    OpenedClipboard(const OpenedClipboard&) = delete;
    OpenedClipboard& operator=(const OpenedClipboard&) = delete;

    explicit operator bool() const { return m_open; }

private:
    BOOL m_open;
};

HGLOBAL SharedCopy(std::string_view text) {
    const HGLOBAL memory = ::GlobalAlloc(GMEM_MOVEABLE | GMEM_DDESHARE, text.size() + 1);
    auto* const bytes = static_cast<char*>(memory ? ::GlobalLock(memory) : nullptr);
    if (!bytes) return ::GlobalFree(memory), nullptr;
    std::memcpy(bytes, text.data(), text.size());
    bytes[text.size()] = '\0';
    ::GlobalUnlock(memory);
    return memory;
}

}  // namespace

std::optional<std::string> ReadClipboard(HWND window, unsigned format) {
    if (!::IsClipboardFormatAvailable(format)) return std::nullopt;
    const OpenedClipboard clipboard(window);
    const HANDLE data = clipboard ? ::GetClipboardData(format) : nullptr;
    const auto* const bytes = static_cast<const char*>(data ? ::GlobalLock(data) : nullptr);
    if (!bytes) return std::nullopt;
    std::string text(bytes, ::strnlen(bytes, ::GlobalSize(data)));
    ::GlobalUnlock(data);
    return text;
}

bool WriteClipboard(HWND window, std::string_view text, unsigned format) {
    const OpenedClipboard clipboard(window);
    if (!clipboard || !::EmptyClipboard()) return false;
    const HGLOBAL copy = SharedCopy(text);
    if (!copy) return false;
    if (::SetClipboardData(format, copy)) return true;
    ::GlobalFree(copy);
    return false;
}

WaitCursor::WaitCursor() : m_before(::SetCursor(::LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_WAIT)))) {}

WaitCursor::~WaitCursor() {
    ::SetCursor(static_cast<HCURSOR>(m_before));
}

}  // namespace qv::platform
