#pragma once

/// @file MSZIP as [MS-MCI] publishes it: each block of at most 32 KB is "CK" and a whole deflate stream, which may refer to
/// the block before it. Objects take their memory when they are made; afterwards any one thread may use them.

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

    /// Compresses a block of 1 to kBlockSize bytes into room for kLargestCompressed. The result depends on `history`, the
    /// block before it, and `block` alone. Returns its size; 0 when the compressor broke down.
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

    /// True when the block gives exactly as many bytes as `out` holds.
    bool Decompress(Bytes history, Bytes block, std::span<unsigned char> out);

private:
    z_stream m_stream{};
};

}  // namespace qv::cabinet
