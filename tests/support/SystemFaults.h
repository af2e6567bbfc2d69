#pragma once

#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <shared_mutex>
#include <string>

#include "platform/Status.h"
#include "platform/SystemCalls.h"

/// Disturbs system calls for as long as it lives, as the decision says. Its destructor waits for decisions under way.
class SystemFaults {
public:
    using Call = qv::platform::SystemCallInfo;
    using Fault = qv::platform::Fault;
    using Decision = std::function<Fault(const Call&)>;

    explicit SystemFaults(Decision before)
        : m_injector(Kept().emplace_back()),
          m_previous((m_injector.Set(std::move(before)), qv::platform::SetFaultInjector(&m_injector))) {}
    ~SystemFaults() {
        qv::platform::SetFaultInjector(m_previous);
        m_injector.Set({});
    }
    SystemFaults(const SystemFaults&) = delete;
    SystemFaults& operator=(const SystemFaults&) = delete;

    /// Every call of one kind fails, or only those whose path ends with `name`.
    static Decision Always(qv::platform::CallKind kind, qv::platform::FileCause cause, std::string name = "") {
        return [kind, fault = Of(cause), name = std::move(name)](const Call& call) {
            return call.kind == kind && call.path.ends_with(name) ? fault : Fault{};
        };
    }
    /// Every call fails that gives a complete file its name.
    static Decision AlwaysNaming(qv::platform::FileCause cause) {
        using enum qv::platform::CallKind;
        return [fault = Of(cause)](const Call& call) {
            return call.kind == Rename || call.kind == Link ? fault : Fault{};
        };
    }

    /// An error number of this system that means the cause; nullopt where none does.
    static std::optional<unsigned long> ErrorFor(qv::platform::FileCause cause) {
        for (unsigned long error = 1; error < 2000; ++error)
            if (qv::platform::CauseOf(error) == cause) return error;
        return std::nullopt;
    }
    static Fault Of(qv::platform::FileCause cause) { return {.error = ErrorFor(cause).value()}; }

private:
    class Injector : public qv::platform::IFaultInjector {
    public:
        Fault Before(const Call& call) override {
            const std::shared_lock lock(m_deciding);
            return m_decision ? m_decision(call) : Fault{};
        }
        void Set(Decision decision) {
            const std::unique_lock lock(m_deciding);
            m_decision = std::move(decision);
        }

    private:
        std::shared_mutex m_deciding;
        Decision m_decision;
    };

    /// They are never destroyed: a thread may be about to ask one that is no longer in force.
    static std::deque<Injector>& Kept() {
        static std::deque<Injector> kept;
        return kept;
    }

    Injector& m_injector;
    qv::platform::IFaultInjector* m_previous;
};

/// The last name of a call's path.
inline std::string LastName(const SystemFaults::Call& call) {
    return std::string(call.path.substr(call.path.find_last_of("/\\") + 1));
}
