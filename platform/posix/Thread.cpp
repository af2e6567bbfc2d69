#include "platform/Thread.h"

#include <unistd.h>

#include <future>
#include <system_error>
#include <thread>

namespace qv::platform {

ThreadHandle StartThread(ThreadFunction function, void* argument, std::uint32_t* id) try {
    std::promise<std::uint32_t> started;
    std::future<std::uint32_t> number = started.get_future();
    auto* const thread = new std::thread([function, argument, started = std::move(started)]() mutable {
        started.set_value(static_cast<std::uint32_t>(::gettid()));
        function(argument);
    });
    if (id) *id = number.get();
    return thread;
} catch (const std::system_error&) {
    return nullptr;
}

void CloseThread(ThreadHandle handle) {
    auto* const thread = static_cast<std::thread*>(handle);
    if (!thread) return;
    thread->detach();
    delete thread;
}

}  // namespace qv::platform
