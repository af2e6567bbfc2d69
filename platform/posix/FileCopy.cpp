#include "platform/FileCopy.h"

#include <algorithm>
#include <cerrno>
#include <limits>

#include "platform/AtomicFile.h"
#include "platform/posix/sharing/OpenInTurn.h"

namespace qv::platform {
namespace {

/// Up to here, reading and writing costs less than setting up a copy in the kernel.
constexpr off_t kSmallFile = 64 * 1024;
constexpr std::size_t kBufferSize = 64 * 1024;
constexpr std::size_t kLargestStep = 1 << 30;
/// The largest step when copied bytes are reported.
constexpr std::size_t kObservedStep = 16 << 20;

/// Copies through memory from the files' positions, at most `length` bytes.
Status CopyThroughMemory(int from, int to, off_t length, const CopiedBytes& report) {
    alignas(64) char buffer[kBufferSize];
    while (length > 0) {
        const auto wanted = std::min(static_cast<std::size_t>(length), sizeof buffer);
        std::size_t count = 0;
        if (const Status read = ReadBytes(from, buffer, wanted, count); !read.ok()) return read;
        if (count == 0) return {};  // it has become shorter
        if (const Status written = WriteBytes(to, buffer, count); !written.ok()) return written;
        if (report) report(count);
        length -= static_cast<off_t>(count);
    }
    return {};
}

bool IsNoCopyInKernel(unsigned long error) {
    return error == EXDEV || error == EINVAL || error == ENOSYS || error == EOPNOTSUPP || error == EPERM;
}

/// Lets the kernel copy, or share, the bytes from `start` to `end`; what it refuses is copied through memory.
Status CopyRange(int from, int to, off_t start, off_t end, const CopiedBytes& report) {
    for (const int file : {from, to})
        if (const auto reached = sys::lseek(file, start, SEEK_SET); !reached.ok()) return reached.status();
    for (off_t left = end - start; left > 0;) {
        const auto step = std::min(static_cast<std::size_t>(left), report ? kObservedStep : kLargestStep);
        const auto copied = sys::copy_file_range(from, nullptr, to, nullptr, step, 0);
        if (IsNoCopyInKernel(copied.error())) return CopyThroughMemory(from, to, left, report);
        if (!copied.ok() || copied.value() == 0) return copied.status();
        if (report) report(static_cast<std::uint64_t>(copied.value()));
        left -= copied.value();
    }
    return {};
}

/// Copies what is not a hole.
Status CopyAroundHoles(int from, int to, off_t size, const CopiedBytes& report) {
    for (off_t end = 0; end < size;) {
        const auto data = sys::lseek(from, end, SEEK_DATA);
        if (data.error() == ENXIO) return {};
        if (!data.ok()) return data.status();
        const auto hole = sys::lseek(from, data.value(), SEEK_HOLE);
        if (!hole.ok()) return hole.status();
        end = hole.value();
        if (const Status copied = CopyRange(from, to, data.value(), end, report); !copied.ok()) return copied;
    }
    return {};
}

Status CopyContents(int from, int to, const struct stat& source, const CopiedBytes& report) {
    // Files that the kernel makes up as they are read say that they are empty.
    if (source.st_size == 0) return CopyThroughMemory(from, to, std::numeric_limits<off_t>::max(), report);
    if (source.st_size <= kSmallFile) return CopyThroughMemory(from, to, source.st_size, report);
    if (source.st_blocks >= source.st_size / 512) return CopyRange(from, to, 0, source.st_size, report);
    const Status copied = CopyAroundHoles(from, to, source.st_size, report);
    return copied.ok() ? sys::ftruncate(to, source.st_size).status() : copied;
}

Status CopyAll(int from, int to, const CopiedBytes& report) {
    struct stat source;
    if (const auto asked = sys::fstat(from, &source); !asked.ok()) return asked.status();
    if (const Status copied = CopyContents(from, to, source, report); !copied.ok()) return copied;
    const timespec times[2] = {source.st_atim, source.st_mtim};
    if (const auto set = sys::futimens(to, times); !set.ok()) return set.status();
    return sys::fchmod(to, source.st_mode & 0777).status();
}

Status NoFile(const struct stat& status) {
    const bool folder = S_ISDIR(status.st_mode);
    return {FileCause::AccessDenied, static_cast<unsigned long>(folder ? EISDIR : EINVAL)};
}

/// Takes the target's place when no program uses it. A link is replaced, whether its file is in use or not.
Status ReplaceUnused(AtomicFile& copy, const Location& to) {
    struct stat target;
    const bool exists = sys::fstatat(to.folder, to.name.c_str(), &target, 0).ok();
    if (exists && !S_ISREG(target.st_mode)) return NoFile(target);
    UniqueFd held;
    const auto opened = OpenInTurn(to, {.write = true, .denyWrite = true, .noLink = true}, held);
    const bool free = opened.ok() || opened.error() == ENOENT || opened.error() == ELOOP;
    return free ? copy.Commit(IfExists::Replace, Durability::Deferred) : to.StatusOf(opened);
}

Status OpenSource(const Location& from, LastName lastName, UniqueFd& file) {
    struct stat source;
    const bool noLink = lastName == LastName::NoLink;
    const auto asked = sys::fstatat(from.folder, from.name.c_str(), &source, noLink ? AT_SYMLINK_NOFOLLOW : 0);
    if (!asked.ok()) return from.StatusOf(asked);
    if (S_ISLNK(source.st_mode)) return Status::OfError(ELOOP);
    if (!S_ISREG(source.st_mode)) return NoFile(source);
    return from.StatusOf(OpenInTurn(from, {.read = true, .noLink = noLink}, file));
}

/// `create` makes the new file beside the target.
template <class Create>
Status Write(AtomicFile& copy, const Location& from, LastName lastName, const CopiedBytes& report, Create create) {
    UniqueFd file;
    if (const Status opened = OpenSource(from, lastName, file); !opened.ok()) return opened;
    if (const Status created = create(copy); !created.ok()) return created;
    return CopyAll(file.Get(), static_cast<int>(copy.Handle()), report);
}

Status Place(AtomicFile& copy, const Location& to) {
    const Status placed = copy.Commit(IfExists::Fail, Durability::Deferred);
    return placed.error() == EEXIST ? ReplaceUnused(copy, to) : placed;
}

}  // namespace

Status CopyWholeFile(const char* from, const char* to) {
    AtomicFile copy;
    const Status written = Write(copy, Location::OfPath(from), LastName::MayBeLink, {},
                                 [to](AtomicFile& file) { return file.Create(to); });
    return written.ok() ? Place(copy, Location::OfPath(to)) : written;
}

Status CopyFileIn(const Folder& from, const std::string& name, LastName source, const Folder& to,
                  const std::string& newName, const CopiedBytes& copied) {
    AtomicFile copy;
    const Location target = Location::In(to, newName);
    const Status written = Write(copy, Location::In(from, name), source, copied,
                                 [&](AtomicFile& file) { return file.CreateIn(to, target.name); });
    return written.ok() ? Place(copy, target) : written;
}

struct FileCopy::Body {
    AtomicFile copy;
    Location target;
    std::uint64_t size = 0;
    Status written = {};
};

FileCopy::FileCopy(const Folder& from, const std::string& name, LastName source, const Folder& to,
                   const std::string& newName)
    : m_body(std::make_unique<Body>(Body{.copy = {}, .target = Location::In(to, newName)})) {
    m_body->written = Write(
        m_body->copy, Location::In(from, name), source, [this](std::uint64_t bytes) { m_body->size += bytes; },
        [&](AtomicFile& file) { return file.CreateIn(to, m_body->target.name); });
}

FileCopy::FileCopy(FileCopy&&) noexcept = default;
FileCopy::~FileCopy() = default;

Status FileCopy::Commit(const CopiedBytes& copied) {
    if (copied && m_body->size > 0) copied(m_body->size);
    return m_body->written.ok() ? Place(m_body->copy, m_body->target) : m_body->written;
}

}  // namespace qv::platform
