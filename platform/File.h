#pragma once

/// @file Files by handle. A handle is the system's own (a descriptor on Linux); one thread at a time uses it.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/Status.h"

namespace qv::platform {

using FileHandle = std::intptr_t;
inline constexpr FileHandle kNoFile = -1;

/// What a line feed is written as in a text file.
std::string_view TextLineEnd();

/// Reads at most `size` bytes; `count` is 0 at the end of the file only. May give fewer bytes than there are.
Status ReadBytes(FileHandle handle, void* buffer, std::size_t size, std::size_t& count);
/// The same from a place of a file that can be sought; where the next ReadBytes reads is not certain afterwards. Several
/// threads may use it at a time.
Status ReadBytesAt(FileHandle handle, std::uint64_t position, void* buffer, std::size_t size, std::size_t& count);
/// Writes all bytes, or fails with an unknown part of them written.
Status WriteBytes(FileHandle handle, const void* data, std::size_t size);
/// Hands what was written to the disk.
Status FlushToDisk(FileHandle handle);

enum class SeekFrom { Begin, Current, End };
Status SeekTo(FileHandle handle, std::int64_t offset, SeekFrom from, std::uint64_t& position);
/// Moves to the end of the file as its server knows it, where the file system has one: other machines may have written.
Status SeekToServerEnd(FileHandle handle, std::uint64_t& position);
/// On a network file system, brings what was written to the server, where other machines find it. Local file systems need
/// nothing of the kind.
Status HandToServer(FileHandle handle);
Status LengthOf(FileHandle handle, std::uint64_t& length);
/// Cuts the file, or extends it with zero bytes; the position is then its end.
Status Resize(FileHandle handle, std::uint64_t length);

/// The handle is gone afterwards, also when the close reports that the system could not keep what was written.
Status CloseFile(FileHandle handle);

}  // namespace qv::platform
