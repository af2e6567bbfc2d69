#include "platform/FileCause.h"

#include <sys/stat.h>

#include <cerrno>
#include <string>

#include "platform/Path.h"

namespace qv::platform {
namespace {

bool FolderIsMissing(const std::string& native) {
    const auto slash = native.find_last_of('/', native.find_last_not_of('/'));
    if (slash == native.npos || slash == 0) return false;
    struct stat folder;
    return ::stat(native.substr(0, slash).c_str(), &folder) != 0;
}

}  // namespace

FileCause CauseOf(unsigned long error) {
    switch (error) {
        case 0: return FileCause::None;
        case ENOENT: return FileCause::FileNotFound;
        case ENOTDIR:
        case ENAMETOOLONG:
        case ELOOP: return FileCause::BadPath;
        case EMFILE:
        case ENFILE: return FileCause::TooManyOpenFiles;
        case EACCES:
        case EPERM:
        case EROFS:
        case EISDIR:
        case EEXIST: return FileCause::AccessDenied;
        case EBADF: return FileCause::InvalidFile;
        case EMLINK: return FileCause::DirectoryFull;
        case ESPIPE: return FileCause::BadSeek;
        case EIO:
        case ENXIO:
        case EREMOTEIO: return FileCause::HardIO;
        case EBUSY:
        case ETXTBSY: return FileCause::SharingViolation;
        case EAGAIN:
        case EDEADLK:
        case ENOLCK: return FileCause::LockViolation;
        case ENOSPC:
        case EDQUOT:
        case EFBIG: return FileCause::DiskFull;
        default: return FileCause::Generic;
    }
}

FileFailure LastFailure() {
    const auto error = static_cast<unsigned long>(errno);
    return error ? FileFailure{CauseOf(error), error} : FileFailure{FileCause::Generic, 0};
}

FileFailure LastFailureAt(const char* path) {
    FileFailure failure = LastFailure();
    if (failure.error == ENOENT && FolderIsMissing(NativePath(path))) failure.cause = FileCause::BadPath;
    return failure;
}

}  // namespace qv::platform
