#include "core/FirstOccurrences.h"

#include <bit>
#include <cstring>
#include <random>

namespace qv {
namespace {

struct HashKey {
    std::uint64_t low, high;
};

const HashKey& ProcessKey() {
    static const HashKey key = [] {
        std::random_device random;
        const auto word = [&] { return std::uint64_t{random()} << 32 | random(); };
        return HashKey{word(), word()};
    }();
    return key;
}

// SipHash with one round a block and three at the end.
class SipHash {
public:
    explicit SipHash(const HashKey& key)
        : m_a(key.low ^ 0x736F6D6570736575),
          m_b(key.high ^ 0x646F72616E646F6D),
          m_c(key.low ^ 0x6C7967656E657261),
          m_d(key.high ^ 0x7465646279746573) {}

    void Add(std::uint64_t block) {
        m_d ^= block;
        Round();
        m_a ^= block;
    }

    std::uint64_t Finish() {
        m_c ^= 0xFF;
        Round();
        Round();
        Round();
        return m_a ^ m_b ^ m_c ^ m_d;
    }

private:
    void Round() {
        m_a += m_b;
        m_c += m_d;
        m_b = std::rotl(m_b, 13) ^ m_a;
        m_d = std::rotl(m_d, 16) ^ m_c;
        m_a = std::rotl(m_a, 32);
        m_c += m_b;
        m_a += m_d;
        m_b = std::rotl(m_b, 17) ^ m_c;
        m_d = std::rotl(m_d, 21) ^ m_a;
        m_c = std::rotl(m_c, 32);
    }

    std::uint64_t m_a, m_b, m_c, m_d;
};

std::uint64_t Block(const char* bytes, std::size_t count) {
    std::uint64_t block = 0;
    std::memcpy(&block, bytes, count);
    return block;
}

std::uint64_t Hash(const HashKey& key, std::string_view text) {
    SipHash hash(key);
    const char* bytes = text.data();
    std::size_t left = text.size();
    for (; left >= 8; bytes += 8, left -= 8) hash.Add(Block(bytes, 8));
    hash.Add((left ? Block(bytes, left) : 0) ^ std::uint64_t{text.size()} << 56);
    return hash.Finish();
}

std::uint64_t Hash(const HashKey& key, std::uint64_t value) {
    SipHash hash(key);
    hash.Add(value);
    return hash.Finish();
}

struct Slot {
    std::uint32_t hash;
    std::uint32_t item;
};

constexpr std::uint32_t kFree = kUnknown;
// So far ahead the slots of the items to come are fetched: a large table lies in slow memory.
constexpr std::size_t kAhead = 16;

// Open addressing in a table at most half full. The items themselves are only compared where 32 bits of hash agree.
template <class Item>
std::vector<std::uint32_t> Find(std::span<const Item> items, std::size_t known) {
    const HashKey& key = ProcessKey();
    const std::size_t mask = std::bit_ceil(2 * known + 1) - 1;
    const auto placeOf = [mask](std::uint64_t hash) { return static_cast<std::size_t>(hash) & mask; };
    std::vector<Slot> table(mask + 1, Slot{0, kFree});
    std::vector<std::uint32_t> first(items.size());
    std::uint64_t ahead[kAhead] = {};
    for (std::size_t i = 0; i < items.size() + kAhead; ++i) {
        const std::uint64_t hash = ahead[i % kAhead];
        if (i < items.size()) {
            ahead[i % kAhead] = Hash(key, items[i]);
            __builtin_prefetch(&table[placeOf(ahead[i % kAhead])], 1);
        }
        if (i < kAhead) continue;
        const auto item = static_cast<std::uint32_t>(i - kAhead), check = static_cast<std::uint32_t>(hash >> 32);
        std::size_t at = placeOf(hash);
        while (table[at].item != kFree && (table[at].hash != check || items[table[at].item] != items[item]))
            at = (at + 1) & mask;
        if (table[at].item == kFree && item < known) table[at] = {check, item};
        first[item] = table[at].item;
    }
    return first;
}

}  // namespace

std::vector<std::uint32_t> FirstOccurrences(std::span<const std::string_view> items) {
    return Find(items, items.size());
}

std::vector<std::uint32_t> FirstOccurrences(std::span<const std::uint64_t> items) {
    return Find(items, items.size());
}

std::vector<std::uint32_t> FirstOccurrences(std::span<const std::string_view> items, std::size_t known) {
    return Find(items, known);
}

}  // namespace qv
