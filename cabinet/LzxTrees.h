#pragma once

/// @file The bits and Huffman codes of LZX data ([MS-PATCH] section 2, as used in cabinets).

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "cabinet/Format.h"

namespace qv::cabinet {

/// Reads bits of little-endian 16-bit words, highest bit first. Bits past the end are zero and set IsOverrun.
class LzxBits {
public:
    explicit LzxBits(std::span<const unsigned char> data) : m_next(data.data()), m_end(data.data() + data.size()) {}

    /// Provides 49 bits in total for Peek and Skip.
    void Fill() {
        if (m_count > 48) return;
        if (m_end - m_next >= 8) {
            // A word that does not fit completely is counted in part; the next call stores the same bits again.
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

    /// Skips to the next word boundary, by a whole word if at one already: bytes follow.
    void SkipPadding();
    /// Takes at most `most` bytes. No bits may have been read since the padding or the start.
    std::span<const unsigned char> TakeBytes(std::size_t most);

private:
    void FillAtEnd();

    const unsigned char *m_next, *m_end;
    std::uint64_t m_bits = 0;  ///< the next bit is the highest
    unsigned m_count = 0;      ///< the number of valid bits
    unsigned m_made = 0;       ///< how many of their words are past the end of the data
};

/// A canonical Huffman code of up to `kSymbols` symbols with code lengths up to 16.
template <std::size_t kSymbols, unsigned kTableBits>
class LzxCode {
public:
    static constexpr unsigned kLongest = 16;
    using Lengths = std::array<std::uint8_t, kSymbols>;
    static constexpr unsigned kNone = 0xFFFF;

    /// Returns false if the code is oversubscribed. It may be incomplete, even empty.
    bool Build(const Lengths& lengths);
    /// Returns the symbol of the next bits, after Fill; kNone if the code is unused.
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
    std::array<std::uint32_t, kLongest + 2> m_limits;  ///< the first code after those of a length, as 16 bits
    std::array<std::uint16_t, kLongest + 2> m_firsts;  ///< the start of a length in m_symbols
    std::array<std::uint16_t, kSymbols> m_symbols;     ///< by length, then number
};

inline constexpr std::size_t kLzxLiterals = 256, kLzxMostSlots = 50, kLzxLengths = 249;
using LzxMainCode = LzxCode<kLzxLiterals + 8 * kLzxMostSlots, 11>;
using LzxLengthCode = LzxCode<kLzxLengths, 9>;
using LzxAlignedCode = LzxCode<8, 7>;

/// Reads code lengths, stored as differences from those of the previous block. Returns false for data that no encoder
/// writes.
bool ReadLzxLengths(LzxBits& bits, std::span<std::uint8_t> lengths);

}  // namespace qv::cabinet
