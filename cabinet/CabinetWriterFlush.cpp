#include <algorithm>
#include <utility>

#include "cabinet/CabinetWriter.h"

namespace qv::cabinet {
namespace {

constexpr std::size_t kOutputBuffer = 64 * 1024;

}  // namespace

/// A cabinet that is being written. Unless it is kept, it is deleted at the end of its scope.
class CabinetOutput {
public:
    CabinetOutput(IMakerCallbacks& callbacks, const CString& path)
        : m_callbacks(callbacks),
          m_path(path),
          m_buffer(callbacks, kOutputBuffer, WriteError::NoMemory),
          m_file(callbacks) {
        m_file.Take(callbacks.Open(path, OpenMode::Create));
        if (!m_file) throw EngineFailure{WriteError::CabinetFile};
    }
    ~CabinetOutput() {
        if (m_path.IsEmpty()) return;
        m_file.Close();
        m_callbacks.Delete(m_path);
    }
    CabinetOutput(const CabinetOutput&) = delete;
    CabinetOutput& operator=(const CabinetOutput&) = delete;

    void Put(const void* data, std::size_t size) {
        for (const auto* next = static_cast<const unsigned char*>(data); size > 0;) {
            const std::span<unsigned char> room = Room();
            const std::size_t part = std::min(size, room.size());
            std::copy_n(next, part, room.data());
            Filled(part);
            next += part;
            size -= part;
        }
    }
    void PutText(std::string_view text) {
        Put(text.data(), text.size());
        Put("", 1);
    }
    void PutZeros(std::size_t count) {
        for (constexpr unsigned char kZero = 0; count > 0; --count) Put(&kZero, 1);
    }
    /// Never empty.
    std::span<unsigned char> Room() {
        if (m_filled == kOutputBuffer) Flush();
        return {m_buffer.Get() + m_filled, kOutputBuffer - m_filled};
    }
    void Filled(std::size_t size) {
        m_filled += size;
        m_size += size;
    }
    std::uint64_t Size() const { return m_size; }
    void Keep() {
        Flush();
        if (!m_file.Close()) throw EngineFailure{WriteError::CabinetFile};
        m_path.Empty();
    }

private:
    void Flush() {
        if (m_filled > 0 && !m_callbacks.Write(m_file.Get(), m_buffer.Get(), m_filled))
            throw EngineFailure{WriteError::CabinetFile};
        m_filled = 0;
    }

    IMakerCallbacks& m_callbacks;
    CString m_path;
    Buffer m_buffer;
    OpenedFile m_file;
    std::size_t m_filled = 0;
    std::uint64_t m_size = 0;
};

namespace {

std::size_t NamesSize(const QvCabinetDescription& cabinet) {
    return cabinet.cabinetName.AsStd().size() + cabinet.diskName.AsStd().size() + 2;
}

void PutNames(CabinetOutput& out, const QvCabinetDescription& cabinet) {
    out.PutText(cabinet.cabinetName);
    out.PutText(cabinet.diskName);
}

void CheckNames(const QvCabinetDescription& cabinet) {
    for (const CString& name : {cabinet.cabinetName, cabinet.diskName})
        if (static_cast<std::size_t>(name.GetLength()) >= kLongestName || name.Find('\0') >= 0)
            throw EngineFailure{WriteError::CabinetFile};
}

bool HasReserves(const QvCabinetDescription& cabinet) {
    return cabinet.headerReserve || cabinet.folderReserve || cabinet.dataReserve;
}

/// One cabinet's parts in the order of the file.
class CabinetImage {
public:
    struct Source {
        IMakerCallbacks& callbacks;
        Handle store;
        const std::vector<StoredFolder>& folders;
        const QvCabinetDescription &cabinet, &previous, &next;
    };

    CabinetImage(const Source& source, const Plan& plan, unsigned flags, std::uint64_t headerSize)
        : m_source(source), m_plan(plan), m_flags(flags), m_headerSize(headerSize) {
        for (const FolderPart& part : plan.parts) {
            m_entries += kFolderSize + source.cabinet.folderReserve;
            const StoredFolder& folder = source.folders[part.folder];
            for (const StoredFile& file : folder.files)
                if (ListedFolder(folder, part, file, 0) >= 0) m_list += kFileSize + file.name.size() + 1;
        }
    }

