#pragma once

#include <string>

/// The least that two processes can exchange texts with: a Unix socket, and nothing around it.
class SocketPeer {
public:
    /// Takes the next who connects to the path.
    static SocketPeer Accepted(const std::string& path);
    /// Tries until somebody listens there.
    static SocketPeer Connected(const std::string& path);
    SocketPeer(SocketPeer&& other) noexcept;
    SocketPeer& operator=(SocketPeer&&) = delete;
    ~SocketPeer();

    void Send(const std::string& text);
    /// False when the other one is gone.
    bool Receive(std::string& text);

private:
    explicit SocketPeer(int socket) : m_socket(socket) {}

    int m_socket;
};
