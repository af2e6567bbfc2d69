#include "platform/File.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace qv::platform {
namespace {

static_assert(sizeof(off_t) == 8, "files are longer than 2 GB");

int Descriptor(FileHandle handle) {
    return static_cast<int>(handle);
}

/// Repeats a system call for as long as signals interrupt it.
template <class Call>
auto Uninterrupted(Call call) {
    auto result = call();
    while (result == -1 && errno == EINTR) result = call();
    return result;
}

template <class Call>
FileFailure Checked(Call call) {
    return Uninterrupted(call) == -1 ? LastFailure() : FileFailure{};
}

}  // namespace

std::string_view TextLineEnd() {
    return "\n";
}

FileFailure ReadBytes(FileHandle handle, void* buffer, std::size_t size, std::size_t& count) {
    const ssize_t got = Uninterrupted([&] { return ::read(Descriptor(handle), buffer, size); });
    count = got > 0 ? static_cast<std::size_t>(got) : 0;
    return got < 0 ? LastFailure() : FileFailure{};
}

FileFailure WriteBytes(FileHandle handle, const void* data, std::size_t size) {
    for (auto* next = static_cast<const char*>(data); size > 0;) {
        const ssize_t written = Uninterrupted([&] { return ::write(Descriptor(handle), next, size); });
        if (written < 0) return LastFailure();
        next += written;
        size -= static_cast<std::size_t>(written);
    }
    return {};
}

FileFailure FlushToDisk(FileHandle handle) {
    const FileFailure failure = Checked([&] { return ::fsync(Descriptor(handle)); });
    // Pipes and terminals have no disk behind them.
    return failure.error == EINVAL || failure.error == EROFS ? FileFailure{} : failure;
}

FileFailure SeekTo(FileHandle handle, std::int64_t offset, SeekFrom from, std::uint64_t& position) {
    constexpr int kWhence[] = {SEEK_SET, SEEK_CUR, SEEK_END};
    const off_t reached = ::lseek(Descriptor(handle), offset, kWhence[static_cast<int>(from)]);
    if (reached == -1)
        return errno == EBADF ? LastFailure() : FileFailure{FileCause::BadSeek, static_cast<unsigned long>(errno)};
    position = static_cast<std::uint64_t>(reached);
    return {};
}

FileFailure LengthOf(FileHandle handle, std::uint64_t& length) {
    struct stat status;
    if (::fstat(Descriptor(handle), &status)) return LastFailure();
    length = static_cast<std::uint64_t>(status.st_size);
    return {};
}

FileFailure Resize(FileHandle handle, std::uint64_t length) {
    const FileFailure failure = Checked([&] { return ::ftruncate(Descriptor(handle), static_cast<off_t>(length)); });
    if (failure) return failure;
    std::uint64_t position;
    return SeekTo(handle, 0, SeekFrom::End, position);
}

FileFailure CloseFile(FileHandle handle) {
    // An interrupted close has closed: the number may be another thread's file already.
    return ::close(Descriptor(handle)) && errno != EINTR ? LastFailure() : FileFailure{};
}

}  // namespace qv::platform
