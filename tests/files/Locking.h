#pragma once

#include <string>

#include "qvcommon/LockFile.h"
#include "tests/support/Child.h"

/// The child program that tries to take the lock on a document and holds it until its input ends, or it is killed. Its first
/// line has the cause of a failure, 0 for none, and the holder.
inline constexpr const char* kLocker = "TakeTheLock";

/// A lock on a document, not yet taken.
struct DocumentLock : CLockFile {
    explicit DocumentLock(const CString& document) { SetSourceFile(document); }
};
