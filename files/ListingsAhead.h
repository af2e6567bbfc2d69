#pragma once

/// @file Folders that are read before FileFinder reaches them.

#include <string>
#include <unordered_map>

#include "files/FolderListing.h"
#include "threads/Executor.h"

namespace qv {

/// The listings of one walk. Folders that are certain to be entered are listed on other threads, a bounded number at a
/// time, once the walk is long enough to gain from it. Not thread-safe.
class ListingsAhead {
public:
    using Rules = std::shared_ptr<const SearchRules>;

    /// How many subfolders of one folder are read ahead.
    static constexpr int kSiblings = 16;

    /// @param path  the root of the walk, with its final separator
    explicit ListingsAhead(const CString& path);

    /// Starts to read a subfolder ahead; returns false if there is no room.
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
