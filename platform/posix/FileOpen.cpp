#include "platform/FileOpen.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <random>
#include <thread>

#include "platform/Path.h"
#include "platform/posix/Owned.h"

// Share modes over byte-range locks of the open file description, which every file system for several machines keeps too.
//
// Four ranges far beyond the end of any file stand for "someone reads", "someone writes", "someone denies reading" and
// "someone denies writing". An opener first marks its own presence in the ranges that say what it does and denies, then
// looks for others in the ranges that forbid it. Whoever comes second sees the first, so two that exclude each other
// never both get in. Two that come at once may both see the other and step back: they try again after a random moment.

namespace qv::platform {
namespace {

enum Range : int { kReads, kWrites, kDeniesReading, kDeniesWriting };
constexpr off_t kFirstRange = off_t{1} << 62;
constexpr off_t kRangeSize = off_t{1} << 32;

constexpr int kTriesForAFreeByte = 8;
constexpr int kTriesWhileOthersAreSeen = 6;
constexpr int kTriesWhileTheNameMoves = 100;

/// How one try to open ended. Everything but kOpened is an error number or one of these.
enum Outcome : int { kOpened = 0, kOthersSeen = -1, kNameMoved = -2, kCannotStage = -3 };

unsigned Random() {
    return std::random_device()();  // from the system: children of a fork must not draw the same numbers
}

void PauseARandomMoment(int attempt) {
    std::this_thread::sleep_for(std::chrono::microseconds(Random() % (25u << attempt)));
}

off_t StartOf(Range range) {
    return kFirstRange + range * kRangeSize;
}

struct flock Span(short type, off_t start, off_t length) {
    struct flock lock {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_start = start;
    lock.l_len = length;
    return lock;
}

int LockCall(int file, int command, struct flock& lock) {
    int result = -1;
    do result = ::fcntl(file, command, &lock);
    while (result == -1 && errno == EINTR);
    return result ? errno : 0;
}

/// Another program's lock in our way, of whatever kind, counts as another opener.
int SetLock(int file, short type, off_t start) {
    struct flock lock = Span(type, start, 1);
    const int error = LockCall(file, F_OFD_SETLK, lock);
    return error == EAGAIN || error == EACCES ? kOthersSeen : error;
}

/// Readers share a read lock on the first byte. A descriptor that only writes may hold no read lock: it takes a byte of its
/// own, at random, but never the first.
int MarkPresence(int file, Range range, bool mayReadLock) {
    if (mayReadLock) return SetLock(file, F_RDLCK, StartOf(range));
    int outcome = kOthersSeen;
    for (int tries = 0; outcome == kOthersSeen && tries < kTriesForAFreeByte; ++tries)
        outcome = SetLock(file, F_WRLCK, StartOf(range) + (Random() | 1));
    return outcome;
}

int MarkPresence(int file, const OpenRequest& request, bool mayReadLock) {
    int error = request.read ? MarkPresence(file, kReads, mayReadLock) : 0;
    if (!error && request.write) error = MarkPresence(file, kWrites, mayReadLock);
    if (!error && request.denyRead) error = MarkPresence(file, kDeniesReading, mayReadLock);
    if (!error && request.denyWrite) error = MarkPresence(file, kDeniesWriting, mayReadLock);
    return error;
}

int SeesOthers(int file, Range range) {
    struct flock lock = Span(F_WRLCK, StartOf(range), kRangeSize);
    if (const int error = LockCall(file, F_OFD_GETLK, lock)) return error;
    return lock.l_type == F_UNLCK ? 0 : kOthersSeen;
}

int SeesOthers(int file, const OpenRequest& request) {
    int seen = request.read ? SeesOthers(file, kDeniesReading) : 0;
    if (!seen && request.write) seen = SeesOthers(file, kDeniesWriting);
    if (!seen && request.denyRead) seen = SeesOthers(file, kReads);
    if (!seen && request.denyWrite) seen = SeesOthers(file, kWrites);
    return seen;
}

bool IsSame(const struct stat& a, const struct stat& b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

bool Names(const std::string& native, const struct stat& file) {
    struct stat named;
    return !::stat(native.c_str(), &named) && IsSame(named, file);
}

bool IsLink(const std::string& native) {
    struct stat named;
    return !::lstat(native.c_str(), &named) && S_ISLNK(named.st_mode);
}

Owned OpenWaiting(const std::string& native, int flags) {
    int file = -1;
    do file = ::open(native.c_str(), flags | O_CLOEXEC | O_NOCTTY, 0666);
    while (file == -1 && errno == EINTR);
    return Owned(file);
}

/// Does not wait for a pipe's other end. Of files, only those that another program holds on a lease would be waited for.
Owned OpenDescriptor(const std::string& native, const OpenRequest& request, int flags) {
    const int access = request.read && request.write ? O_RDWR : request.write ? O_WRONLY : O_RDONLY;
    Owned file = OpenWaiting(native, access | flags | O_NONBLOCK);
    return file || errno != EWOULDBLOCK ? std::move(file) : OpenWaiting(native, access | flags);
}

/// For pipes and devices: once they are open, reading and writing waits as usual.
int AllowWaiting(int file) {
    const int flags = ::fcntl(file, F_GETFL);
    return flags == -1 || ::fcntl(file, F_SETFL, flags & ~O_NONBLOCK) ? errno : kOpened;
}

/// Truncating comes last, when nobody can object any more.
int Empty(int file, const std::string& native, const OpenRequest& request) {
    int result = -1;
    do result = request.write ? ::ftruncate(file, 0) : ::truncate(native.c_str(), 0);
    while (result == -1 && errno == EINTR);
    return result ? errno : 0;
}

/// Takes an opened file under the share modes, and makes sure that the path still names it then.
int Claim(int file, const std::string& native, const OpenRequest& request) {
    struct stat status;
    if (::fstat(file, &status)) return errno;
    if (S_ISDIR(status.st_mode)) return EISDIR;
    if (!S_ISREG(status.st_mode)) return AllowWaiting(file);
    int error = MarkPresence(file, request, request.read);
    if (!error) error = SeesOthers(file, request);
    const bool unguarded = error > 0 && !request.write;
    if (error && !unguarded) return error;
    // Who only reads and denies nothing may hold a file whose name has just gone; anybody else must not.
    const bool onlyReads = !request.write && !request.denyRead && !request.denyWrite && !request.truncate;
    if (!onlyReads && !Names(native, status)) return kNameMoved;
    return request.truncate ? Empty(file, native, request) : kOpened;
}

int OpenAndClaim(const std::string& native, const OpenRequest& request, int flags, Owned& file) {
    file = OpenDescriptor(native, request, flags);
    return file ? Claim(file.Get(), native, request) : errno;
}

std::string FolderOf(const std::string& native) {
    const auto slash = native.rfind('/');
    return slash == native.npos ? "." : native.substr(0, slash + 1);
}

/// Opens the file that `guard` has just made under this name. The guard's presence keeps everybody else out meanwhile.
int OpenGuarded(const std::string& native, const OpenRequest& request, int guard, Owned& file) {
    struct stat made, opened;
    if (::fstat(guard, &made)) return errno;
    file = OpenDescriptor(native, request, 0);
    if (!file) {
        const int error = errno;
        if (Names(native, made)) ::unlink(native.c_str());
        return error;
    }
    if (::fstat(file.Get(), &opened)) return errno;
    return IsSame(made, opened) ? MarkPresence(file.Get(), request, request.read) : kNameMoved;
}

/// Makes the new file without a name, marks presence in it, and only then gives it its name: nobody can get in between.
/// The caller's file is opened by that name, so that observers of the folder see its changes under it.
int CreateClaimed(const std::string& native, const OpenRequest& request, Owned& file) {
    const Owned guard(::open(FolderOf(native).c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0666));
    if (!guard || MarkPresence(guard.Get(), request, true)) return kCannotStage;
    const std::string unnamed = "/proc/self/fd/" + std::to_string(guard.Get());
    if (::linkat(AT_FDCWD, unnamed.c_str(), AT_FDCWD, native.c_str(), AT_SYMLINK_FOLLOW))
        return errno == EEXIST && !IsLink(native) ? kNameMoved : kCannotStage;
    return OpenGuarded(native, request, guard.Get(), file);
}

int OpenOnce(const std::string& native, const OpenRequest& request, Owned& file) {
    int outcome = OpenAndClaim(native, request, 0, file);
    if (outcome != ENOENT || !request.create) return outcome;
    outcome = CreateClaimed(native, request, file);
    return outcome == kCannotStage ? OpenAndClaim(native, request, O_CREAT, file) : outcome;
}

int OpenInTurn(const std::string& native, const OpenRequest& request, Owned& file) {
    int seen = 0;
    for (int attempt = 0; attempt < kTriesWhileTheNameMoves; ++attempt) {
        const int outcome = OpenOnce(native, request, file);
        if (outcome != kOthersSeen && outcome != kNameMoved) return outcome;
        file.Close();  // and with it our presence
        if (outcome == kNameMoved) continue;
        if (++seen == kTriesWhileOthersAreSeen) break;
        PauseARandomMoment(seen);
    }
    return EBUSY;
}

}  // namespace

FileFailure OpenFile(const char* path, const OpenRequest& request, FileHandle& handle) {
    Owned file;
    errno = OpenInTurn(NativePath(path), request, file);
    if (errno) return LastFailureAt(path);
    if (request.inheritable && ::fcntl(file.Get(), F_SETFD, 0)) return LastFailure();
    handle = file.Release();
    return {};
}

FileFailure CloseAndRemove(FileHandle handle, const char* path) {
    const Owned file(static_cast<int>(handle));
    const std::string native = NativePath(path);
    struct stat status;
    if (::fstat(file.Get(), &status)) return LastFailure();
    if (!Names(native, status)) return {FileCause::FileNotFound, ENOENT};
    return ::unlink(native.c_str()) ? LastFailure() : FileFailure{};
}

}  // namespace qv::platform
