#pragma once

/// @file The compression context: creates cabinets.

#include "cabinet/BlockCompressor.h"
#include "cabinet/Layout.h"

namespace qv::cabinet {

/// Creates a cabinet, or a set of them, from files that are added one by one. Their compressed data is kept in a
/// temporary file until the cabinet is flushed.
///
/// Every operation returns false on failure, and the error record, which must outlive the object, says why; the object
/// can then only be destroyed. An unfinished cabinet is deleted. Buffers are allocated by the callbacks; small
/// bookkeeping per member and block uses the heap. The format allows members of up to 65535 * 32768 bytes
/// (kLargestFolder) with names of up to 255 bytes: others are refused (error 8). Folders are ended before they exceed
/// that size, and cabinets before they have more than 65535 members.
class CabinetWriter {
public:
    /// Returns null on failure. @param threads  0: the number of processors.
    static std::unique_ptr<CabinetWriter> Create(IMakerCallbacks& callbacks, const QvCabinetDescription& description,
                                                 QvCabinetError& error, unsigned threads = 0);
    /// Discards what was not flushed.
    ~CabinetWriter();
    CabinetWriter(const CabinetWriter&) = delete;
    CabinetWriter& operator=(const CabinetWriter&) = delete;

    /// @param compression  kStored or kMszip; others are error 5. A change starts a new folder.
    bool AddFile(const CString& source, const CString& name, bool executable, int compression);
    /// Ends the folder: the next file starts a new one. No-op for an empty folder.
    bool FlushFolder();
    /// Writes everything that was added. With `getNextCabinet` another cabinet follows, even if it stays empty.
    bool FlushCabinet(bool getNextCabinet);

private:
    CabinetWriter(IMakerCallbacks& callbacks, const QvCabinetDescription& description, QvCabinetError& error,
                  unsigned threads);

    template <class Action>
    bool Run(Action action);
    void OpenStore();
    void Store(const CompressedBlock& block);
    void ReadInto(OpenedFile& source, StoredFile& file);
    void MakeRoom(std::uint64_t size, Compression compression);
    void EndFolder();
    std::uint64_t PendingSize() const;
    bool MayStillFit() const;

    IMakerCallbacks& m_callbacks;
    QvCabinetDescription m_description;
    QvCabinetDescription m_previous;  ///< the previous cabinet, if m_hasPrevious
    bool m_hasPrevious = false;
    QvCabinetError& m_error;
    OpenedFile m_store;
    std::int64_t m_stored = 0;
    StoredFolder m_folder;  ///< the folder being filled
    std::vector<StoredFolder> m_folders;
    std::size_t m_pendingFiles = 0;
    std::uint64_t m_pendingEntries = 0;  ///< size of the list of files in bytes
    SplitPoint m_start;
    std::uint64_t m_writtenData = 0;  ///< bytes of the first pending folder that are already in cabinets
    bool m_wroteCabinet = false;
    BlockCompressor m_compressor;

    void WriteCabinets(bool all, bool getNextCabinet);
    void WriteCabinet(const Plan& plan, bool hasNext);
    LayoutSizes SizesWith(std::uint64_t header) const;
    std::uint64_t HeaderSize(bool hasNext) const;
    void DropWritten(const Plan& plan);
    void CountPending();
};

}  // namespace qv::cabinet
