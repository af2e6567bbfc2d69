#include "platform/StandardStreams.h"

#include <unistd.h>

namespace qv::platform {

FileHandle StandardInput() {
    return STDIN_FILENO;
}

FileHandle StandardOutput() {
    return STDOUT_FILENO;
}

}  // namespace qv::platform
