#pragma once

/// @file Sorting by precomputed keys.

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace qv {

/// Byte strings sorted by their bytes, seven at a time: further bytes are compared only between strings that are equal
/// so far. So each byte is read about once, regardless of the length of common prefixes.
class SortKeys {
public:
    /// Reserves memory for that many keys with that many bytes in total.
    SortKeys(std::size_t count, std::size_t bytes) {
        m_starts.reserve(count + 1);
        m_bytes.reserve(bytes + kPadding);
        m_starts.push_back(0);
    }

    /// Adds a key: what `append` appends to the given string.
    template <class Append>
    void Add(Append append) {
        append(m_bytes);
        m_starts.push_back(m_bytes.size());
    }

    /// Returns for each sorted position the index before sorting. `settle` compares the indexes of two equal keys (< 0,
    /// 0, > 0); the order of those that it finds equal is stable, even if descending.
    template <class Settle>
    std::vector<std::uint32_t> Sorted(bool descending, Settle settle) {
        m_bytes.append(kPadding, '\0');
        Items items(m_starts.size() - 1);
        for (std::uint32_t i = 0; i < items.size(); ++i) items[i].index = i;
        std::vector<Group> open{{items.begin(), items.end(), 0}};
        while (!open.empty()) {
            const Group group = std::exchange(open.back(), {});
            open.pop_back();
            SortByNextBytes(group, descending);
            ForEachTie(group, [&](Place first, Place last) {
                if (HasMore(*first, group.depth))
                    open.push_back({first, last, group.depth + kAtOnce});
                else
                    SortEqual(first, last, descending, settle);
            });
        }
        std::vector<std::uint32_t> order(items.size());
        std::transform(items.begin(), items.end(), order.begin(), [](const Item& item) { return item.index; });
        m_bytes.resize(m_bytes.size() - kPadding);
        return order;
    }

private:
    struct Item {
        std::uint64_t word = 0;
        std::uint32_t index = 0;
    };
    using Items = std::vector<Item>;
    using Place = Items::iterator;

    // A range of keys whose first `depth` bytes are equal.
    struct Group {
        Place first, last;
        std::size_t depth = 0;
    };

    static constexpr std::size_t kAtOnce = 7, kPadding = 8;

    std::size_t Left(const Item& item, std::size_t depth) const {
        return m_starts[item.index + 1] - m_starts[item.index] - depth;
    }
    bool HasMore(const Item& item, std::size_t depth) const { return Left(item, depth) > kAtOnce; }

    // Returns seven bytes of the key, big-endian, above the number of remaining bytes, up to 8.
    std::uint64_t Word(const Item& item, std::size_t depth) const {
        const char* const bytes = m_bytes.data() + m_starts[item.index] + depth;
        std::uint64_t word = 0;
        for (std::size_t i = 0; i < sizeof(word); ++i) word = word << 8 | static_cast<unsigned char>(bytes[i]);
        const std::size_t left = std::min(Left(item, depth), kAtOnce + 1);
        const std::uint64_t kept = left == 0 ? 0 : ~std::uint64_t{0} << (64 - 8 * std::min(left, kAtOnce));
        return (word & kept) | left;
    }

    void SortByNextBytes(const Group& group, bool descending) const {
        std::uint64_t differing = 0;
        for (Place item = group.first; item != group.last; ++item) {
            item->word = Word(*item, group.depth) ^ (descending ? ~std::uint64_t{0} : 0);
            differing |= item->word ^ group.first->word;
        }
        if (differing == 0) return;
        std::sort(group.first, group.last, [](const Item& a, const Item& b) { return a.word < b.word; });
    }

    template <class Visit>
    static void ForEachTie(const Group& group, Visit visit) {
        for (Place first = group.first; first != group.last;) {
            const Place last =
                std::find_if(first + 1, group.last, [first](const Item& item) { return item.word != first->word; });
            if (last - first > 1) visit(first, last);
            first = last;
        }
    }

    template <class Settle>
    static void SortEqual(Place first, Place last, bool descending, Settle settle) {
        // A collation need not be transitive for texts that are not well-formed: std::sort could leave the range.
        std::stable_sort(first, last, [&](const Item& a, const Item& b) {
            const int order = settle(a.index, b.index);
            return order == 0 ? a.index < b.index : (order < 0) != descending;
        });
    }

    std::string m_bytes;  // the concatenated keys
    std::vector<std::size_t> m_starts;
};

}  // namespace qv
