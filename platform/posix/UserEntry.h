#pragma once

#include <string>
#include <vector>

#include "platform/posix/System.h"

namespace qv::platform {

/// Returns a field of the user database's entry for the user that runs the program, such as &passwd::pw_dir. Empty if
/// the entry does not exist or cannot be read.
inline std::string OwnUserEntry(char* passwd::*text) {
    std::vector<char> texts(16384);
    passwd entry{}, *found = nullptr;
    const auto read = sys::getpwuid_r(::geteuid(), &entry, texts.data(), texts.size(), &found);
    return read.ok() && found && found->*text ? found->*text : "";
}

}  // namespace qv::platform
