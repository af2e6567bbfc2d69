#pragma once

/// @file LZX as cabinets use it ([MS-CAB] for its place in them, [MS-PATCH] for the data): a window of 32 KB to 2 MB that
/// lasts for the whole folder, and blocks of literals and matches under Huffman codes, each given as a difference from the
/// one before. Every 32 KB of data, a frame, begin in a cabinet block of their own, whatever block of LZX they lie in.

#include "cabinet/LzxTrees.h"
#include "cabinet/Mszip.h"

namespace qv::cabinet {

/// Decompresses a folder's frames, in their order. Takes its memory when it is made; afterwards any one thread may use it.
class LzxDecompressor {
public:
    /// @param windowBits  kSmallestLzxWindow to kLargestLzxWindow. @throws EngineFailure NoMemory.
    LzxDecompressor(IMemory& memory, unsigned windowBits);

    unsigned WindowBits() const { return m_windowBits; }
    /// The next frame is a folder's first.
    void Reset();
    /// True when the data gives exactly as many bytes as `out` holds, at most kBlockSize; only the folder's last frame may
    /// have fewer. After false, the folder cannot go on.
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
    const std::size_t m_mainSymbols;  ///< literals, and matches by the slots that the window has
    Buffer m_window;                  ///< two windows of data before the translation of calls; the last one is kept

    std::uint64_t m_position = 0;  ///< of the next byte in the folder
    std::size_t m_at = 0;          ///< of the next byte in the buffer
    bool m_started = false, m_failed = false, m_isLast = false;
    std::uint32_t m_translationSize = 0;  ///< 0 without a translation of calls
    Offsets m_offsets = {};               ///< of the last matches, the most recent first
    BlockType m_type = kVerbatim;
    std::uint32_t m_blockLeft = 0;  ///< bytes of the present block
    bool m_needsPad = false;        ///< the byte that follows a block of an odd size is still to come

    LzxMainCode::Lengths m_mainLengths;
    LzxLengthCode::Lengths m_lengthLengths;
    LzxMainCode m_main;
    LzxLengthCode m_length;
    LzxAlignedCode m_aligned;
};

}  // namespace qv::cabinet
