#include "core/Crc32.h"

#include <array>
#include <bit>
#include <cstring>

// On this processor family a carry-less multiplication folds 16 bytes at a time.
#if defined(__x86_64__) || defined(__i386__)
#define QV_HAS_FOLDING 1
#include <immintrin.h>
#else
#define QV_HAS_FOLDING 0
#endif

namespace qv {
namespace {

constexpr std::uint32_t kPolynomial = 0xEDB88320;  // the lowest bit is the highest power

constexpr std::size_t kWord = 8, kStrands = 5, kBraid = kWord * kStrands;
using Table = std::array<std::uint32_t, 256>;

/// tables[n][b] is the CRC of byte b followed by n more bytes.
constexpr std::array<Table, kBraid> MakeTables() {
    std::array<Table, kBraid> tables{};
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        std::uint32_t value = byte;
        for (int bit = 0; bit < 8; ++bit) value = value >> 1 ^ (value & 1 ? kPolynomial : 0);
        tables[0][byte] = value;
    }
    for (std::size_t n = 1; n < kBraid; ++n)
        for (std::size_t byte = 0; byte < 256; ++byte) {
            const std::uint32_t before = tables[n - 1][byte];
            tables[n][byte] = before >> 8 ^ tables[0][before & 255];
        }
    return tables;
}

constexpr std::array<Table, kBraid> kTables = MakeTables();

std::uint64_t Word(const char* data) {
    std::uint64_t word;
    std::memcpy(&word, data, sizeof word);
    return word;
}

/// Returns the CRC of the eight bytes of a word followed by that many more bytes.
template <std::size_t Following>
inline std::uint32_t Sum(std::uint64_t word) {
    const Table* const tables = &kTables[Following];
    return tables[7][word & 255] ^ tables[6][word >> 8 & 255] ^ tables[5][word >> 16 & 255] ^
           tables[4][word >> 24 & 255] ^ tables[3][word >> 32 & 255] ^ tables[2][word >> 40 & 255] ^
           tables[1][word >> 48 & 255] ^ tables[0][static_cast<std::uint8_t>(word >> 56)];
}

/// Each strand processes every fifth word independently, so that the processor can execute all five in parallel. The
/// last braid combines them.
std::uint32_t AddBraids(std::uint32_t state, const char* data, std::size_t count) {
    std::uint32_t strands[kStrands] = {state};
    for (; count > 1; data += kBraid, --count) {
        std::uint64_t words[kStrands];
        for (std::size_t i = 0; i < kStrands; ++i) words[i] = Word(data + i * kWord) ^ strands[i];
        for (std::size_t i = 0; i < kStrands; ++i) strands[i] = Sum<kBraid - kWord>(words[i]);
    }
    state = 0;
    for (std::size_t i = 0; i < kStrands; ++i) state = Sum<0>(Word(data + i * kWord) ^ strands[i] ^ state);
    return state;
}

/// Takes and returns the register without the inversions.
std::uint32_t AddBytes(std::uint32_t state, const char* data, std::size_t size) {
    if constexpr (std::endian::native == std::endian::little) {
        if (const std::size_t braids = size / kBraid) {
            state = AddBraids(state, data, braids);
            data += braids * kBraid;
            size -= braids * kBraid;
        }
        for (; size >= kWord; data += kWord, size -= kWord) state = Sum<0>(Word(data) ^ state);
    }
    for (; size > 0; ++data, --size) state = state >> 8 ^ kTables[0][(state ^ static_cast<unsigned char>(*data)) & 255];
    return state;
}

#if QV_HAS_FOLDING

/// Returns x to this power, modulo the polynomial, in the form used by the multiplication.
constexpr std::uint64_t PowerOfX(int power) {
    std::uint32_t value = 0x80000000;
    for (int i = 0; i < power; ++i) value = value >> 1 ^ (value & 1 ? kPolynomial : 0);
    return std::uint64_t{value} << 1;
}

#define QV_FOLDING [[gnu::target("pclmul,sse4.1")]]

QV_FOLDING inline __m128i Load(const char* data) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(data));
}

/// Returns the factors that advance 16 bytes over a distance.
template <int Bits>
QV_FOLDING inline __m128i Over() {
    constexpr auto kHigh = static_cast<long long>(PowerOfX(Bits - 32)),
                   kLow = static_cast<long long>(PowerOfX(Bits + 32));
    return _mm_set_epi64x(kHigh, kLow);
}

/// Folds 16 bytes into the bytes that many positions later.
QV_FOLDING inline __m128i Fold(__m128i from, __m128i over, __m128i to) {
    const __m128i low = _mm_clmulepi64_si128(from, over, 0x00), high = _mm_clmulepi64_si128(from, over, 0x11);
    return _mm_xor_si128(_mm_xor_si128(low, high), to);
}

constexpr std::size_t kLane = 16, kLanes = 8, kRound = kLane * kLanes;

