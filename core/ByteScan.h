#pragma once

/// @file Finding a few bytes in a text, 64 at a time.
///
/// Bytes are marked: each bit of a 64-bit word represents a byte of the text, the lowest bit the first one. So a text
/// in which the bytes are frequent costs little more than one in which they are rare. Nothing outside of the text is
/// read.

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#if defined(__SSE2__)
#include <tmmintrin.h>
#define QV_HAS_VECTORS 1
// The stack may be less aligned than vectors require: 32-bit callers guarantee nothing.
#define QV_VECTOR_FUNCTION noinline, force_align_arg_pointer
#else
#define QV_HAS_VECTORS 0
#endif

namespace qv {

using ByteMarks = std::uint64_t;
inline constexpr std::size_t kMarksBlock = 64;

namespace internal {

template <class IsMember>
void MarkOneByOne(const char* text, std::size_t count, ByteMarks* marks, IsMember isMember) {
    for (; count > 0; --count, text += kMarksBlock) {
        ByteMarks block = 0;
        for (std::size_t i = 0; i < kMarksBlock; ++i) block |= ByteMarks{isMember(text[i])} << i;
        *marks++ = block;
    }
}

template <class IsMember>
std::size_t CountPlainOneByOne(const char* text, std::size_t count, IsMember isMember) {
    const char* const end = text + count * kMarksBlock;
    return static_cast<std::size_t>(std::find_if(text, end, isMember) - text) / kMarksBlock;
}

#if QV_HAS_VECTORS
inline constexpr std::size_t kVector = 16;

// `hits` returns a vector of ones where another vector contains members.
template <class Hits>
__attribute__((QV_VECTOR_FUNCTION)) void MarkByVectors(const char* text, std::size_t count, ByteMarks* marks,
                                                       Hits hits) {
    for (; count > 0; --count) {
        ByteMarks block = 0;
        for (std::size_t shift = 0; shift < kMarksBlock; shift += kVector, text += kVector) {
            const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
            block |= ByteMarks{static_cast<unsigned>(_mm_movemask_epi8(hits(bytes)))} << shift;
        }
        *marks++ = block;
    }
}

template <class Hits>
__attribute__((QV_VECTOR_FUNCTION)) std::size_t CountPlainByVectors(const char* text, std::size_t count, Hits hits) {
    std::size_t plain = 0;
    for (; plain < count; ++plain) {
        __m128i any = _mm_setzero_si128();
        for (std::size_t i = 0; i < kMarksBlock; i += kVector, text += kVector)
            any = _mm_or_si128(any, hits(_mm_loadu_si128(reinterpret_cast<const __m128i*>(text))));
        if (_mm_movemask_epi8(any)) break;
    }
    return plain;
}

inline __m128i AreEqual(__m128i bytes, char wanted) {
    return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(wanted));
}
#endif

}  // namespace internal

/// A set of bytes known at compile time.
///
/// If it has more than a few members, and no two of them have the same low four bits, these bits of each byte select
/// the only possible member (SSSE3, detected at run time). Otherwise each member is compared.
template <unsigned char... Members>
class ByteSet {
public:
    static constexpr bool Has(char c) { return kIsMember[static_cast<unsigned char>(c)]; }

    /// Marks the members in `count` whole blocks.
    static void Mark(const char* text, std::size_t count, ByteMarks* marks) {
#if QV_HAS_VECTORS
        if (MayShuffle()) return MarkByShuffle(text, count, marks);
        internal::MarkByVectors(text, count, marks, [](__m128i bytes) { return HitsByComparison(bytes); });
#else
        internal::MarkOneByOne(text, count, marks, Has);
#endif
    }

    /// Returns the number of blocks, of `count` whole ones, before the first one with a member.
    static std::size_t CountPlain(const char* text, std::size_t count) {
#if QV_HAS_VECTORS
        if (MayShuffle()) return CountPlainByShuffle(text, count);
        return internal::CountPlainByVectors(text, count, [](__m128i bytes) { return HitsByComparison(bytes); });
#else
        return internal::CountPlainOneByOne(text, count, Has);
#endif
    }

private:
    static constexpr auto kIsMember = [] {
        std::array<bool, 256> table{};
        ((table[Members] = true), ...);
        return table;
    }();

#if QV_HAS_VECTORS
    static constexpr std::size_t kVector = internal::kVector, kCheapComparisons = 4;

    // For each value of the low four bits the member with that value, or a byte with another one.
    alignas(kVector) static constexpr auto kCandidates = [] {
        std::array<unsigned char, kVector> table{1};
        ((table[Members % kVector] = Members), ...);
        return table;
    }();
    static constexpr bool kFitsShuffle = ((kCandidates[Members % kVector] == Members) && ...);

    static bool MayShuffle() {
        return kFitsShuffle && sizeof...(Members) > kCheapComparisons && __builtin_cpu_supports("ssse3");
    }

    static __m128i HitsByComparison(__m128i bytes) {
        __m128i hits = _mm_setzero_si128();
        ((hits = _mm_or_si128(hits, internal::AreEqual(bytes, static_cast<char>(Members)))), ...);
        return hits;
    }

