#pragma once

/// @file MSZIP as defined by [MS-MCI]: each block of at most 32 KB is "CK" and a complete deflate stream, which may
/// refer to the previous block. Constructors allocate all memory. Not thread-safe, but not tied to a thread.

#include <zlib.h>

#include <memory>
#include <span>

#include "cabinet/Callbacks.h"
#include "cabinet/Format.h"

namespace qv::cabinet {

using Bytes = std::span<const unsigned char>;

class MszipCompressor {
public:
    /// @throws EngineFailure NoMemory.
    explicit MszipCompressor(IMemory& memory);
    ~MszipCompressor();
    MszipCompressor(const MszipCompressor&) = delete;
    MszipCompressor& operator=(const MszipCompressor&) = delete;

    /// Compresses a block of 1 to kBlockSize bytes into a buffer of kLargestCompressed bytes. The result depends only
    /// on `block` and `history`, the previous block. Returns its size; 0 if the compressor fails.
    std::size_t Compress(Bytes history, Bytes block, unsigned char* out);

private:
    z_stream m_stream{};
};

class MszipDecompressor {
public:
    /// @throws EngineFailure NoMemory.
    explicit MszipDecompressor(IMemory& memory);
    ~MszipDecompressor();
    MszipDecompressor(const MszipDecompressor&) = delete;
    MszipDecompressor& operator=(const MszipDecompressor&) = delete;

    /// Returns true if the block yields exactly `out.size()` bytes.
    bool Decompress(Bytes history, Bytes block, std::span<unsigned char> out);

private:
    z_stream m_stream{};
};

}  // namespace qv::cabinet
