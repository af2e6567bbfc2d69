#pragma once

/// @file Listing a folder with the metadata of each entry. Paths may use "\" on every system.

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/FileStatus.h"

namespace qv::platform {

/// Attribute bits of a search in addition to those of FileAttribute.
inline constexpr std::uint32_t kDevice = 0x40, kNormal = 0x80, kReparsePoint = 0x400;

/// The reparse tag of a symbolic link, and the bit set in all tags of links to another place.
inline constexpr std::uint32_t kSymbolicLinkTag = 0xA000000C, kStandsForAnotherPlace = 0x20000000;

/// One entry. Times count 100 ns since 1601 UTC, 0 if the file system does not store them.
///
/// On Linux a link has kReparsePoint and the tag of a symbolic link; its other fields describe the target, or the link
/// itself if the target does not exist. Devices, pipes and sockets have kDevice. An entry without any attribute is
/// kNormal.
struct FoundEntry {
    std::uint32_t attributes = 0;
    std::uint64_t created = 0, accessed = 0, written = 0;
    std::uint64_t size = 0;       ///< 0 for a folder
    std::uint32_t tag = 0;        ///< of a reparse point
    std::string name, shortName;  ///< in the library's form

    bool IsFolder() const { return attributes & kDirectory; }
    bool IsDots() const { return IsFolder() && (name == "." || name == ".."); }
    bool IsLink() const { return (attributes & kReparsePoint) && (tag & kStandsForAnotherPlace); }
};

class Folder;

enum class LastName { MayBeLink, NoLink };

/// The fields that a search must fill. With NameAndKind only the name, kDirectory and what IsLink needs for a link to a
/// folder are guaranteed; on Linux this costs no system call per entry.
enum class Detail { All, NameAndKind };
/// Returns the fields filled by a search for the given ones.
Detail GivenFor(Detail asked);

/// Describes the entry at the path, as a search does; the entry's name is unchanged. Links in its parent path are
/// followed.
Status FindEntry(const char* path, FoundEntry& entry);

/// An entry that a search skipped, and why. The empty name is the folder itself, which could not be listed completely.
struct PassedOver {
    std::string name;
    Status status;
};

/// One search at a time. Not thread-safe.
class FileSearch {
public:
    FileSearch();
    ~FileSearch();
    FileSearch(FileSearch&& other) noexcept;
    FileSearch& operator=(FileSearch&& other) noexcept;

    /// Starts a search for a folder and a mask, "folder\*.txt", ending a running one. In the mask, * and ? are
    /// wildcards; case is ignored. NoLink refuses a folder whose own name is a link.
    ///
    /// Entries are in the order of the system; on Linux sorted by name, ignoring case, "." and ".." first, and masks
    /// have the meaning that they have on Windows: "*.*" is every name, "*." one without an extension, "a.*" also "a".
    /// Fails if the folder cannot be read, not if nothing matches.
    Status Start(const char* pattern, LastName folder = LastName::MayBeLink, Detail detail = Detail::All);

    /// Starts a search for all entries of an open folder, which must outlive the search. LeftOut returns the reason of
    /// a failure.
    void StartIn(const Folder& folder);

    /// Reads the next entry; returns false after the last one. Entries that vanish meanwhile are skipped, and on Linux
    /// those for which the system returns nothing but the name. On Windows an entry whose name cannot be represented in
    /// a path has its short name instead, and is skipped if it has none.
    bool Next(FoundEntry& entry);

    /// Returns what was skipped since the last call, or since Start.
    std::vector<PassedOver> TakePassedOver() { return std::exchange(m_passedOver, {}); }
    /// Returns why an existing entry was skipped; a success if the search is complete.
    const Status& LeftOut() const { return m_leftOut; }

private:
    struct State;

    void PassOver(std::string name, const Status& status);

    std::unique_ptr<State> m_state;
    std::vector<PassedOver> m_passedOver;
    Status m_leftOut;
};

}  // namespace qv::platform
