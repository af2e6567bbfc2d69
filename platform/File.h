#pragma once

/// @file Files by handle. A handle is the system's (a descriptor on Linux). Using one handle is not thread-safe.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/Status.h"

namespace qv::platform {

using FileHandle = std::intptr_t;
inline constexpr FileHandle kNoFile = -1;

/// Returns the representation of a line feed in a text file.
std::string_view TextLineEnd();

/// Reads at most `size` bytes; `count` is 0 only at the end of the file. May read fewer bytes than available.
Status ReadBytes(FileHandle handle, void* buffer, std::size_t size, std::size_t& count);
/// Does the same at a position of a seekable file; the position of the next ReadBytes is then unspecified. Thread-safe.
Status ReadBytesAt(FileHandle handle, std::uint64_t position, void* buffer, std::size_t size, std::size_t& count);
/// Writes all bytes; after a failure an unknown part of them is written.
Status WriteBytes(FileHandle handle, const void* data, std::size_t size);
/// Flushes what was written to the disk.
Status FlushToDisk(FileHandle handle);

enum class SeekFrom { Begin, Current, End };
Status SeekTo(FileHandle handle, std::int64_t offset, SeekFrom from, std::uint64_t& position);
/// Moves to the end of the file as known to the server of a network file system: other machines may have written.
Status SeekToServerEnd(FileHandle handle, std::uint64_t& position);
/// On a network file system, passes what was written to the server, where other machines can see it. No-op on local
/// file systems.
Status FlushToServer(FileHandle handle);
Status LengthOf(FileHandle handle, std::uint64_t& length);
/// Truncates the file, or extends it with zero bytes; the position is then its end.
Status Resize(FileHandle handle, std::uint64_t length);

/// Closes the handle, also if the close reports that what was written could not be stored.
Status CloseFile(FileHandle handle);

}  // namespace qv::platform
