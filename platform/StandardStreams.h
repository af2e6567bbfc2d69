#pragma once

/// @file The process's standard streams, as handles for ReadBytes and WriteBytes: no byte is translated.

#include "platform/File.h"

namespace qv::platform {

/// Must not be closed by the caller. kNoFile if the process has no such stream; on Linux, its number, which fails or is
/// that of another file unless OccupyStandardStreams was called.
FileHandle StandardInput();
FileHandle StandardOutput();

/// Opens a device, in the mode in which its use fails, for each standard stream that is closed. No-op on Windows, where
/// no file can take a stream's place. Before threads start.
void OccupyStandardStreams();

/// Returns whether a system error of a failed write means that the reader has closed the pipe. On Linux such a write
/// raises SIGPIPE, which ends a process that does not ignore it.
bool IsReaderGone(std::uint32_t error);

/// Return whether standard output, or standard error, is a terminal.
bool IsOutputTerminal();
bool IsErrorTerminal();

}  // namespace qv::platform
