#pragma once

/// @file The one way from a failed Status to the framework's file exception.

#include "platform/Status.h"
#include "qvcommon/framework/File.h"

namespace qv {

/// The number that CFileException::m_lOsError holds: the system's, or -1 where the system gave none.
LONG OsErrorOf(const platform::Status& failure);

/// Fills `error` with a failure of an operation on `path`.
void Describe(const platform::Status& failure, const char* path, CFileException& error);

/// @throws CFileException* naming `path`, unless `status` is a success.
void ThrowIfFailed(const platform::Status& status, const char* path);

}  // namespace qv
