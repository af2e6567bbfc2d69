#pragma once

/// @file Why a file operation failed: the system's error number, and the framework's word for it.

namespace qv::platform {

/// The framework's causes, with its numbers.
enum class FileCause {
    None,
    Generic,
    FileNotFound,
    BadPath,
    TooManyOpenFiles,
    AccessDenied,
    InvalidFile,
    RemoveCurrentDir,
    DirectoryFull,
    BadSeek,
    HardIO,
    SharingViolation,
    LockViolation,
    DiskFull,
    EndOfFile
};

/// The cause for an error number of the system; Generic for numbers that fit none, None for 0.
FileCause CauseOf(unsigned long error);

/// What a file operation gives back; false when it succeeded.
struct FileFailure {
    FileCause cause = FileCause::None;
    unsigned long error = 0;

    explicit operator bool() const { return cause != FileCause::None; }
};

/// The failure for the calling thread's last system error. Never a success.
FileFailure LastFailure();
/// The same for an operation on a path: it tells a missing folder (BadPath) from a missing file (FileNotFound) on every
/// system.
FileFailure LastFailureAt(const char* path);

}  // namespace qv::platform