    void Write(CabinetOutput& out) {
        PutHeader(out);
        PutFolders(out);
        for (std::size_t i = 0; i < m_plan.parts.size(); ++i) PutFiles(out, m_plan.parts[i], i);
        m_total = static_cast<std::uint32_t>(TotalSize() - out.Size());
        for (const FolderPart& part : m_plan.parts) PutData(out, part);
    }
    std::uint64_t TotalSize() const { return m_headerSize + m_plan.size; }

private:
    std::uint64_t DataHead() const { return kDataSize + m_source.cabinet.dataReserve; }

    void PutHeader(CabinetOutput& out) {
        const QvCabinetDescription& cabinet = m_source.cabinet;
        unsigned char head[kHeaderSize];
        unsigned char* at = Put32(Put32(head, kSignature), 0);
        at = Put32(Put32(at, static_cast<std::uint32_t>(TotalSize())), 0);
        at = Put32(Put32(at, static_cast<std::uint32_t>(m_headerSize + m_entries)), 0);
        *at++ = kMinorVersion;
        *at++ = kMajorVersion;
        at = Put16(Put16(at, static_cast<unsigned>(m_plan.parts.size())), static_cast<unsigned>(m_plan.files));
        at = Put16(Put16(at, m_flags), cabinet.setId);
        Put16(at, static_cast<unsigned>(cabinet.cabinetNumber));
        out.Put(head, sizeof head);
        if (m_flags & kHasReserve) {
            unsigned char sizes[kReserveSizesSize];
            at = Put16(sizes, cabinet.headerReserve);
            *at++ = cabinet.folderReserve;
            *at = cabinet.dataReserve;
            out.Put(sizes, sizeof sizes);
            out.PutZeros(cabinet.headerReserve);
        }
        if (m_flags & kHasPrevious) PutNames(out, m_source.previous);
        if (m_flags & kHasNext) PutNames(out, m_source.next);
    }

    std::uint64_t DataSizeOf(const FolderPart& part) const {
        const StoredFolder& folder = m_source.folders[part.folder];
        std::uint64_t size = 0;
        for (std::size_t i = part.firstBlock; i < part.endBlock; ++i) size += DataHead() + folder.blocks[i];
        if (part.Continues()) size -= folder.blocks[part.endBlock - 1] - part.lastBytes;
        return size - part.skip;
    }

    void PutFolders(CabinetOutput& out) {
        std::uint64_t place = m_headerSize + m_entries + m_list;
        for (const FolderPart& part : m_plan.parts) {
            unsigned char entry[kFolderSize];
            unsigned char* const at = Put32(entry, static_cast<std::uint32_t>(place));
            Put16(Put16(at, static_cast<unsigned>(part.endBlock - part.firstBlock)),
                  m_source.folders[part.folder].compression);
            out.Put(entry, sizeof entry);
            out.PutZeros(m_source.cabinet.folderReserve);
            place += DataSizeOf(part);
        }
    }

    void PutFiles(CabinetOutput& out, const FolderPart& part, std::size_t index) {
        const StoredFolder& folder = m_source.folders[part.folder];
        for (const StoredFile& file : folder.files) {
            const int listed = ListedFolder(folder, part, file, index);
            if (listed < 0) continue;
            unsigned char entry[kFileSize];
            unsigned char* at = Put32(Put32(entry, file.size), file.offset);
            at = Put16(Put16(at, static_cast<unsigned>(listed)), file.date);
            Put16(Put16(at, file.time), file.attributes);
            out.Put(entry, sizeof entry);
            out.PutText(file.name);
            const BOOL continued = listed == kFromPrevious || listed == kPreviousAndNext;
            const int answer =
                m_source.callbacks.FilePlaced(m_source.cabinet, CString(file.name), file.size, continued);
            if (answer == -1) throw EngineFailure{WriteError::Aborted};
        }
    }

