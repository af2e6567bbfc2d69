#include "cabinet/FolderStream.h"

#include <algorithm>

namespace qv::cabinet {

FolderStream::FolderStream(IMemory& memory, OpenNext open) : m_openNext(std::move(open)), m_decompressor(memory) {}

bool FolderStream::IsOn(Serial cabinet, unsigned folder) const {
    if (!m_selected) return false;
    return cabinet == m_first ? folder == m_folder : folder == 0 && cabinet > m_first && cabinet <= m_present;
}

void FolderStream::Select(Serial cabinet, unsigned folder) {
    if (IsOn(cabinet, folder)) return;
    m_selected = true;
    m_first = m_present = cabinet;
    m_folder = folder;
    m_cabinet.reset();
    m_decompressor.Clear();
    m_offset = 0;
    m_block = {};
    m_next = 0;
}

void FolderStream::Open() {
    m_cabinet = m_openNext(m_first);
    if (!m_selected || m_folder >= m_cabinet->Folders().size()) throw EngineFailure{ReadError::Corrupt};
    const FolderEntry& folder = m_cabinet->Folders()[m_folder];
    m_compression = folder.compression & kCompressionMask;
    if (m_compression != kStored && m_compression != kMszip) throw EngineFailure{ReadError::UnknownCompression};
    m_blocksLeft = folder.blocks;
    if (m_blocksLeft > 0 && !m_cabinet->Data().MoveTo(folder.place)) throw EngineFailure{ReadError::Corrupt};
}

void FolderStream::GoOnInNextCabinet() {
    if (!m_cabinet->Info().hasNext || m_folder + 1 != m_cabinet->Folders().size())
        throw EngineFailure{ReadError::Corrupt};
    const std::uint8_t reserve = m_cabinet->DataReserve();
    m_cabinet = m_openNext(m_present + 1);
    ++m_present;
    m_folder = 0;
    if (m_cabinet->DataReserve() != reserve) throw EngineFailure{ReadError::ReserveMismatch};
    if (m_cabinet->Folders().empty()) throw EngineFailure{ReadError::WrongCabinet};
    const FolderEntry& folder = m_cabinet->Folders()[0];
    if ((folder.compression & kCompressionMask) != m_compression) throw EngineFailure{ReadError::WrongCabinet};
    m_blocksLeft = folder.blocks;
    if (m_blocksLeft == 0 || !m_cabinet->Data().MoveTo(folder.place)) throw EngineFailure{ReadError::Corrupt};
}

void FolderStream::MoveTo(std::uint32_t offset) {
    while (m_offset < offset) Read(offset - m_offset);
}

Bytes FolderStream::Read(std::uint32_t most) {
    if (m_next == m_block.size()) NextBlock();
    const Bytes bytes = m_block.subspan(m_next, std::min<std::size_t>(most, m_block.size() - m_next));
    m_next += bytes.size();
    m_offset += static_cast<std::uint32_t>(bytes.size());
    return bytes;
}

/// What this cabinet still has is read ahead. An error in it counts when its block is needed.
void FolderStream::NextBlock() {
    if (!m_cabinet) Open();
    if (m_decompressor.IsEmpty()) ReadBlock();
    m_block = m_decompressor.Take();
    m_next = 0;
    while (m_blocksLeft > 1 && m_decompressor.HasRoom()) {
        try {
            ReadBlock();
        } catch (const EngineFailure& failure) {
            m_decompressor.PutFailure(failure);
            m_blocksLeft = 0;
        }
    }
}

/// Joins what lies of a block in several cabinets.
void FolderStream::ReadBlock() {
    if (m_blocksLeft == 0) GoOnInNextCabinet();
    std::size_t uncompressed = 0, size = ReadPart(0, uncompressed);
    while (uncompressed == 0) {
        if (m_blocksLeft > 0) throw EngineFailure{ReadError::Corrupt};
        GoOnInNextCabinet();
        size += ReadPart(size, uncompressed);
    }
    m_decompressor.Put(static_cast<Compression>(m_compression), size, uncompressed);
}

std::size_t FolderStream::ReadPart(std::size_t at, std::size_t& uncompressed) {
    unsigned char head[kDataSize + 255];
    Input& input = m_cabinet->Data();
    if (!input.Read(head, kDataSize + m_cabinet->DataReserve())) throw EngineFailure{ReadError::Corrupt};
    const std::size_t size = Get16(head + 4);
    uncompressed = Get16(head + 6);
    if (size > kLargestData - at || uncompressed > kBlockSize) throw EngineFailure{ReadError::Corrupt};
    unsigned char* const data = m_decompressor.Room() + at;
    if (!input.Read(data, size)) throw EngineFailure{ReadError::Corrupt};
    // 0 stands for a checksum that nobody made.
    const std::uint32_t checksum = Get32(head);
    if (checksum != 0 && checksum != Checksum(head + 4, 4, Checksum(data, size)))
        throw EngineFailure{ReadError::Corrupt};
    --m_blocksLeft;
    return size;
}

}  // namespace qv::cabinet
