#pragma once

#include <csignal>
#include <initializer_list>

#include "platform/posix/System.h"

namespace qv::platform {

/// Blocks signals for the calling thread during the lifetime of the object; they remain pending.
class BlockedSignals {
public:
    BlockedSignals(std::initializer_list<int> signals) {
        // None of these calls fails with the arguments given here.
        ::sigemptyset(&m_blocked);
        for (const int signal : signals) ::sigaddset(&m_blocked, signal);
        sys::pthread_sigmask(SIG_BLOCK, &m_blocked, &m_before).IgnoreError();
    }
    ~BlockedSignals() { sys::pthread_sigmask(SIG_SETMASK, &m_before, nullptr).IgnoreError(); }
    BlockedSignals(const BlockedSignals&) = delete;
    BlockedSignals& operator=(const BlockedSignals&) = delete;

    const sigset_t& Set() const { return m_blocked; }

private:
    sigset_t m_blocked{}, m_before{};
};

}  // namespace qv::platform
