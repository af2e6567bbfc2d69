#pragma once

/// @file The process's standard streams, as handles for ReadBytes and WriteBytes: no byte is translated on the way.

#include "platform/File.h"

namespace qv::platform {

/// Not to be closed by the caller. kNoFile when the process has no such stream.
FileHandle StandardInput();
FileHandle StandardOutput();

}  // namespace qv::platform
