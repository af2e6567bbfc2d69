#pragma once

/// @file The content of one folder as FileFinder reads it.

#include <memory>
#include <vector>

#include "files/FoundFolder.h"
#include "files/NameMasks.h"

namespace qv {

/// What FileFinder looks for.
struct SearchRules {
    CString mask;                               ///< the mask that the system's search takes
    std::shared_ptr<const NameMasks> listed;    ///< null: all that the mask takes
    std::shared_ptr<const NameMasks> excluded;  ///< null: none is excluded
    bool recurse = false;
    int includeDirectories = 0;
    platform::Detail detail = platform::Detail::All;

    bool IsListed(const platform::FoundEntry& entry) const;
    bool IsEntered(const platform::FoundEntry& entry) const;
};

/// The content of a folder, read in the constructor. A value; any thread may make one.
class FolderListing {
public:
    /// @param path  with its final separator; must not be a link unless it is the outermost folder
    /// @param root  the same as an absolute path
    FolderListing(const CString& path, const CString& root, bool isOutermost, const SearchRules& rules);

    const CString& Root() const { return m_entries->Root(); }
    /// All entries that the mask takes, in order; IsListed says which of them are listed.
    const FoundFolder& Entries() const { return *m_entries; }
    bool IsListed(std::size_t index) const { return m_listed[index]; }
    /// The names of the folders to enter, if any.
    CStringArray& Subfolders() { return m_subfolders; }
    const std::vector<platform::PassedOver>& LeftOut() const { return m_leftOut; }

private:
    void Read(const CString& path, platform::LastName lastName, const SearchRules& rules, bool seesSubfolders);
    void ReadSubfolders(const CString& path, platform::LastName lastName, const SearchRules& rules);
    void EnterLater(const platform::FoundEntry& entry, const SearchRules& rules);

    std::unique_ptr<FoundFolder> m_entries;
    std::vector<bool> m_listed;
    CStringArray m_subfolders;
    std::vector<platform::PassedOver> m_leftOut;
};

}  // namespace qv
