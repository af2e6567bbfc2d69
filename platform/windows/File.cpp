#include "platform/File.h"

#include <algorithm>

#include "platform/windows/UniqueHandle.h"

namespace qv::platform {
namespace {

constexpr std::size_t kLargestTransfer = 0x7FFFF000;
/// A write of this size or less is not tried again in pieces when the system lacks memory.
constexpr DWORD kSmallestPiece = 4096;

DWORD TransferSize(std::size_t size) {
    return static_cast<DWORD>(std::min(size, kLargestTransfer));
}

LARGE_INTEGER Large(std::int64_t value) {
    LARGE_INTEGER large;
    large.QuadPart = value;
    return large;
}

}  // namespace

std::string_view TextLineEnd() {
    return "\r\n";
}

Status ReadBytes(FileHandle handle, void* buffer, std::size_t size, std::size_t& count) {
    DWORD got = 0;
    const auto read = sys::ReadFile(SystemHandle(handle), buffer, TransferSize(size), &got, nullptr);
    count = read.ok() ? got : 0;
    // A pipe without a writer is at its end.
    return read.error() == ERROR_BROKEN_PIPE ? Status() : read.status();
}

Status ReadBytesAt(FileHandle handle, std::uint64_t position, void* buffer, std::size_t size, std::size_t& count) {
    DWORD got = 0;
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(position & 0xFFFFFFFF);
    place.OffsetHigh = static_cast<DWORD>(position >> 32);
    const auto read = sys::ReadFile(SystemHandle(handle), buffer, TransferSize(size), &got, &place);
    count = read.ok() ? got : 0;
    return read.error() == ERROR_HANDLE_EOF ? Status() : read.status();
}

Status WriteBytes(FileHandle handle, const void* data, std::size_t size) {
    std::size_t most = kLargestTransfer;
    for (auto* next = static_cast<const char*>(data); size > 0;) {
        DWORD count = 0;
        const DWORD piece = TransferSize(std::min(size, most));
        const auto written = sys::WriteFile(SystemHandle(handle), next, piece, &count, nullptr);
        // A console of Windows 7 does not accept 64 KB at once.
        if (written.error() == ERROR_NOT_ENOUGH_MEMORY && piece > kSmallestPiece) {
            most = piece / 2;
            continue;
        }
        if (!written.ok()) return written.status();
        if (count == 0) return Status::OfError(ERROR_DISK_FULL);
        next += count;
        size -= count;
    }
    return {};
}

Status FlushToDisk(FileHandle handle) {
    const auto flushed = sys::FlushFileBuffers(SystemHandle(handle));
    // A read-only file has nothing to flush; consoles have no disk.
    const bool needless = flushed.error() == ERROR_ACCESS_DENIED || flushed.error() == ERROR_INVALID_FUNCTION;
    return needless ? Status() : flushed.status();
}

Status SeekTo(FileHandle handle, std::int64_t offset, SeekFrom from, std::uint64_t& position) {
    constexpr DWORD kMethod[] = {FILE_BEGIN, FILE_CURRENT, FILE_END};
    LARGE_INTEGER reached;
    const auto sought =
        sys::SetFilePointerEx(SystemHandle(handle), Large(offset), &reached, kMethod[static_cast<int>(from)]);
    const bool nowhere = sought.error() == ERROR_NEGATIVE_SEEK || sought.error() == ERROR_INVALID_PARAMETER;
    if (nowhere) return {FileCause::BadSeek, sought.error()};
    if (sought.ok()) position = static_cast<std::uint64_t>(reached.QuadPart);
    return sought.status();
}

Status SeekToServerEnd(FileHandle handle, std::uint64_t& position) {
    return SeekTo(handle, 0, SeekFrom::End, position);  // share modes prevent the system from caching here
}

Status FlushToServer(FileHandle) {
    return {};  // closing flushes
}

Status LengthOf(FileHandle handle, std::uint64_t& length) {
    LARGE_INTEGER size;
    const auto asked = sys::GetFileSizeEx(SystemHandle(handle), &size);
    if (asked.ok()) length = static_cast<std::uint64_t>(size.QuadPart);
    return asked.status();
}

Status Resize(FileHandle handle, std::uint64_t length) {
    std::uint64_t position;
    const Status sought = SeekTo(handle, static_cast<std::int64_t>(length), SeekFrom::Begin, position);
    return sought.ok() ? sys::SetEndOfFile(SystemHandle(handle)).status() : sought;
}

Status CloseFile(FileHandle handle) {
    return sys::CloseHandle(SystemHandle(handle)).status();
}

}  // namespace qv::platform
