#pragma once

/// @file A system call as an object, for the table in System.h.

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <string_view>
#include <type_traits>

#include "platform/Status.h"
#include "platform/SystemCalls.h"

namespace qv::platform {

/// The return type of functions that return an error number, 0 for success, instead of setting errno.
enum class ErrorNumber : int {};

enum class CallTrait {
    Plain,
    Transfer,  ///< moves bytes: its only std::size_t is their number, which a fault may reduce
    Close,     ///< closes a descriptor in any case: called once, and even if a fault makes it fail
    Wait       ///< has a timeout: called once, since only its caller knows the remaining time
};

/// A system function with its parameter types. A call interrupted by a signal is retried, unless its trait says
/// otherwise. Without a fault injector it costs a few instructions more than the function itself.
///
/// This is the only place that reads errno; only SetLastError assigns it.
template <class Value, class... Parameters>
class SystemCall {
public:
    /// @param name  the system's name, for the injector
    /// @param function  fails with -1 or a null pointer and the error number in errno, or returns an ErrorNumber
    constexpr SystemCall(CallKind kind, const char* name, Value (*function)(Parameters...),
                         CallTrait trait = CallTrait::Plain)
        : m_function(function), m_name(name), m_kind(kind), m_trait(trait) {}

    /// Shared by all functions of these types: the cost of a call is the system's work.
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
