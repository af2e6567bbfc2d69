#include "platform/StandardStreams.h"

#include <io.h>

#include <cstdio>

#include "platform/windows/UniqueHandle.h"

namespace qv::platform {
namespace {

FileHandle Stream(DWORD which) {
    const auto handle = sys::GetStdHandle(which);
    return handle.ok() && handle.value() ? ContractHandle(handle.value()) : kNoFile;
}

}  // namespace

FileHandle StandardInput() {
    return Stream(STD_INPUT_HANDLE);
}

FileHandle StandardOutput() {
    return Stream(STD_OUTPUT_HANDLE);
}

void OccupyStandardStreams() {}

bool IsReaderGone(std::uint32_t error) {
    return error == ERROR_BROKEN_PIPE || error == ERROR_NO_DATA || error == ERROR_PIPE_NOT_CONNECTED;
}

bool IsOutputTerminal() {
    return ::_isatty(::_fileno(stdout)) != 0;
}

bool IsErrorTerminal() {
    return ::_isatty(::_fileno(stderr)) != 0;
}

}  // namespace qv::platform