    void PutData(CabinetOutput& out, const FolderPart& part) {
        const StoredFolder& folder = m_source.folders[part.folder];
        std::uint64_t place = static_cast<std::uint64_t>(folder.place);
        for (std::size_t i = 0; i < part.firstBlock; ++i) place += DataHead() + folder.blocks[i];
        std::size_t block = part.firstBlock;
        if (part.skip > 0) {
            PutSplitBlock(out, part, block, place);
            place += DataHead() + folder.blocks[block++];
        }
        std::uint64_t whole = 0;
        const std::size_t end = part.Continues() ? part.endBlock - 1 : part.endBlock;
        for (std::size_t i = block; i < end; ++i) whole += DataHead() + folder.blocks[i];
        CopyStored(out, place, whole);
        if (part.Continues() && block < part.endBlock) PutSplitBlock(out, part, part.endBlock - 1, place + whole);
    }

    /// What lies in this cabinet of a block whose stored form stands at `place`.
    void PutSplitBlock(CabinetOutput& out, const FolderPart& part, std::size_t block, std::uint64_t place) {
        const StoredFolder& folder = m_source.folders[part.folder];
        const bool goesOn = part.Continues() && block + 1 == part.endBlock;
        const std::size_t from = block == part.firstBlock ? part.skip : 0;
        const std::size_t to = goesOn ? part.lastBytes : folder.blocks[block];
        const Buffer data(m_source.callbacks, to - from, WriteError::NoMemory);
        SeekStore(place + DataHead() + from);
        if (m_source.callbacks.Read(m_source.store, data.Get(), to - from) != static_cast<std::int64_t>(to - from))
            throw EngineFailure{WriteError::TempFile};
        unsigned char head[kDataSize];
        PutDataHeader(head, data.Get(), to - from, goesOn ? 0 : folder.UncompressedBlock(block));
        out.Put(head, sizeof head);
        out.PutZeros(m_source.cabinet.dataReserve);
        out.Put(data.Get(), to - from);
    }

    void CopyStored(CabinetOutput& out, std::uint64_t place, std::uint64_t size) {
        if (size > 0) SeekStore(place);
        while (size > 0) {
            const std::span<unsigned char> room = out.Room();
            const auto part = static_cast<std::size_t>(std::min<std::uint64_t>(size, room.size()));
            if (m_source.callbacks.Read(m_source.store, room.data(), part) != static_cast<std::int64_t>(part))
                throw EngineFailure{WriteError::TempFile};
            out.Filled(part);
            size -= part;
            m_copied += static_cast<std::uint32_t>(part);
            if (m_source.callbacks.Status(StatusType::Folder, m_copied, m_total) == -1)
                throw EngineFailure{WriteError::Aborted};
        }
    }

    void SeekStore(std::uint64_t place) {
        const auto wanted = static_cast<std::int64_t>(place);
        if (m_source.callbacks.Seek(m_source.store, wanted, Origin::Begin) != wanted)
            throw EngineFailure{WriteError::TempFile};
    }

