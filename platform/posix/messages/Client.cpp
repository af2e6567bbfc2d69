#include "platform/posix/messages/Client.h"

#include <cerrno>
#include <chrono>
#include <utility>

#include "platform/Clock.h"
#include "platform/PerThread.h"
#include "platform/posix/UniqueFd.h"
#include "platform/posix/messages/Frame.h"
#include "platform/posix/messages/Names.h"
#include "platform/posix/messages/Server.h"
#include "platform/posix/messages/Waiting.h"

namespace qv::platform::messages {
namespace {

// The calling thread's last conversation stays open, so that another text to the same window needs no new connection.
struct Conversation {
    std::string target = {};
    UniqueFd socket = UniqueFd();

    // The other end never sends unasked, so data is available only after it has closed.
    bool IsOpenTo(const std::string& className) const {
        char byte;
        return socket && target == className &&
               sys::recv(socket.Get(), &byte, 1, MSG_PEEK | MSG_DONTWAIT).error() == EAGAIN;
    }
};

Conversation& LastConversation() {
    return OfThread<Conversation>();
}

// A window that has just acquired its name may not be listening yet.
UniqueFd Connect(const std::string& path) {
    if (path.empty()) return UniqueFd();
    const sockaddr_un address = AddressOf(path);
    for (int attempt = 0; attempt < 100; ++attempt) {
        UniqueFd socket(sys::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
        if (socket && sys::connect(socket.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address).ok())
            return IsSameUser(socket.Get()) ? std::move(socket) : UniqueFd();
        if (!IsNameOwned(path)) break;
        Sleep(std::chrono::milliseconds(10));
    }
    return UniqueFd();
}

// Detaches the last conversation while a text is being sent: receivers that run meanwhile may send too. A closed one is
// detected when it is used.
UniqueFd TakeConversation(const std::string& className) {
    Conversation last = std::exchange(LastConversation(), {});
    return last.target == className ? std::move(last.socket) : UniqueFd();
}

bool SendAll(int socket, std::string_view data) {
    while (!data.empty()) {
        const auto sent = sys::send(socket, data.data(), data.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (sent.ok())
            data.remove_prefix(static_cast<std::size_t>(sent.value()));
        else if (sent.error() == EAGAIN)
            WaitFor(socket, POLLOUT, std::nullopt);
        else
            return false;
    }
    return true;
}

Answer ReceiveAnswer(int socket) {
    for (;;) {
        Answer answer = Answer::None;
        Result<ssize_t> size = 0;
        const auto receive = [&](int flags) { return size = sys::recv(socket, &answer, sizeof answer, flags); };
        const auto hasCome = [&] { return receive(MSG_DONTWAIT).error() != EAGAIN; };
        if (!OwnServers().empty()) {
            WaitFor(socket, POLLIN, std::nullopt);
            static_cast<void>(hasCome());
        } else if (!SpinPoller::Own().SpinUntil(hasCome, std::chrono::nanoseconds::max())) {
            static_cast<void>(receive(0));
        }
        if (size.ok()) return size.value() == sizeof answer ? answer : Answer::None;
        if (size.error() != EAGAIN) return Answer::None;
    }
}

}  // namespace

bool IsConversationOpen(const std::string& className) {
    return LastConversation().IsOpenTo(className);
}

Outcome Send(const std::string& target, const std::string& sender, std::string_view text) {
    std::string opening = Frame::Opening(target, sender, text.size());
    if (text.size() <= 4096) opening += std::exchange(text, {});  // in one call
    for (UniqueFd socket = TakeConversation(target);;) {
        const bool isNew = !socket;
        if (isNew) socket = Connect(SocketPath(target));
        if (!socket) return Outcome::NotFound;
        // Even a partly sent frame may have been answered.
        const bool isSent = SendAll(socket.Get(), opening) && SendAll(socket.Get(), text);
        const Answer answer = ReceiveAnswer(socket.Get());
        if (answer == Answer::Handled) {
            LastConversation() = {target, std::move(socket)};
            return Outcome::Handled;
        }
        // A conversation that ended before it received the whole frame has handled nothing of it.
        const bool mayRetry = answer == Answer::NotTaken || (!isNew && !isSent);
        if (!mayRetry) return Outcome::Gone;
        socket = UniqueFd();
    }
}

}  // namespace qv::platform::messages
