#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Folder.h"

namespace qv::platform {

/// The names of a folder's entries, stored contiguously and returned in order.
class FolderNames {
public:
    struct Entry {
        const char* name;               ///< valid until the next call of Add
        std::optional<EntryKind> kind;  ///< if known
    };

    void Add(std::string_view name, std::optional<EntryKind> kind);
    /// Sorts the names added so far, ignoring case, equal ones by their bytes.
    void Sort();
    /// Adds a name before all others, after those already added in front.
    void AddInFront(std::string_view name, EntryKind kind);
    std::optional<Entry> Next();

private:
    struct Place {
        std::uint64_t keyStart = 0;  ///< the key's first bytes, big-endian
        std::size_t name = 0, key = 0;
        std::uint32_t keyLength = 0;
        std::optional<EntryKind> kind;
    };

    void MakeKeys();
    bool ComesBefore(const Place& a, const Place& b) const;

    std::string m_names;  // each with its zero byte
    std::string m_keys;
    std::vector<Place> m_places;
    std::size_t m_inFront = 0, m_next = 0;
};

}  // namespace qv::platform
