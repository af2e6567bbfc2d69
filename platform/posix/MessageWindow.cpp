#include "platform/MessageWindow.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include "platform/MessageFrame.h"
#include "platform/Window.h"
#include "platform/posix/Owned.h"

namespace qv::platform {
namespace {

using Clock = std::chrono::steady_clock;

// Who is connected and says nothing more is let go after a while, or sooner when others want in.
constexpr auto kPatience = std::chrono::seconds(10);
constexpr std::size_t kMostConnections = 64;

// ---- Names

// Windows of other programs have handles here too, one for each name, which stay valid for the life of this program.
class Handles {
public:
    WindowHandle Of(const std::string& className) {
        const std::scoped_lock lock(m_mutex);
        WindowHandle& window = m_windows[className];
        if (!window) {
            window = MakeWindow(WindowKind::Dialog, nullptr, 0);
            PutText(window, className);
        }
        return window;
    }

    std::string NameOf(WindowHandle window) {
        const std::scoped_lock lock(m_mutex);
        const auto found = std::find_if(m_windows.begin(), m_windows.end(),
                                        [window](const auto& entry) { return entry.second == window; });
        return found == m_windows.end() ? "" : found->first;
    }

private:
    std::mutex m_mutex;
    std::map<std::string, WindowHandle> m_windows;
};

Handles& AllHandles() {
    static auto& handles = *new Handles;  // threads may outlive the end of main
    return handles;
}

bool IsOwnFolder(const std::string& path) {
    struct stat status;
    return !::lstat(path.c_str(), &status) && S_ISDIR(status.st_mode) && status.st_uid == ::geteuid();
}

// The folder of the user's windows, made if need be; empty when somebody else has a hand in it.
std::string MessageFolder() {
    const std::string user = std::to_string(::geteuid()), runtime = "/run/user/" + user;
    const std::string folder = IsOwnFolder(runtime) ? runtime + "/qvcommon" : "/tmp/qvcommon-" + user;
    ::mkdir(folder.c_str(), S_IRWXU);
    struct stat status;
    const bool closed = !::stat(folder.c_str(), &status) && !(status.st_mode & (S_IRWXG | S_IRWXO));
    return IsOwnFolder(folder) && closed ? folder : "";
}

std::string Escaped(const std::string& name) {
    std::string out;
    for (const char c : name) {
        char code[4];
        std::snprintf(code, sizeof code, "%%%02X", static_cast<unsigned char>(c));
        const bool plain = c != '/' && c != '%' && c != '\0' && !(c == '.' && out.empty());
        out += plain ? std::string(1, c) : code;
    }
    return out;
}

// FNV-1a, from two starting points: 128 bits that tell long names apart. Each message names its target, so two names that
// met would only miss each other.
std::string Digest(const std::string& name) {
    std::string out;
    for (std::uint64_t hash : {0xCBF29CE484222325u, 0x9AE16A3B2F90404Fu}) {
        for (const char c : name) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3u;
        char text[17];
        std::snprintf(text, sizeof text, "%016jx", static_cast<std::uintmax_t>(hash));
        out += text;
    }
    return out;
}

// Where a window's socket is; the system takes 107 bytes at most. Empty when there is no place for it.
std::string SocketPath(const std::string& className) {
    constexpr std::size_t longest = 72;
    const std::string folder = MessageFolder(), name = Escaped(className);
    if (folder.empty() || className.empty() || name.size() > kLongestClassName) return "";
    return folder + '/' + (name.size() <= longest ? name : name.substr(0, longest - 33) + '-' + Digest(className));
}

sockaddr_un AddressOf(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    return address;
}

// ---- The lock that says that a window is there

struct flock WholeFile(short type) {
    struct flock range {};
    range.l_type = type;
    range.l_whence = SEEK_SET;
    return range;
}

bool IsStillAt(int file, const std::string& path) {
    struct stat here, there;
    return !::fstat(file, &here) && !::stat(path.c_str(), &there) && here.st_ino == there.st_ino &&
           here.st_dev == there.st_dev;
}

// The locked file; nothing when another window holds it.
Owned TakeLock(const std::string& path) {
    for (;;) {
        Owned file(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR));
        struct flock range = WholeFile(F_WRLCK);
        if (!file || ::fcntl(file.Get(), F_OFD_SETLK, &range)) return Owned();
        if (IsStillAt(file.Get(), path)) return file;  // else its last holder has just deleted it
    }
}

bool IsLocked(const std::string& path) {
    const Owned file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
    struct flock range = WholeFile(F_WRLCK);
    return file && !::fcntl(file.Get(), F_OFD_GETLK, &range) && range.l_type != F_UNLCK;
}

// ---- A sender's end of the conversation, as a window sees it

constexpr char kHandled = 1;
constexpr char kNotTaken = 2;  // and the connection is closed: a text that is on its way has to be sent on a new one

void Answer(int socket, char answer) {
    static_cast<void>(::send(socket, &answer, 1, MSG_NOSIGNAL | MSG_DONTWAIT));
}

bool IsSameUser(int socket) {
    ucred peer{};
    socklen_t size = sizeof peer;
    return !::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) && peer.uid == ::geteuid();
}

