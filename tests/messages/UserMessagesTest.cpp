#include "qvcommon/UserMessages.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <random>
#include <thread>
#include <vector>

#include "platform/Path.h"
#include "platform/Process.h"
#include "qvcommon/StringHelper.h"
#include "tests/support/Blocked.h"
#include "tests/support/Child.h"
#include "tests/support/Tool.h"

namespace fs = std::filesystem;
using namespace std::string_literals;

namespace {

CString UniqueName() {
    return CString("qvtest/.%" + std::to_string(std::random_device()()));
}

int Send(const CString& name, const std::string& text) {
    return CUserMessageListener::SendUserMessage(name, 0, CString(text));
}

class Listener : public CUserMessageListener {
public:
    using CUserMessageListener::GetWindowClassName;

    void OnUserMessage(const CString& text) override { m_texts.push_back(text.AsStd()); }
    void OnCopyData(HWND sender, const CCopyData& data) override {
        m_sender = sender;
        CUserMessageListener::OnCopyData(sender, data);
    }

    std::vector<std::string> m_texts;
    HWND m_sender = nullptr;
};

/// Listens, and prints the size of each text. A text "die" ends it inside its handler, "end" behind it; one that begins
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

// A child that listens to the name.
class ListeningChild {
public:
    explicit ListeningChild(const CString& name) {
        StartChild(process, "Listen", {name});
        first = LineFrom(process);
    }

