#pragma once

/// @file The distribution of stored data over the cabinets of a set.

#include <string>
#include <vector>

#include "cabinet/Format.h"

namespace qv::cabinet {

struct StoredFile {
    std::string name;  ///< as stored in the cabinet
    std::uint32_t size = 0, offset = 0;
    std::uint16_t date = 0, time = 0, attributes = 0;
};

/// A folder whose compressed blocks are in a file, contiguous, each with its header.
struct StoredFolder {
    Compression compression = kMszip;
    std::int64_t offset = 0;            ///< of its first block
    std::uint32_t size = 0;             ///< uncompressed
    std::vector<std::uint16_t> blocks;  ///< compressed sizes
    std::vector<StoredFile> files;

    std::size_t UncompressedBlock(std::size_t block) const {
        return block + 1 < blocks.size() ? kBlockSize : size - block * kBlockSize;
    }
    /// The block in which a file begins; an empty file at the end belongs to the last block.
    std::size_t FirstBlock(const StoredFile& file) const;
    /// Whether the block contains any of the file's bytes.
    bool Touches(const StoredFile& file, std::size_t block) const;
};

/// A boundary between two cabinets: `bytes` of the block's compressed data are in the earlier one.
///
/// Blocks depend on earlier ones, and readers learn that a folder continues only from members on both sides. A cut
/// inside a folder is therefore always inside a block that has members.
struct SplitPoint {
    std::size_t folder = 0, block = 0, bytes = 0;

    bool IsInsideFolder() const { return block > 0 || bytes > 0; }
};

/// The part of a folder in one cabinet.
struct FolderPart {
    std::size_t folder = 0;
    std::size_t firstBlock = 0, endBlock = 0;
    std::size_t skip = 0;       ///< bytes of the first block that are in the previous cabinet
    std::size_t lastBytes = 0;  ///< bytes of the last block's compressed data up to the cut; 0 if not cut
    std::size_t files = 0;      ///< the number of listed files

    bool IsContinued() const { return firstBlock > 0 || skip > 0; }
    bool Continues() const { return lastBytes > 0; }
};

struct Plan {
    std::vector<FolderPart> parts;
    std::size_t files = 0;
    std::uint64_t size = 0;  ///< of everything after the header
    SplitPoint end;
    bool isLast = false;  ///< nothing is left
};

struct LayoutSizes {
    std::uint64_t room;  ///< for everything after the header
    std::size_t folder = kFolderSize, data = kDataSize;
};

/// Fills a cabinet as far as there is room. @throws EngineFailure CabinetFile if not even the smallest part fits.
Plan PlanCabinet(const std::vector<StoredFolder>& folders, const SplitPoint& start, const LayoutSizes& sizes);

/// The folder number under which a file is listed; -1 if the part does not list the file.
int ListedFolder(const StoredFolder& folder, const FolderPart& part, const StoredFile& file, std::size_t index);

}  // namespace qv::cabinet
