#pragma once

/// @file Folders that are read before FileFinder comes to them.

#include <string>
#include <unordered_map>

#include "files/FolderListing.h"
#include "threads/Executor.h"

namespace qv {

/// The listings of one walk. Those of folders that are sure to come are made on other threads, a bounded number at a time,
/// once the walk has turned out to be worth it. One thread uses it.
class ListingsAhead {
public:
    using Rules = std::shared_ptr<const SearchRules>;

    /// How many subfolders of one folder are read ahead.
    static constexpr int kSiblings = 16;

    /// @param path  where the walk begins, with its final separator
    explicit ListingsAhead(const CString& path);

    /// Reads a subfolder ahead if there is room; false otherwise.
    bool Expect(const CString& path, const Rules& rules);
    FolderListing Take(const CString& path, bool isOutermost, const Rules& rules);

private:
    CString RootOf(const CString& path) const;

    struct Expected {
        Rules rules;
        Task<FolderListing> listing;
    };

    const CString m_outermost, m_root;
    int m_taken = 0;
    Executor m_executor;
    std::unordered_map<std::string, Expected> m_expected;
};

}  // namespace qv
