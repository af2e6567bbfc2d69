#pragma once

/// @file Detached threads.

#include <memory>
#include <new>
#include <utility>

#include "platform/Thread.h"

namespace qv {

/// Runs `body` on a new thread with the default stack. The body must not throw. Returns false if the system refuses a
/// thread, or memory for it; the body is then destroyed without having run.
template <class Body>
bool StartDetached(Body body) try {
    auto owned = std::make_unique<Body>(std::move(body));
    const platform::ThreadHandle thread = platform::StartThread(
        [](void* argument) -> unsigned {
            (*std::unique_ptr<Body>(static_cast<Body*>(argument)))();
            return 1;
        },
        owned.get(), nullptr);
    if (!thread) return false;
    static_cast<void>(owned.release());  // now owned by the thread
    platform::CloseThread(thread);
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

}  // namespace qv
