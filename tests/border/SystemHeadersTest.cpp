// Listeners beside the message loop of a Windows program, and drawing on the system's device contexts.

#include <windows.h>

#include <gtest/gtest.h>

#include <future>
#include <stdexcept>

#include "qvcommon/DIBitmap.h"
#include "qvcommon/UserMessages.h"

namespace {

TEST(MessageLoop, EndsOnQuitMessage) {
    ::PostQuitMessage(7);
    for (int again = 0; again < 2; ++again) EXPECT_FALSE(CUserMessageListener::PumpMessages(INFINITE));
    MSG message;
    EXPECT_FALSE(::GetMessageA(&message, nullptr, 0, 0));
    EXPECT_EQ(message.wParam, 7u);
}

int g_posts = 0;

LRESULT CALLBACK PostAgain(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_APP && ++g_posts < 100'000) ::PostMessageA(window, WM_APP, 0, 0);
    return ::DefWindowProcA(window, message, first, second);
}

TEST(MessageLoop, PumpEndsInTimeWhileMessagesArePosted) {
    const HWND window = ::CreateWindowExA(0, "STATIC", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    ::SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&PostAgain));
    ::PostMessageA(window, WM_APP, 0, 0);
    EXPECT_FALSE(CUserMessageListener::PumpMessages(10));
    EXPECT_LT(g_posts, 100'000);
    ::DestroyWindow(window);
}

TEST(MessageLoop, DefersHandlerExceptionToNextPump) {
    struct Throwing : CUserMessageListener {
        void OnUserMessage(const CString&) override { throw std::runtime_error("from the handler"); }
    } listener;
    ASSERT_TRUE(listener.Create("qvtest message loop", 1));
    const DWORD loop = ::GetCurrentThreadId();
    auto sent = std::async(std::launch::async, [loop] {
        const int found = CUserMessageListener::SendUserMessage("qvtest message loop", 1, "text");
        ::PostThreadMessageA(loop, WM_QUIT, 0, 0);
        return found;
    });
    MSG message;
    while (::GetMessageA(&message, nullptr, 0, 0)) ::DispatchMessageA(&message);
    EXPECT_EQ(sent.get(), 1);
    EXPECT_THROW(CUserMessageListener::PumpMessages(0), std::runtime_error);
    EXPECT_FALSE(CUserMessageListener::PumpMessages(0));
}

// Programs that end others send it to all their windows.
TEST(MessageLoop, CloseMessageKeepsListener) {
    CUserMessageListener listener;
    ASSERT_TRUE(listener.Create("qvtest message loop", 1));
    ::SendMessageA(listener.m_hWnd, WM_CLOSE, 0, 0);
    EXPECT_EQ(CUserMessageListener::SendUserMessage("qvtest message loop", 1, "text"), 1);
}

TEST(DeviceContext, FailuresAreNotCountedAsDrawn) {
    struct OnePixel : CDIBitmap {
        OnePixel() {
            m_info.reset(new DibInfo{{40, 1, 1, 1, 32, 0, 0, 0, 0, 0, 0}, {}});
            m_bits = std::make_unique<BYTE[]>(m_bitsSize = 4);
        }
    } picture;
    const HDC context = ::CreateCompatibleDC(nullptr);
    EXPECT_EQ(picture.DrawDIB(CDC(context), 9, 9), 1) << "nothing is visible there";
    EXPECT_EQ(picture.DrawDIB(CDC(static_cast<HDC>(::GetCurrentObject(context, OBJ_BITMAP))), 0, 0), 0);
    ::DeleteDC(context);
}

}  // namespace
