#pragma once

/// @file The process's standard streams as bytes. Nothing is translated on either system, and nothing is shared with the
/// buffers of the C and C++ streams: flush those before.

#include "qvcommon/framework/File.h"

/// All of standard input, up to its end.
/// @throws CFileException* when it cannot be read, or is longer than a text can be (2^31 - 1 bytes).
QVCOMMON_API CString QVCOMMON_CALL AfxReadStandardInput();

/// Writes all of the text to standard output.
/// @throws CFileException* when not all of it could be written; how much of it was is not known.
QVCOMMON_API void QVCOMMON_CALL AfxWriteStandardOutput(std::string_view text);

/// Whether the error of a write says that the reader of the pipe has closed its end, as "head" does when it has enough.
QVCOMMON_API bool QVCOMMON_CALL AfxIsReaderGone(const CFileException& error);

/// Whether standard output is a terminal, so that what is written there must not command it. Never throws.
QVCOMMON_API bool QVCOMMON_CALL AfxIsOutputTerminal();
/// Whether standard error is a terminal, so that progress shown there may be seen. Never throws.
QVCOMMON_API bool QVCOMMON_CALL AfxIsErrorTerminal();
