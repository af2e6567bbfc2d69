#include "platform/File.h"

#include <linux/magic.h>

#include <cerrno>

#include "platform/posix/UniqueFd.h"

namespace qv::platform {
namespace {

static_assert(sizeof(off_t) == 8, "files are longer than 2 GB");

int Descriptor(FileHandle handle) {
    return static_cast<int>(handle);
}

/// Whether the file is on this machine.
bool IsLocal(FileHandle handle) {
    struct statfs system;
    const auto asked = sys::fstatfs(Descriptor(handle), &system);
    return asked.ok() && (system.f_type == EXT4_SUPER_MAGIC || system.f_type == XFS_SUPER_MAGIC ||
                          system.f_type == BTRFS_SUPER_MAGIC || system.f_type == TMPFS_MAGIC ||
                          system.f_type == OVERLAYFS_SUPER_MAGIC);
}

}  // namespace

std::string_view TextLineEnd() {
    return "\n";
}

Status ReadBytes(FileHandle handle, void* buffer, std::size_t size, std::size_t& count) {
    const auto got = sys::read(Descriptor(handle), buffer, size);
    count = got.ok() ? static_cast<std::size_t>(got.value()) : 0;
    return got.status();
}

Status ReadBytesAt(FileHandle handle, std::uint64_t position, void* buffer, std::size_t size, std::size_t& count) {
    const auto got = sys::pread(Descriptor(handle), buffer, size, static_cast<off_t>(position));
    count = got.ok() ? static_cast<std::size_t>(got.value()) : 0;
    return got.status();
}

Status WriteBytes(FileHandle handle, const void* data, std::size_t size) {
    for (auto* next = static_cast<const char*>(data); size > 0;) {
        const auto written = sys::write(Descriptor(handle), next, size);
        if (!written.ok()) return written.status();
        next += written.value();
        size -= static_cast<std::size_t>(written.value());
    }
    return {};
}

Status FlushToDisk(FileHandle handle) {
    const auto flushed = sys::fsync(Descriptor(handle));
    // Pipes and terminals have no disk.
    return flushed.error() == EINVAL || flushed.error() == EROFS ? Status() : flushed.status();
}

Status SeekTo(FileHandle handle, std::int64_t offset, SeekFrom from, std::uint64_t& position) {
    constexpr int kWhence[] = {SEEK_SET, SEEK_CUR, SEEK_END};
    const auto reached = sys::lseek(Descriptor(handle), offset, kWhence[static_cast<int>(from)]);
    const bool nowhere = reached.error() == EINVAL || reached.error() == EOVERFLOW || reached.error() == ENXIO;
    if (nowhere) return {FileCause::BadSeek, reached.error()};
    if (reached.ok()) position = static_cast<std::uint64_t>(reached.value());
    return reached.status();
}

// Servers answer size queries from caches, their own or this machine's; seeking to the end of data bypasses them.
Status SeekToServerEnd(FileHandle handle, std::uint64_t& position) {
    struct statx status;
    const auto asked = sys::statx(Descriptor(handle), "", AT_EMPTY_PATH | AT_STATX_FORCE_SYNC, STATX_SIZE, &status);
    if (!asked.ok()) return SeekTo(handle, 0, SeekFrom::End, position);
    auto end = static_cast<off_t>(status.stx_size);
    if (!IsLocal(handle))
        for (auto next = sys::lseek(Descriptor(handle), end, SEEK_HOLE); next.ok() && next.value() > end;
             next = sys::lseek(Descriptor(handle), end, SEEK_HOLE))
            end = next.value();
    return SeekTo(handle, end, SeekFrom::Begin, position);
}

Status FlushToServer(FileHandle handle) {
    return IsLocal(handle) ? Status() : FlushToDisk(handle);
}

Status LengthOf(FileHandle handle, std::uint64_t& length) {
    struct stat status;
    const auto asked = sys::fstat(Descriptor(handle), &status);
    if (asked.ok()) length = static_cast<std::uint64_t>(status.st_size);
    return asked.status();
}

Status Resize(FileHandle handle, std::uint64_t length) {
    const auto resized = sys::ftruncate(Descriptor(handle), static_cast<off_t>(length));
    if (!resized.ok()) return resized.status();
    std::uint64_t position;
    return SeekTo(handle, 0, SeekFrom::End, position);
}

Status CloseFile(FileHandle handle) {
    return UniqueFd(Descriptor(handle)).Close();
}

}  // namespace qv::platform
