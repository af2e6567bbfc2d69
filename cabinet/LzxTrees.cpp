#include "cabinet/LzxTrees.h"

#include <algorithm>

namespace qv::cabinet {
namespace {

/// The symbols of the code for lengths: 0 to 16 are differences, and these are runs.
enum PretreeSymbol : unsigned { kShortZeros = 17, kLongZeros = 18, kSame = 19 };
constexpr std::size_t kPretreeSymbols = 20;
constexpr unsigned kLengths = 17;  // 0 to 16

using Pretree = LzxCode<kPretreeSymbols, 8>;

std::uint8_t Changed(std::uint8_t length, unsigned difference) {
    return static_cast<std::uint8_t>((length + kLengths - difference) % kLengths);
}

/// Reads a run: its count and its value. The run has at least one length and starts at `lengths[0]`.
bool ReadRun(LzxBits& bits, const Pretree& pretree, unsigned symbol, std::span<std::uint8_t> lengths,
             std::size_t& count) {
    std::uint8_t value = 0;
    if (symbol == kShortZeros) {
        count = 4 + bits.Read(4);
    } else if (symbol == kLongZeros) {
        count = 20 + bits.Read(5);
    } else {
        count = 4 + bits.Read(1);
        const unsigned difference = pretree.Decode(bits);
        if (difference >= kLengths) return false;
        value = Changed(lengths[0], difference);
    }
    if (count > lengths.size()) return false;
    std::fill_n(lengths.begin(), count, value);
    return true;
}

}  // namespace

void LzxBits::FillAtEnd() {
    while (m_count <= 48) {
        std::uint64_t word = 0;
        if (m_end - m_next >= 2) {
            word = Get16(m_next);
            m_next += 2;
        } else {
            ++m_made;  // a single byte is not a word
        }
        // First clear bits that an earlier call has stored without counting them.
        m_bits &= m_count == 0 ? 0 : ~std::uint64_t{0} << (64 - m_count);
        m_bits |= word << (48 - m_count);
        m_count += 16;
    }
}

void LzxBits::SkipPadding() {
    Fill();
    const unsigned padding = m_count % 16 == 0 ? 16 : m_count % 16;
    const unsigned words = (m_count - padding) / 16;
    m_next = words < m_made ? m_end : m_next - 2 * (words - m_made);
    m_bits = 0;
    m_count = m_made = 0;
}

std::span<const unsigned char> LzxBits::TakeBytes(std::size_t most) {
    const std::size_t count = std::min(most, static_cast<std::size_t>(m_end - m_next));
    const unsigned char* const first = m_next;
    m_next += count;
    return {first, count};
}

template <std::size_t kSymbols, unsigned kTableBits>
bool LzxCode<kSymbols, kTableBits>::Build(const Lengths& lengths) {
    std::array<std::uint32_t, kLongest + 1> counts = {};
    for (const std::uint8_t length : lengths) ++counts[length];
    std::uint32_t code = 0, symbols = 0;
    std::array<std::uint16_t, kLongest + 1> next = {};
    for (unsigned length = 1; length <= kLongest; ++length) {
        next[length] = m_firsts[length] = static_cast<std::uint16_t>(symbols);
        symbols += counts[length];
        code += counts[length] << (kLongest - length);
        m_limits[length] = code;
    }
    if (code > 1u << kLongest) return false;
    for (std::size_t symbol = 0; symbol < kSymbols; ++symbol)
        if (lengths[symbol]) m_symbols[next[lengths[symbol]]++] = static_cast<std::uint16_t>(symbol);

    m_table.fill(0);
    auto* entry = m_table.data();
    for (unsigned length = 1; length <= kTableBits; ++length)
        for (std::uint32_t i = 0; i < counts[length]; ++i) {
            const unsigned symbol = m_symbols[m_firsts[length] + i];
            entry = std::fill_n(entry, 1u << (kTableBits - length), static_cast<std::uint16_t>(symbol << 5 | length));
        }
    return true;
}

/// Looks up a code that is longer than the table's index; 0 if it has no symbol.
template <std::size_t kSymbols, unsigned kTableBits>
unsigned LzxCode<kSymbols, kTableBits>::FindLong(std::uint32_t code) const {
    for (unsigned length = kTableBits + 1; length <= kLongest; ++length) {
        if (code >= m_limits[length]) continue;
        const std::uint32_t index = (code - m_limits[length - 1]) >> (kLongest - length);
        return unsigned{m_symbols[m_firsts[length] + index]} << 5 | length;
    }
    return 0;
}

template class LzxCode<kLzxLiterals + 8 * kLzxMostSlots, 11>;
template class LzxCode<kLzxLengths, 9>;
template class LzxCode<8, 7>;

bool ReadLzxLengths(LzxBits& bits, std::span<std::uint8_t> lengths) {
    Pretree::Lengths pretreeLengths;
    for (std::uint8_t& length : pretreeLengths) length = static_cast<std::uint8_t>(bits.Read(4));
    Pretree pretree;
    if (!pretree.Build(pretreeLengths)) return false;
    while (!lengths.empty()) {
        bits.Fill();
        const unsigned symbol = pretree.Decode(bits);
        if (symbol >= kPretreeSymbols || bits.IsOverrun()) return false;
        std::size_t count = 1;
        if (symbol < kLengths)
            lengths[0] = Changed(lengths[0], symbol);
        else if (!ReadRun(bits, pretree, symbol, lengths, count))
            return false;
        lengths = lengths.subspan(count);
    }
    return true;
}

}  // namespace qv::cabinet
