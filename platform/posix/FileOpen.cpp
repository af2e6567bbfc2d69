#include "platform/FileOpen.h"

#include <cerrno>
#include <chrono>
#include <random>
#include <string>

#include "platform/Clock.h"
#include "platform/Path.h"
#include "platform/posix/SameFile.h"
#include "platform/posix/UniqueFd.h"
#include "platform/posix/attributes/FolderAccess.h"
#include "platform/posix/sharing/ShareModes.h"

namespace qv::platform {
namespace {

constexpr int kTriesWhileOthersAreSeen = 6;
constexpr int kTriesWhileTheNameMoves = 100;
constexpr mode_t kNewFile = 0666;

/// How one try to open ended that did not fail.
enum class Outcome {
    Opened,
    OthersSeen,
    NameMoved,   ///< the path names another file than the one that was opened
    CannotStage  ///< a new file cannot be claimed before it has its name
};
using Attempt = Result<Outcome>;

Attempt Failed(unsigned long error) {
    return Attempt::OfError(Outcome::Opened, error);
}

Attempt OfStep(const Result<int>& step) {
    return step.ok() ? Attempt(Outcome::Opened) : Failed(step.error());
}

/// Two that saw each other step back for different times.
void PauseARandomMoment(int attempt) {
    Sleep(std::chrono::microseconds(std::random_device()() % (25u << attempt)));
}

bool IsLink(const std::string& native) {
    struct stat named;
    return sys::fstatat(AT_FDCWD, native.c_str(), &named, AT_SYMLINK_NOFOLLOW).ok() && S_ISLNK(named.st_mode);
}

/// Does not wait for a pipe's other end. Of files, only those that another program holds on a lease would be waited for.
Result<int> OpenDescriptor(const std::string& native, int flags) {
    flags |= O_CLOEXEC | O_NOCTTY;
    const auto opened = sys::openat(AT_FDCWD, native.c_str(), flags | O_NONBLOCK, kNewFile);
    if (opened.error() != EWOULDBLOCK) return opened;
    return sys::openat(AT_FDCWD, native.c_str(), flags, kNewFile);
}

Result<int> OpenDescriptor(const std::string& native, const OpenRequest& request, int flags) {
    const int access = request.read && request.write ? O_RDWR : request.write ? O_WRONLY : O_RDONLY;
    if (!request.folderAccess) return OpenDescriptor(native, flags | access);
    const auto opened = OpenDescriptor(native, flags | access | O_NOFOLLOW);
    const bool readOnly = opened.error() == EACCES || opened.error() == EROFS;
    return readOnly && request.read ? OpenDescriptor(native, O_RDONLY | O_NOFOLLOW) : opened;
}

/// For pipes and devices: once they are open, reading and writing waits as usual.
Attempt ClearNonBlocking(int file) {
    const auto flags = sys::fcntl(file, F_GETFL, 0);
    return OfStep(flags.ok() ? sys::fcntl(file, F_SETFL, flags.value() & ~O_NONBLOCK) : flags);
}

Attempt Empty(int file, const std::string& native, const OpenRequest& request) {
    const off_t none = 0;
    return OfStep(request.write ? sys::ftruncate(file, none) : sys::truncate(native.c_str(), none));
}

/// A second name may have been given to somebody's file by one who may not write it himself.
bool MayShare(const struct stat& status, const OpenRequest& request) {
    return S_ISREG(status.st_mode) && (status.st_nlink <= 1 || !request.truncate);
}

/// Takes an opened file under the share modes, and makes sure that the path still names it then. Truncating comes last,
/// when no other opener can object any more.
Attempt Claim(int file, const std::string& native, const OpenRequest& request) {
    struct stat status;
    if (const auto asked = sys::fstat(file, &status); !asked.ok()) return Failed(asked.error());
    if (S_ISDIR(status.st_mode)) return Failed(EISDIR);
    if (request.folderAccess && !MayShare(status, request)) return Failed(EPERM);
    if (!S_ISREG(status.st_mode)) return ClearNonBlocking(file);
    const auto claimed = AcquireShareMode(file, request);
    if (!claimed.ok() && request.write) return Failed(claimed.error());
    if (claimed.ok() && claimed.value() == ShareOutcome::OthersSeen) return Outcome::OthersSeen;
    // Who only reads and denies nothing may hold a file whose name has just gone; anybody else must not.
    const bool onlyReads = !request.write && !request.denyRead && !request.denyWrite && !request.truncate;
    const int access = request.read ? O_RDONLY : O_WRONLY;
    if (!onlyReads && !LeadsToOnServer(native.c_str(), status, access)) return Outcome::NameMoved;
    return request.truncate ? Empty(file, native, request) : Attempt(Outcome::Opened);
}

Attempt OpenAndClaim(const std::string& native, const OpenRequest& request, int flags, UniqueFd& file) {
    const auto opened = OpenDescriptor(native, request, flags);
    file = UniqueFd(opened);
    if (!opened.ok()) return Failed(opened.error());
    const Attempt claimed = Claim(file.Get(), native, request);
    return claimed.error() == ENOENT ? Attempt(Outcome::NameMoved) : claimed;
}

std::string FolderOf(const std::string& native) {
    const auto slash = native.rfind('/');
    return slash == native.npos ? "." : native.substr(0, slash + 1);
}

void RemoveIfStillThere(int file, const std::string& native) {
    struct stat made;
    if (sys::fstat(file, &made).ok() && LeadsTo(AT_FDCWD, native.c_str(), made, AT_SYMLINK_NOFOLLOW))
        sys::unlinkat(AT_FDCWD, native.c_str(), 0).IgnoreError();  // what cannot be deleted either is an empty file
}

/// Opens the file that `guard` has just made under this name. The guard's presence keeps all others out meanwhile.
Attempt OpenGuarded(const std::string& native, const OpenRequest& request, int guard, UniqueFd& file) {
    struct stat made, opened;
    if (const auto asked = sys::fstat(guard, &made); !asked.ok()) return Failed(asked.error());
    const auto open = OpenDescriptor(native, request, 0);
    if (!open.ok()) {
        RemoveIfStillThere(guard, native);
        return Failed(open.error());
    }
    file = UniqueFd(open);
    if (const auto asked = sys::fstat(file.Get(), &opened); !asked.ok()) return Failed(asked.error());
    if (!IsSameFile(made, opened)) return Outcome::NameMoved;
    const auto marked = MarkPresence(file.Get(), request, request.read);
    if (!marked.ok()) return Failed(marked.error());
    return marked.value() == ShareOutcome::Granted ? Outcome::Opened : Outcome::OthersSeen;
}

/// Makes the new file without a name, marks presence in it, and only then gives it its name: no other opener can get in
/// between. The caller's file is opened by that name, so that observers of the folder see its changes under it.
Attempt CreateClaimed(const std::string& native, const OpenRequest& request, UniqueFd& file) {
    const UniqueFd guard(sys::openat(AT_FDCWD, FolderOf(native).c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, kNewFile));
    if (!guard) return Outcome::CannotStage;
    if (request.folderAccess) GrantAsFolder(guard.Get(), AT_FDCWD, FolderOf(native));
    const auto marked = MarkPresence(guard.Get(), request, true);
    if (!marked.ok() || marked.value() != ShareOutcome::Granted) return Outcome::CannotStage;
    const std::string unnamed = "/proc/self/fd/" + std::to_string(guard.Get());
    const auto linked = sys::linkat(AT_FDCWD, unnamed.c_str(), AT_FDCWD, native.c_str(), AT_SYMLINK_FOLLOW);
    if (linked.ok()) return OpenGuarded(native, request, guard.Get(), file);
    return linked.error() == EEXIST && !IsLink(native) ? Outcome::NameMoved : Outcome::CannotStage;
}

/// Makes the new file under its name. A refused open leaves none behind, unless another opener has got hold of it.
Attempt CreateVisibly(const std::string& native, const OpenRequest& request, UniqueFd& file) {
    if (IsLink(native)) return OpenAndClaim(native, request, O_CREAT, file);
    const auto made = OpenDescriptor(native, request, O_CREAT | O_EXCL);
    file = UniqueFd(made);
    if (made.error() == EEXIST) return Outcome::NameMoved;
    if (!made.ok()) return Failed(made.error());
    if (request.folderAccess) GrantAsFolder(file.Get(), AT_FDCWD, FolderOf(native));
    const Attempt claimed = Claim(file.Get(), native, request);
    if (claimed.error() == ENOENT) return Outcome::NameMoved;
    if (!claimed.ok()) RemoveIfStillThere(file.Get(), native);
    return claimed;
}

Attempt OpenOnce(const std::string& native, const OpenRequest& request, UniqueFd& file) {
    const Attempt existing = OpenAndClaim(native, request, 0, file);
    if (existing.error() != ENOENT || !request.create) return existing;
    const Attempt created = CreateClaimed(native, request, file);
    const bool staged = !created.ok() || created.value() != Outcome::CannotStage;
    return staged ? created : CreateVisibly(native, request, file);
}

bool HasNameMoved(const Attempt& tried) {
    return tried.ok() ? tried.value() == Outcome::NameMoved : tried.error() == ESTALE;
}

/// A success, or the error number.
Result<int> OpenInTurn(const std::string& native, const OpenRequest& request, UniqueFd& file) {
    constexpr int kTriesWithoutPause = 10;
    int seen = 0;
    for (int attempt = 0; attempt < kTriesWhileTheNameMoves; ++attempt) {
        const Attempt tried = OpenOnce(native, request, file);
        const bool moved = HasNameMoved(tried);
        if (!tried.ok() && !moved) return Result<int>::OfError(-1, tried.error());
        if (tried.ok() && tried.value() == Outcome::Opened) return file.Get();
        file = UniqueFd();  // and with it our presence
        if (moved) {
            if (attempt >= kTriesWithoutPause) PauseARandomMoment(kTriesWhileOthersAreSeen);
            continue;
        }
        if (++seen == kTriesWhileOthersAreSeen) break;
        PauseARandomMoment(seen);
    }
    return Result<int>::OfError(-1, EBUSY);
}

}  // namespace

Status OpenFile(const char* path, const OpenRequest& request, FileHandle& handle) {
    UniqueFd file;
    const auto opened = OpenInTurn(NativePath(path), request, file);
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
    if (!LeadsToOnServer(native.c_str(), status, reads ? O_RDONLY : O_WRONLY)) return {FileCause::FileNotFound, ENOENT};
    return sys::unlinkat(AT_FDCWD, native.c_str(), 0).status();
}

}  // namespace qv::platform
