#include "core/Crc32.h"

#include <array>
#include <bit>
#include <cstring>

// On the processors of this family a multiplication without carries folds 16 bytes at a time.
#if defined(__x86_64__) || defined(__i386__)
#define QV_HAS_FOLDING 1
#include <immintrin.h>
#else
#define QV_HAS_FOLDING 0
#endif

namespace qv {
namespace {

constexpr std::uint32_t kPolynomial = 0xEDB88320;  // the lowest bit stands for the highest power

constexpr std::size_t kSlices = 16;
using Tables = std::array<std::array<std::uint32_t, 256>, kSlices>;

/// tables[n][b] is what byte b comes to when n more bytes follow it.
constexpr Tables MakeTables() {
    Tables tables{};
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        std::uint32_t value = byte;
        for (int bit = 0; bit < 8; ++bit) value = value >> 1 ^ (value & 1 ? kPolynomial : 0);
        tables[0][byte] = value;
    }
    for (std::size_t n = 1; n < kSlices; ++n)
        for (std::size_t byte = 0; byte < 256; ++byte) {
            const std::uint32_t before = tables[n - 1][byte];
            tables[n][byte] = before >> 8 ^ tables[0][before & 255];
        }
    return tables;
}

constexpr Tables kTables = MakeTables();

std::uint64_t Word(const char* data) {
    std::uint64_t word;
    std::memcpy(&word, data, sizeof word);
    return word;
}

/// The sum of the tables' entries for eight bytes that `after` more bytes follow.
std::uint32_t Slice(std::uint64_t word, std::size_t after) {
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < 8; ++i) sum ^= kTables[after + 7 - i][word >> (8 * i) & 255];
    return sum;
}

/// Both take and give the register as it is between two bytes.
std::uint32_t AddBytes(std::uint32_t state, const char* data, std::size_t size) {
    if constexpr (std::endian::native == std::endian::little)
        for (; size >= kSlices; data += kSlices, size -= kSlices)
            state = Slice(Word(data) ^ state, 8) ^ Slice(Word(data + 8), 0);
    for (; size > 0; ++data, --size) state = state >> 8 ^ kTables[0][(state ^ static_cast<unsigned char>(*data)) & 255];
    return state;
}

#if QV_HAS_FOLDING

/// x to this power, modulo the polynomial, as the multiplication takes it.
constexpr std::uint64_t PowerOfX(int power) {
    std::uint32_t value = 0x80000000;
    for (int i = 0; i < power; ++i) value = value >> 1 ^ (value & 1 ? kPolynomial : 0);
    return std::uint64_t{value} << 1;
}

#define QV_FOLDING [[gnu::target("pclmul,sse4.1")]]

QV_FOLDING inline __m128i Load(const char* data) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(data));
}

/// The factors that carry 16 bytes over a distance.
template <int Bits>
QV_FOLDING inline __m128i Over() {
    constexpr auto kHigh = static_cast<long long>(PowerOfX(Bits - 32)),
                   kLow = static_cast<long long>(PowerOfX(Bits + 32));
    return _mm_set_epi64x(kHigh, kLow);
}

/// What 16 bytes come to so much further on, added to the bytes that stand there.
QV_FOLDING inline __m128i Fold(__m128i from, __m128i over, __m128i to) {
    const __m128i low = _mm_clmulepi64_si128(from, over, 0x00), high = _mm_clmulepi64_si128(from, over, 0x11);
    return _mm_xor_si128(_mm_xor_si128(low, high), to);
}

constexpr std::size_t kLane = 16, kLanes = 8, kRound = kLane * kLanes;

/// Eight lanes side by side keep the multiplier busy; in the end they are folded into the last one, whose 16 bytes then stand
/// for all that came before.
QV_FOLDING std::uint32_t AddByFolding(std::uint32_t state, const char* data, std::size_t size) {
    if (size < kRound) return AddBytes(state, data, size);
    __m128i lanes[kLanes];
    for (std::size_t i = 0; i < kLanes; ++i) lanes[i] = Load(data + i * kLane);
    lanes[0] = _mm_xor_si128(lanes[0], _mm_cvtsi32_si128(static_cast<int>(state)));
    data += kRound, size -= kRound;
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

auto* BestWay() {
    return __builtin_cpu_supports("pclmul") && __builtin_cpu_supports("sse4.1") ? AddByFolding : AddBytes;
}

#else

auto* BestWay() {
    return AddBytes;
}

#endif

}  // namespace

std::uint32_t Crc32(std::uint32_t crc, const char* data, std::size_t size) {
    static auto* const add = BestWay();
    return ~add(~crc, data, size);
}

std::uint32_t Crc32ByTables(std::uint32_t crc, const char* data, std::size_t size) {
    return ~AddBytes(~crc, data, size);
}

}  // namespace qv
