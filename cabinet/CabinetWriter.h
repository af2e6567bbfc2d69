#pragma once

/// @file The compression context: makes cabinets.

#include "cabinet/BlockCompressor.h"
#include "cabinet/Layout.h"

namespace qv::cabinet {

/// Makes a cabinet, or a set of them, out of files that are given one after the other. What they become stands in a
/// temporary file until the cabinet is flushed.
///
/// Every operation answers false when it failed, and the error record, which has to outlive the object, tells why; nothing
/// can be done with the object then but to end it. A cabinet that could not be finished is deleted. The buffers come from
/// the callbacks' memory; for each member and block some bytes more are taken from the language's own. The format holds
/// members of up to 65535 * 32768 bytes (kLargestFolder) with names of up to 255: others are refused (error 8). Folders are
/// closed before they grow longer, and cabinets before they have more than 65535 members.
class CabinetWriter {
public:
    /// Null when that failed. @param threads  0: as many as the machine has.
    static std::unique_ptr<CabinetWriter> Create(IMakerCallbacks& callbacks, const QvCabinetDescription& description,
                                                 QvCabinetError& error, unsigned threads = 0);
    /// What was not flushed is lost.
    ~CabinetWriter();
    CabinetWriter(const CabinetWriter&) = delete;
    CabinetWriter& operator=(const CabinetWriter&) = delete;

    /// @param compression  kStored or kMszip: others are error 5. Another one than before starts a new folder.
    bool AddFile(const CString& source, const CString& name, bool executable, int compression);
    /// Ends the folder: the next file starts a new one. Nothing happens to an empty one.
    bool FlushFolder();
    /// Writes all that was added. With `getNextCabinet` another cabinet follows, whatever it will hold.
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
    QvCabinetDescription m_previous;  ///< the cabinet before, when m_hasPrevious
    bool m_hasPrevious = false;
    QvCabinetError& m_error;
    OpenedFile m_store;
    std::int64_t m_stored = 0;
    StoredFolder m_folder;  ///< the one being filled
    std::vector<StoredFolder> m_folders;
    std::size_t m_pendingFiles = 0;
    std::uint64_t m_pendingEntries = 0;  ///< bytes of the list of files
    Cut m_start;
    std::uint64_t m_writtenData = 0;  ///< bytes of the first waiting folder that lie in cabinets already
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
