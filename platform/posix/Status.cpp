#include "platform/Status.h"

#include <cerrno>
#include <string>

#include "platform/Path.h"
#include "platform/posix/System.h"

namespace qv::platform {
namespace {

bool FolderIsMissing(const std::string& native) {
    const auto slash = native.find_last_of('/', native.find_last_not_of('/'));
    if (slash == native.npos || slash == 0) return false;
    struct stat folder;
    return !sys::fstatat(AT_FDCWD, native.substr(0, slash).c_str(), &folder, 0).ok();
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
        case EBADF:
        case ENOLCK: return FileCause::InvalidFile;
        case EMLINK: return FileCause::DirectoryFull;
        case ESPIPE: return FileCause::BadSeek;
        case EIO:
        case ENXIO:
        case EREMOTEIO: return FileCause::HardIO;
        case EBUSY:
        case ETXTBSY: return FileCause::SharingViolation;
        case EAGAIN:
        case EDEADLK: return FileCause::LockViolation;
        case ENOSPC:
        case EDQUOT:
        case EFBIG: return FileCause::DiskFull;
        default: return FileCause::Generic;
    }
}

bool MeansNoLocks(unsigned long error) {
    return error == ENOLCK;
}

bool MeansNameTaken(unsigned long error) {
    return error == EEXIST;
}

Status Status::OfErrorAt(unsigned long error, const char* path) {
    if (error == ENOENT && FolderIsMissing(NativePath(path))) return {FileCause::BadPath, error};
    return OfError(error);
}

}  // namespace qv::platform
