#pragma once

#include <sys/stat.h>

namespace qv::platform {

/// Returns the mode of a file that becomes read-only for all users, or writable for its owner.
inline mode_t ReadOnlyMode(mode_t mode, bool readOnly) {
    return readOnly ? mode & ~mode_t{S_IWUSR | S_IWGRP | S_IWOTH} : mode | S_IWUSR;
}

}  // namespace qv::platform
