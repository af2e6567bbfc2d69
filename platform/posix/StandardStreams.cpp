#include "platform/StandardStreams.h"

#include <unistd.h>

#include <cerrno>

namespace qv::platform {

FileHandle StandardInput() {
    return STDIN_FILENO;
}

FileHandle StandardOutput() {
    return STDOUT_FILENO;
}

bool IsReaderGone(std::uint32_t error) {
    return error == EPIPE;
}

bool IsErrorTerminal() {
    return ::isatty(STDERR_FILENO) == 1;
}

}  // namespace qv::platform
