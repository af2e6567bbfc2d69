#pragma once

/// @file Looking up many texts in an array.

#include <string>
#include <string_view>
#include <vector>

#include "core/CaseRule.h"
#include "qvcommon/framework/Collections.h"

namespace qv {

/// A hash table over the elements of an array, which has to stay as it is.
class TextIndex {
public:
    TextIndex(const CStringArray& texts, CaseRule rule);

    /// The index of the first element equal to the text, -1 if there is none.
    int Find(std::string_view text) const;
    /// The index of the first element equal to element `index`.
    int FirstLike(int index) const { return m_first[static_cast<std::size_t>(index)]; }
    /// How many different texts the array holds.
    int DistinctCount() const { return m_distinct; }

private:
    struct Slot {
        std::uint32_t hash = 0;
        int index = -1;
    };

    std::string_view Key(int index) const;
    Slot& SlotFor(std::string_view key, std::uint32_t hash);
    const Slot& SlotFor(std::string_view key, std::uint32_t hash) const;
    int Insert(int index);

    const std::vector<CString>& m_texts;
    CaseRule m_rule;
    std::vector<std::string> m_lower;  // the keys, when case is ignored
    std::vector<Slot> m_slots;         // a power of two, at most half of it taken
    std::vector<int> m_first;
    int m_distinct = 0;
};

}  // namespace qv
