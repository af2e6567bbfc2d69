#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <span>
#include <string>

#include "platform/SystemCalls.h"
#include "qvcommon/framework/String.h"

/// The files below a folder with their contents, as ReadTree gives them.
using Tree = std::map<std::string, std::string>;

/// A folder that an operation works in.
struct Place {
    std::filesystem::path native;
    CString path;  ///< in the library's form, with its final separator
};

/// One operation that writes, with its promises for every way in which it may end.
struct Operation {
    const char* name;
    /// Sets the place up.
    std::function<void(const Place&)> prepare = [](const Place&) {};
    /// Returns whether the operation reported a failure.
    std::function<bool(const Place&)> run;
    /// Whether a success may leave such a tree.
    std::function<bool(const Tree&)> done;
    /// Whether a failure or a killed process may leave such a tree.
    std::function<bool(const Tree&)> kept = [](const Tree&) { return true; };
    /// Whether the operation need not report a failure of this call.
    std::function<bool(const qv::platform::SystemCallInfo&)> silent = [](const qv::platform::SystemCallInfo& call) {
        return call.kind == qv::platform::CallKind::Status;
    };
};

/// All that the sweep runs on this system.
std::span<const Operation> Operations();
