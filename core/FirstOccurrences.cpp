#include "core/FirstOccurrences.h"

#include <bit>

#include "core/KeyedHash.h"
#include "core/Prefetch.h"

namespace qv {
namespace {

struct Slot {
    std::uint32_t hash;
    std::uint32_t item;
};

constexpr std::uint32_t kFree = kUnknown;
// Prefetch distance of slots: a large table does not fit into the cache.
constexpr std::size_t kAhead = 16;

// Open addressing with a load factor of at most one half. The items are compared only if 32 bits of hash agree.
template <class Item>
std::vector<std::uint32_t> Find(std::span<const Item> items, std::size_t known) {
    const HashKey& key = HashKey::OfProcess();
    const std::size_t mask = std::bit_ceil(2 * known + 1) - 1;
    const auto placeOf = [mask](std::uint64_t hash) { return static_cast<std::size_t>(hash) & mask; };
    std::vector<Slot> table(mask + 1, Slot{0, kFree});
    std::vector<std::uint32_t> first(items.size());
    std::uint64_t ahead[kAhead] = {};
    for (std::size_t i = 0; i < items.size() + kAhead; ++i) {
        const std::uint64_t hash = ahead[i % kAhead];
        if (i < items.size()) {
            ahead[i % kAhead] = KeyedHash(key, items[i]);
            Prefetch(&table[placeOf(ahead[i % kAhead])]);
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
