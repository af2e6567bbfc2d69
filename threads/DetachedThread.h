#pragma once

/// @file Threads that nobody joins.

#include <memory>
#include <utility>

#include "platform/Thread.h"

namespace qv {

/// Runs `body` on a new thread with the default stack. No exception may leave the body. False when the system refuses a
/// thread; the body has not run then and is destroyed.
template <class Body>
bool StartDetached(Body body) {
    auto owned = std::make_unique<Body>(std::move(body));
    const platform::ThreadHandle thread = platform::StartThread(
        [](void* argument) -> unsigned {
            (*std::unique_ptr<Body>(static_cast<Body*>(argument)))();
            return 1;
        },
        owned.get(), nullptr);
    if (!thread) return false;
    static_cast<void>(owned.release());  // the thread's now
    platform::CloseThread(thread);
    return true;
}

}  // namespace qv
