#pragma once

/// @file A window's side of its conversations: the socket that listens under its name, and the connections of its
/// senders. A server must be used by the thread that opened it.

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Clock.h"
#include "platform/MessageWindow.h"
#include "platform/posix/UniqueFd.h"
#include "platform/posix/messages/Frame.h"

namespace qv::platform::messages {

/// One sender, and the received part of its current frame.
class Connection {
public:
    explicit Connection(UniqueFd socket) : m_socket(std::move(socket)) {}

    int Descriptor() const { return m_socket.Get(); }
    const Frame& Received() const { return m_frame; }
    std::chrono::steady_clock::time_point LastHeard() const { return m_lastHeard; }

    Frame::State Receive();
    /// Returns whether Receive would find anything: data, the end of the connection, or an error.
    bool HasUnread() const;
    void Reply(Answer answer) const;
    /// Returns the connection without its frame, for the next one.
    Connection Next() && { return Connection(std::move(m_socket)); }

private:
    UniqueFd m_socket;
    Frame m_frame;
    std::chrono::steady_clock::time_point m_lastHeard = SteadyNow();
};

class Server {
public:
    /// Returns null if the name is owned by another window, or the system refuses.
    static std::shared_ptr<Server> Open(const std::string& className, MessageReceiver& receiver);

    Server(std::string className, std::string path, UniqueFd lock, UniqueFd listener, MessageReceiver& receiver);

    const std::string& ClassName() const { return m_className; }
    MessageReceiver& Receiver() const { return *m_receiver; }

    /// Returns the descriptors to poll for reading: the listener and every connection.
    std::vector<int> Descriptors() const;
    /// Accepts or reads on a descriptor that is ready. Returns true if a complete message was handled. The receiver may
    /// close this window, and open and close others of the thread.
    bool Serve(int descriptor);
    /// Closes connections that have been silent for too long.
    void DropSilent();
    /// Callers on the stack may still hold a reference to the object.
    void Close();

private:
    void Accept();
    void Keep(Connection connection);
    std::optional<Connection> TakeMessage(int descriptor);
    void Handle(Connection message);

    std::string m_className, m_path;
    UniqueFd m_lock, m_listener;
    MessageReceiver* m_receiver;
    std::vector<Connection> m_connections;
};

/// Returns the calling thread's servers. Those that remain when the thread ends are destroyed: their names are free,
/// and their files are left as those of a killed process.
std::vector<std::shared_ptr<Server>>& OwnServers();
/// Returns null if the calling thread has no server of this name.
std::shared_ptr<Server> OwnServer(std::string_view className);

}  // namespace qv::platform::messages
