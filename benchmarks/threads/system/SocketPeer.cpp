#include "benchmarks/threads/system/SocketPeer.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <utility>

namespace {

sockaddr_un AddressOf(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    return address;
}

}  // namespace

SocketPeer SocketPeer::Accepted(const std::string& path) {
    const sockaddr_un address = AddressOf(path);
    const int listener = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ::bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    ::listen(listener, 1);
    SocketPeer peer(::accept(listener, nullptr, nullptr));
    ::close(listener);
    return peer;
}

SocketPeer SocketPeer::Connected(const std::string& path) {
    const sockaddr_un address = AddressOf(path);
    SocketPeer peer(::socket(AF_UNIX, SOCK_STREAM, 0));
    while (::connect(peer.m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address)) ::usleep(1000);
    return peer;
}

SocketPeer::SocketPeer(SocketPeer&& other) noexcept : m_socket(std::exchange(other.m_socket, -1)) {}

SocketPeer::~SocketPeer() {
    if (m_socket != -1) ::close(m_socket);
}

void SocketPeer::Send(const std::string& text) {
    static_cast<void>(::send(m_socket, text.data(), text.size(), MSG_NOSIGNAL));
}

bool SocketPeer::Receive(std::string& text) {
    char buffer[4096];
    const ssize_t size = ::recv(m_socket, buffer, sizeof buffer, 0);
    text.assign(buffer, size > 0 ? static_cast<std::size_t>(size) : 0);
    return size > 0;
}
