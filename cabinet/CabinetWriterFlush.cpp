#include <utility>

#include "cabinet/CabinetImage.h"
#include "cabinet/CabinetWriter.h"
#include "cabinet/Errors.h"

namespace qv::cabinet {
namespace {

std::size_t NamesSize(const QvCabinetDescription& cabinet) {
    return cabinet.cabinetName.AsStd().size() + cabinet.diskName.AsStd().size() + 2;
}

void CheckNames(const QvCabinetDescription& cabinet) {
    for (const CString& name : {cabinet.cabinetName, cabinet.diskName})
        if (static_cast<std::size_t>(name.GetLength()) >= kLongestName || name.Find('\0') >= 0)
            throw EngineFailure{WriteError::CabinetFile};
}

bool HasReserves(const QvCabinetDescription& cabinet) {
    return cabinet.headerReserve || cabinet.folderReserve || cabinet.dataReserve;
}

}  // namespace

std::uint64_t CabinetWriter::HeaderSize(bool hasNext) const {
    std::uint64_t size = kHeaderSize;
    if (HasReserves(m_description)) size += kReserveSizesSize + m_description.headerReserve;
    if (m_hasPrevious) size += NamesSize(m_previous);
    // The length of the next names is not known yet.
    return hasNext ? size + 2 * kLongestName : size;
}

LayoutSizes CabinetWriter::SizesWith(std::uint64_t header) const {
    const std::uint64_t room = m_description.maximumSize > header ? m_description.maximumSize - header : 0;
    return {room, kFolderSize + m_description.folderReserve, kDataSize + m_description.dataReserve};
}

/// The minimum size of one cabinet with everything pending.
std::uint64_t CabinetWriter::PendingSize() const {
    std::uint64_t data =
        static_cast<std::uint64_t>(m_stored - (m_folders.empty() ? m_folder.offset : m_folders[0].offset));
    data -= m_writtenData;
    data += (m_folders.size() + 1) * (kFolderSize + m_description.folderReserve);
    return HeaderSize(false) + m_pendingEntries + data;
}

/// Whether everything pending fits into one cabinet that is not the last, even if the blocks in progress do not
/// compress.
bool CabinetWriter::MayStillFit() const {
    constexpr std::uint64_t kLongestHead = kDataSize + 255 + (kLargestCompressed - kBlockSize);
    const std::uint64_t underWay = m_folder.size - m_folder.blocks.size() * kBlockSize;
    const std::uint64_t most = underWay + (underWay / kBlockSize + 1) * kLongestHead;
    return m_pendingFiles <= kMostFiles && PendingSize() + most + 2 * kLongestName <= m_description.maximumSize;
}

/// Writes the full cabinets; with `all`, also the last one.
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
        // Compressed blocks are already stored with their reserve.
        if (next.dataReserve != m_description.dataReserve) throw EngineFailure{WriteError::CabinetFile};
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
    out.Commit();
    if (m_callbacks.Seek(m_store.Get(), 0, Origin::End) < 0) throw EngineFailure{WriteError::TempFile};
    m_wroteCabinet = true;
    m_hasPrevious = hasNext;
    m_previous = std::exchange(m_description, next);
}

void CabinetWriter::DropWritten(const Plan& plan) {
    const std::size_t whole = plan.isLast ? m_folders.size() : plan.end.folder;
    m_folders.erase(m_folders.begin(), m_folders.begin() + static_cast<std::ptrdiff_t>(whole));
    m_start = plan.isLast ? SplitPoint{} : SplitPoint{0, plan.end.block, plan.end.bytes};
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
