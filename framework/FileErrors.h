#pragma once

/// @file Conversion of a failed Status to the framework's file exception.

#include "platform/Status.h"
#include "qvcommon/framework/File.h"

namespace qv {

/// Returns the value of CFileException::m_lOsError: the system's error number, or -1 if the system gave none.
LONG OsErrorOf(const platform::Status& failure);

/// Stores a failure of an operation on `path` in `error`.
void Describe(const platform::Status& failure, const char* path, CFileException& error);

/// @throws CFileException* naming `path`, unless `status` is a success.
void ThrowIfFailed(const platform::Status& status, const char* path);

}  // namespace qv