struct Connection {
    Owned socket;
    MessageFrame frame = {};
    Clock::time_point heard = Clock::now();

    MessageFrame::State Receive() {
        char buffer[65536];
        const ssize_t size = ::recv(socket.Get(), buffer, sizeof buffer, MSG_DONTWAIT);
        if (size < 0 && (errno == EAGAIN || errno == EINTR)) return MessageFrame::State::Partial;
        if (size <= 0) return MessageFrame::State::Broken;
        heard = Clock::now();
        return frame.Add({buffer, static_cast<std::size_t>(size)});
    }
};

struct MessageWindow {
    std::string className, path;
    Owned lock, listener;
    MessageReceiver* receiver;
    std::vector<Connection> connections = {};

    void Accept() {
        Owned socket(::accept4(listener.Get(), nullptr, nullptr, SOCK_CLOEXEC));
        if (socket && IsSameUser(socket.Get())) Keep({std::move(socket)});
    }

    void Keep(Connection connection) {
        if (connections.size() == kMostConnections) {
            const auto silent = std::min_element(connections.begin(), connections.end(),
                                                 [](const auto& a, const auto& b) { return a.heard < b.heard; });
            Answer(silent->socket.Get(), kNotTaken);
            connections.erase(silent);
        }
        connections.push_back(std::move(connection));
    }

    // A complete message, which is none of the connections until it has been handled.
    std::optional<Connection> Read(int socket) {
        const auto connection = std::find_if(connections.begin(), connections.end(),
                                             [socket](const auto& one) { return one.socket.Get() == socket; });
        if (connection == connections.end()) return std::nullopt;
        const MessageFrame::State state = connection->Receive();
        if (state == MessageFrame::State::Partial) return std::nullopt;
        std::optional<Connection> message(std::move(*connection));
        connections.erase(connection);
        if (state == MessageFrame::State::Complete && message->frame.Target() == className) return message;
        return std::nullopt;
    }

    void DropSilent() {
        std::erase_if(connections, [now = Clock::now()](const auto& one) {
            if (now - one.heard <= kPatience) return false;
            Answer(one.socket.Get(), kNotTaken);
            return true;
        });
    }

    bool IsOpen() const { return listener.Get() != -1; }

    // Whoever is at work with it may keep the rest for a while.
    void Close() {
        connections.clear();
        listener.Close();
        // While the lock is held nobody else makes these anew.
        ::unlink(path.c_str());
        ::unlink((path + ".lock").c_str());
        lock.Close();
    }
};

// The calling thread's windows.
using Windows = std::vector<std::shared_ptr<MessageWindow>>;

Windows& OwnWindows() {
    static thread_local Windows windows;
    return windows;
}

std::shared_ptr<MessageWindow> OwnWindow(std::string_view className) {
    for (const auto& window : OwnWindows())
        if (window->className == className) return window;
    return nullptr;
}

void Handle(MessageWindow& window, Connection& message) {
    const std::string_view sender = message.frame.Sender();
    window.receiver->OnMessage(sender.empty() ? nullptr : AllHandles().Of(std::string(sender)), 0,
                               message.frame.Text());
    Answer(message.socket.Get(), kHandled);
    if (window.IsOpen()) window.Keep({std::move(message.socket)});
}

