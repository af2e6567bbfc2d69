#pragma once

/// @file The table of system calls: all calls of platform/posix to the system use one of these objects, which consult
/// the installed fault injector (platform/SystemCalls.h). An entry has the name of the system's function and its
/// parameters; a suffix distinguishes entries of one function that differ in kind or parameters.
///
/// Not in the table are functions that cannot fail or do no input or output that an operation depends on: getpid and
/// geteuid; memory, text, locale and time zone (localtime_r, mktime, strftime, setenv, nl_langinfo); the loader once a
/// library is loaded (dladdr, dlsym, dlclose, dlerror); setpwent and endpwent; sysconf; the lists of posix_spawn and
/// the sets of signals; std::random_device, which uses the processor; threads and their synchronization; and the clock,
/// which has its own interface (platform/Clock.h).

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <pwd.h>
#include <signal.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <sys/mman.h>
#include <sys/random.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "platform/posix/SystemCall.h"

#define QV_SYSTEM_CALL(kind, name) inline constexpr SystemCall name(CallKind::kind, #name, &::name)
#define QV_TRANSFER(kind, name) inline constexpr SystemCall name(CallKind::kind, #name, &::name, CallTrait::Transfer)

namespace qv::platform::sys {

// Descriptors. Nothing is opened by a path alone: AT_FDCWD is the current folder.

inline constexpr SystemCall openat(
    CallKind::Open, "openat",
    +[](int folder, const char* path, int flags, mode_t mode) { return ::openat(folder, path, flags, mode); });
inline constexpr SystemCall openat_folder(
    CallKind::OpenFolder, "openat", +[](int folder, const char* path, int flags) {
        return ::openat(folder, path, flags | O_DIRECTORY | O_NONBLOCK | O_CLOEXEC);
    });
inline constexpr SystemCall close(CallKind::Close, "close", &::close, CallTrait::Close);
inline constexpr SystemCall fcntl(
    CallKind::Other, "fcntl", +[](int file, int command, int argument) { return ::fcntl(file, command, argument); });
inline constexpr SystemCall fcntl_lock(
    CallKind::Lock, "fcntl", +[](int file, int command, struct flock* lock) { return ::fcntl(file, command, lock); });

// Contents.

QV_TRANSFER(Read, read);
QV_TRANSFER(Read, pread);
QV_TRANSFER(Write, write);
QV_TRANSFER(Copy, copy_file_range);
QV_SYSTEM_CALL(Flush, fsync);
QV_SYSTEM_CALL(Flush, syncfs);
QV_SYSTEM_CALL(Seek, lseek);
QV_SYSTEM_CALL(Resize, ftruncate);

// File metadata. isatty returns 0 for no, which is not a failure.

QV_SYSTEM_CALL(Status, fstat);
QV_SYSTEM_CALL(Status, fstatat);
QV_SYSTEM_CALL(Status, faccessat);
QV_SYSTEM_CALL(Status, statx);
QV_SYSTEM_CALL(Status, fstatfs);
QV_SYSTEM_CALL(Status, statfs);
QV_SYSTEM_CALL(Status, readlink);
QV_SYSTEM_CALL(Status, flistxattr);
QV_SYSTEM_CALL(Status, fgetxattr);
QV_SYSTEM_CALL(ChangeStatus, fsetxattr);
QV_SYSTEM_CALL(Status, isatty);
QV_SYSTEM_CALL(ChangeStatus, fchmod);
QV_SYSTEM_CALL(ChangeStatus, fchmodat);
QV_SYSTEM_CALL(ChangeStatus, fchown);
QV_SYSTEM_CALL(ChangeStatus, futimens);
QV_SYSTEM_CALL(ChangeStatus, utimensat);
/// The caller must free the path.
inline constexpr SystemCall realpath(
    CallKind::Status, "realpath", +[](const char* path) { return ::realpath(path, nullptr); });

// Names and folders. unlinkat deletes both files and folders.

QV_SYSTEM_CALL(Remove, unlinkat);
QV_SYSTEM_CALL(Rename, renameat);
QV_SYSTEM_CALL(Rename, renameat2);
QV_SYSTEM_CALL(Link, linkat);
QV_SYSTEM_CALL(CreateFolder, mkdirat);
QV_SYSTEM_CALL(ListFolder, getdents64);
QV_SYSTEM_CALL(Other, chdir);
/// The caller must free the path.
inline constexpr SystemCall getcwd(
    CallKind::Other, "getcwd", +[] { return ::getcwd(nullptr, 0); });

// Watches.

QV_SYSTEM_CALL(Watch, inotify_init1);
QV_SYSTEM_CALL(Watch, inotify_add_watch);
QV_SYSTEM_CALL(Watch, inotify_rm_watch);
inline constexpr SystemCall inotify_read(CallKind::Watch, "read", &::read);

// Messages, and polling.

QV_SYSTEM_CALL(Message, socket);
QV_SYSTEM_CALL(Message, bind);
QV_SYSTEM_CALL(Message, listen);
QV_SYSTEM_CALL(Message, accept4);
QV_SYSTEM_CALL(Message, connect);
QV_SYSTEM_CALL(Message, getsockopt);
QV_TRANSFER(Message, send);
QV_TRANSFER(Message, recv);
QV_SYSTEM_CALL(Other, eventfd);
QV_SYSTEM_CALL(Other, eventfd_write);
inline constexpr SystemCall poll(CallKind::Other, "poll", &::poll, CallTrait::Wait);

// Processes, users, and queries of the process's own state.

QV_SYSTEM_CALL(Process, pipe2);
QV_SYSTEM_CALL(Process, waitpid);
QV_SYSTEM_CALL(Process, waitid);
QV_SYSTEM_CALL(Process, kill);
QV_SYSTEM_CALL(Process, sigaction);
// The C library's own declaration lacks C linkage in some versions.
inline constexpr SystemCall pidfd_open(
    CallKind::Process, "pidfd_open",
    +[](pid_t process, unsigned flags) { return static_cast<int>(::syscall(SYS_pidfd_open, process, flags)); });
inline constexpr SystemCall posix_spawnp(
    CallKind::Process, "posix_spawnp",
    +[](pid_t* id, const char* program, const posix_spawn_file_actions_t* actions, char* const* arguments) {
        return ErrorNumber{::posix_spawnp(id, program, actions, nullptr, arguments, environ)};
    });
inline constexpr SystemCall pthread_sigmask(
    CallKind::Other, "pthread_sigmask", +[](int how, const sigset_t* signals, sigset_t* before) {
        return ErrorNumber{::pthread_sigmask(how, signals, before)};
    });
QV_SYSTEM_CALL(Other, sigpending);
QV_SYSTEM_CALL(Other, sigtimedwait);
inline constexpr SystemCall getpwuid_r(
    CallKind::Other, "getpwuid_r", +[](uid_t user, passwd* entry, char* texts, std::size_t size, passwd** found) {
        return ErrorNumber{::getpwuid_r(user, entry, texts, size, found)};
    });
inline constexpr SystemCall getpwnam_r(
    CallKind::Other, "getpwnam_r", +[](const char* user, passwd* entry, char* texts, std::size_t size, passwd** found) {
        return ErrorNumber{::getpwnam_r(user, entry, texts, size, found)};
    });
inline constexpr SystemCall getpwent_r(
    CallKind::Other, "getpwent_r", +[](passwd* entry, char* texts, std::size_t size, passwd** found) {
        return ErrorNumber{::getpwent_r(entry, texts, size, found)};
    });
QV_SYSTEM_CALL(Other, gethostname);
/// The reason of a failure is the thread's dlerror, not errno.
inline constexpr SystemCall dlopen(
    CallKind::Open, "dlopen", +[](const char* path, int flags) { return ::dlopen(path, flags); });
QV_TRANSFER(Other, getrandom);
QV_SYSTEM_CALL(Other, madvise);

}  // namespace qv::platform::sys

#undef QV_SYSTEM_CALL
#undef QV_TRANSFER
