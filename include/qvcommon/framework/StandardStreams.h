#pragma once

/// @file The process's standard streams as bytes. Nothing is translated on any system. They do not share the buffers of
/// the C and C++ streams: flush those first.

#include "qvcommon/framework/File.h"

/// To be called first in main by console programs, before threads start. Undoes what a parent program may have left: on
/// Linux, opens /dev/null for each standard stream that is closed, so that no file takes its number (using the stream
/// still fails), and resets an ignored SIGCHLD, with which no child returns its status. No-op on Windows. Never throws;
/// what cannot be undone is left as it is.
QVCOMMON_API void QVCOMMON_CALL AfxPrepareConsole();

/// Reads up to `size` of the next bytes of standard input into a buffer of the caller; returns how many, 0 at the
/// end. One thread at a time.
/// @throws CFileException* if it cannot be read.
QVCOMMON_API std::size_t QVCOMMON_CALL AfxReadStandardInput(void* buffer, std::size_t size);

/// Reads all of standard input.
/// @throws CFileException* if it cannot be read, or is too long for a string (2^31 - 1 bytes).
QVCOMMON_API CString QVCOMMON_CALL AfxReadStandardInput();

/// Writes the whole text to standard output.
/// @throws CFileException* if not all of it could be written; how much was written is unspecified.
QVCOMMON_API void QVCOMMON_CALL AfxWriteStandardOutput(std::string_view text);

/// Returns whether a write failed because the reader has closed the pipe, as "head" does.
QVCOMMON_API bool QVCOMMON_CALL AfxIsReaderGone(const CFileException& error);

/// Returns whether standard output is a terminal, so that control sequences must not be written to it. Never throws.
QVCOMMON_API bool QVCOMMON_CALL AfxIsOutputTerminal();
/// Returns whether standard error is a terminal, so that progress may be shown there. Never throws.
QVCOMMON_API bool QVCOMMON_CALL AfxIsErrorTerminal();
