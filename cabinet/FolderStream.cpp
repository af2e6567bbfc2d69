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
    m_entered = false;
    m_decompressor.Clear();
    m_offset = 0;
    m_block = {};
    m_next = 0;
}

void FolderStream::Open(Serial cabinet) {
    m_cabinet = m_openNext(cabinet);
    m_open = cabinet;
    m_dataRead = 0;
}

void FolderStream::EnterFolder() {
    if (!m_cabinet || m_open != m_first) Open(m_first);
    if (!m_selected || m_folder >= m_cabinet->Folders().size()) throw EngineFailure{ReadError::Corrupt};
    const FolderEntry& folder = m_cabinet->Folders()[m_folder];
    m_compression = folder.compression & kCompressionMask;
    m_decompressor.Start(folder.compression);
    m_entered = true;
    m_blocksLeft = folder.blocks;
    if (m_blocksLeft > 0 && !m_cabinet->Data().MoveTo(folder.offset)) throw EngineFailure{ReadError::Corrupt};
}

void FolderStream::GoOnInNextCabinet() {
    const std::size_t folder = m_open == m_first ? m_folder : 0;
    if (!m_cabinet->Info().hasNext || folder + 1 != m_cabinet->Folders().size())
        throw EngineFailure{ReadError::Corrupt};
    const std::uint8_t reserve = m_cabinet->DataReserve();
    Open(m_present + 1);
    ++m_present;
    if (m_cabinet->DataReserve() != reserve) throw EngineFailure{ReadError::ReserveMismatch};
    if (m_cabinet->Folders().empty()) throw EngineFailure{ReadError::WrongCabinet};
    const FolderEntry& rest = m_cabinet->Folders()[0];
    if ((rest.compression & kCompressionMask) != m_compression) throw EngineFailure{ReadError::WrongCabinet};
    m_blocksLeft = rest.blocks;
    if (m_blocksLeft == 0 || !m_cabinet->Data().MoveTo(rest.offset)) throw EngineFailure{ReadError::Corrupt};
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

void FolderStream::RequireEnd(std::uint32_t offset) {
    if (!m_selected) return;
    MoveTo(offset);
    if (!m_entered) EnterFolder();
    const bool isEnd = m_next == m_block.size() && m_decompressor.IsEmpty() && m_blocksLeft == 0;
    if (!isEnd) throw EngineFailure{ReadError::Corrupt};
}

/// Reads the rest of this cabinet's blocks ahead. An error in one is reported when that block is needed.
void FolderStream::NextBlock() {
    if (!m_entered) EnterFolder();
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

/// Joins the parts of a block in several cabinets.
void FolderStream::ReadBlock() {
    if (m_blocksLeft == 0) GoOnInNextCabinet();
    std::size_t uncompressed = 0, size = ReadPart(0, uncompressed);
    while (uncompressed == 0) {
        if (m_blocksLeft > 0) throw EngineFailure{ReadError::Corrupt};
        GoOnInNextCabinet();
        size += ReadPart(size, uncompressed);
    }
    m_decompressor.Put(size, uncompressed);
}

std::size_t FolderStream::ReadPart(std::size_t at, std::size_t& uncompressed) {
    unsigned char header[kDataSize + 255];
    Input& input = m_cabinet->Data();
    if (!input.Read(header, kDataSize + m_cabinet->DataReserve())) throw EngineFailure{ReadError::Corrupt};
    const std::size_t size = Get16(header + 4);
    uncompressed = Get16(header + 6);
    if (size > kLargestData - at || uncompressed > kBlockSize) throw EngineFailure{ReadError::Corrupt};
    m_dataRead += kDataSize + m_cabinet->DataReserve() + size;
    if (m_dataRead > m_cabinet->Info().size) throw EngineFailure{ReadError::Corrupt};
    unsigned char* const data = m_decompressor.FreeSpace() + at;
    if (!input.Read(data, size)) throw EngineFailure{ReadError::Corrupt};
    // 0 means that no checksum was computed.
    const std::uint32_t checksum = Get32(header);
    if (checksum != 0 && checksum != Checksum(header + 4, 4, Checksum(data, size)))
        throw EngineFailure{ReadError::Corrupt};
    --m_blocksLeft;
    return size;
}

}  // namespace qv::cabinet
