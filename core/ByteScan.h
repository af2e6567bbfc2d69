#pragma once

/// @file Searching a text for any of a few bytes, fast where they are rare.

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

#if defined(__x86_64__) || defined(__i386__)
#include <tmmintrin.h>
#define QV_HAS_SHUFFLE 1
#else
#define QV_HAS_SHUFFLE 0
#endif

namespace qv {

/// A set of bytes that is known to the compiler.
///
/// When no two members end in the same four bits, a block of 16 bytes takes three instructions of the processor's vector
/// unit (SSSE3, asked for while the program runs): the last four bits of each byte choose the one member that it could be.
template <unsigned char... Members>
class ByteSet {
public:
    static constexpr bool Has(char c) { return ((static_cast<unsigned char>(c) == Members) || ...); }

    /// The first position at or after `from` that holds a member; the text's length when there is none.
    static std::size_t Find(std::string_view text, std::size_t from) {
#if QV_HAS_SHUFFLE
        if (kFitsShuffle && __builtin_cpu_supports("ssse3")) from = SkipBlocks(text, from);
#endif
        while (from < text.size() && !kIsMember[static_cast<unsigned char>(text[from])]) ++from;
        return from;
    }

private:
    static constexpr auto MemberTable() {
        std::array<bool, 256> table{};
        ((table[Members] = true), ...);
        return table;
    }
    static constexpr std::array<bool, 256> kIsMember = MemberTable();

#if QV_HAS_SHUFFLE
    static constexpr std::size_t kBlock = 16;

    // For each value of the last four bits the member that ends in it, or a byte that does not.
    static constexpr auto Candidates() {
        std::array<unsigned char, kBlock> table{1};
        ((table[Members % kBlock] = Members), ...);
        return table;
    }
    alignas(kBlock) static constexpr std::array<unsigned char, kBlock> kCandidates = Candidates();
    static constexpr bool kFitsShuffle = ((kCandidates[Members % kBlock] == Members) && ...);

    // The place of the next member, or one less than a block before the text's end. The stack may be aligned less than
    // the blocks are: 32-bit callers promise nothing.
    __attribute__((target("ssse3"), force_align_arg_pointer)) static std::size_t SkipBlocks(std::string_view text,
                                                                                            std::size_t from) {
        const __m128i candidates = _mm_load_si128(reinterpret_cast<const __m128i*>(kCandidates.data()));
        const __m128i lastBits = _mm_set1_epi8(kBlock - 1);
        const auto hits = [&](std::size_t position) __attribute__((target("ssse3"), always_inline)) {
            const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + position));
            return _mm_cmpeq_epi8(_mm_shuffle_epi8(candidates, _mm_and_si128(block, lastBits)), block);
        };
        for (; from + kBlock <= text.size(); from += kBlock) {
            if (const int mask = _mm_movemask_epi8(hits(from)))
                return from + static_cast<std::size_t>(std::countr_zero(static_cast<unsigned>(mask)));
            constexpr std::size_t stride = 4 * kBlock;
            for (; from + kBlock + stride <= text.size(); from += stride) {
                const std::size_t next = from + kBlock;
                const __m128i first = _mm_or_si128(hits(next), hits(next + kBlock));
                const __m128i second = _mm_or_si128(hits(next + 2 * kBlock), hits(next + 3 * kBlock));
                if (_mm_movemask_epi8(_mm_or_si128(first, second))) break;
            }
        }
        return from;
    }
#endif
};

}  // namespace qv

#undef QV_HAS_SHUFFLE
