#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <stdexcept>
#include <thread>

#include "platform/Path.h"
#include "platform/Process.h"
#include "tests/messages/Listening.h"
#include "tests/support/Blocked.h"
#include "tests/support/Tool.h"

using namespace std::string_literals;

namespace {

/// Listens, and prints the size of each text. A text "die" ends it inside its handler, "end" after it; one that begins
/// with "answer" is sent back to its sender, twice.
QV_CHILD(Listen) {
    class Answering : public Listener {
        void OnCopyData(HWND sender, const CCopyData& data) override {
            Listener::OnCopyData(sender, data);
            const std::string text = m_texts.back();
            if (text == "die") std::_Exit(1);
            if (text.starts_with("answer"))
                for (int i = 0; i < 2; ++i) QvSendIpcMessage(sender, CString(text), m_hWnd);
            std::cout << text.size() << std::endl;
        }
    } listener;
    std::cout << (listener.Create(arguments.at(0).c_str(), 0) ? "listening" : "refused") << std::endl;
    while (listener.m_hWnd && (listener.m_texts.empty() || listener.m_texts.back() != "end"))
        listener.PumpMessages(10'000);
    std::string line;
    if (!listener.m_hWnd) std::getline(std::cin, line);
    return 0;
}

TEST(UserMessages, DeliversArbitraryBytes) {
    const CString name = UniqueName();
    EXPECT_EQ(Send(name, "unheard"), 0);
    ListeningChild child(name);
    ASSERT_EQ(child.first, "listening");
    EXPECT_TRUE(CUserMessageListener::DoesListenerExist(name, 0));
    EXPECT_FALSE(CUserMessageListener::DoesListenerExist(name, 1));
    EXPECT_EQ(Send(name, std::string((64 << 20) + 1, 'z')), 1) << "found, but not sent";
    for (const std::string& text :
         {""s, "a"s, "\0\xFF\0"s, std::string(4096, 'x'), std::string(1'000'000, 'y'), "end"s}) {
        EXPECT_EQ(Send(name, text), 1);
        EXPECT_EQ(child.Received(), std::to_string(text.size()));
    }
    EXPECT_EQ(child.process.Wait(), 0);
    EXPECT_FALSE(CUserMessageListener::DoesListenerExist(name, 0));
}

/// Has a listener that is destroyed after the variables of the main thread, and sends then.
QV_CHILD(ListenUntilExit) {
    static const CString target(arguments.at(0));
    static struct Last : Listener {
        ~Last() override { Send(target, "exiting"); }
    } listener;
    Send(target, "running");
    return listener.Create(UniqueName(), 0) ? 0 : 1;
}

TEST(UserMessages, StaticListenersMayBeDestroyedAtExit) {
    const CString name = UniqueName();
    Listener listener;
    ASSERT_TRUE(listener.Create(name, 0));
    CProcess child;
    StartChild(child, "ListenUntilExit", {name});
    for (int i = 0; i < 2; ++i) EXPECT_TRUE(listener.PumpMessages(10'000));
    EXPECT_EQ(child.Wait(), 0);
}

TEST(UserMessages, AtMostOneListenerPerName) {
    const CString name = UniqueName();
    Listener first, second;
    ASSERT_TRUE(first.Create(name, 0));
    EXPECT_FALSE(first.Create(name, 0));
    EXPECT_FALSE(second.Create(name, 0));
    EXPECT_EQ(ListeningChild(name).first, "refused");
    EXPECT_TRUE(second.Create(name, 1)) << "the process's own name is another one";
    EXPECT_TRUE(CUserMessageListener::DoesListenerExist(name, 1));
    EXPECT_EQ(Listener::GetWindowClassName("a", 0), "a");
    Listener none;
    EXPECT_FALSE(none.Create("", 0));
    EXPECT_FALSE(none.Create(std::string(241, 'x').c_str(), 0));
    EXPECT_TRUE(none.Create(std::string(240, 'x').c_str(), 0));
    // A text to the sender's own thread is handled directly.
    EXPECT_EQ(Send(name, "own"), 1);
    EXPECT_EQ(first.m_texts, std::vector<std::string>{"own"});
    EXPECT_FALSE(CUserMessageListener::PumpMessages(1));
    // A name that could be that of another one's lock file.
    Listener locked;
    EXPECT_TRUE(locked.Create(name + ".lock", 0));
    EXPECT_EQ(Send(name + ".lock", "other") + Send(name, "still"), 2);
    EXPECT_TRUE(CUserMessageListener::DoesListenerExist(name, 0));
}

TEST(UserMessages, OneOfConcurrentListenersWins) {
    for (int round = 0; round < 20; ++round) {
        const CString name = UniqueName();
        CProcess children[3];
        for (CProcess& child : children) StartChild(child, "Listen", {name});
        int listening = 0;
        for (CProcess& child : children) listening += LineFrom(child) == "listening";
        EXPECT_EQ(listening, 1);
        EXPECT_EQ(Send(name, "end"), 1);
        for (CProcess& child : children) child.CloseInput();
        for (CProcess& child : children) child.Wait();
    }
}

TEST(UserMessages, WaitingSenderReceivesMessages) {
    const CString name = UniqueName(), ownName = UniqueName();
    ListeningChild child(name);
    Listener listener;
    ASSERT_TRUE(listener.Create(ownName, 0));
    EXPECT_EQ(CUserMessageListener::SendUserMessage(name, 0, CString("answer me"), listener.m_hWnd), 1);
    EXPECT_EQ(listener.m_texts, (std::vector<std::string>{"answer me", "answer me"}));
    EXPECT_NE(listener.m_sender, nullptr);
    // Without a sender the main window is named.
    AfxSetMainWnd(&listener);
    EXPECT_EQ(Send(name, "answer too"), 1);
    AfxSetMainWnd(nullptr);
    EXPECT_EQ(listener.m_texts.back(), "answer too");
    Send(name, "end");
}

TEST(UserMessages, HandlerExceptionsReachCaller) {
    struct Throwing : Listener {
        void OnUserMessage(const CString& text) override { throw std::runtime_error(text.AsStd()); }
    } listener;
    const CString name = UniqueName(), answering = UniqueName();
    ASSERT_TRUE(listener.Create(name, 0));
    std::string thrown;
    const auto pump = [&] {
        try {
            while (CUserMessageListener::PumpMessages(10'000)) {
            }
            thrown += "nothing ";
        } catch (const std::runtime_error& error) {
            thrown += error.what() + " "s;
        }
    };
    EXPECT_THROW(Send(name, "own"), std::runtime_error);
    Background sender([&] {
        EXPECT_EQ(Send(name, "first"), 1);
        EXPECT_EQ(Send(name, "second"), 1);
    });
    pump();
    pump();
    EXPECT_TRUE(sender.Ends());
    // While the thread waits until its own text is handled; the second answer arrives too.
    ListeningChild child(answering);
    EXPECT_THROW(CUserMessageListener::SendUserMessage(answering, 0, CString("answer"), listener.m_hWnd),
                 std::runtime_error);
    pump();
    EXPECT_EQ(thrown, "first second answer ");
    EXPECT_FALSE(CUserMessageListener::PumpMessages(0));
    Send(answering, "end");
}

TEST(UserMessages, KilledListenerFreesNameAndSenders) {
    const CString name = UniqueName();
    const int rounds = qv::platform::HasDriveLetters() ? 20 : 100;  // a program starts slowly under an emulation
    std::mt19937 random(9);
    for (int round = 0; round < rounds; ++round) {
        ListeningChild child(name);
        ASSERT_EQ(child.first, "listening") << round;
        if (random() % 3) {
            EXPECT_EQ(Send(name, random() % 2 ? "die" : std::string(300'000, 'x')), 1);
        }
        child.Kill();
        EXPECT_FALSE(CUserMessageListener::DoesListenerExist(name, 0));
        EXPECT_EQ(Send(name, "x"), 0);
    }
    Listener listener;
    EXPECT_TRUE(listener.Create(name, 0));
}

QV_CHILD(SendWithoutEnd) {
    const CString text(std::string(static_cast<std::size_t>(std::stoi(arguments.at(1))), 's'));
    std::cout << "sending" << std::endl;
    while (CUserMessageListener::SendUserMessage(arguments.at(0).c_str(), 0, text)) {
    }
    return 0;
}

TEST(UserMessages, KilledSenderDoesNotAffectListener) {
    const CString name = UniqueName();
    Listener listener;
    ASSERT_TRUE(listener.Create(name, 0));
    const int rounds = qv::platform::HasDriveLetters() ? 10 : 100;
    for (int round = 0; round < rounds; ++round) {
        const std::size_t size = round % 2 ? 1'000'000 : 10;
        CProcess sender;
        StartChild(sender, "SendWithoutEnd", {name, CString(std::to_string(size))});
        ASSERT_EQ(LineFrom(sender), "sending");
        for (int i = round % 4; i > 0; --i) listener.PumpMessages(10'000);
        sender.Kill();
        sender.Wait();
        while (listener.PumpMessages(0)) {
        }
        for (const std::string& text : listener.m_texts) ASSERT_EQ(text.size(), size);
        listener.m_texts.clear();
    }
}

TEST(MessageCommands, SendMessagesBetweenProcesses) {
    const CString name = UniqueName();
    EXPECT_EQ(ToolStatus({"send", name, "unheard"}), 1);
    Background sender([&] {
        while (!CUserMessageListener::DoesListenerExist(name, 0)) std::this_thread::yield();
        EXPECT_EQ(ToolStatus({"listen", name}), 1);
        EXPECT_EQ(ToolStatus({"send", name, "one two"}), 0);
        EXPECT_EQ(ToolStatus({"send", name, ""}), 0);
    });
    const ToolAnswer answer = RunTool({"listen", name, "--count", "2", "--null"});
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.output, std::string("one two\0\0", 9));
}

}  // namespace
