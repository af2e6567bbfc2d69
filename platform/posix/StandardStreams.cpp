#include "platform/StandardStreams.h"

#include <cerrno>

#include "platform/posix/System.h"

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

bool IsOutputTerminal() {
    return sys::isatty(STDOUT_FILENO).value() == 1;
}

bool IsErrorTerminal() {
    return sys::isatty(STDERR_FILENO).value() == 1;
}

}  // namespace qv::platform
