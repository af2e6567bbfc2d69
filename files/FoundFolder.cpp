#include "files/FoundFolder.h"

#include "framework/PathText.h"

namespace qv {

using platform::Detail;
using platform::FoundEntry;

namespace {

FoundFolder::Record RecordFrom(const FoundEntry& entry) {
    return {entry.created, entry.accessed, entry.written, entry.size, entry.attributes, entry.tag};
}

}  // namespace

void FoundFolder::Add(const FoundEntry& entry) {
    Add(entry.name, RecordFrom(entry));
}

void FoundFolder::Add(std::string_view name, const Record& record) {
    m_names += name;
    const bool isFolder = record.attributes & platform::kDirectory;
    const bool isLink =
        (record.attributes & platform::kReparsePoint) && (record.tag & platform::kStandsForAnotherPlace);
    m_entries.push_back({.record = record,
                         .nameEnd = static_cast<std::uint32_t>(m_names.size()),
                         .isFolder = isFolder,
                         .isFolderLink = isFolder && isLink,
                         .isWhole = m_detail == Detail::All});
}

void FoundFolder::Close() {
    m_names.shrink_to_fit();
    m_entries.shrink_to_fit();
}

std::string_view FoundFolder::NameOf(std::size_t index) const {
    const std::size_t start = index == 0 ? 0 : m_entries[index - 1].nameEnd;
    return std::string_view(m_names).substr(start, m_entries[index].nameEnd - start);
}

bool FoundFolder::IsDots(std::size_t index) const {
    const std::string_view name = NameOf(index);
    return IsFolder(index) && (name == "." || name == "..");
}

FoundFolder::Record FoundFolder::RecordOf(std::size_t index) const {
    if (m_detail == Detail::All) return m_entries[index].record;
    const std::lock_guard lock(m_asking);
    if (!m_entries[index].isWhole) Ask(index);
    return m_entries[index].record;
}

void FoundFolder::Ask(std::size_t index) const {
    std::string path = m_root;
    if (!EndsWithOneOf(path, kSeparators)) path += '\\';
    path += NameOf(index);
    FoundEntry entry;
    m_entries[index].isWhole = true;
    if (platform::FindEntry(path.c_str(), entry).ok()) m_entries[index].record = RecordFrom(entry);
}

}  // namespace qv
