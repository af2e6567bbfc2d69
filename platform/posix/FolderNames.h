#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Folder.h"

namespace qv::platform {

/// The names of a folder's entries, in one piece of memory, given out in their order.
class FolderNames {
public:
    struct Entry {
        const char* name;               ///< valid until the next call of Add
        std::optional<EntryKind> kind;  ///< where it is known
    };

    void Add(std::string_view name, std::optional<EntryKind> kind);
    /// Puts what was added so far in order: by name without regard to case, equal ones by their bytes.
    void Sort();
    /// Puts a name before all others, after those that were put there.
    void AddInFront(std::string_view name, EntryKind kind);
    std::optional<Entry> Next();

private:
    struct Place {
        std::uint64_t keyStart = 0;  ///< the key's first bytes, the first one highest
        std::size_t name = 0, key = 0;
        std::uint32_t keyLength = 0;
        std::optional<EntryKind> kind;
    };

    void MakeKeys();
    bool ComesBefore(const Place& a, const Place& b) const;

    std::string m_names;  // each with its final zero
    std::string m_keys;
    std::vector<Place> m_places;
    std::size_t m_inFront = 0, m_next = 0;
};

}  // namespace qv::platform
