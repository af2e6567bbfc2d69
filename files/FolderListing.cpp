#include "files/FolderListing.h"

#include <algorithm>
#include <iterator>

namespace qv {

using platform::Detail;
using platform::FileSearch;
using platform::FoundEntry;
using platform::LastName;
using platform::PassedOver;
using platform::Status;

namespace {

constexpr const char* kEveryName = "*.*";

}  // namespace

bool SearchRules::IsListed(const FoundEntry& entry) const {
    const bool kind = entry.IsFolder() ? includeDirectories != 0 && !entry.IsDots() : includeDirectories != 1;
    return kind && (!listed || listed->Match(entry.name)) && !(excluded && excluded->Match(entry.name));
}

bool SearchRules::IsEntered(const FoundEntry& entry) const {
    return recurse && entry.IsFolder() && !entry.IsDots() && !entry.IsLink() &&
           !(excluded && excluded->Match(entry.name));
}

FolderListing::FolderListing(const CString& path, const CString& root, bool isOutermost, const SearchRules& rules)
    : m_entries(std::make_unique<FoundFolder>(root)) {
    // The search path itself may be a link. Folders below it may not: one could have become a link since it was listed.
    const LastName lastName = isOutermost ? LastName::MayBeLink : LastName::NoLink;
    // A mask that takes every name finds the subfolders and all omitted entries in one search.
    const bool takesAll = rules.mask == kEveryName || rules.mask == "*";
    Read(path, lastName, rules, takesAll || !rules.recurse);
    if (!takesAll && rules.recurse) ReadSubfolders(path, lastName, rules);
}

void FolderListing::Read(const CString& path, LastName lastName, const SearchRules& rules, bool seesSubfolders) {
    FileSearch search;
    FoundEntry entry;
    const Status started = search.Start(path + rules.mask, lastName, rules.detail);
    if (!started.ok() && seesSubfolders) m_leftOut.push_back({"", started});
    while (search.Next(entry)) {
        m_entries->Add(entry);
        m_listed.push_back(rules.IsListed(entry));
        if (seesSubfolders) EnterLater(entry, rules);
    }
    // The search for subfolders also reports what is wrong with the folder itself.
    for (PassedOver& passedOver : search.TakePassedOver())
        if (seesSubfolders || !passedOver.name.empty()) m_leftOut.push_back(std::move(passedOver));
}

void FolderListing::ReadSubfolders(const CString& path, LastName lastName, const SearchRules& rules) {
    FileSearch search;
    FoundEntry entry;
    if (const Status started = search.Start(path + kEveryName, lastName, Detail::NameAndKind); !started.ok())
        m_leftOut.push_back({"", started});
    while (search.Next(entry)) EnterLater(entry, rules);
    std::ranges::move(search.TakePassedOver(), std::back_inserter(m_leftOut));
}

void FolderListing::EnterLater(const FoundEntry& entry, const SearchRules& rules) {
    if (rules.IsEntered(entry)) m_subfolders.Add(entry.name);
}

}  // namespace qv
