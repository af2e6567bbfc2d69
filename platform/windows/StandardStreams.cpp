#include "platform/StandardStreams.h"

#include <windows.h>

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

}  // namespace qv::platform
