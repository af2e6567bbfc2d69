#pragma once

/// @file A memory-efficient store of a search's results in one folder.

#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "platform/FileSearch.h"
#include "qvcommon/framework/String.h"

namespace qv {

/// The entries of a folder and the folder's path, shared by their CFoundInfo. An entry takes about 60 bytes plus its
/// name. Once shared, it must not be added to, and its other members are thread-safe.
class FoundFolder {
public:
    struct Record {
        std::uint64_t created = 0, accessed = 0, written = 0, size = 0;
        std::uint32_t attributes = 0, tag = 0;
    };

    /// @param detail  NameAndKind: the rest of a record is queried when it is first read. If the entry can no longer be
    /// queried, those fields are zero.
    explicit FoundFolder(CString root, platform::Detail detail = platform::Detail::All)
        : m_root(std::move(root)), m_detail(detail) {}

    void Add(const platform::FoundEntry& entry);
    /// Adds an entry of another folder.
    void Add(const FoundFolder& other, std::size_t index) { Add(other.NameOf(index), other.m_entries[index].record); }
    /// Releases memory that was reserved.
    void Close();

    const CString& Root() const { return m_root; }
    std::size_t Size() const { return m_entries.size(); }
    std::string_view NameOf(std::size_t index) const;
    /// The entry's kind when it was found: a folder, a link to a folder, "." or "..".
    bool IsFolder(std::size_t index) const { return m_entries[index].isFolder; }
    bool IsFolderLink(std::size_t index) const { return m_entries[index].isFolderLink; }
    bool IsDots(std::size_t index) const;
    Record RecordOf(std::size_t index) const;

private:
    struct Entry {
        Record record;
        std::uint32_t nameEnd = 0;
        bool isFolder = false, isFolderLink = false, isWhole = false;
    };

    void Add(std::string_view name, const Record& record);
    void Ask(std::size_t index) const;

    const CString m_root;
    const platform::Detail m_detail;
    std::string m_names;
    mutable std::mutex m_asking;  // guards the records that were not complete from the start
    mutable std::vector<Entry> m_entries;
};

}  // namespace qv
