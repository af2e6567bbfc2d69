#include "platform/MessageWindow.h"

#include <deque>
#include <exception>
#include <utility>

#include "platform/windows/UniqueHandle.h"

namespace qv::platform {
namespace {

thread_local std::uint64_t g_handled = 0;
// Exceptions thrown by receivers, in order; null if there are no pending ones. No exception may pass through the
// system's frames, so it is stored here for the call in this file that runs the window's procedure. A pointer, since
// MinGW may free a thread's variables before it destroys them.
using Thrown = std::deque<std::exception_ptr>;
thread_local Thrown* g_thrown = nullptr;

void KeepCurrentException() {
    if (!g_thrown) g_thrown = new Thrown;
    g_thrown->push_back(std::current_exception());
}

void RethrowFirst() {
    if (!g_thrown) return;
    const std::exception_ptr first = std::move(g_thrown->front());
    g_thrown->pop_front();
    if (g_thrown->empty()) delete std::exchange(g_thrown, nullptr);
    std::rethrow_exception(first);
}

void Hand(MessageReceiver& receiver, HWND sender, const COPYDATASTRUCT& data) try {
    receiver.OnMessage(sender, data.dwData, {static_cast<const char*>(data.lpData), data.lpData ? data.cbData : 0});
} catch (...) {
    KeepCurrentException();
}

LRESULT Take(HWND window, HWND sender, const COPYDATASTRUCT& data) {
    auto* const receiver = reinterpret_cast<MessageReceiver*>(sys::GetWindowLongPtrA(window, GWLP_USERDATA).value());
    if (receiver && data.cbData <= kLongestMessage) {
        Hand(*receiver, sender, data);
        ++g_handled;
    }
    return ::DefWindowProcA(window, WM_COPYDATA, reinterpret_cast<WPARAM>(sender), reinterpret_cast<LPARAM>(&data));
}

LRESULT CALLBACK Answer(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_CLOSE) return 0;  // from another program: only the listener's owner destroys the window
    if (message != WM_COPYDATA) return ::DefWindowProcA(window, message, first, second);
    return Take(window, reinterpret_cast<HWND>(first), *reinterpret_cast<const COPYDATASTRUCT*>(second));
}

HMODULE OwnModule() {
    HMODULE module = nullptr;
    constexpr DWORD kFlags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    // An address within a loaded module always has a module.
    sys::GetModuleHandleExA(kFlags, reinterpret_cast<LPCSTR>(&OwnModule), &module).IgnoreError();
    return module;
}

// Prevents other programs from creating the window between looking for it and creating it.
class NameGuard {
public:
    explicit NameGuard(const std::string& className) {
        std::string name = "Local\\qvcommon-";
        for (const char c : className) name += c == '\\' ? '/' : c;
        m_mutex = UniqueHandle(sys::CreateMutexA(nullptr, FALSE, name.c_str()));
        m_held = m_mutex && sys::WaitForSingleObject_mutex(m_mutex.Get(), INFINITE).ok();
    }
    ~NameGuard() {
        if (m_held) sys::ReleaseMutex(m_mutex.Get()).IgnoreError();  // the holding thread may always release it
    }
    NameGuard(const NameGuard&) = delete;
    NameGuard& operator=(const NameGuard&) = delete;

private:
    UniqueHandle m_mutex;
    bool m_held = false;
};

HWND MakeHiddenWindow(const std::string& className) {
    WNDCLASSA windowClass{};
    windowClass.lpfnWndProc = &::DefWindowProcA;
    windowClass.hInstance = OwnModule();
    windowClass.lpszClassName = className.c_str();
    sys::RegisterClassA(&windowClass).IgnoreError();  // fails if an earlier window has registered it
    return sys::CreateWindowExA(WS_EX_TOPMOST, className.c_str(), "", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr,
                                windowClass.hInstance, nullptr)
        .value();
}

// The previous value, which the call returns, is not needed.
void SetWindowValue(HWND window, int index, LONG_PTR value) {
    sys::SetWindowLongPtrA(window, index, value).IgnoreError();
}

bool IsThere(HWND window) {
    return sys::IsWindow(window).value();
}

/// Posted messages that are dispatched after the end of a wait: those that are waiting, unless they never cease.
constexpr int kLateMessages = 16;

/// Dispatches until no message is left, a text was handled, or the time has passed. Returns false if the program has
/// been asked to end: that message is reposted for the loop that ends it.
bool DispatchWaiting(std::uint64_t end) {
    const std::uint64_t before = g_handled;
    MSG message;
    for (int late = 0; g_handled == before && late < kLateMessages; late += ::GetTickCount64() >= end) {
        if (!sys::PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE).value()) break;
        if (message.message == WM_QUIT) {
            ::PostQuitMessage(static_cast<int>(message.wParam));
            return false;
        }
        ::TranslateMessage(&message);
        ::DispatchMessageA(&message);
    }
    return true;
}

}  // namespace

HWND OpenMessageWindow(const std::string& className, MessageReceiver& receiver) {
    if (className.empty() || className.size() > kLongestClassName) return nullptr;
    const NameGuard guard(className);
    if (FindMessageWindow(className)) return nullptr;
    const HWND window = MakeHiddenWindow(className);
    if (!window) return nullptr;
    // Programs without elevation may send to an elevated one. If the system refuses, they cannot.
    sys::ChangeWindowMessageFilterEx(window, WM_COPYDATA, MSGFLT_ALLOW, nullptr).IgnoreError();
    SetWindowValue(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&receiver));
    SetWindowValue(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Answer));
    return window;
}

void CloseMessageWindow(HWND window) {
    sys::DestroyWindow(window).IgnoreError();  // fails if the window is already gone
}

HWND FindMessageWindow(const std::string& className) {
    return className.empty() ? nullptr : sys::FindWindowA(className.c_str(), nullptr).value();
}

bool SendMessageText(HWND window, std::string_view text, HWND sender) {
    if (text.size() > kLongestMessage || !IsThere(window)) return false;
    COPYDATASTRUCT data{0, static_cast<DWORD>(text.size()), const_cast<char*>(text.data())};
    const auto sent =
        sys::SendMessageA(window, WM_COPYDATA, reinterpret_cast<WPARAM>(sender), reinterpret_cast<LPARAM>(&data));
    RethrowFirst();
    return sent.ok() && IsThere(window);
}

// Sent messages are handled inside the call that looks for posted ones.
bool FindAndSend(const std::string& className, std::string_view text, WindowHandle sender) {
    const WindowHandle window = FindMessageWindow(className);
    if (window) SendMessageText(window, text, sender);
    return window != nullptr;
}

bool PumpMessages(std::uint32_t milliseconds) {
    const std::uint64_t before = g_handled, end = ::GetTickCount64() + milliseconds;
    for (;;) {
        const bool goesOn = DispatchWaiting(end);
        RethrowFirst();
        if (g_handled != before) return true;
        if (!goesOn) return false;
        const std::uint64_t now = ::GetTickCount64();
        if (now >= end) return false;
        const auto left = static_cast<DWORD>(end - now);
        if (!sys::MsgWaitForMultipleObjects(0, nullptr, FALSE, left, QS_ALLINPUT).ok()) return false;
    }
}

}  // namespace qv::platform
