#include "framework/FileErrors.h"

namespace qv {

LONG OsErrorOf(const platform::Status& failure) {
    return failure.error() ? static_cast<LONG>(failure.error()) : -1;
}

void Describe(const platform::Status& failure, const char* path, CFileException& error) {
    error.m_cause = static_cast<int>(failure.cause());
    error.m_lOsError = OsErrorOf(failure);
    error.m_strFileName = path;
}

void ThrowIfFailed(const platform::Status& status, const char* path) {
    if (!status.ok()) AfxThrowFileException(static_cast<int>(status.cause()), OsErrorOf(status), path);
}

}  // namespace qv
