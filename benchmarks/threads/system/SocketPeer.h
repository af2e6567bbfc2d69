#pragma once

#include <string>

/// The minimum for exchanging texts between two processes: a plain Unix socket.
class SocketPeer {
public:
    /// Accepts the next connection to the path.
    static SocketPeer Accepted(const std::string& path);
    /// Retries until a process listens there.
    static SocketPeer Connected(const std::string& path);
    SocketPeer(SocketPeer&& other) noexcept;
    SocketPeer& operator=(SocketPeer&&) = delete;
    ~SocketPeer();

    void Send(const std::string& text);
    /// Returns false if the peer has closed the connection.
    bool Receive(std::string& text);

private:
    explicit SocketPeer(int socket) : m_socket(socket) {}

    int m_socket;
};
