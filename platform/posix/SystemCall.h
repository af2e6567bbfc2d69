#pragma once

/// @file One system call as an object: what System.h is a table of.

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <string_view>
#include <type_traits>

#include "platform/Status.h"
#include "platform/SystemCalls.h"

namespace qv::platform {

/// The value of functions that return an error number, 0 for success, instead of leaving it in errno.
enum class ErrorNumber : int {};

enum class CallTrait {
    Plain,
    Transfer,  ///< moves bytes: its one std::size_t is their number, which a fault may shorten
    Close,     ///< gives a descriptor back whatever it returns: is made once, and even where a fault has it fail
    Wait       ///< has a time limit: is made once, since only its caller knows how much of the time is left
};

/// A function of the system with the type of its parameters. A call that a signal interrupts is made again, unless its
/// trait says otherwise. Without a fault injector it costs a few instructions more than the function itself.
///
/// This is the one place that reads errno; nothing but SetLastError assigns it.
template <class Value, class... Parameters>
class SystemCall {
public:
    /// @param name  the system's own, for the injector
    /// @param function  fails with -1 or a null pointer and the error number in errno, or returns an ErrorNumber
    constexpr SystemCall(CallKind kind, const char* name, Value (*function)(Parameters...),
                         CallTrait trait = CallTrait::Plain)
        : m_function(function), m_name(name), m_kind(kind), m_trait(trait) {}

    /// Once for all functions of these types: what a call costs is the system's work.
    [[gnu::noinline]] Result<Value> operator()(Parameters... parameters) const {
        for (;;) {
            IFaultInjector* const injector = g_faultInjector.load(std::memory_order_acquire);
            const Result<Value> result =
                injector ? CallWith(*injector, parameters...) : Checked(m_function(parameters...));
            if (result.error() != EINTR || m_trait == CallTrait::Close || m_trait == CallTrait::Wait) return result;
        }
    }

private:
    static constexpr Value Failed() {
        if constexpr (std::is_pointer_v<Value>)
            return nullptr;
        else
            return static_cast<Value>(-1);
    }

    static Result<Value> Checked(Value value) {
        if constexpr (std::is_same_v<Value, ErrorNumber>) {
            const auto error = static_cast<unsigned long>(value);
            return error == 0 ? Result<Value>(value) : Result<Value>::OfError(value, error);
        } else {
            if (value != Failed()) [[likely]]
                return value;
            return Result<Value>::OfError(value, static_cast<unsigned long>(errno));
        }
    }

    [[gnu::noinline, gnu::cold]] Result<Value> CallWith(IFaultInjector& injector, Parameters... parameters) const {
        const Fault fault = injector.Before({m_kind, m_name, PathAmong(parameters...)});
        if (fault.error != 0) {
            if (m_trait == CallTrait::Close) m_function(parameters...);
            return Result<Value>::OfError(Failed(), fault.error);
        }
        [[maybe_unused]] const bool shorten = fault.shorten && m_trait == CallTrait::Transfer;
        return Checked(m_function(Shortened(parameters, shorten)...));
    }

    static std::string_view PathAmong() { return {}; }
    template <class First, class... Rest>
    static std::string_view PathAmong(First first, Rest... rest) {
        if constexpr (std::is_same_v<First, const char*>)
            return first ? std::string_view(first) : std::string_view();
        else
            return PathAmong(rest...);
    }

    template <class Parameter>
    static Parameter Shortened(Parameter parameter, bool shorten) {
        if constexpr (std::is_same_v<Parameter, std::size_t>)
            return shorten && parameter > 1 ? 1 : parameter;
        else
            return parameter;
    }

    Value (*m_function)(Parameters...);
    const char* m_name;
    CallKind m_kind;
    CallTrait m_trait;
};

}  // namespace qv::platform
