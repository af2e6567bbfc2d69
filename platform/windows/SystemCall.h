#pragma once

/// @file A system call as an object, for the table in System.h.

#include <windows.h>

#include <string>
#include <type_traits>

#include "platform/Status.h"
#include "platform/SystemCalls.h"
#include "platform/windows/names/WidePath.h"

namespace qv::platform {

/// Additional effects of a fault injector on a call besides failing it.
enum class CallTrait {
    Plain,
    Transfer,   ///< moves bytes: its only DWORD is their number, which a fault may reduce
    AlwaysMade  ///< called even if it is to fail: closes the handle, or wakes a waiting thread
};

/// The rules by which system functions report a failure. Check converts a returned value to a result. Failed returns
/// what the function would have returned for that error number, and stores the number where the function would.
///
/// This is the only place that reads the thread's last error, apart from LastError(), which returns it to the layers
/// above.
template <int failure>
struct FailsWith {
    template <class Value>
    static Value Failed() {
        if constexpr (std::is_pointer_v<Value>)
            return reinterpret_cast<Value>(INT_PTR{failure});
        else
            return static_cast<Value>(failure);
    }

    template <class Value>
    static Value Failed(unsigned long error) {
        ::SetLastError(error);
        return Failed<Value>();
    }

    template <class Value>
    static Result<Value> Check(Value value) {
        if (value != Failed<Value>()) [[likely]]
            return value;
        return Result<Value>::OfError(value, ::GetLastError());
    }
};

/// FALSE, a null handle, no characters.
using FailsWithZero = FailsWith<0>;
/// INVALID_HANDLE_VALUE, INVALID_FILE_ATTRIBUTES, WAIT_FAILED.
using FailsWithMinusOne = FailsWith<-1>;

/// The value is the error number itself, 0 for success.
struct ReturnsError {
    template <class Value>
    static Value Failed(unsigned long error) {
        return static_cast<Value>(error);
    }

    template <class Value>
    static Result<Value> Check(Value value) {
        return value == 0 ? Result<Value>(value) : Result<Value>::OfError(value, static_cast<unsigned long>(value));
    }
};

/// Every value is valid: the function fails only by a fault.
struct NeverFails : FailsWithZero {
    template <class Value>
    static Result<Value> Check(Value value) {
        return value;
    }
};

/// A system function. Without a fault injector a call costs a few instructions more than the function itself.
template <class Rule, class Function>
class SystemCall {
public:
    /// @param name  the system's name, for the injector
    constexpr SystemCall(CallKind kind, const char* name, Rule, Function function, CallTrait trait = CallTrait::Plain)
        : m_function(function), m_name(name), m_kind(kind), m_trait(trait) {}

    template <class... Arguments>
    [[gnu::noinline]] auto operator()(Arguments... arguments) const
        -> Result<std::invoke_result_t<Function, Arguments...>> {
        if (IFaultInjector* const injector = g_faultInjector.load(std::memory_order_acquire)) [[unlikely]]
            return CallWith(*injector, arguments...);
        return Rule::Check(m_function(arguments...));
    }

private:
    template <class... Arguments>
    [[gnu::noinline, gnu::cold]] auto CallWith(IFaultInjector& injector, Arguments... arguments) const
        -> Result<std::invoke_result_t<Function, Arguments...>> {
        using Value = std::invoke_result_t<Function, Arguments...>;
        const std::string path = HasPath() ? PathAmong(arguments...) : std::string();
        const Fault fault = injector.Before({m_kind, m_name, path});
        if (fault.error != 0) {
            if (m_trait == CallTrait::AlwaysMade) m_function(arguments...);
            return Result<Value>::OfError(Rule::template Failed<Value>(fault.error), fault.error);
        }
        [[maybe_unused]] const bool shorten = fault.shorten && m_trait == CallTrait::Transfer;
        return Rule::Check(m_function(Shortened(arguments, shorten)...));
    }

    /// Texts among the arguments of other calls are not paths, and bytes not texts.
    bool HasPath() const {
        return m_trait != CallTrait::Transfer && m_kind != CallKind::Message && m_kind != CallKind::Process &&
               m_kind != CallKind::Other;
    }

    static std::string PathAmong() { return {}; }
    template <class First, class... Rest>
    static std::string PathAmong(First first, Rest... rest) {
        if constexpr (std::is_same_v<First, const char*>)
            return first ? first : "";
        else if constexpr (std::is_same_v<First, const wchar_t*>)
            return first ? ShownPath(first) : std::string();
        else
            return PathAmong(rest...);
    }

    template <class Argument>
    static Argument Shortened(Argument argument, bool shorten) {
        if constexpr (std::is_same_v<Argument, DWORD>)
            return shorten && argument > 1 ? 1 : argument;
        else
            return argument;
    }

    [[no_unique_address]] Function m_function;
    const char* m_name;
    CallKind m_kind;
    CallTrait m_trait;
};

}  // namespace qv::platform
