// Listeners beside the message loop of a Windows program.

#include <windows.h>

#include <gtest/gtest.h>

#include <future>
#include <stdexcept>

#include "qvcommon/UserMessages.h"

namespace {

TEST(MessageLoop, EndsOnQuitMessage) {
    ::PostQuitMessage(7);
    for (int again = 0; again < 2; ++again) EXPECT_FALSE(CUserMessageListener::PumpMessages(INFINITE));
    MSG message;
    EXPECT_FALSE(::GetMessageA(&message, nullptr, 0, 0));
    EXPECT_EQ(message.wParam, 7u);
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

}  // namespace
