#include "platform/posix/messages/Waiting.h"

#include <algorithm>
#include <memory>

#include "platform/Clock.h"
#include "platform/posix/System.h"
#include "platform/posix/messages/Server.h"

namespace qv::platform::messages {
namespace {

using Clock = std::chrono::steady_clock;

struct PollSet {
    std::vector<pollfd> polled;
    std::vector<std::shared_ptr<Server>> servers;  // the owner of each descriptor

    void Add(int descriptor, short events, const std::shared_ptr<Server>& server) {
        polled.push_back({descriptor, events, 0});
        servers.push_back(server);
    }
};

PollSet OwnDescriptors() {
    PollSet set;
    for (const auto& server : OwnServers()) {
        server->DropSilent();
        for (const int descriptor : server->Descriptors()) set.Add(descriptor, POLLIN, server);
    }
    return set;
}

// Stops after the first message: its receiver may have closed any of the servers.
bool ServeOne(const PollSet& set) {
    for (std::size_t i = 0; i < set.polled.size(); ++i)
        if (set.polled[i].revents && set.servers[i] && set.servers[i]->Serve(set.polled[i].fd)) return true;
    return false;
}

std::chrono::nanoseconds TimeLeft(std::optional<Clock::time_point> end) {
    return end ? *end - SteadyNow() : std::chrono::nanoseconds::max();
}

// After the end, so that texts that have arrived by then are handled even if senders never stop connecting.
constexpr int kLateRounds = 16;

// Returns milliseconds; at most a second, so that silent connections are dropped in time.
int PollTimeout(std::chrono::nanoseconds left) {
    using std::chrono::nanoseconds, std::chrono::seconds, std::chrono::milliseconds;
    return static_cast<int>(std::chrono::ceil<milliseconds>(std::clamp<nanoseconds>(left, {}, seconds(1))).count());
}

}  // namespace

SpinPoller& SpinPoller::Own() {
    static thread_local SpinPoller poller;
    return poller;
}

WokenBy WaitFor(int descriptor, short events, std::optional<Clock::time_point> end) {
    for (int late = 0;;) {
        PollSet set = OwnDescriptors();
        if (descriptor != -1) set.Add(descriptor, events, nullptr);
        int ready = 0;
        const auto poll = [&](int timeout) {
            return ready = sys::poll(set.polled.data(), set.polled.size(), timeout).value();
        };
        if (!SpinPoller::Own().SpinUntil([&] { return poll(0) != 0; }, TimeLeft(end))) poll(PollTimeout(TimeLeft(end)));
        if (descriptor != -1 && set.polled.back().revents) return WokenBy::Descriptor;
        if (ServeOne(set) && descriptor == -1) return WokenBy::Message;
        if (TimeLeft(end).count() <= 0 && (ready <= 0 || ++late == kLateRounds)) return WokenBy::Timeout;
    }
}

}  // namespace qv::platform::messages
