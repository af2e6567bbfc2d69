#include <thread>

#include "platform/Event.h"
#include "platform/Process.h"
#include "tests/messages/Listening.h"
#include "tests/support/Blocked.h"
#include "tests/support/FileTests.h"
#include "tests/support/Tool.h"

using namespace std::string_literals;

namespace {

// Where the listener of a name that needs no escapes has its socket.
fs::path SocketOf(const CString& name) {
    const std::string user = std::to_string(std::stoi(RunProgram("id", {"-u"}).output)), runtime = "/run/user/" + user;
    return fs::path(fs::exists(runtime) ? runtime + "/qvcommon" : "/tmp/qvcommon-" + user) / name.AsStd();
}

// Frames that no sender of the library sends, to the socket of a name.
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

TEST(UserMessages, MalformedDataClosesConnection) {
    if (qv::platform::HasDriveLetters()) GTEST_SKIP() << "the system's own messages have no frames";
    const CString name = PlainName();
    ListeningChild child(name);
    EXPECT_EQ(Send(name, "there"), 1);
    EXPECT_EQ(child.Received(), "5");
    CProcess peer;
    peer.Start("python3", {"-c", kGarbage, CString(SocketOf(name).string()), name},
               CProcess::pipeInput | CProcess::pipeOutput);
    EXPECT_EQ(LineFrom(peer), R"(sent b'\x02')") << "the most silent one makes room";
    EXPECT_EQ(Send(name, "still there"), 1);
    EXPECT_EQ(child.Received(), "11") << "the only other text";
    peer.CloseInput();
    EXPECT_EQ(peer.Wait(), 0);
    Send(name, "end");
}

// A listener that closes the first connection without accepting its text.
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

TEST(UserMessages, ResendsUnacknowledgedMessage) {
    if (qv::platform::HasDriveLetters()) GTEST_SKIP() << "the system has no connections";
    const CString name = PlainName();
    CUserMessageListener::DoesListenerExist(name, 0);  // makes the folder
    CProcess listener;
    listener.Start("python3", {"-c", kForgetful, CString(SocketOf(name).string())}, CProcess::pipeOutput);
    EXPECT_EQ(LineFrom(listener), "listening");
    EXPECT_EQ(Send(name, "once"), 1);
    EXPECT_EQ(LineFrom(listener), "once");
    EXPECT_EQ(LineFrom(listener), "once");
    EXPECT_EQ(listener.Wait(), 0);
}

// Killed listeners leave two files each, which the next one removes, of any name. A listener that takes such a name at the
// same moment gets it.
TEST(UserMessages, RemovesFilesOfKilledListeners) {
    if (qv::platform::HasDriveLetters()) GTEST_SKIP() << "the system removes a process's windows";
    const auto files = [](const CString& name) {
        return fs::exists(SocketOf(name)) + fs::exists(SocketOf(name + ".lock"));
    };
    const auto sweepAll = [] {  // other tests kill listeners and sweep, too
        for (int i = 0; i < 50; ++i) Listener().Create(PlainName(), 0);
    };
    sweepAll();
    const CString dead[] = {PlainName(), PlainName(), PlainName()}, livingName = PlainName();
    ListeningChild living(livingName);
    {
        ListeningChild children[] = {ListeningChild(dead[0]), ListeningChild(dead[1]), ListeningChild(dead[2])};
        for (ListeningChild& child : children) child.Kill();
    }
    for (const CString& name : dead)
        if (files(name) != 2) GTEST_SKIP() << "a listener outside of this test has removed them";
    qv::platform::Event sweeping, refused;
    Background other([&] {
        sweeping.Wait();
        EXPECT_TRUE(Listener().Create(dead[0], 0));
    });
    {
        const std::string lock = SocketOf(dead[0] + ".lock").string();
        int locks = 0;
        const SystemFaults meanwhile([&, main = std::this_thread::get_id()](const SystemFaults::Call& call) {
            using enum qv::platform::CallKind;
            const bool isMain = std::this_thread::get_id() == main;
            if (isMain && call.kind == Remove && call.path == lock) {
                sweeping.Set();
                refused.Wait();
            }
            if (!isMain && call.kind == Lock && ++locks == 2) refused.Set();
            return SystemFaults::Fault{};
        });
        Listener next;
        EXPECT_TRUE(next.Create(PlainName(), 0));
        sweeping.Set();  // a listener outside of this test may have removed the lock first
        EXPECT_TRUE(other.Ends());
    }
    if (files(dead[0]) + files(dead[1]) + files(dead[2])) sweepAll();
    for (const CString& name : dead) EXPECT_EQ(files(name), 0);
    EXPECT_TRUE(CUserMessageListener::DoesListenerExist(livingName, 0));
    EXPECT_EQ(Send(livingName, "end"), 1);
}

TEST(UserMessages, PumpEndsInTimeWithoutDescriptors) {
    if (qv::platform::HasDriveLetters()) GTEST_SKIP() << "the system has no connections";
    const CString name = PlainName();
    Listener listener;
    ASSERT_TRUE(listener.Create(name, 0));
    Background sender([&] { EXPECT_EQ(Send(name, "text"), 1); });
    std::atomic<int> refused = 0, most = 10'000;
    const SystemFaults full([&](const SystemFaults::Call& call) {
        const bool fails = std::string_view(call.name) == "accept4" && refused < most;
        refused += fails;
        return SystemFaults::Fault{.error = fails ? EMFILE : 0ul};
    });
    while (refused == 0) EXPECT_FALSE(CUserMessageListener::PumpMessages(10));
    EXPECT_LT(refused.load(), 1000) << "it pauses before it tries again";
    most = 0;
    EXPECT_TRUE(CUserMessageListener::PumpMessages(10'000));
}

// A program that cleans up may delete the lock file; the next listener has the name then.
TEST(UserMessages, ClosingListenerLeavesNextOfName) {
    if (qv::platform::HasDriveLetters()) GTEST_SKIP() << "the system has no files for names";
    const CString name = PlainName();
    auto first = std::make_unique<Listener>();
    ASSERT_TRUE(first->Create(name, 0));
    EXPECT_EQ(fs::status(SocketOf(name + ".lock")).permissions(), fs::perms(01600)) << "sticky: to be kept";
    fs::remove(SocketOf(name + ".lock"));
    ListeningChild second(name);
    first = nullptr;
    EXPECT_EQ(Send(name, "end"), 1);
}

// What another user tries with the socket of a name, the second time with permissions for everyone.
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

TEST(UserMessages, InaccessibleToOtherUsers) {
    if (qv::platform::HasDriveLetters()) GTEST_SKIP() << "the system keeps sessions apart";
    const CString name = PlainName();
    const fs::path socket = SocketOf(name), folder = socket.parent_path();
    CProcess spy;
    const auto attempt = [&] {
        spy.WriteInput("\n");
        return LineFrom(spy);
    };
    ListeningChild child(name);
    ASSERT_EQ(child.first, "listening");
    const CString path(socket.string());
    if (!StartAs("65534", spy, {"env", "PATH=/usr/bin:/bin", "python3", "-c", kStranger, path, name}) ||
        attempt().empty())
        GTEST_SKIP() << "this program may not become another user";
    EXPECT_EQ(attempt(), "refused refused refused refused");
    fs::permissions(folder, fs::perms(0711));
    fs::permissions(socket, fs::perms::all);
    EXPECT_EQ(attempt(), "closed refused refused refused") << "the listener knows whose connection it is";
    EXPECT_EQ(Send(name, "x"), 0) << "a folder that others may enter is not used";
    fs::permissions(folder, fs::perms::owner_all);
    // Names belong to a user. That one cannot run a program in a private folder.
    const std::string program = qv::platform::CurrentProgram();
    CProcess probe, listener, sender;
    if (StartAs("65534", probe, {CString(program), "--gtest_list_tests"}) && !LineFrom(probe).empty()) {
        ASSERT_TRUE(StartAs("65534", listener, {CString(program), "--child=Listen", name}));
        EXPECT_EQ(LineFrom(listener), "listening");
        EXPECT_EQ(Send(name, "mine"), 1);
        EXPECT_EQ(child.Received(), "4");
        StartAs("65534", sender, {CString(ToolPath()), "send", name, "end"});
        EXPECT_EQ(LineFrom(listener), "3");
    }
    Send(name, "end");
    EXPECT_EQ(child.Received(), "3");
}

}  // namespace
