#include "platform/posix/sharing/OpenShared.h"

#include <cerrno>
#include <chrono>
#include <random>
#include <string>

#include "platform/Clock.h"
#include "platform/posix/SameFile.h"
#include "platform/posix/UniqueFd.h"
#include "platform/posix/attributes/FolderAccess.h"
#include "platform/posix/sharing/ShareModes.h"

namespace qv::platform {
namespace {

constexpr int kTriesWhileOthersAreSeen = 6;
constexpr int kTriesWhileTheNameMoves = 100;
constexpr mode_t kNewFile = 0666;

/// The outcome of an attempt to open that did not fail.
enum class Outcome {
    Opened,
    OthersSeen,
    NameMoved,   ///< the path names another file than the opened one
    CannotStage  ///< a new file cannot be claimed before it has a name
};
using Attempt = Result<Outcome>;

Attempt Failed(unsigned long error) {
    return Attempt::OfError(Outcome::Opened, error);
}

Attempt OfStep(const Result<int>& step) {
    return step.ok() ? Attempt(Outcome::Opened) : Failed(step.error());
}

/// Two openers that detected each other back off for different times.
void PauseARandomMoment(int attempt) {
    Sleep(std::chrono::microseconds(std::random_device()() % (25u << attempt)));
}

bool IsLink(const Location& at) {
    struct stat named;
    return sys::fstatat(at.folder, at.name.c_str(), &named, AT_SYMLINK_NOFOLLOW).ok() && S_ISLNK(named.st_mode);
}

/// Does not wait for a pipe's other end. For files it would only wait for a lease held by another program.
Result<int> OpenDescriptor(const Location& at, int flags) {
    flags |= O_CLOEXEC | O_NOCTTY;
    const auto opened = sys::openat(at.folder, at.name.c_str(), flags | O_NONBLOCK, kNewFile);
    if (opened.error() != EWOULDBLOCK) return opened;
    return sys::openat(at.folder, at.name.c_str(), flags, kNewFile);
}

Result<int> OpenDescriptor(const Location& at, const OpenRequest& request, int flags) {
    const int access = request.read && request.write ? O_RDWR : request.write ? O_WRONLY : O_RDONLY;
    if (request.noLink || request.folderAccess) flags |= O_NOFOLLOW;
    const auto opened = OpenDescriptor(at, flags | access);
    if (!request.folderAccess) return opened;
    const bool readOnly = opened.error() == EACCES || opened.error() == EROFS;
    return readOnly && request.read ? OpenDescriptor(at, O_RDONLY | O_NOFOLLOW) : opened;
}

/// For pipes and devices: once they are open, reading and writing blocks as usual.
Attempt ClearNonBlocking(int file) {
    const auto flags = sys::fcntl(file, F_GETFL, 0);
    return OfStep(flags.ok() ? sys::fcntl(file, F_SETFL, flags.value() & ~O_NONBLOCK) : flags);
}

/// A read-only descriptor cannot truncate its file: the name is opened again, and may by then refer to a file that is
/// not claimed.
Attempt Empty(int file, const struct stat& claimed, const Location& at, const OpenRequest& request) {
    const off_t none = 0;
    if (request.write) return OfStep(sys::ftruncate(file, none));
    const auto opened = OpenDescriptor(at, O_WRONLY | (request.noLink || request.folderAccess ? O_NOFOLLOW : 0));
    if (!opened.ok()) return Failed(opened.error());
    const UniqueFd writable(opened);
    struct stat named;
    if (const auto asked = sys::fstat(writable.Get(), &named); !asked.ok()) return Failed(asked.error());
    return IsSameFile(claimed, named) ? OfStep(sys::ftruncate(writable.Get(), none)) : Attempt(Outcome::NameMoved);
}

/// A second name may have been given to another user's file by a user who cannot write to it.
bool MayShare(const struct stat& status, const OpenRequest& request) {
    return S_ISREG(status.st_mode) && (status.st_nlink <= 1 || !request.truncate);
}

/// Applies the share modes to an opened file, and verifies that the path still names it. Truncating is last, when no
/// other opener can conflict any longer.
Attempt Claim(int file, const Location& at, const OpenRequest& request) {
    struct stat status;
    if (const auto asked = sys::fstat(file, &status); !asked.ok()) return Failed(asked.error());
    if (S_ISDIR(status.st_mode)) return Failed(EISDIR);
    if (request.folderAccess && !MayShare(status, request)) return Failed(EPERM);
    if (!S_ISREG(status.st_mode)) return ClearNonBlocking(file);
    const auto claimed = AcquireShareMode(file, request);
    if (!claimed.ok() && request.write) return Failed(claimed.error());
    if (claimed.ok() && claimed.value() == ShareOutcome::OthersSeen) return Outcome::OthersSeen;
    // An opener that only reads and denies nothing may hold a file whose name has just disappeared; others must not.
    const bool onlyReads = !request.write && !request.denyRead && !request.denyWrite && !request.truncate;
    const int access = (request.read ? O_RDONLY : O_WRONLY) | (request.noLink ? O_NOFOLLOW : 0);
    if (!onlyReads && !LeadsToOnServer(at.folder, at.name.c_str(), status, access)) return Outcome::NameMoved;
    return request.truncate ? Empty(file, status, at, request) : Attempt(Outcome::Opened);
}

Attempt OpenAndClaim(const Location& at, const OpenRequest& request, int flags, UniqueFd& file) {
    const auto opened = OpenDescriptor(at, request, flags);
    file = UniqueFd(opened);
    if (!opened.ok()) return Failed(opened.error());
    const Attempt claimed = Claim(file.Get(), at, request);
    return claimed.error() == ENOENT ? Attempt(Outcome::NameMoved) : claimed;
}

std::string FolderOf(const Location& at) {
    const auto slash = at.name.rfind('/');
    return slash == at.name.npos ? "." : at.name.substr(0, slash + 1);
}

void RemoveIfStillThere(int file, const Location& at) {
    struct stat made;
    if (sys::fstat(file, &made).ok() && LeadsTo(at.folder, at.name.c_str(), made, AT_SYMLINK_NOFOLLOW))
        sys::unlinkat(at.folder, at.name.c_str(), 0).IgnoreError();  // a file that cannot be deleted either is empty
}

/// Opens the file just created by `guard` under this name. The guard's presence excludes all others meanwhile.
Attempt OpenGuarded(const Location& at, const OpenRequest& request, int guard, UniqueFd& file) {
    struct stat made, opened;
    if (const auto asked = sys::fstat(guard, &made); !asked.ok()) return Failed(asked.error());
    const auto open = OpenDescriptor(at, request, 0);
    if (!open.ok()) {
        RemoveIfStillThere(guard, at);
        return Failed(open.error());
    }
    file = UniqueFd(open);
    if (const auto asked = sys::fstat(file.Get(), &opened); !asked.ok()) return Failed(asked.error());
    if (!IsSameFile(made, opened)) return Outcome::NameMoved;
    const auto marked = MarkPresence(file.Get(), request, request.read);
    if (!marked.ok()) return Failed(marked.error());
    return marked.value() == ShareOutcome::Granted ? Outcome::Opened : Outcome::OthersSeen;
}

/// Creates the new file without a name, marks presence in it, and only then gives it its name, so that no other opener
/// can get in between. The caller's file is opened by that name, so that observers of the folder see its changes under
/// it.
Attempt CreateClaimed(const Location& at, const OpenRequest& request, UniqueFd& file) {
    const UniqueFd guard(sys::openat(at.folder, FolderOf(at).c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, kNewFile));
    if (!guard) return Outcome::CannotStage;
    if (request.folderAccess) GrantAsFolder(guard.Get(), at.folder, FolderOf(at));
    const auto marked = MarkPresence(guard.Get(), request, true);
    if (!marked.ok() || marked.value() != ShareOutcome::Granted) return Outcome::CannotStage;
    const std::string unnamed = "/proc/self/fd/" + std::to_string(guard.Get());
    const auto linked = sys::linkat(AT_FDCWD, unnamed.c_str(), at.folder, at.name.c_str(), AT_SYMLINK_FOLLOW);
    if (linked.ok()) return OpenGuarded(at, request, guard.Get(), file);
    return linked.error() == EEXIST && !IsLink(at) ? Outcome::NameMoved : Outcome::CannotStage;
}

/// Creates the new file under its name. A refused open deletes it, unless another opener has opened it.
Attempt CreateVisibly(const Location& at, const OpenRequest& request, UniqueFd& file) {
    if (IsLink(at)) return OpenAndClaim(at, request, O_CREAT, file);
    const auto made = OpenDescriptor(at, request, O_CREAT | O_EXCL);
    file = UniqueFd(made);
    if (made.error() == EEXIST) return Outcome::NameMoved;
    if (!made.ok()) return Failed(made.error());
    if (request.folderAccess) GrantAsFolder(file.Get(), at.folder, FolderOf(at));
    const Attempt claimed = Claim(file.Get(), at, request);
    if (claimed.error() == ENOENT) return Outcome::NameMoved;
    if (!claimed.ok()) RemoveIfStillThere(file.Get(), at);
    return claimed;
}

Attempt OpenOnce(const Location& at, const OpenRequest& request, UniqueFd& file) {
    const Attempt existing = OpenAndClaim(at, request, 0, file);
    if (existing.error() != ENOENT || !request.create) return existing;
    const Attempt created = CreateClaimed(at, request, file);
    const bool staged = !created.ok() || created.value() != Outcome::CannotStage;
    return staged ? created : CreateVisibly(at, request, file);
}

bool HasNameMoved(const Attempt& tried) {
    return tried.ok() ? tried.value() == Outcome::NameMoved : tried.error() == ESTALE;
}

}  // namespace

Result<int> OpenShared(const Location& at, const OpenRequest& request, UniqueFd& file) {
    constexpr int kTriesWithoutPause = 10;
    int seen = 0;
    for (int attempt = 0; attempt < kTriesWhileTheNameMoves; ++attempt) {
        const Attempt tried = OpenOnce(at, request, file);
        const bool moved = HasNameMoved(tried);
        if (!tried.ok() && !moved) return Result<int>::OfError(-1, tried.error());
        if (tried.ok() && tried.value() == Outcome::Opened) return file.Get();
        file = UniqueFd();  // releases this opener's presence too
        if (moved) {
            if (attempt >= kTriesWithoutPause) PauseARandomMoment(kTriesWhileOthersAreSeen);
            continue;
        }
        if (++seen == kTriesWhileOthersAreSeen) break;
        PauseARandomMoment(seen);
    }
    return Result<int>::OfError(-1, EBUSY);
}

}  // namespace qv::platform
