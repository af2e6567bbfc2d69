#pragma once

/// @file What a folder holds, with all that the system knows of each entry. Paths may use "\" on every system.

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/FileStatus.h"

namespace qv::platform {

/// Attribute bits that a search gives besides those of FileAttribute.
inline constexpr std::uint32_t kDevice = 0x40, kNormal = 0x80, kReparsePoint = 0x400;

/// The reparse tag of a symbolic link, and the bit that all tags have which stand for another place.
inline constexpr std::uint32_t kSymbolicLinkTag = 0xA000000C, kStandsForAnotherPlace = 0x20000000;

/// One entry. Times count 100 ns since 1601 UTC, 0 where the file system keeps none.
///
/// On Linux a link has kReparsePoint and the tag of a symbolic link; its other fields describe the target, or the link
/// itself when there is no target. Devices, pipes and sockets carry kDevice. An entry without any attribute is kNormal.
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

/// How much of each entry a search asks for. With NameAndKind nothing but the name, kDirectory and what IsLink needs of a
/// link to a folder is sure to be there; on Linux it costs no system call for each entry.
enum class Detail { All, NameAndKind };
/// What a search gives that was asked for this.
Detail GivenFor(Detail asked);

/// Describes what the path names, as a search does; the entry's name is left alone. Links in the way to it are followed.
Status FindEntry(const char* path, FoundEntry& entry);

/// What a search passed over, and why. The empty name is the folder itself, of which something could not be listed.
struct PassedOver {
    std::string name;
    Status status;
};

/// One search at a time, of one thread.
class FileSearch {
public:
    FileSearch();
    ~FileSearch();
    FileSearch(FileSearch&& other) noexcept;
    FileSearch& operator=(FileSearch&& other) noexcept;

    /// Begins a search for a folder and a mask, "folder\*.txt"; one that is under way ends. In the mask, * and ? are wild
    /// cards; case does not count. NoLink refuses a folder whose own name is a link.
    ///
    /// Entries come in the order of the system; on Linux sorted by name without regard to case, "." and ".." first, and
    /// masks mean what they mean on Windows: "*.*" is every name, "*." one without an extension, "a.*" also "a".
    /// Fails when the folder cannot be read, not when nothing matches.
    Status Start(const char* pattern, LastName folder = LastName::MayBeLink, Detail detail = Detail::All);

    /// Begins a search for all entries of an open folder, which must outlive the search. LeftOut says why it fails.
    void StartIn(const Folder& folder);

    /// The next entry; false after the last one. Entries that vanish meanwhile are passed over, and on Linux those about
    /// which the system tells nothing but their name. On Windows an entry whose name paths cannot hold has its short name
    /// instead, and is passed over where it has none.
    bool Next(FoundEntry& entry);

    /// What was passed over since the last call, or since Start.
    std::vector<PassedOver> TakePassedOver() { return std::exchange(m_passedOver, {}); }
    /// Why something was passed over that has not vanished. A success when the search gave all there is.
    const Status& LeftOut() const { return m_leftOut; }

private:
    struct State;

    void PassOver(std::string name, const Status& status);

    std::unique_ptr<State> m_state;
    std::vector<PassedOver> m_passedOver;
    Status m_leftOut;
};

}  // namespace qv::platform
