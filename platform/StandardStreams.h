#pragma once

/// @file The process's standard streams, as handles for ReadBytes and WriteBytes: no byte is translated on the way.

#include "platform/File.h"

namespace qv::platform {

/// Not to be closed by the caller. kNoFile when the process has no such stream.
FileHandle StandardInput();
FileHandle StandardOutput();

/// Whether the system's number of a failed write says that a pipe's other end is closed. (Linux ends a process at such a
/// write, unless that was told to ignore it.)
QVCOMMON_INTERNAL_API bool IsReaderGone(std::uint32_t error);

}  // namespace qv::platform
