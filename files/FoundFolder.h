#pragma once

/// @file What a search found in one folder, in little memory.

#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "platform/FileSearch.h"
#include "qvcommon/framework/String.h"

namespace qv {

/// The entries of a folder and the folder's path, shared by their CFoundInfo. They take some 60 bytes each, beside their
/// names. Once it is shared, it must not be added to, and any thread may call its other members.
class FoundFolder {
public:
    struct Record {
        std::uint64_t created = 0, accessed = 0, written = 0, size = 0;
        std::uint32_t attributes = 0, tag = 0;
    };

    /// @param detail  NameAndKind: the rest of a record is asked for when it is read for the first time. An entry that
    /// cannot be asked for any more has zeroes there.
    explicit FoundFolder(CString root, platform::Detail detail = platform::Detail::All)
        : m_root(std::move(root)), m_detail(detail) {}

    void Add(const platform::FoundEntry& entry);
    /// Adds an entry of another one.
    void Add(const FoundFolder& other, std::size_t index) { Add(other.NameOf(index), other.m_entries[index].record); }
    /// Gives back memory that was taken ahead.
    void Close();

    const CString& Root() const { return m_root; }
    std::size_t Size() const { return m_entries.size(); }
    std::string_view NameOf(std::size_t index) const;
    /// What the entry was when it was found: a folder, a link to one, "." or "..".
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
    mutable std::mutex m_asking;  // guards the records that are not whole from the start
    mutable std::vector<Entry> m_entries;
};

}  // namespace qv