    CProcess process;
    std::string first;
};

TEST(UserMessages, TextsOfAnyBytesArriveWhole) {
    const CString name = UniqueName();
    EXPECT_EQ(Send(name, "nobody"), 0);
    ListeningChild child(name);
    ASSERT_EQ(child.first, "listening");
    EXPECT_TRUE(CUserMessageListener::DoesListenerExist(name, 0));
    EXPECT_FALSE(CUserMessageListener::DoesListenerExist(name, 1));
    for (const std::string& text : {""s, "a"s, "\0\xFF\0"s, std::string(4096, 'x'), std::string(1'000'000, 'y')}) {
        EXPECT_EQ(Send(name, text), 1);
        EXPECT_EQ(LineFrom(child.process), std::to_string(text.size()));
    }
    EXPECT_EQ(Send(name, std::string((64 << 20) + 1, 'z')), 1) << "found, but not sent";
    EXPECT_EQ(Send(name, "end"), 1);
    EXPECT_EQ(LineFrom(child.process), "3");
    EXPECT_EQ(child.process.Wait(), 0);
    EXPECT_FALSE(CUserMessageListener::DoesListenerExist(name, 0));
}

TEST(UserMessages, OneListenerOfANameAtMost) {
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
    // To one's own thread a text goes directly.
    EXPECT_EQ(Send(name, "own"), 1);
    EXPECT_EQ(first.m_texts, std::vector<std::string>{"own"});
    EXPECT_FALSE(CUserMessageListener::PumpMessages(1));
}

TEST(UserMessages, TwoThatCreateAtTheSameInstantNeverBothListen) {
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

TEST(UserMessages, WhoWaitsForAnAnswerTakesTexts) {
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

TEST(UserMessages, ADeadListenerLeavesItsNameAndItsSendersFree) {
    const CString name = UniqueName();
    const int rounds = qv::platform::HasDriveLetters() ? 20 : 100;  // a program starts slowly under an emulation
    std::mt19937 random(9);
    for (int round = 0; round < rounds; ++round) {
        ListeningChild child(name);
        ASSERT_EQ(child.first, "listening") << round;
        if (random() % 3) {
            EXPECT_EQ(Send(name, random() % 2 ? "die" : std::string(300'000, 'x')), 1);
        }
        child.process.Kill();
        child.process.Wait();
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

TEST(UserMessages, AKilledSenderCostsNothing) {
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

// Where the listener of a name that needs no escapes has its socket.
fs::path SocketOf(const CString& name) {
    const std::string user = std::to_string(std::stoi(RunProgram("id", {"-u"}).output)), runtime = "/run/user/" + user;
    return fs::path(fs::exists(runtime) ? runtime + "/qvcommon" : "/tmp/qvcommon-" + user) / name.AsStd();
}

// What no sender of ours sends, to the socket of a name.
constexpr const char* kGarbage = R"(
import os, socket, struct, sys
path, name = sys.argv[1], sys.argv[2].encode()
assert os.stat(os.path.dirname(path)).st_mode & 0o777 == 0o700
head = lambda target, sender, text, mark=b"QVM1": mark + struct.pack("=III", target, sender, text)
frames = [b"", b"QV", b"GET / HTTP/1.1\r\n\r\n", head(len(name), 0, 5), head(len(name), 0, 5) + name + b"abc",
          head(len(name), 0, 0xFFFFFFFF) + name, head(0xFFFFFFFF, 0, 0), head(len(name), 0, 1, b"QVM2") + name + b"x",
          head(len(name), 0, 1) + name + b"xyz", head(3, 0, 1) + b"otherx"]
kept = []
for frame in frames * 20:
    peer = socket.socket(socket.AF_UNIX)
    peer.connect(path)
    try:
        peer.sendall(frame)
    except BrokenPipeError:
        pass
    kept.append(peer)
print("sent", kept[0].recv(1), flush=True)
sys.stdin.read()
)";

TEST(UserMessages, GarbageCostsItsSenderTheConnection) {
    if (qv::platform::HasDriveLetters()) GTEST_SKIP() << "the system's own messages have no frames";
    const CString name("qvtest" + std::to_string(std::random_device()()));
    ListeningChild child(name);
    EXPECT_EQ(Send(name, "there"), 1);
    EXPECT_EQ(LineFrom(child.process), "5");
    CProcess peer;
    try {
        peer.Start("python3", {"-c", kGarbage, CString(SocketOf(name).string()), name},
                   CProcess::pipeInput | CProcess::pipeOutput);
    } catch (CFileException* error) {
        error->Delete();
        GTEST_SKIP() << "no python3";
    }
    EXPECT_EQ(LineFrom(peer), R"(sent b'\x02')") << "the most silent one makes room";
    EXPECT_EQ(Send(name, "still there"), 1);
    EXPECT_EQ(LineFrom(child.process), "11") << "and nothing else was taken for a text";
    peer.CloseInput();
    EXPECT_EQ(peer.Wait(), 0);
    Send(name, "end");
}

// A listener that lets the first connection go without having taken its text.
constexpr const char* kForgetful = R"(
import fcntl, os, socket, struct, sys
path = sys.argv[1]
lock = open(path + ".lock", "w")
fcntl.fcntl(lock, fcntl.F_OFD_SETLK, struct.pack("hhqqi4x", fcntl.F_WRLCK, 0, 0, 0, 0))
listener = socket.socket(socket.AF_UNIX)
listener.bind(path)
listener.listen()
listener.settimeout(20)
print("listening", flush=True)
for answer in b"\x02", b"\x01":
    peer = listener.accept()[0]
    print(peer.recv(1000)[-4:].decode(), flush=True)
    peer.sendall(answer)
    peer.close()
os.unlink(path)
os.unlink(path + ".lock")
)";

TEST(UserMessages, ATextThatWasNotTakenIsSentAnew) {
    if (qv::platform::HasDriveLetters()) GTEST_SKIP() << "the system has no connections";
    const CString name("qvtest" + std::to_string(std::random_device()()));
    CUserMessageListener::DoesListenerExist(name, 0);  // makes the folder
    CProcess listener;
    listener.Start("python3", {"-c", kForgetful, CString(SocketOf(name).string())}, CProcess::pipeOutput);
    if (LineFrom(listener) != "listening") GTEST_SKIP() << "no python3";
    EXPECT_EQ(Send(name, "once"), 1);
    EXPECT_EQ(LineFrom(listener), "once");
    EXPECT_EQ(LineFrom(listener), "once");
    EXPECT_EQ(listener.Wait(), 0);
}

// What another user tries with the socket of a name; the second time its folder and itself stand open.
constexpr const char* kStranger = R"(
import os, socket, struct, sys
path, name = sys.argv[1], sys.argv[2].encode()
folder = os.path.dirname(path)
def connect():
    peer = socket.socket(socket.AF_UNIX)
    peer.connect(path)
    peer.sendall(b"QVM1" + struct.pack("=III", len(name), 0, 3) + name + b"spy")
    return peer.recv(1)
def outcome(action):
    try:
        return "done" if action() != b"" else "closed"
    except PermissionError:
        return "refused"
    except OSError:
        return "closed"
for line in sys.stdin:
    actions = [connect, lambda: os.unlink(path), lambda: open(path + ".lock", "r+"), lambda: open(folder + "/new", "w")]
    print(*[outcome(action) for action in actions], flush=True)
)";

class OtherUser {
public:
    /// False where this program may not become another user, or that one may not run it.
    bool Start(const CStringArray& command) try {
        CStringArray words = {"--reuid=65534", "--regid=65534", "--clear-groups"};
        words.Append(command);
        process.Start("setpriv", words, CProcess::pipeInput | CProcess::pipeOutput);
        return true;
    } catch (CFileException* error) {
        error->Delete();
        return false;
    }
    std::string Answer() {
        process.WriteInput("\n");
        return LineFrom(process);
    }

    CProcess process;
};

TEST(UserMessages, OtherUsersNeitherListenNorSendNorRead) {
    if (qv::platform::HasDriveLetters()) GTEST_SKIP() << "the system keeps sessions apart";
    const CString name("qvtest" + std::to_string(std::random_device()()));
    const fs::path socket = SocketOf(name), folder = socket.parent_path();
    OtherUser spy;
    ListeningChild child(name);
    ASSERT_EQ(child.first, "listening");
    if (!spy.Start({"env", "PATH=/usr/bin:/bin", "python3", "-c", kStranger, CString(socket.string()), name}) ||
        spy.Answer().empty())
        GTEST_SKIP() << "no other user may be made";
    EXPECT_EQ(spy.Answer(), "refused refused refused refused");
    fs::permissions(folder, fs::perms(0711));
    fs::permissions(socket, fs::perms::all);
    EXPECT_EQ(spy.Answer(), "closed refused refused refused") << "the listener knows whose connection it is";
    EXPECT_EQ(Send(name, "x"), 0) << "a folder that others may enter is not used";
    fs::permissions(folder, fs::perms::owner_all);
    // The same name of another user is another one. A tree in a private folder is not theirs to run.
    const std::string program = qv::platform::CurrentProgram();
    OtherUser probe, listener;
    if (probe.Start({CString(program), "--gtest_list_tests"}) && !LineFrom(probe.process).empty()) {
        ASSERT_TRUE(listener.Start({CString(program), "--child=Listen", name}));
        EXPECT_EQ(LineFrom(listener.process), "listening");
        EXPECT_EQ(Send(name, "mine"), 1);
        EXPECT_EQ(LineFrom(child.process), "4");
        OtherUser sender;
        sender.Start({CString(fs::path(program).replace_filename("qv").string()), "send", name, "end"});
        EXPECT_EQ(LineFrom(listener.process), "3");
    }
    Send(name, "end");
    EXPECT_EQ(LineFrom(child.process), "3");
}

TEST(MessageCommands, CarryTextsBetweenPrograms) {
    const CString name = UniqueName();
    EXPECT_EQ(ToolStatus({"send", name, "nobody"}), 1);
    EXPECT_EQ(ToolStatus({"send", name}), 2);
    Background sender([&] {
        while (!CUserMessageListener::DoesListenerExist(name, 0)) std::this_thread::yield();
        EXPECT_EQ(ToolStatus({"listen", name}), 1);
        EXPECT_EQ(ToolStatus({"send", name, "one two"}), 0);
        EXPECT_EQ(ToolStatus({"send", name, ""}), 0);
    });
    const ToolAnswer answer = RunTool({"listen", name, "--count", "2"});
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(CStringHelper::GetEditFriendlyNewlines(answer.output), "one two\r\n\r\n");
}

}  // namespace
