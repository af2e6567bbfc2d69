#include "platform/FileOpen.h"

#include <cerrno>

#include "platform/Path.h"
#include "platform/posix/SameFile.h"
#include "platform/posix/sharing/OpenShared.h"

namespace qv::platform {

Status OpenFile(const char* path, const OpenRequest& request, FileHandle& handle) {
    UniqueFd file;
    const auto opened = OpenShared(Location::OfPath(path), request, file);
    if (!opened.ok()) return opened.statusAt(path);
    if (request.inheritable)
        if (const auto set = sys::fcntl(file.Get(), F_SETFD, 0); !set.ok()) return set.status();
    handle = file.Release();
    return {};
}

Status MayRead(const char* path) {
    return sys::faccessat(AT_FDCWD, NativePath(path).c_str(), R_OK, AT_EACCESS).statusAt(path);
}

Status CloseAndRemove(FileHandle handle, const char* path) {
    const UniqueFd file(static_cast<int>(handle));
    const std::string native = NativePath(path);
    struct stat status;
    if (const auto asked = sys::fstat(file.Get(), &status); !asked.ok()) return asked.status();
    const auto access = sys::fcntl(file.Get(), F_GETFL, 0);
    const bool reads = access.ok() && (access.value() & O_ACCMODE) != O_WRONLY;
    if (!LeadsToOnServer(AT_FDCWD, native.c_str(), status, reads ? O_RDONLY : O_WRONLY))
        return {FileCause::FileNotFound, ENOENT};
    return sys::unlinkat(AT_FDCWD, native.c_str(), 0).status();
}

}  // namespace qv::platform
