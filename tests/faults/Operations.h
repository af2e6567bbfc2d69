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

/// One operation that writes, with what its contract promises of every way in which it may end.
struct Operation {
    const char* name;
    /// Sets the place up.
    std::function<void(const Place&)> prepare;
    /// Returns whether the operation said that something failed.
    std::function<bool(const Place&)> run;
    /// Whether the tree is what a success leaves.
    std::function<bool(const Tree&)> done;
    /// Whether the tree may be what a failure or a killed process leaves.
    std::function<bool(const Tree&)> kept = [](const Tree&) { return true; };
    /// Whether the operation need not report a failure of this call.
    std::function<bool(const qv::platform::SystemCallInfo&)> silent = [](const qv::platform::SystemCallInfo& call) {
        return call.kind == qv::platform::CallKind::Status;
    };
};

/// All that the sweep runs on this system.
std::span<const Operation> Operations();
