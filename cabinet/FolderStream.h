#pragma once

/// @file The data of a folder, through all cabinets of a set that have some of it.

#include <functional>
#include <memory>

#include "cabinet/BlockDecompressor.h"
#include "cabinet/CabinetIndex.h"

namespace qv::cabinet {

/// A cabinet's place in the set that is read: 0 for the first one opened.
using Serial = unsigned;

/// Gives the uncompressed data of one folder at a time, from front to back. A cabinet stays open for its next folders.
/// Blocks that take more bytes than the cabinet has are corrupt, so that folders that share data cost no more than others.
class FolderStream {
public:
    using OpenNext = std::function<std::unique_ptr<OpenCabinet>(Serial)>;

    /// @param open  opens a cabinet of the set by its serial; it gives up by an EngineFailure.
    FolderStream(IMemory& memory, OpenNext open);

    /// Whether the stream is on a folder, which may have begun in a cabinet before.
    bool IsOn(Serial cabinet, unsigned folder) const;
    /// Goes to the start of a folder, unless the stream is on this folder already. Nothing is read yet.
    void Select(Serial cabinet, unsigned folder);
    /// Passes over data up to a place in the folder, which does not lie before the present one. @throws as Read.
    void MoveTo(std::uint32_t offset);
    /// At least one and at most `most` bytes of data, valid until the next call. @throws EngineFailure Corrupt where
    /// there are none or where they are not what their checksum says, UnknownCompression, CannotDecompress, and what
    /// OpenNext does.
    Bytes Read(std::uint32_t most);
    /// Requires that the folder's data ends at a place that does not lie before the present one; does nothing before the
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
    std::uint64_t m_dataRead = 0;            ///< bytes of m_cabinet's blocks
    Serial m_first = 0, m_present = 0;       ///< where the folder starts, and the cabinet being read
    unsigned m_folder = 0;                   ///< its number in the first one
    bool m_selected = false;
    bool m_entered = false;  ///< m_cabinet has the folder, and its head was read
    unsigned m_compression = 0, m_blocksLeft = 0;
    std::uint32_t m_offset = 0;  ///< of the next byte
    Bytes m_block;               ///< the present one
    std::size_t m_next = 0;      ///< the next byte in it
};

}  // namespace qv::cabinet
