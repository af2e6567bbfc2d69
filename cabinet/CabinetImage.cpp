#include "cabinet/CabinetImage.h"

#include <algorithm>

#include "cabinet/Errors.h"

namespace qv::cabinet {
namespace {

void PutNames(CabinetOutput& out, const QvCabinetDescription& cabinet) {
    out.PutText(cabinet.cabinetName);
    out.PutText(cabinet.diskName);
}

}  // namespace

CabinetImage::CabinetImage(const Source& source, const Plan& plan, unsigned flags, std::uint64_t headerSize)
    : m_source(source), m_plan(plan), m_flags(flags), m_headerSize(headerSize) {
    for (const FolderPart& part : plan.parts) {
        m_entries += kFolderSize + source.cabinet.folderReserve;
        const StoredFolder& folder = source.folders[part.folder];
        for (const StoredFile& file : folder.files)
            if (ListedFolder(folder, part, file, 0) >= 0) m_list += kFileSize + file.name.size() + 1;
    }
}

void CabinetImage::Write(CabinetOutput& out) {
    PutHeader(out);
    PutFolders(out);
    for (std::size_t i = 0; i < m_plan.parts.size(); ++i) PutFiles(out, m_plan.parts[i], i);
    m_total = static_cast<std::uint32_t>(TotalSize() - out.Size());
    for (const FolderPart& part : m_plan.parts) PutData(out, part);
}

void CabinetImage::PutHeader(CabinetOutput& out) {
    const QvCabinetDescription& cabinet = m_source.cabinet;
    unsigned char header[kHeaderSize];
    unsigned char* at = Put32(Put32(header, kSignature), 0);
    at = Put32(Put32(at, static_cast<std::uint32_t>(TotalSize())), 0);
    at = Put32(Put32(at, static_cast<std::uint32_t>(m_headerSize + m_entries)), 0);
    *at++ = kMinorVersion;
    *at++ = kMajorVersion;
    at = Put16(Put16(at, static_cast<unsigned>(m_plan.parts.size())), static_cast<unsigned>(m_plan.files));
    at = Put16(Put16(at, m_flags), cabinet.setId);
    Put16(at, static_cast<unsigned>(cabinet.cabinetNumber));
    out.Put(header, sizeof header);
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

std::uint64_t CabinetImage::DataSizeOf(const FolderPart& part) const {
    const StoredFolder& folder = m_source.folders[part.folder];
    std::uint64_t size = 0;
    for (std::size_t i = part.firstBlock; i < part.endBlock; ++i) size += DataHeaderSize() + folder.blocks[i];
    if (part.Continues()) size -= folder.blocks[part.endBlock - 1] - part.lastBytes;
    return size - part.skip;
}

void CabinetImage::PutFolders(CabinetOutput& out) {
    std::uint64_t offset = m_headerSize + m_entries + m_list;
    for (const FolderPart& part : m_plan.parts) {
        unsigned char entry[kFolderSize];
        unsigned char* const at = Put32(entry, static_cast<std::uint32_t>(offset));
        Put16(Put16(at, static_cast<unsigned>(part.endBlock - part.firstBlock)),
              m_source.folders[part.folder].compression);
        out.Put(entry, sizeof entry);
        out.PutZeros(m_source.cabinet.folderReserve);
        offset += DataSizeOf(part);
    }
}

void CabinetImage::PutFiles(CabinetOutput& out, const FolderPart& part, std::size_t index) {
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
        const int answer = m_source.callbacks.FilePlaced(m_source.cabinet, CString(file.name), file.size, continued);
        if (answer == -1) throw EngineFailure{WriteError::Aborted};
    }
}

void CabinetImage::PutData(CabinetOutput& out, const FolderPart& part) {
    const StoredFolder& folder = m_source.folders[part.folder];
    std::uint64_t offset = static_cast<std::uint64_t>(folder.offset);
    for (std::size_t i = 0; i < part.firstBlock; ++i) offset += DataHeaderSize() + folder.blocks[i];
    std::size_t block = part.firstBlock;
    if (part.skip > 0) {
        PutSplitBlock(out, part, block, offset);
        offset += DataHeaderSize() + folder.blocks[block++];
    }
    std::uint64_t whole = 0;
    const std::size_t end = part.Continues() ? part.endBlock - 1 : part.endBlock;
    for (std::size_t i = block; i < end; ++i) whole += DataHeaderSize() + folder.blocks[i];
    CopyStored(out, offset, whole);
    if (part.Continues() && block < part.endBlock) PutSplitBlock(out, part, part.endBlock - 1, offset + whole);
}

/// Writes the part of a block in this cabinet; the block's stored form is at `offset`.
void CabinetImage::PutSplitBlock(CabinetOutput& out, const FolderPart& part, std::size_t block, std::uint64_t offset) {
    const StoredFolder& folder = m_source.folders[part.folder];
    const bool goesOn = part.Continues() && block + 1 == part.endBlock;
    const std::size_t from = block == part.firstBlock ? part.skip : 0;
    const std::size_t to = goesOn ? part.lastBytes : folder.blocks[block];
    const Buffer data(m_source.callbacks, to - from, WriteError::NoMemory);
    SeekStore(offset + DataHeaderSize() + from);
    if (m_source.callbacks.Read(m_source.store, data.Get(), to - from) != static_cast<std::int64_t>(to - from))
        throw EngineFailure{WriteError::TempFile};
    unsigned char header[kDataSize];
    PutDataHeader(header, data.Get(), to - from, goesOn ? 0 : folder.UncompressedBlock(block));
    out.Put(header, sizeof header);
    out.PutZeros(m_source.cabinet.dataReserve);
    out.Put(data.Get(), to - from);
}

void CabinetImage::CopyStored(CabinetOutput& out, std::uint64_t offset, std::uint64_t size) {
    if (size > 0) SeekStore(offset);
    while (size > 0) {
        const std::span<unsigned char> room = out.FreeSpace();
        const auto part = static_cast<std::size_t>(std::min<std::uint64_t>(size, room.size()));
        if (m_source.callbacks.Read(m_source.store, room.data(), part) != static_cast<std::int64_t>(part))
            throw EngineFailure{WriteError::TempFile};
        out.Advance(part);
        size -= part;
        m_copied += static_cast<std::uint32_t>(part);
        if (m_source.callbacks.Status(StatusType::Folder, m_copied, m_total) == -1)
            throw EngineFailure{WriteError::Aborted};
    }
}

void CabinetImage::SeekStore(std::uint64_t offset) {
    const auto wanted = static_cast<std::int64_t>(offset);
    if (m_source.callbacks.Seek(m_source.store, wanted, Origin::Begin) != wanted)
        throw EngineFailure{WriteError::TempFile};
}

}  // namespace qv::cabinet