// ---- Waiting

enum class Woken { ByMessage, ByDescriptor, ByTime };

struct Wait {
    std::vector<pollfd> polled;
    std::vector<std::shared_ptr<MessageWindow>> windows;  // whose descriptor it is

    void Add(int descriptor, const std::shared_ptr<MessageWindow>& window, short events = POLLIN) {
        polled.push_back({descriptor, events, 0});
        windows.push_back(window);
    }
};

Wait AllOwnDescriptors() {
    Wait wait;
    for (const auto& window : OwnWindows()) {
        window->DropSilent();
        wait.Add(window->listener.Get(), window);
        for (const Connection& connection : window->connections) wait.Add(connection.socket.Get(), window);
    }
    return wait;
}

// Takes what has come in, up to the first whole message. Its receiver may do what it likes to the thread's windows.
bool HandleOne(const Wait& wait) {
    for (std::size_t i = 0; i < wait.polled.size(); ++i) {
        const auto& window = wait.windows[i];
        if (!wait.polled[i].revents || !window) continue;
        if (wait.polled[i].fd == window->listener.Get()) {
            window->Accept();
        } else if (auto message = window->Read(wait.polled[i].fd)) {
            Handle(*window, *message);
            return true;
        }
    }
    return false;
}

// To fall asleep and be woken takes longer than an answer, or the next text of a lively conversation, where the other end
// has a processor of its own: it is worth looking a moment before. Where looking is in vain, it is done ever more rarely.
class Looking {
public:
    // What is ready; 0 when it did not look, or nothing came.
    int Look(std::vector<pollfd>& polled, Clock::time_point end) {
        if (m_left > 0) return --m_left, 0;
        end = std::min(end, Clock::now() + std::chrono::microseconds(30));
        int ready = 0;
        do ready = ::poll(polled.data(), polled.size(), 0);
        while (ready == 0 && Clock::now() < end);
        m_pause = ready == 0 ? std::min(2 * m_pause + 1, 127) : 0;
        m_left = m_pause;
        return ready;
    }

private:
    int m_pause = 0, m_left = 0;  // waits without a look: after the last one in vain, and still to come
};

Looking& OwnLooking() {
    static thread_local Looking looking;
    return looking;
}

// In milliseconds; a second at most, so that silent connections are looked through now and then.
int TimeLeft(std::optional<Clock::time_point> end) {
    using std::chrono::milliseconds;
    if (!end) return 1000;
    const auto left = std::chrono::ceil<milliseconds>(*end - Clock::now());
    return static_cast<int>(std::clamp(left, milliseconds(0), milliseconds(1000)).count());
}

// Handles messages for the thread's windows until a descriptor is ready, or one has been handled where none is given.
Woken WaitFor(int descriptor, short events, std::optional<Clock::time_point> end) {
    for (;;) {
        Wait wait = AllOwnDescriptors();
        if (descriptor != -1) wait.Add(descriptor, nullptr, events);
        int ready = OwnLooking().Look(wait.polled, end.value_or(Clock::time_point::max()));
        if (ready == 0) ready = ::poll(wait.polled.data(), wait.polled.size(), TimeLeft(end));
        if (descriptor != -1 && wait.polled.back().revents) return Woken::ByDescriptor;
        if (HandleOne(wait) && descriptor == -1) return Woken::ByMessage;
        if (ready <= 0 && end && Clock::now() >= *end) return Woken::ByTime;
    }
}

// ---- Sending

