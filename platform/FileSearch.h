#pragma once

/// @file What a folder holds, with everything that the system tells of each entry. Paths may use "\" on every system.

#include <cstdint>
#include <memory>
#include <string>

#include "platform/FileStatus.h"

namespace qv::platform {

/// Attribute bits that a search gives besides those of FileAttribute.
inline constexpr std::uint32_t kDevice = 0x40, kNormal = 0x80, kReparsePoint = 0x400;

/// The reparse tag of a symbolic link, and the bit that all tags have which stand for another place.
inline constexpr std::uint32_t kSymbolicLinkTag = 0xA000000C, kStandsForAnotherPlace = 0x20000000;

/// One entry. Times count 100 ns since 1601 UTC, 0 where the file system keeps none.
///
/// On Linux a link carries kReparsePoint with the tag of a symbolic link, and for the rest tells of what it leads to; of
/// itself when that is not there. Devices, pipes and sockets carry kDevice. An entry without any attribute is kNormal.
struct FoundEntry {
    std::uint32_t attributes = 0;
    std::uint64_t created = 0, accessed = 0, written = 0;
    std::uint64_t size = 0;  ///< 0 for a folder
    std::uint32_t tag = 0;   ///< of a reparse point
    std::string name, shortName;

    bool IsFolder() const { return attributes & kDirectory; }
    bool IsDots() const { return IsFolder() && (name == "." || name == ".."); }
    bool IsLink() const { return (attributes & kReparsePoint) && (tag & kStandsForAnotherPlace); }
};

/// The same from the record that the system's own searches give, on disks and on servers.
template <class Data>
void CopyFindData(const Data& data, FoundEntry& entry) {
    const auto joined = [](std::uint64_t high, std::uint64_t low) { return high << 32 | low; };
    const auto steps = [&](const auto& time) { return joined(time.dwHighDateTime, time.dwLowDateTime); };
    entry.attributes = data.dwFileAttributes;
    entry.created = steps(data.ftCreationTime);
    entry.accessed = steps(data.ftLastAccessTime);
    entry.written = steps(data.ftLastWriteTime);
    entry.size = joined(data.nFileSizeHigh, data.nFileSizeLow);
    entry.tag = data.dwFileAttributes & kReparsePoint ? data.dwReserved0 : 0;
    entry.name = data.cFileName;
    entry.shortName = data.cAlternateFileName;
}

enum class LastName { MayBeLink, NoLink };

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
    FileFailure Start(const char* pattern, LastName folder = LastName::MayBeLink);

    /// The next entry; false behind the last one. Entries that vanish meanwhile are passed over.
    bool Next(FoundEntry& entry);

    /// What the search had to leave out: a folder that could not be read to its end or, on Linux, a name with a "\" in it,
    /// which no path of this library leads to. No failure when it gave all there is.
    const FileFailure& LeftOut() const { return m_leftOut; }

private:
    struct State;

    std::unique_ptr<State> m_state;
    FileFailure m_leftOut;
};

}  // namespace qv::platform
