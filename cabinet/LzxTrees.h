#pragma once

/// @file The bits and Huffman codes of LZX data ([MS-PATCH] section 2, as cabinets use it).

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "cabinet/Format.h"

namespace qv::cabinet {

/// Bits of little-endian words of 16 bits, the highest bit of a word first. Past the end they are zero, and IsOverrun says
/// so.
class LzxBits {
public:
    explicit LzxBits(std::span<const unsigned char> data) : m_next(data.data()), m_end(data.data() + data.size()) {}

    /// Makes Peek and Skip good for 49 bits in all.
    void Fill() {
        if (m_count > 48) return;
        if (m_end - m_next >= 8) {
            // Words that do not fit whole are only partly counted; the next call puts the same bits there again.
            const std::uint64_t next = Get32(m_next) | std::uint64_t{Get32(m_next + 4)} << 32;
            const std::uint64_t halves = next << 32 | next >> 32;
            const std::uint64_t words = (halves & 0x0000FFFF0000FFFF) << 16 | (halves >> 16 & 0x0000FFFF0000FFFF);
            m_bits |= words >> m_count;
            const unsigned count = (64 - m_count) / 16;
            m_next += 2 * count;
            m_count += 16 * count;
            return;
        }
        FillAtEnd();
    }
    /// 1 to 32 bits.
    std::uint32_t Peek(unsigned count) const { return static_cast<std::uint32_t>(m_bits >> (64 - count)); }
    void Skip(unsigned count) {
        m_bits <<= count;
        m_count -= count;
    }
    /// 0 to 32 bits.
    std::uint32_t Take(unsigned count) {
        if (count == 0) return 0;
        const std::uint32_t bits = Peek(count);
        Skip(count);
        return bits;
    }
    std::uint32_t Read(unsigned count) {
        Fill();
        return Take(count);
    }
    bool IsOverrun() const { return m_made * 16 > m_count; }

    /// Passes over the bits up to the next word, a whole word where one would begin: bytes follow.
    void SkipPadding();
    /// At most `most` bytes that follow here. Bits may not have been read since the padding or the start.
    std::span<const unsigned char> TakeBytes(std::size_t most);

private:
    void FillAtEnd();

    const unsigned char *m_next, *m_end;
    std::uint64_t m_bits = 0;  ///< the next bit is the highest
    unsigned m_count = 0;      ///< bits that count
    unsigned m_made = 0;       ///< words of them that the data does not have
};

/// A canonical Huffman code of up to `kSymbols` symbols with code lengths up to 16.
template <std::size_t kSymbols, unsigned kTableBits>
class LzxCode {
public:
    static constexpr unsigned kLongest = 16;
    using Lengths = std::array<std::uint8_t, kSymbols>;
    static constexpr unsigned kNone = 0xFFFF;

    /// False when the lengths ask for more codes than there are. Codes may be missing, all of them too.
    bool Build(const Lengths& lengths);
    /// The symbol of the next bits, of which Fill has provided 16; kNone where no symbol has them.
    unsigned Decode(LzxBits& bits) const {
        unsigned entry = m_table[bits.Peek(kTableBits)];
        if (entry == 0) entry = FindLong(bits.Peek(kLongest));
        if (entry == 0) return kNone;
        bits.Skip(entry & 31);
        return entry >> 5;
    }

private:
    unsigned FindLong(std::uint32_t code) const;

    std::array<std::uint16_t, std::size_t{1} << kTableBits> m_table;  ///< symbol << 5 | length; 0 for longer codes
    std::array<std::uint32_t, kLongest + 2> m_limits;  ///< the first code behind those of a length, as 16 bits
    std::array<std::uint16_t, kLongest + 2> m_firsts;  ///< where a length begins in m_symbols
    std::array<std::uint16_t, kSymbols> m_symbols;     ///< by length, then number
};

inline constexpr std::size_t kLzxLiterals = 256, kLzxMostSlots = 50, kLzxLengths = 249;
using LzxMainCode = LzxCode<kLzxLiterals + 8 * kLzxMostSlots, 11>;
using LzxLengthCode = LzxCode<kLzxLengths, 9>;
using LzxAlignedCode = LzxCode<8, 7>;

/// Reads code lengths, which are stored as differences from those of the block before. False for what no encoder writes.
bool ReadLzxLengths(LzxBits& bits, std::span<std::uint8_t> lengths);

}  // namespace qv::cabinet
