#include "platform/Status.h"

#include <windows.h>

namespace qv::platform {
namespace {

constexpr DWORD kDiskQuotaExceeded = 1295;  // missing in some system headers

}  // namespace

FileCause CauseOf(unsigned long error) {
    switch (error) {
        case NO_ERROR: return FileCause::None;
        case ERROR_FILE_NOT_FOUND: return FileCause::FileNotFound;
        case ERROR_PATH_NOT_FOUND:
        case ERROR_INVALID_DRIVE:
        case ERROR_BAD_NETPATH:
        case ERROR_BAD_NET_NAME:
        case ERROR_INVALID_NAME:
        case ERROR_BAD_PATHNAME:
        case ERROR_DIRECTORY:
        case ERROR_FILENAME_EXCED_RANGE: return FileCause::BadPath;
        case ERROR_TOO_MANY_OPEN_FILES: return FileCause::TooManyOpenFiles;
        case ERROR_ACCESS_DENIED:
        case ERROR_WRITE_PROTECT:
        case ERROR_NETWORK_ACCESS_DENIED:
        case ERROR_FILE_EXISTS:
        case ERROR_ALREADY_EXISTS:
        case ERROR_DELETE_PENDING:
        case ERROR_PRIVILEGE_NOT_HELD: return FileCause::AccessDenied;
        case ERROR_INVALID_HANDLE: return FileCause::InvalidFile;
        case ERROR_CURRENT_DIRECTORY: return FileCause::RemoveCurrentDir;
        case ERROR_CANNOT_MAKE: return FileCause::DirectoryFull;
        case ERROR_SEEK:
        case ERROR_NEGATIVE_SEEK: return FileCause::BadSeek;
        case ERROR_BAD_UNIT:
        case ERROR_NOT_READY:
        case ERROR_CRC:
        case ERROR_SECTOR_NOT_FOUND:
        case ERROR_WRITE_FAULT:
        case ERROR_READ_FAULT:
        case ERROR_GEN_FAILURE:
        case ERROR_IO_DEVICE: return FileCause::HardIO;
        case ERROR_SHARING_VIOLATION:
        case ERROR_SHARING_BUFFER_EXCEEDED: return FileCause::SharingViolation;
        case ERROR_LOCK_VIOLATION:
        case ERROR_LOCK_FAILED: return FileCause::LockViolation;
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL:
        case kDiskQuotaExceeded: return FileCause::DiskFull;
        case ERROR_HANDLE_EOF: return FileCause::EndOfFile;
        default: return FileCause::Generic;
    }
}

bool MeansNoLocks(unsigned long error) {
    return error == ERROR_INVALID_FUNCTION || error == ERROR_NOT_SUPPORTED;
}

bool MeansNameTaken(unsigned long error) {
    return error == ERROR_FILE_EXISTS || error == ERROR_ALREADY_EXISTS;
}

// The system distinguishes a missing folder from a missing file by itself.
Status Status::OfErrorAt(unsigned long error, const char*) {
    return OfError(error);
}

}  // namespace qv::platform
