#pragma once

/// @file The data of a folder, across all cabinets of a set that contain part of it.

#include <functional>
#include <memory>

#include "cabinet/BlockDecompressor.h"
#include "cabinet/CabinetIndex.h"

namespace qv::cabinet {

/// A cabinet's position in the set that is read: 0 for the first one opened.
using Serial = unsigned;

/// Delivers the uncompressed data of one folder at a time, sequentially. A cabinet stays open for its next folders.
/// Blocks that exceed the cabinet's size in total are corrupt, so folders that share data cost as much as others.
class FolderStream {
public:
    using OpenNext = std::function<std::unique_ptr<OpenCabinet>(Serial)>;

    /// @param open  opens a cabinet of the set by its serial; throws EngineFailure.
    FolderStream(IMemory& memory, OpenNext open);

    /// Whether the stream is on a folder, which may have begun in an earlier cabinet.
    bool IsOn(Serial cabinet, unsigned folder) const;
    /// Selects a folder and its start, unless it is already selected. Reads nothing yet.
    void Select(Serial cabinet, unsigned folder);
    /// Skips data up to an offset in the folder, which must not be before the current one. @throws as Read.
    void MoveTo(std::uint32_t offset);
    /// Returns 1 to `most` bytes of data, valid until the next call. @throws EngineFailure Corrupt at the end of the
    /// data or if the checksum does not match, UnknownCompression, CannotDecompress, and what OpenNext throws.
    Bytes Read(std::uint32_t most);
    /// Requires that the folder's data ends at an offset, which must not be before the current one; no-op before the
    /// first Select. @throws as Read.
    void RequireEnd(std::uint32_t offset);

private:
    void NextBlock();
    void ReadBlock();
    std::size_t ReadPart(std::size_t at, std::size_t& uncompressed);
    void GoOnInNextCabinet();
    void Open(Serial cabinet);
    void EnterFolder();

    OpenNext m_openNext;
    BlockDecompressor m_decompressor;
    std::unique_ptr<OpenCabinet> m_cabinet;  ///< null until data is needed
    Serial m_open = 0;                       ///< the number of m_cabinet
    std::uint64_t m_dataRead = 0;            ///< bytes read of m_cabinet's blocks
    Serial m_first = 0, m_present = 0;       ///< the cabinet in which the folder starts, and the one being read
    unsigned m_folder = 0;                   ///< its number in the first one
    bool m_selected = false;
    bool m_entered = false;  ///< m_cabinet contains the folder, and its header was read
    unsigned m_compression = 0, m_blocksLeft = 0;
    std::uint32_t m_offset = 0;  ///< of the next byte
    Bytes m_block;               ///< the current block
    std::size_t m_next = 0;      ///< the next byte in it
};

}  // namespace qv::cabinet
