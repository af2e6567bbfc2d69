#include "core/TextIndex.h"

#include <bit>

namespace qv {
namespace {

std::uint32_t HashOf(std::string_view key) {
    const std::uint64_t hash = std::hash<std::string_view>()(key);
    return static_cast<std::uint32_t>(hash ^ hash >> 32);
}

}  // namespace

TextIndex::TextIndex(const CStringArray& texts, CaseRule rule) : m_texts(texts.AsStd()), m_rule(rule) {
    m_slots.resize(std::bit_ceil(2 * m_texts.size() + 1));
    m_first.reserve(m_texts.size());
    if (m_rule == CaseRule::Ignore) {
        m_lower.reserve(m_texts.size());
        for (const CString& text : m_texts) m_lower.push_back(platform::ToLower(text));
    }
    for (int i = 0; i < texts.GetSize(); ++i) m_first.push_back(Insert(i));
}

int TextIndex::Find(std::string_view text) const {
    if (m_rule == CaseRule::Exact) return SlotFor(text, HashOf(text)).index;
    const std::string lower = platform::ToLower(text);
    return SlotFor(lower, HashOf(lower)).index;
}

std::string_view TextIndex::Key(int index) const {
    const auto i = static_cast<std::size_t>(index);
    return m_rule == CaseRule::Ignore ? std::string_view(m_lower[i]) : std::string_view(m_texts[i]);
}

const TextIndex::Slot& TextIndex::SlotFor(std::string_view key, std::uint32_t hash) const {
    const std::size_t mask = m_slots.size() - 1;
    std::size_t i = hash & mask;
    while (m_slots[i].index >= 0 && (m_slots[i].hash != hash || Key(m_slots[i].index) != key)) i = (i + 1) & mask;
    return m_slots[i];
}

TextIndex::Slot& TextIndex::SlotFor(std::string_view key, std::uint32_t hash) {
    return const_cast<Slot&>(std::as_const(*this).SlotFor(key, hash));
}

int TextIndex::Insert(int index) {
    const std::uint32_t hash = HashOf(Key(index));
    Slot& slot = SlotFor(Key(index), hash);
    if (slot.index < 0) slot = {hash, index}, ++m_distinct;
    return slot.index;
}

}  // namespace qv
