#pragma once

/// @file How what is to be stored is laid out over the cabinets of a set.

#include <string>
#include <vector>

#include "cabinet/Format.h"

namespace qv::cabinet {

struct StoredFile {
    std::string name;  ///< as it stands in the cabinet
    std::uint32_t size = 0, offset = 0;
    std::uint16_t date = 0, time = 0, attributes = 0;
};

/// A folder whose compressed blocks stand in a file, one after the other, each with its header.
struct StoredFolder {
    Compression compression = kMszip;
    std::int64_t place = 0;             ///< of its first block
    std::uint32_t size = 0;             ///< uncompressed
    std::vector<std::uint16_t> blocks;  ///< their compressed sizes
    std::vector<StoredFile> files;

    std::size_t UncompressedBlock(std::size_t block) const {
        return block + 1 < blocks.size() ? kBlockSize : size - block * kBlockSize;
    }
    /// The block in which a file begins; an empty one at the end belongs to the last.
    std::size_t FirstBlock(const StoredFile& file) const;
    /// Whether some of the file's bytes lie in the block.
    bool Touches(const StoredFile& file, std::size_t block) const;
};

/// A place between two cabinets: `bytes` of the block's compressed data lie in the one before.
///
/// Blocks depend on the ones before them, so readers have to be told that a folder goes on, and members that lie on both
/// sides tell them. A place inside a folder is therefore always one inside a block: that one has members.
struct Cut {
    std::size_t folder = 0, block = 0, bytes = 0;

    bool IsInsideFolder() const { return block > 0 || bytes > 0; }
};

/// What one cabinet holds of a folder.
struct FolderPart {
    std::size_t folder = 0;
    std::size_t firstBlock = 0, endBlock = 0;
    std::size_t skip = 0;       ///< bytes of the first block that lie in the cabinet before
    std::size_t lastBytes = 0;  ///< bytes of the last block's compressed data up to the cut; 0 without one
    std::size_t files = 0;      ///< that are listed

    bool IsContinued() const { return firstBlock > 0 || skip > 0; }
    bool Continues() const { return lastBytes > 0; }
};

struct Plan {
    std::vector<FolderPart> parts;
    std::size_t files = 0;
    std::uint64_t size = 0;  ///< of all behind the header
    Cut end;
    bool isLast = false;  ///< nothing is left
};

struct LayoutSizes {
    std::uint64_t room;  ///< for all behind the header
    std::size_t folder = kFolderSize, data = kDataSize;
};

/// Puts as much into a cabinet as there is room for. @throws EngineFailure CabinetFile when there is not enough for
/// anything.
Plan PlanCabinet(const std::vector<StoredFolder>& folders, const Cut& start, const LayoutSizes& sizes);

/// The number under which a file's folder is listed, or nothing (-1) when the part does not list the file.
int ListedFolder(const StoredFolder& folder, const FolderPart& part, const StoredFile& file, std::size_t index);

}  // namespace qv::cabinet
