#pragma once

#include <cstdlib>
#include <memory>
#include <string>

#include "platform/posix/System.h"

namespace qv::platform {

/// Returns the target of a native path, absolute and without links; the path itself if it does not exist.
inline std::string RealPath(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> real(sys::realpath(path.c_str()).value(), &std::free);
    return real ? real.get() : path;
}

}  // namespace qv::platform