    const Source& m_source;
    const Plan& m_plan;
    unsigned m_flags;
    std::uint64_t m_headerSize;
    std::uint64_t m_entries = 0;  ///< bytes of the list of folders
    std::uint64_t m_list = 0;     ///< and of files
    std::uint32_t m_copied = 0, m_total = 0;
};

}  // namespace

std::uint64_t CabinetWriter::HeaderSize(bool hasNext) const {
    std::uint64_t size = kHeaderSize;
    if (HasReserves(m_description)) size += kReserveSizesSize + m_description.headerReserve;
    if (m_hasPrevious) size += NamesSize(m_previous);
    // How long the next names will be is not known yet.
    return hasNext ? size + 2 * kLongestName : size;
}

LayoutSizes CabinetWriter::SizesWith(std::uint64_t header) const {
    const std::uint64_t room = m_description.maximumSize > header ? m_description.maximumSize - header : 0;
    return {room, kFolderSize + m_description.folderReserve, kDataSize + m_description.dataReserve};
}

/// What one cabinet would take that holds all that waits, at least.
std::uint64_t CabinetWriter::PendingSize() const {
    std::uint64_t data =
        static_cast<std::uint64_t>(m_stored - (m_folders.empty() ? m_folder.place : m_folders[0].place));
    data -= m_writtenData;
    data += (m_folders.size() + 1) * (kFolderSize + m_description.folderReserve);
    return HeaderSize(false) + m_pendingEntries + data;
}

/// Whether all that waits fits into one cabinet that is not the last, however badly the blocks compress that are under way.
bool CabinetWriter::MayStillFit() const {
    constexpr std::uint64_t kLongestHead = kDataSize + 255 + (kLargestCompressed - kBlockSize);
    const std::uint64_t underWay = m_folder.size - m_folder.blocks.size() * kBlockSize;
    const std::uint64_t most = underWay + (underWay / kBlockSize + 1) * kLongestHead;
    return m_pendingFiles <= kMostFiles && PendingSize() + most + 2 * kLongestName <= m_description.maximumSize;
}

/// Writes cabinets that are full; with `all` the last one too.
void CabinetWriter::WriteCabinets(bool all, bool getNextCabinet) {
    while (!m_folders.empty() || (all && !m_wroteCabinet)) {
        const bool mayBeLast = all && !getNextCabinet;
        Plan plan = PlanCabinet(m_folders, m_start, SizesWith(HeaderSize(!mayBeLast)));
        if (plan.isLast && !all) return;
        if (!plan.isLast && mayBeLast) plan = PlanCabinet(m_folders, m_start, SizesWith(HeaderSize(true)));
        const bool hasNext = !plan.isLast || getNextCabinet;
        WriteCabinet(plan, hasNext);
        DropWritten(plan);
        getNextCabinet = getNextCabinet && !plan.isLast;
    }
}

void CabinetWriter::WriteCabinet(const Plan& plan, bool hasNext) {
    QvCabinetDescription next = m_description;
    if (hasNext) {
        ++next.cabinetNumber;
        const auto size = static_cast<std::uint32_t>(HeaderSize(false) + plan.size);
        if (m_callbacks.GetNextCabinet(next, size) == 0) throw EngineFailure{WriteError::Aborted};
        CheckNames(next);
    }
    CheckNames(m_description);
    const unsigned flags = (m_hasPrevious ? kHasPrevious : 0u) | (hasNext ? kHasNext : 0u) |
                           (HasReserves(m_description) ? kHasReserve : 0u);
    const std::uint64_t headerSize = HeaderSize(false) + (hasNext ? NamesSize(next) : 0);
    const CabinetImage::Source source = {m_callbacks, m_store.Get(), m_folders, m_description, m_previous, next};
    CabinetImage image(source, plan, flags, headerSize);
    CabinetOutput out(m_callbacks, m_description.cabinetPath + m_description.cabinetName);
    image.Write(out);
    const auto planned = static_cast<std::uint32_t>(image.TotalSize()), size = static_cast<std::uint32_t>(out.Size());
    if (m_callbacks.Status(StatusType::Cabinet, planned, size) == -1) throw EngineFailure{WriteError::Aborted};
    out.Keep();
    if (m_callbacks.Seek(m_store.Get(), 0, Origin::End) < 0) throw EngineFailure{WriteError::TempFile};
    m_wroteCabinet = true;
    m_hasPrevious = hasNext;
    m_previous = std::exchange(m_description, next);
}

void CabinetWriter::DropWritten(const Plan& plan) {
    const std::size_t whole = plan.isLast ? m_folders.size() : plan.end.folder;
    m_folders.erase(m_folders.begin(), m_folders.begin() + static_cast<std::ptrdiff_t>(whole));
    m_start = plan.isLast ? Cut{} : Cut{0, plan.end.block, plan.end.bytes};
    CountPending();
}

void CabinetWriter::CountPending() {
    m_pendingFiles = 0;
    m_pendingEntries = 0;
    m_writtenData = 0;
    for (std::size_t i = 0; i < m_start.block; ++i)
        m_writtenData += kDataSize + m_description.dataReserve + m_folders[0].blocks[i];
    for (std::size_t i = 0; i < m_folders.size(); ++i) {
        const FolderPart first = {0, m_start.block, m_folders[0].blocks.size(), m_start.bytes, 0, 0};
        const FolderPart part = i == 0 ? first : FolderPart{};
        for (const StoredFile& file : m_folders[i].files) {
            if (ListedFolder(m_folders[i], part, file, 0) < 0) continue;
            ++m_pendingFiles;
            m_pendingEntries += kFileSize + file.name.size() + 1;
        }
    }
}

}  // namespace qv::cabinet
