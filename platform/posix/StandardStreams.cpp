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

// A new descriptor gets the lowest free number: that of the stream, since those below it are open.
void OccupyStandardStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (sys::fcntl(stream, F_GETFD, 0).ok()) continue;
        const auto opened = sys::openat(AT_FDCWD, "/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY, 0);
        if (!opened.ok()) return;  // nothing can be reported without streams
    }
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
