#pragma once

#include <sys/stat.h>

namespace qv::platform {

/// The mode of a file that becomes read-only, for everybody, or that its owner may write again.
inline mode_t ReadOnlyMode(mode_t mode, bool readOnly) {
    return readOnly ? mode & ~mode_t{S_IWUSR | S_IWGRP | S_IWOTH} : mode | S_IWUSR;
}

}  // namespace qv::platform
