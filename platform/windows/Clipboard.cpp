#include "platform/Clipboard.h"

#include <cstring>
#include <memory>

#include "platform/windows/System.h"

namespace qv::platform {
namespace {

class OpenedClipboard {
public:
    explicit OpenedClipboard(HWND window) : m_open(sys::OpenClipboard(window).ok()) {}
    ~OpenedClipboard() {
        if (m_open) sys::CloseClipboard().IgnoreError();  // fails only if it is not open
    }
    OpenedClipboard(const OpenedClipboard&) = delete;
    OpenedClipboard& operator=(const OpenedClipboard&) = delete;

    explicit operator bool() const { return m_open; }

private:
    bool m_open;
};

struct FreeGlobal {
    void operator()(void* memory) const { ::GlobalFree(memory); }
};
using GlobalMemory = std::unique_ptr<void, FreeGlobal>;

GlobalMemory SharedCopy(std::string_view text) {
    GlobalMemory memory(::GlobalAlloc(GMEM_MOVEABLE | GMEM_DDESHARE, text.size() + 1));
    auto* const bytes = static_cast<char*>(memory ? ::GlobalLock(memory.get()) : nullptr);
    if (!bytes) return nullptr;
    std::memcpy(bytes, text.data(), text.size());
    bytes[text.size()] = '\0';
    ::GlobalUnlock(memory.get());
    return memory;
}

}  // namespace

std::optional<std::string> ReadClipboard(WindowHandle window, unsigned format) {
    if (!sys::IsClipboardFormatAvailable(format).value()) return std::nullopt;
    const OpenedClipboard clipboard(window);
    const HANDLE data = clipboard ? sys::GetClipboardData(format).value() : nullptr;
    const auto* const bytes = static_cast<const char*>(data ? ::GlobalLock(data) : nullptr);
    if (!bytes) return std::nullopt;
    std::string text(bytes, ::strnlen(bytes, ::GlobalSize(data)));
    ::GlobalUnlock(data);
    return text;
}

bool WriteClipboard(WindowHandle window, std::string_view text, unsigned format) {
    const OpenedClipboard clipboard(window);
    if (!clipboard || !sys::EmptyClipboard().ok()) return false;
    GlobalMemory copy = SharedCopy(text);
    if (!copy || !sys::SetClipboardData(format, copy.get()).ok()) return false;
    static_cast<void>(copy.release());  // now owned by the clipboard
    return true;
}

WaitCursor::WaitCursor() : m_before(::SetCursor(::LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_WAIT)))) {}

WaitCursor::~WaitCursor() {
    ::SetCursor(static_cast<HCURSOR>(m_before));
}

}  // namespace qv::platform
