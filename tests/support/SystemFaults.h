#pragma once

#include <functional>
#include <optional>
#include <string>

#include "platform/Status.h"
#include "platform/SystemCalls.h"

/// Disturbs system calls for as long as it lives, as the decision says.
class SystemFaults : public qv::platform::IFaultInjector {
public:
    using Call = qv::platform::SystemCallInfo;
    using Fault = qv::platform::Fault;
    using Decision = std::function<Fault(const Call&)>;

    explicit SystemFaults(Decision before)
        : m_decision(std::move(before)), m_previous(qv::platform::SetFaultInjector(this)) {}
    ~SystemFaults() override { qv::platform::SetFaultInjector(m_previous); }
    SystemFaults(const SystemFaults&) = delete;
    SystemFaults& operator=(const SystemFaults&) = delete;

    Fault Before(const Call& call) override { return m_decision(call); }

    /// Every call of one kind fails.
    static Decision Always(qv::platform::CallKind kind, qv::platform::FileCause cause) {
        return [kind, fault = Of(cause)](const Call& call) { return call.kind == kind ? fault : Fault{}; };
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
    Decision m_decision;
    qv::platform::IFaultInjector* m_previous;
};

/// The last name of a call's path, whichever separators the system uses.
inline std::string LastName(const SystemFaults::Call& call) {
    return std::string(call.path.substr(call.path.find_last_of("/\\") + 1));
}
