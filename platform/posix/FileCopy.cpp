#include "platform/FileCopy.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <limits>

#include "platform/FileOpen.h"
#include "platform/Path.h"
#include "platform/posix/Owned.h"

namespace qv::platform {
namespace {

/// Up to here, reading and writing costs less than setting up a copy in the kernel.
constexpr off_t kSmallFile = 64 * 1024;
constexpr std::size_t kBufferSize = 64 * 1024;
constexpr std::size_t kLargestStep = 1 << 30;

/// Copies through memory from the files' positions, at most `length` bytes. 0, or an error number.
int CopyThroughMemory(int from, int to, off_t length) {
    alignas(64) char buffer[kBufferSize];
    while (length > 0) {
        const auto wanted = std::min(static_cast<std::size_t>(length), sizeof buffer);
        std::size_t count = 0;
        if (const FileFailure failure = ReadBytes(from, buffer, wanted, count)) return static_cast<int>(failure.error);
        if (count == 0) return 0;  // it has become shorter
        if (const FileFailure failure = WriteBytes(to, buffer, count)) return static_cast<int>(failure.error);
        length -= static_cast<off_t>(count);
    }
    return 0;
}

bool IsNoCopyInKernel(int error) {
    return error == EXDEV || error == EINVAL || error == ENOSYS || error == EOPNOTSUPP || error == EPERM;
}

/// Lets the kernel copy, or share, what lies between two places; what it leaves is copied through memory.
int CopyRange(int from, int to, off_t start, off_t end) {
    if (::lseek(from, start, SEEK_SET) == -1 || ::lseek(to, start, SEEK_SET) == -1) return errno;
    for (off_t left = end - start; left > 0;) {
        const auto step = std::min(static_cast<std::size_t>(left), kLargestStep);
        const ssize_t copied = ::copy_file_range(from, nullptr, to, nullptr, step, 0);
        if (copied == 0) return 0;
        if (copied > 0)
            left -= copied;
        else if (IsNoCopyInKernel(errno))
            return CopyThroughMemory(from, to, left);
        else if (errno != EINTR)
            return errno;
    }
    return 0;
}

/// Copies what is not a hole.
int CopyAroundHoles(int from, int to, off_t size) {
    for (off_t end = 0; end < size;) {
        const off_t start = ::lseek(from, end, SEEK_DATA);
        if (start == -1) return errno == ENXIO ? 0 : errno;
        end = ::lseek(from, start, SEEK_HOLE);
        if (end == -1) return errno;
        if (const int error = CopyRange(from, to, start, end)) return error;
    }
    return 0;
}

int CopyContents(int from, int to, const struct stat& source) {
    // Files that the kernel makes up as they are read say that they are empty.
    if (source.st_size == 0) return CopyThroughMemory(from, to, std::numeric_limits<off_t>::max());
    if (source.st_size <= kSmallFile) return CopyThroughMemory(from, to, source.st_size);
    if (source.st_blocks >= source.st_size / 512) return CopyRange(from, to, 0, source.st_size);
    const int error = CopyAroundHoles(from, to, source.st_size);
    if (error) return error;
    return ::ftruncate(to, source.st_size) ? errno : 0;
}

int CopyAll(int from, int to) {
    struct stat source;
    if (::fstat(from, &source)) return errno;
    if (const int error = CopyContents(from, to, source)) return error;
    const timespec times[2] = {source.st_atim, source.st_mtim};
    if (::futimens(to, times) || ::fchmod(to, source.st_mode & 0777)) return errno;
    return 0;
}

/// A file in the target's folder that is gone at the end of the scope unless it took the target's place. It has no name of
/// its own where the file system makes such files: then nothing is left behind, however the process ends.
class Staged {
public:
    explicit Staged(const std::string& target) : m_target(target) {
        const std::string folder = FolderOf(target);
        m_file = Owned(::open(folder.empty() ? "." : folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600));
        if (m_file) return;
        const auto make = [&](const std::string& name) {
            m_file = Owned(::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
            return m_file ? 0 : errno;
        };
        errno = TakeName(make);
    }
    ~Staged() {
        if (!m_name.empty()) ::unlink(m_name.c_str());
    }
    Staged(const Staged&) = delete;
    Staged& operator=(const Staged&) = delete;

    explicit operator bool() const { return static_cast<bool>(m_file); }
    int Get() const { return m_file.Get(); }

    // Each gives 0 or an error number.

    int MoveToFreeName() {
        if (m_name.empty()) return Link(m_target);
        return Moved(::renameat2(AT_FDCWD, m_name.c_str(), AT_FDCWD, m_target.c_str(), RENAME_NOREPLACE));
    }
    int Replace() {
        const int error = m_name.empty() ? TakeName([&](const std::string& name) { return Link(name); }) : 0;
        return error ? error : Moved(::rename(m_name.c_str(), m_target.c_str()));
    }
    /// The system may tell only now that it could not keep what was written.
    int Close() {
        const int result = ::close(m_file.Release());
        return result && errno != EINTR ? errno : 0;
    }

private:
    static std::string FolderOf(const std::string& path) { return path.substr(0, path.rfind('/') + 1); }

    /// Tries names beside the target's until one is free.
    template <class Take>
    int TakeName(Take take) {
        static std::atomic<unsigned> count = 0;
        int error = EEXIST;
        for (int tries = 0; error == EEXIST && tries < 100; ++tries) {
            char own[48];
            std::snprintf(own, sizeof own, ".qv%lx.%x", static_cast<unsigned long>(::getpid()), count++);
            const std::string name = FolderOf(m_target) + own;
            error = take(name);
            if (!error) m_name = name;
        }
        return error;
    }

    int Link(const std::string& name) {
        if (!::linkat(m_file.Get(), "", AT_FDCWD, name.c_str(), AT_EMPTY_PATH)) return 0;
        if (errno == EEXIST) return errno;
        // Not everybody may link a descriptor as it is.
        const std::string unnamed = "/proc/self/fd/" + std::to_string(m_file.Get());
        return ::linkat(AT_FDCWD, unnamed.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) ? errno : 0;
    }

    int Moved(int result) {
        if (result) return errno;
        m_name.clear();
        return 0;
    }

    const std::string& m_target;
    std::string m_name;
    Owned m_file;
};

FileFailure NoFile(const struct stat& status) {
    errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    return {FileCause::AccessDenied, static_cast<unsigned long>(errno)};
}

/// Takes the target's place when nobody uses it.
FileFailure ReplaceUnused(Staged& staged, const char* to) {
    struct stat target;
    const bool there = !::stat(NativePath(to).c_str(), &target);
    if (there && !S_ISREG(target.st_mode)) return NoFile(target);
    FileHandle handle = kNoFile;
    if (there)
        if (const FileFailure failure = OpenFile(to, {.write = true, .denyWrite = true}, handle)) return failure;
    const Owned held(static_cast<int>(handle));
    errno = staged.Replace();
    return errno ? LastFailureAt(to) : FileFailure{};
}

FileFailure Place(Staged& staged, const char* to) {
    const int error = staged.MoveToFreeName();
    if (error == 0) return {};
    if (error == EEXIST || error == EINVAL || error == ENOSYS) return ReplaceUnused(staged, to);
    errno = error;
    return LastFailureAt(to);
}

}  // namespace

FileFailure CopyWholeFile(const char* from, const char* to) {
    struct stat source;
    if (::stat(NativePath(from).c_str(), &source)) return LastFailureAt(from);
    if (!S_ISREG(source.st_mode)) return NoFile(source);
    FileHandle handle = kNoFile;
    if (const FileFailure failure = OpenFile(from, {.read = true}, handle)) return failure;
    const Owned file(static_cast<int>(handle));
    const std::string target = NativePath(to);
    Staged staged(target);
    if (!staged) return LastFailureAt(to);
    errno = CopyAll(file.Get(), staged.Get());
    if (errno) return LastFailure();
    if (const FileFailure failure = Place(staged, to)) return failure;
    errno = staged.Close();
    if (!errno) return {};
    const FileFailure failure = LastFailure();
    ::unlink(target.c_str());
    return failure;
}

}  // namespace qv::platform
