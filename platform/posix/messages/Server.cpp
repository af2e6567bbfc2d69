#include "platform/posix/messages/Server.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "platform/PerThread.h"
#include "platform/posix/messages/Names.h"

namespace qv::platform::messages {
namespace {

// Silent connections are dropped after this time, or earlier if there are too many.
constexpr auto kPatience = std::chrono::seconds(10);
constexpr std::size_t kMostConnections = 64;

UniqueFd Listen(const std::string& path) {
    const sockaddr_un address = AddressOf(path);
    UniqueFd socket(sys::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    sys::unlinkat(AT_FDCWD, path.c_str(), 0).IgnoreError();  // exists only if left by a killed process
    const bool listens = socket &&
                         sys::bind(socket.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address).ok() &&
                         sys::listen(socket.Get(), SOMAXCONN).ok();
    return listens ? std::move(socket) : UniqueFd();
}

}  // namespace

Frame::State Connection::Receive() {
    char buffer[65536];
    const auto size = sys::recv(m_socket.Get(), buffer, sizeof buffer, MSG_DONTWAIT);
    if (size.error() == EAGAIN) return Frame::State::Partial;
    if (!size.ok() || size.value() == 0) return Frame::State::Broken;
    m_lastHeard = SteadyNow();
    return m_frame.Add({buffer, static_cast<std::size_t>(size.value())});
}

bool Connection::HasUnread() const {
    char byte;
    return sys::recv(m_socket.Get(), &byte, 1, MSG_PEEK | MSG_DONTWAIT).error() != EAGAIN;
}

void Connection::Reply(Answer answer) const {
    // A sender that is gone needs no answer.
    sys::send(m_socket.Get(), &answer, 1, MSG_NOSIGNAL | MSG_DONTWAIT).IgnoreError();
}

std::shared_ptr<Server> Server::Open(const std::string& className, MessageReceiver& receiver) {
    std::string path = SocketPath(className);
    if (path.empty()) return nullptr;
    UniqueFd lock = AcquireName(path);
    if (!lock) return nullptr;
    SweepNames(path);
    UniqueFd listener = Listen(path);
    if (!listener) {
        ReleaseName(path, lock);
        return nullptr;
    }
    return std::make_shared<Server>(className, std::move(path), std::move(lock), std::move(listener), receiver);
}

Server::Server(std::string className, std::string path, UniqueFd lock, UniqueFd listener, MessageReceiver& receiver)
    : m_className(std::move(className)),
      m_path(std::move(path)),
      m_lock(std::move(lock)),
      m_listener(std::move(listener)),
      m_receiver(&receiver) {}

std::vector<int> Server::Descriptors() const {
    std::vector<int> all = {m_listener.Get()};
    for (const Connection& connection : m_connections) all.push_back(connection.Descriptor());
    return all;
}

bool Server::Serve(int descriptor) {
    if (descriptor == m_listener.Get()) {
        Accept();
        return false;
    }
    std::optional<Connection> message = TakeMessage(descriptor);
    if (message) Handle(std::move(*message));
    return message.has_value();
}

void Server::Accept() {
    const auto accepted = sys::accept4(m_listener.Get(), nullptr, nullptr, SOCK_CLOEXEC);
    // Without descriptors the sender keeps waiting, and the listener ready.
    if (!accepted.ok() && accepted.error() != EAGAIN) Sleep(std::chrono::milliseconds(1));
    UniqueFd socket(accepted);
    if (socket && IsSameUser(socket.Get())) Keep(Connection(std::move(socket)));
}

void Server::Keep(Connection connection) {
    if (m_connections.size() == kMostConnections) {
        const auto silent =
            std::min_element(m_connections.begin(), m_connections.end(),
                             [](const auto& a, const auto& b) { return a.LastHeard() < b.LastHeard(); });
        silent->Reply(Answer::NotTaken);
        m_connections.erase(silent);
    }
    m_connections.push_back(std::move(connection));
}

// Removes the connection once its frame is complete or broken, and returns it if the frame is a message for this
// window.
std::optional<Connection> Server::TakeMessage(int descriptor) {
    const auto connection = std::find_if(m_connections.begin(), m_connections.end(),
                                         [descriptor](const auto& one) { return one.Descriptor() == descriptor; });
    if (connection == m_connections.end()) return std::nullopt;
    const Frame::State state = connection->Receive();
    if (state == Frame::State::Partial) return std::nullopt;
    std::optional<Connection> message(std::move(*connection));
    m_connections.erase(connection);
    if (state == Frame::State::Complete && message->Received().Target() == m_className) return message;
    return std::nullopt;
}

void Server::Handle(Connection message) {
    const std::string sender(message.Received().Sender());
    m_receiver->OnMessage(sender.empty() ? nullptr : HandleOf(sender), 0, message.Received().Text());
    if (!m_listener) return;  // closed by the receiver: the end of the connection is the answer
    message.Reply(Answer::Handled);
    Keep(std::move(message).Next());
}

void Server::DropSilent() {
    std::erase_if(m_connections, [now = SteadyNow()](const Connection& one) {
        if (now - one.LastHeard() <= kPatience || one.HasUnread()) return false;
        one.Reply(Answer::NotTaken);
        return true;
    });
}

void Server::Close() {
    m_connections.clear();
    m_listener = UniqueFd();
    ReleaseName(m_path, m_lock);
}

std::vector<std::shared_ptr<Server>>& OwnServers() {
    return OfThread<std::vector<std::shared_ptr<Server>>>();
}

std::shared_ptr<Server> OwnServer(std::string_view className) {
    for (const auto& server : OwnServers())
        if (server->ClassName() == className) return server;
    return nullptr;
}

}  // namespace qv::platform::messages
