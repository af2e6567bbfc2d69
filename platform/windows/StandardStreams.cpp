#include "platform/StandardStreams.h"

#include <io.h>
#include <windows.h>

#include <cstdio>

namespace qv::platform {
namespace {

FileHandle Stream(DWORD which) {
    const HANDLE handle = ::GetStdHandle(which);
    return handle ? reinterpret_cast<FileHandle>(handle) : kNoFile;
}

}  // namespace

FileHandle StandardInput() {
    return Stream(STD_INPUT_HANDLE);
}

FileHandle StandardOutput() {
    return Stream(STD_OUTPUT_HANDLE);
}

bool IsReaderGone(std::uint32_t error) {
    return error == ERROR_BROKEN_PIPE || error == ERROR_NO_DATA || error == ERROR_PIPE_NOT_CONNECTED;
}

bool IsErrorTerminal() {
    return ::_isatty(::_fileno(stderr)) != 0;
}

}  // namespace qv::platform
