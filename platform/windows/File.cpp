#include "platform/File.h"

#include <windows.h>

#include <algorithm>

namespace qv::platform {
namespace {

constexpr std::size_t kLargestTransfer = 0x7FFFF000;

HANDLE System(FileHandle handle) {
    return reinterpret_cast<HANDLE>(handle);
}

LARGE_INTEGER Large(std::int64_t value) {
    LARGE_INTEGER large;
    large.QuadPart = value;
    return large;
}

FileFailure Checked(BOOL succeeded) {
    return succeeded ? FileFailure{} : LastFailure();
}

}  // namespace

std::string_view TextLineEnd() {
    return "\r\n";
}

FileFailure ReadBytes(FileHandle handle, void* buffer, std::size_t size, std::size_t& count) {
    DWORD got = 0;
    const auto wanted = static_cast<DWORD>(std::min(size, kLargestTransfer));
    const bool done = ::ReadFile(System(handle), buffer, wanted, &got, nullptr);
    count = done ? got : 0;
    // A pipe whose writer is gone has ended.
    return done || ::GetLastError() == ERROR_BROKEN_PIPE ? FileFailure{} : LastFailure();
}

FileFailure WriteBytes(FileHandle handle, const void* data, std::size_t size) {
    for (auto* next = static_cast<const char*>(data); size > 0;) {
        DWORD written = 0;
        const auto part = static_cast<DWORD>(std::min(size, kLargestTransfer));
        if (!::WriteFile(System(handle), next, part, &written, nullptr)) return LastFailure();
        if (written == 0) return {FileCause::DiskFull, ERROR_DISK_FULL};
        next += written;
        size -= written;
    }
    return {};
}

FileFailure FlushToDisk(FileHandle handle) {
    const FileFailure failure = Checked(::FlushFileBuffers(System(handle)));
    // A file that is open for reading only has nothing to hand over; consoles have no disk behind them.
    return failure.error == ERROR_ACCESS_DENIED || failure.error == ERROR_INVALID_FUNCTION ? FileFailure{} : failure;
}

FileFailure SeekTo(FileHandle handle, std::int64_t offset, SeekFrom from, std::uint64_t& position) {
    constexpr DWORD kMethod[] = {FILE_BEGIN, FILE_CURRENT, FILE_END};
    LARGE_INTEGER reached;
    if (!::SetFilePointerEx(System(handle), Large(offset), &reached, kMethod[static_cast<int>(from)])) {
        const DWORD error = ::GetLastError();
        return error == ERROR_INVALID_HANDLE ? LastFailure() : FileFailure{FileCause::BadSeek, error};
    }
    position = static_cast<std::uint64_t>(reached.QuadPart);
    return {};
}

FileFailure LengthOf(FileHandle handle, std::uint64_t& length) {
    LARGE_INTEGER size;
    if (!::GetFileSizeEx(System(handle), &size)) return LastFailure();
    length = static_cast<std::uint64_t>(size.QuadPart);
    return {};
}

FileFailure Resize(FileHandle handle, std::uint64_t length) {
    std::uint64_t position;
    const FileFailure failure = SeekTo(handle, static_cast<std::int64_t>(length), SeekFrom::Begin, position);
    return failure ? failure : Checked(::SetEndOfFile(System(handle)));
}

FileFailure CloseFile(FileHandle handle) {
    return Checked(::CloseHandle(System(handle)));
}

}  // namespace qv::platform