// A window that has just taken its name may not listen yet.
Owned Connect(const std::string& path) {
    if (path.empty()) return Owned();
    const sockaddr_un address = AddressOf(path);
    for (int attempt = 0; attempt < 100; ++attempt) {
        Owned socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
        if (socket && !::connect(socket.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address))
            return IsSameUser(socket.Get()) ? std::move(socket) : Owned();
        if (!IsLocked(path + ".lock")) break;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return Owned();
}

// The calling thread's last conversation stays open: another text to the same window needs no more than to be sent.
struct Conversation {
    std::string target = {};
    Owned socket = Owned();

    // The other end says nothing unless it is asked, but when it closes.
    bool IsOpenTo(const std::string& className) const {
        char byte;
        return socket && target == className && ::recv(socket.Get(), &byte, 1, MSG_PEEK | MSG_DONTWAIT) < 0 &&
               errno == EAGAIN;
    }
};

Conversation& LastConversation() {
    static thread_local Conversation conversation;
    return conversation;
}

// It is taken away while a text is on its way, since handlers that run meanwhile may send too.
Owned ReachWindow(const std::string& className) {
    Conversation last = std::exchange(LastConversation(), {});
    if (last.IsOpenTo(className)) return std::move(last.socket);
    return Connect(SocketPath(className));
}

bool SendAll(int socket, std::string_view data) {
    while (!data.empty()) {
        const ssize_t sent = ::send(socket, data.data(), data.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (sent >= 0)
            data.remove_prefix(static_cast<std::size_t>(sent));
        else if (errno == EAGAIN)
            WaitFor(socket, POLLOUT, std::nullopt);
        else if (errno != EINTR)
            return false;
    }
    return true;
}

// 0 when the window is gone.
char ReceiveAnswer(int socket) {
    std::vector<pollfd> polled = {{socket, POLLIN, 0}};
    for (;;) {
        const bool alone = OwnWindows().empty();
        if (alone)
            OwnLooking().Look(polled, Clock::time_point::max());
        else
            WaitFor(socket, POLLIN, std::nullopt);
        char answer = 0;
        const ssize_t size = ::recv(socket, &answer, 1, alone ? 0 : MSG_DONTWAIT);
        if (size >= 0) return size == 1 ? answer : '\0';
        if (errno != EAGAIN && errno != EINTR) return 0;
    }
}

Owned Listen(const std::string& path) {
    const sockaddr_un address = AddressOf(path);
    Owned socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    ::unlink(path.c_str());  // of a window that died
    if (!socket || ::bind(socket.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) ||
        ::listen(socket.Get(), SOMAXCONN))
        return Owned();
    return socket;
}

}  // namespace

WindowHandle OpenMessageWindow(const std::string& className, MessageReceiver& receiver) {
    const std::string path = SocketPath(className);
    if (path.empty()) return nullptr;
    Owned lock = TakeLock(path + ".lock");
    if (!lock) return nullptr;
    Owned listener = Listen(path);
    if (!listener) return ::unlink((path + ".lock").c_str()), nullptr;
    OwnWindows().push_back(std::make_shared<MessageWindow>(
        MessageWindow{className, path, std::move(lock), std::move(listener), &receiver}));
    return AllHandles().Of(className);
}

void CloseMessageWindow(WindowHandle handle) {
    const std::string className = AllHandles().NameOf(handle);
    if (const auto window = OwnWindow(className)) {
        window->Close();
        std::erase(OwnWindows(), window);
    }
}

WindowHandle FindMessageWindow(const std::string& className) {
    if (LastConversation().IsOpenTo(className)) return AllHandles().Of(className);
    const std::string path = SocketPath(className);
    return !path.empty() && IsLocked(path + ".lock") ? AllHandles().Of(className) : nullptr;
}

bool SendMessageText(WindowHandle handle, std::string_view text, WindowHandle sender) {
    const std::string target = AllHandles().NameOf(handle);
    if (target.empty() || text.size() > kLongestMessage) return false;
    if (const auto own = OwnWindow(target)) return own->receiver->OnMessage(sender, 0, text), true;
    std::string head = MessageFrame::Opening(target, AllHandles().NameOf(sender), text.size());
    if (text.size() <= 4096) head += std::exchange(text, {});  // in one call
    for (;;) {
        Owned socket = ReachWindow(target);
        if (!socket) return false;
        // An answer may be there even to what could not be sent.
        static_cast<void>(SendAll(socket.Get(), head) && SendAll(socket.Get(), text));
        const char answer = ReceiveAnswer(socket.Get());
        if (answer == kHandled) LastConversation() = {target, std::move(socket)};
        if (answer != kNotTaken) return answer == kHandled;
    }
}

bool PumpMessages(std::uint32_t milliseconds) {
    return WaitFor(-1, 0, Clock::now() + std::chrono::milliseconds(milliseconds)) == Woken::ByMessage;
}

}  // namespace qv::platform
