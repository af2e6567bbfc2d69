#include "platform/MessageWindow.h"

#include <windows.h>

namespace qv::platform {
namespace {

thread_local std::uint64_t g_handled = 0;

LRESULT Take(HWND window, HWND sender, const COPYDATASTRUCT& data) {
    auto* const receiver = reinterpret_cast<MessageReceiver*>(::GetWindowLongPtrA(window, GWLP_USERDATA));
    if (receiver && data.cbData <= kLongestMessage) {
        receiver->OnMessage(sender, data.dwData,
                            {static_cast<const char*>(data.lpData), data.lpData ? data.cbData : 0});
        ++g_handled;
    }
    return ::DefWindowProcA(window, WM_COPYDATA, reinterpret_cast<WPARAM>(sender), reinterpret_cast<LPARAM>(&data));
}

LRESULT CALLBACK Answer(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message != WM_COPYDATA) return ::DefWindowProcA(window, message, first, second);
    return Take(window, reinterpret_cast<HWND>(first), *reinterpret_cast<const COPYDATASTRUCT*>(second));
}

HMODULE OwnModule() {
    HMODULE module = nullptr;
    ::GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                         reinterpret_cast<LPCSTR>(&OwnModule), &module);
    return module;
}

// Between looking for a window and making it no other program does the same.
class NameGuard {
public:
    explicit NameGuard(const std::string& className) {
        std::string name = "Local\\qvcommon-";
        for (const char c : className) name += c == '\\' ? '/' : c;
        m_mutex = ::CreateMutexA(nullptr, FALSE, name.c_str());
        if (m_mutex) ::WaitForSingleObject(m_mutex, INFINITE);
    }
    ~NameGuard() {
        if (!m_mutex) return;
        ::ReleaseMutex(m_mutex);
        ::CloseHandle(m_mutex);
    }
    NameGuard(const NameGuard&) = delete;
    NameGuard& operator=(const NameGuard&) = delete;

private:
    HANDLE m_mutex;
};

}  // namespace

HWND OpenMessageWindow(const std::string& className, MessageReceiver& receiver) {
    if (className.empty() || className.size() > kLongestClassName) return nullptr;
    const NameGuard guard(className);
    if (FindMessageWindow(className)) return nullptr;
    WNDCLASSA windowClass{};
    windowClass.lpfnWndProc = &::DefWindowProcA;
    windowClass.hInstance = OwnModule();
    windowClass.lpszClassName = className.c_str();
    ::RegisterClassA(&windowClass);  // fails when an earlier window has registered it
    const HWND window = ::CreateWindowExA(WS_EX_TOPMOST, className.c_str(), "", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr,
                                          windowClass.hInstance, nullptr);
    if (!window) return nullptr;
    ::SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&receiver));
    ::SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Answer));
    return window;
}

void CloseMessageWindow(HWND window) {
    ::DestroyWindow(window);
}

HWND FindMessageWindow(const std::string& className) {
    return className.empty() ? nullptr : ::FindWindowA(className.c_str(), nullptr);
}

bool SendMessageText(HWND window, std::string_view text, HWND sender) {
    if (text.size() > kLongestMessage || !::IsWindow(window)) return false;
    COPYDATASTRUCT data{0, static_cast<DWORD>(text.size()), const_cast<char*>(text.data())};
    ::SendMessageA(window, WM_COPYDATA, reinterpret_cast<WPARAM>(sender), reinterpret_cast<LPARAM>(&data));
    return ::IsWindow(window);
}

// Messages that were sent are handled inside the call that looks for posted ones.
bool PumpMessages(std::uint32_t milliseconds) {
    const std::uint64_t before = g_handled, end = ::GetTickCount64() + milliseconds;
    for (;;) {
        MSG message;
        while (::PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
            ::TranslateMessage(&message);
            ::DispatchMessageA(&message);
        }
        if (g_handled != before) return true;
        const std::uint64_t now = ::GetTickCount64();
        if (now >= end) return false;
        ::MsgWaitForMultipleObjects(0, nullptr, FALSE, static_cast<DWORD>(end - now), QS_ALLINPUT);
    }
}

}  // namespace qv::platform
