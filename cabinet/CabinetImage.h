#pragma once

/// @file The contents of one cabinet, in file order.

#include "cabinet/CabinetOutput.h"
#include "cabinet/Layout.h"

namespace qv::cabinet {

/// Writes one cabinet as planned. Everything it refers to must outlive it.
class CabinetImage {
public:
    struct Source {
        IMakerCallbacks& callbacks;
        Handle store;  ///< the file with the compressed blocks
        const std::vector<StoredFolder>& folders;
        const QvCabinetDescription &cabinet, &previous, &next;
    };

    CabinetImage(const Source& source, const Plan& plan, unsigned flags, std::uint64_t headerSize);

    /// @throws EngineFailure if the store cannot be read, the output cannot be written, or a callback stops.
    void Write(CabinetOutput& out);
    std::uint64_t TotalSize() const { return m_headerSize + m_plan.size; }

private:
    std::uint64_t DataHeaderSize() const { return kDataSize + m_source.cabinet.dataReserve; }
    void PutHeader(CabinetOutput& out);
    std::uint64_t DataSizeOf(const FolderPart& part) const;
    void PutFolders(CabinetOutput& out);
    void PutFiles(CabinetOutput& out, const FolderPart& part, std::size_t index);
    void PutData(CabinetOutput& out, const FolderPart& part);
    void PutSplitBlock(CabinetOutput& out, const FolderPart& part, std::size_t block, std::uint64_t offset);
    void CopyStored(CabinetOutput& out, std::uint64_t offset, std::uint64_t size);
    void SeekStore(std::uint64_t offset);

    const Source& m_source;
    const Plan& m_plan;
    unsigned m_flags;
    std::uint64_t m_headerSize;
    std::uint64_t m_entries = 0;  ///< size of the list of folders in bytes
    std::uint64_t m_list = 0;     ///< size of the list of files in bytes
    std::uint32_t m_copied = 0, m_total = 0;
};

}  // namespace qv::cabinet
