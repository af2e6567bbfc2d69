#pragma once

/// @file LZX as used in cabinets ([MS-CAB] for its place in them, [MS-PATCH] for the data): a window of 32 KB to 2 MB
/// for the whole folder, and blocks of literals and matches with Huffman codes, each given as a difference from the
/// previous one. Every 32 KB of data, a frame, begin in a new cabinet block, regardless of the LZX blocks.

#include "cabinet/LzxTrees.h"
#include "cabinet/Mszip.h"

namespace qv::cabinet {

/// Decompresses a folder's frames in order. The constructor allocates all memory. Not thread-safe, but not tied to a
/// thread.
class LzxDecompressor {
public:
    /// @param windowBits  kSmallestLzxWindow to kLargestLzxWindow. @throws EngineFailure NoMemory.
    LzxDecompressor(IMemory& memory, unsigned windowBits);

    unsigned WindowBits() const { return m_windowBits; }
    /// The next frame is a folder's first.
    void Reset();
    /// Returns true if the data yields exactly `out.size()` bytes, at most kBlockSize; only the folder's last frame may
    /// be shorter. After false, the rest of the folder cannot be decompressed.
    bool Decompress(Bytes frame, std::span<unsigned char> out);

private:
    enum BlockType : unsigned { kVerbatim = 1, kAligned = 2, kUncompressed = 3 };
    using Offsets = std::array<std::uint32_t, 3>;

    bool DecodeFrame(LzxBits& bits, std::size_t size);
    void MakeRoom(std::size_t size);
    bool ReadHead(LzxBits& bits);
    bool ReadBlockHead(LzxBits& bits);
    bool ReadCodes(LzxBits& bits);
    bool ReadOffsets(LzxBits& bits);
    bool DecodeRun(LzxBits& bits, std::size_t size);
    template <bool kIsAligned>
    bool DecodeSymbols(LzxBits& bits, std::size_t size);
    template <bool kIsAligned>
    std::uint32_t TakeOffset(LzxBits& bits, unsigned slot, Offsets& offsets) const;
    bool CopyBytes(LzxBits& bits, std::size_t size);
    void RestoreCalls(std::span<unsigned char> frame) const;

    const unsigned m_windowBits;
    const std::size_t m_windowSize;
    const std::size_t m_mainSymbols;  ///< literals, and matches by slot, depending on the window
    Buffer m_window;                  ///< two windows of data before call translation; the last one is kept

    std::uint64_t m_position = 0;  ///< of the next byte in the folder
    std::size_t m_at = 0;          ///< of the next byte in the buffer
    bool m_started = false, m_failed = false, m_isLast = false;
    std::uint32_t m_translationSize = 0;  ///< 0 without call translation
    Offsets m_offsets = {};               ///< of the last matches, the most recent first
    BlockType m_type = kVerbatim;
    std::uint32_t m_blockLeft = 0;  ///< bytes of the current block
    bool m_needsPad = false;        ///< the padding byte after a block of odd size is yet to come

    LzxMainCode::Lengths m_mainLengths;
    LzxLengthCode::Lengths m_lengthLengths;
    LzxMainCode m_main;
    LzxLengthCode m_length;
    LzxAlignedCode m_aligned;
};

}  // namespace qv::cabinet
