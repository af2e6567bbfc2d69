#include "platform/posix/FolderNames.h"

#include <algorithm>

#include "platform/Ascii.h"
#include "platform/Text.h"

namespace qv::platform {
namespace {

std::uint64_t StartOf(std::string_view key) {
    std::uint64_t start = 0;
    for (std::size_t i = 0; i < sizeof start; ++i)
        start = start << 8 | (i < key.size() ? static_cast<unsigned char>(key[i]) : 0u);
    return start;
}

}  // namespace

void FolderNames::Add(std::string_view name, std::optional<EntryKind> kind) {
    m_places.push_back({.name = m_names.size(), .kind = kind});
    m_names.append(name).append(1, '\0');
}

void FolderNames::AddInFront(std::string_view name, EntryKind kind) {
    Add(name, kind);
    const auto place = m_places.begin() + static_cast<std::ptrdiff_t>(m_inFront++);
    std::rotate(place, m_places.end() - 1, m_places.end());
}

std::optional<FolderNames::Entry> FolderNames::Next() {
    if (m_next == m_places.size()) return std::nullopt;
    const Place& place = m_places[m_next++];
    return Entry{m_names.data() + place.name, place.kind};
}

void FolderNames::Sort() {
    MakeKeys();
    std::ranges::sort(m_places, [this](const Place& a, const Place& b) { return ComesBefore(a, b); });
}

void FolderNames::MakeKeys() {
    const ByteCase upper = CaseOfBytes(Case::Upper);
    const bool isWhole = CurrentCodePage() == CodePage::SingleByte;
    m_keys.reserve(m_names.size());
    for (Place& place : m_places) {
        const std::string_view name = m_names.data() + place.name;
        place.key = m_keys.size();
        if (upper.complete && (isWhole || std::ranges::all_of(name, [](char c) { return ascii::IsAscii(c); })))
            for (const char c : name) m_keys += static_cast<char>(upper.map[static_cast<unsigned char>(c)]);
        else
            m_keys += ToUpper(name);
        place.keyLength = static_cast<std::uint32_t>(m_keys.size() - place.key);
        place.keyStart = StartOf(std::string_view(m_keys).substr(place.key));
    }
}

bool FolderNames::ComesBefore(const Place& a, const Place& b) const {
    if (a.keyStart != b.keyStart) return a.keyStart < b.keyStart;
    const std::string_view keys = m_keys;
    const int order = keys.substr(a.key, a.keyLength).compare(keys.substr(b.key, b.keyLength));
    return order != 0 ? order < 0 : std::string_view(m_names.data() + a.name) < m_names.data() + b.name;
}

}  // namespace qv::platform