/// Eight parallel lanes keep the multiplier busy; at the end they are folded into the last one, whose 16 bytes then
/// represent all data so far.
QV_FOLDING std::uint32_t AddByFolding(std::uint32_t state, const char* data, std::size_t size) {
    if (size < kRound) return AddBytes(state, data, size);
    __m128i lanes[kLanes];
    for (std::size_t i = 0; i < kLanes; ++i) lanes[i] = Load(data + i * kLane);
    lanes[0] = _mm_xor_si128(lanes[0], _mm_cvtsi32_si128(static_cast<int>(state)));
    data += kRound;
    size -= kRound;
    const __m128i overRound = Over<kRound * 8>(), overLane = Over<kLane * 8>();
    for (; size >= kRound; data += kRound, size -= kRound)
        for (std::size_t i = 0; i < kLanes; ++i) lanes[i] = Fold(lanes[i], overRound, Load(data + i * kLane));
    __m128i last = lanes[0];
    for (std::size_t i = 1; i < kLanes; ++i) last = Fold(last, overLane, lanes[i]);
    for (; size >= kLane; data += kLane, size -= kLane) last = Fold(last, overLane, Load(data));
    char rest[kLane];
    _mm_storeu_si128(reinterpret_cast<__m128i*>(rest), last);
    return AddBytes(AddBytes(0, rest, sizeof rest), data, size);
}

#define QV_WIDE_FOLDING [[gnu::target("vpclmulqdq,avx512f,pclmul,sse4.1")]]

constexpr std::size_t kWideLane = 64, kWideLanes = 4, kWideRound = kWideLane * kWideLanes;

template <int Bits>
QV_WIDE_FOLDING inline __m512i OverWide() {
    constexpr std::uint64_t kLow = PowerOfX(Bits + 32), kHigh = PowerOfX(Bits - 32);
    constexpr std::uint64_t kFactors[] = {kLow, kHigh, kLow, kHigh, kLow, kHigh, kLow, kHigh};
    return _mm512_loadu_si512(kFactors);
}

QV_WIDE_FOLDING inline __m512i FoldWide(__m512i from, __m512i over, const char* to) {
    const __m512i low = _mm512_clmulepi64_epi128(from, over, 0x00), high = _mm512_clmulepi64_epi128(from, over, 0x11);
    constexpr int kXorOfThree = 0x96;
    return _mm512_ternarylogic_epi64(low, high, _mm512_loadu_si512(to), kXorOfThree);
}

/// Does the same with four times the width. At the end the lanes represent all data so far, too.
QV_WIDE_FOLDING std::uint32_t AddByWideFolding(std::uint32_t state, const char* data, std::size_t size) {
    if (size < 2 * kWideRound) return AddByFolding(state, data, size);
    __m512i lanes[kWideLanes];
    for (std::size_t i = 0; i < kWideLanes; ++i) lanes[i] = _mm512_loadu_si512(data + i * kWideLane);
    lanes[0] = _mm512_xor_si512(lanes[0], _mm512_zextsi128_si512(_mm_cvtsi32_si128(static_cast<int>(state))));
    data += kWideRound;
    size -= kWideRound;
    const __m512i overRound = OverWide<kWideRound * 8>();
    for (; size >= kWideRound; data += kWideRound, size -= kWideRound)
        for (std::size_t i = 0; i < kWideLanes; ++i) lanes[i] = FoldWide(lanes[i], overRound, data + i * kWideLane);
    char rest[kWideRound];
    for (std::size_t i = 0; i < kWideLanes; ++i) _mm512_storeu_si512(rest + i * kWideLane, lanes[i]);
    return AddByFolding(AddByFolding(0, rest, sizeof rest), data, size);
}

auto* SelectImplementation() {
    if (!__builtin_cpu_supports("pclmul") || !__builtin_cpu_supports("sse4.1")) return AddBytes;
    const bool wide = __builtin_cpu_supports("vpclmulqdq") && __builtin_cpu_supports("avx512f");
    return wide ? AddByWideFolding : AddByFolding;
}

#else

auto* SelectImplementation() {
    return AddBytes;
}

#endif

/// Returns the product of two polynomials, modulo that of the checksum.
std::uint32_t Product(std::uint32_t a, std::uint32_t b) {
    std::uint32_t product = 0;
    for (; a != 0; a <<= 1) {
        if (a & 0x80000000) product ^= b;
        b = b >> 1 ^ (b & 1 ? kPolynomial : 0);
    }
    return product;
}

}  // namespace

std::uint32_t JoinedCrc32(std::uint32_t first, std::uint32_t second, std::uint64_t secondLength) {
    constexpr std::uint32_t kOne = 0x80000000;
    std::uint32_t shift = kOne;
    // `power` is x to 8, 16, 32 and so on: the effect of one, two, four more bytes on a register.
    for (std::uint32_t power = kOne >> 8; secondLength != 0; secondLength >>= 1, power = Product(power, power))
        if (secondLength & 1) shift = Product(shift, power);
    return Product(shift, first) ^ second;
}

std::uint32_t Crc32(std::uint32_t crc, const char* data, std::size_t size) {
    static auto* const add = SelectImplementation();
    return ~add(~crc, data, size);
}

std::uint32_t Crc32ByTables(std::uint32_t crc, const char* data, std::size_t size) {
    return ~AddBytes(~crc, data, size);
}

}  // namespace qv
