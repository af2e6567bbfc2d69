#pragma once

/// @file Messages between programs on their way: docs/formats/messages.md.

#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <string>

#include "platform/MessageWindow.h"
#include "platform/posix/Owned.h"

namespace qv::platform {

struct MessageHead {
    std::array<char, 4> mark = {'Q', 'V', 'M', '1'};
    std::uint32_t targetSize = 0, senderSize = 0, textSize = 0;

    bool IsSound() const {
        return mark == MessageHead().mark && targetSize <= kLongestClassName && senderSize <= kLongestClassName &&
               textSize <= kLongestMessage;
    }
    std::size_t Total() const { return sizeof(MessageHead) + targetSize + senderSize + textSize; }
};

inline constexpr char kHandled = 1;
inline constexpr char kNotTaken =
    2;  // and the connection is closed: a text that is on its way has to be sent on a new one

inline void Answer(int socket, char answer) {
    static_cast<void>(::send(socket, &answer, 1, MSG_NOSIGNAL | MSG_DONTWAIT));
}

inline bool IsSameUser(int socket) {
    ucred peer{};
    socklen_t size = sizeof peer;
    return !::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) && peer.uid == ::geteuid();
}

/// A sender's end of the conversation, as a window sees it.
struct Connection {
    Owned socket;
    std::string received = {};
    std::chrono::steady_clock::time_point heard = std::chrono::steady_clock::now();

    enum class State { Partial, Complete, Broken };

    State Receive() {
        char buffer[65536];
        const ssize_t size = ::recv(socket.Get(), buffer, sizeof buffer, MSG_DONTWAIT);
        if (size < 0 && (errno == EAGAIN || errno == EINTR)) return State::Partial;
        if (size <= 0) return State::Broken;
        received.append(buffer, static_cast<std::size_t>(size));
        heard = std::chrono::steady_clock::now();
        if (received.size() < sizeof(MessageHead)) return State::Partial;
        const MessageHead header = Head();
        if (!header.IsSound() || received.size() > header.Total()) return State::Broken;
        return received.size() == header.Total() ? State::Complete : State::Partial;
    }

    MessageHead Head() const {
        MessageHead header;
        std::memcpy(&header, received.data(), sizeof header);
        return header;
    }
    std::string_view Target() const { return Part(sizeof(MessageHead), Head().targetSize); }
    std::string_view Sender() const { return Part(sizeof(MessageHead) + Target().size(), Head().senderSize); }
    std::string_view Text() const {
        return Part(sizeof(MessageHead) + Target().size() + Sender().size(), Head().textSize);
    }

private:
    std::string_view Part(std::size_t from, std::size_t size) const {
        return std::string_view(received).substr(from, size);
    }
};

}  // namespace qv::platform