    // Repeats the loops of MarkByVectors and CountPlainByVectors: a function for specific processors cannot be inlined
    // in one for all.
    __attribute__((QV_VECTOR_FUNCTION, target("ssse3"))) static void MarkByShuffle(const char* text, std::size_t count,
                                                                                   ByteMarks* marks) {
        const __m128i candidates = _mm_load_si128(reinterpret_cast<const __m128i*>(kCandidates.data()));
        const __m128i lastBits = _mm_set1_epi8(kVector - 1);
        for (; count > 0; --count) {
            ByteMarks block = 0;
            for (std::size_t shift = 0; shift < kMarksBlock; shift += kVector, text += kVector) {
                const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
                const __m128i chosen = _mm_shuffle_epi8(candidates, _mm_and_si128(bytes, lastBits));
                const auto hits = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(chosen, bytes)));
                block |= ByteMarks{hits} << shift;
            }
            *marks++ = block;
        }
    }

    __attribute__((QV_VECTOR_FUNCTION, target("ssse3"))) static std::size_t CountPlainByShuffle(const char* text,
                                                                                                std::size_t count) {
        const __m128i candidates = _mm_load_si128(reinterpret_cast<const __m128i*>(kCandidates.data()));
        const __m128i lastBits = _mm_set1_epi8(kVector - 1);
        std::size_t plain = 0;
        for (; plain < count; ++plain) {
            __m128i any = _mm_setzero_si128();
            for (std::size_t i = 0; i < kMarksBlock; i += kVector, text += kVector) {
                const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
                const __m128i chosen = _mm_shuffle_epi8(candidates, _mm_and_si128(bytes, lastBits));
                any = _mm_or_si128(any, _mm_cmpeq_epi8(chosen, bytes));
            }
            if (_mm_movemask_epi8(any)) break;
        }
        return plain;
    }
#endif
};

/// A single byte known only at run time.
class OneByte {
public:
    explicit OneByte(char byte) : m_byte(byte) {}

    void Mark(const char* text, std::size_t count, ByteMarks* marks) const {
#if QV_HAS_VECTORS
        internal::MarkByVectors(text, count, marks,
                                [byte = m_byte](__m128i bytes) { return internal::AreEqual(bytes, byte); });
#else
        internal::MarkOneByOne(text, count, marks, [byte = m_byte](char c) { return c == byte; });
#endif
    }

private:
    char m_byte;
};

/// Marks up to `most` blocks of a text from `from` on, the last one partly, and returns their number.
template <class Set>
std::size_t MarkBytes(const Set& set, std::string_view text, std::size_t from, ByteMarks* marks, std::size_t most) {
    const std::size_t left = text.size() - from, whole = std::min(left / kMarksBlock, most);
    if (whole > 0) set.Mark(text.data() + from, whole, marks);
    const std::size_t rest = left - whole * kMarksBlock;
    if (whole == most || rest == 0) return whole;
    char last[kMarksBlock] = {};
    std::memcpy(last, text.data() + text.size() - rest, rest);
    set.Mark(last, 1, marks + whole);
    marks[whole] &= (ByteMarks{1} << rest) - 1;
    return whole + 1;
}

/// Calls `visit` with the position of each member, in order.
template <class Set, class Visit>
void ForEachByte(const Set& set, std::string_view text, Visit visit) {
    constexpr std::size_t atOnce = 16;
    ByteMarks marks[atOnce];
    for (std::size_t from = 0; from < text.size(); from += atOnce * kMarksBlock) {
        const std::size_t count = MarkBytes(set, text, from, marks, atOnce);
        for (std::size_t block = 0; block < count; ++block)
            for (ByteMarks left = marks[block]; left != 0; left &= left - 1)
                visit(from + block * kMarksBlock + static_cast<std::size_t>(std::countr_zero(left)));
    }
}

/// Returns the number of members in the text.
template <class Set>
std::size_t CountBytes(const Set& set, std::string_view text) {
    constexpr std::size_t atOnce = 16;
    ByteMarks marks[atOnce];
    std::size_t found = 0;
    for (std::size_t from = 0; from < text.size(); from += atOnce * kMarksBlock) {
        const std::size_t count = MarkBytes(set, text, from, marks, atOnce);
        for (std::size_t block = 0; block < count; ++block)
            found += static_cast<std::size_t>(std::popcount(marks[block]));
    }
    return found;
}

/// Returns the position of the first member; the text's length if not found.
template <unsigned char... Members>
std::size_t FindByte(const ByteSet<Members...>& set, std::string_view text) {
    const std::size_t whole = text.size() / kMarksBlock;
    const std::size_t from = whole == 0 ? 0 : set.CountPlain(text.data(), whole) * kMarksBlock;
    if (from == text.size()) return from;
    ByteMarks marks[1];
    MarkBytes(set, text, from, marks, 1);
    return marks[0] == 0 ? text.size() : from + static_cast<std::size_t>(std::countr_zero(marks[0]));
}

}  // namespace qv

#if QV_HAS_VECTORS
#undef QV_VECTOR_FUNCTION
#endif
#undef QV_HAS_VECTORS
