#include "files/cabinet/FolderStream.h"

#include <algorithm>

namespace qv::cabinet {

FolderStream::FolderStream(IMemory& memory, OpenNext open)
    : m_openNext(std::move(open)),
      m_decompressor(memory),
      m_compressed(memory, kLargestData, kNoMemory),
      m_blocks(memory, 2 * kBlockSize, kNoMemory) {}

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
    m_offset = 0;
    m_block = {};
    m_next = 0;
}

void FolderStream::Open() {
    m_cabinet = m_openNext(m_first);
    if (!m_selected || m_folder >= m_cabinet->Folders().size()) throw EngineFailure{kCorrupt};
    const FolderEntry& folder = m_cabinet->Folders()[m_folder];
    m_compression = folder.compression & kCompressionMask;
    if (m_compression != kStored && m_compression != kMszip) throw EngineFailure{kUnknownCompression};
    m_blocksLeft = folder.blocks;
    if (m_blocksLeft > 0 && !m_cabinet->Data().MoveTo(folder.place)) throw EngineFailure{kCorrupt};
}

void FolderStream::GoOnInNextCabinet() {
    if (!m_cabinet->Info().hasNext || m_folder + 1 != m_cabinet->Folders().size()) throw EngineFailure{kCorrupt};
    const std::uint8_t reserve = m_cabinet->DataReserve();
    m_cabinet = m_openNext(m_present + 1);
    ++m_present;
    m_folder = 0;
    if (m_cabinet->DataReserve() != reserve) throw EngineFailure{kReserveMismatch};
    if (m_cabinet->Folders().empty()) throw EngineFailure{kWrongCabinet};
    const FolderEntry& folder = m_cabinet->Folders()[0];
    if ((folder.compression & kCompressionMask) != m_compression) throw EngineFailure{kWrongCabinet};
    m_blocksLeft = folder.blocks;
    if (m_blocksLeft == 0 || !m_cabinet->Data().MoveTo(folder.place)) throw EngineFailure{kCorrupt};
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

/// Two places take turns: a block's history is the one before it.
void FolderStream::NextBlock() {
    if (!m_cabinet) Open();
    std::size_t uncompressed = 0;
    const std::size_t size = ReadCompressed(uncompressed);
    const Bytes history = m_block, compressed{m_compressed.Get(), size};
    unsigned char* const out = m_blocks.Get() + (m_block.data() == m_blocks.Get() ? kBlockSize : 0);
    if (m_compression == kMszip) {
        if (!m_decompressor.Decompress(history, compressed, {out, uncompressed}))
            throw EngineFailure{kCannotDecompress};
    } else {
        if (size != uncompressed) throw EngineFailure{kCorrupt};
        std::copy_n(compressed.data(), size, out);
    }
    m_block = {out, uncompressed};
    m_next = 0;
}

/// Joins what lies of a block in several cabinets.
std::size_t FolderStream::ReadCompressed(std::size_t& uncompressed) {
    if (m_blocksLeft == 0) GoOnInNextCabinet();
    std::size_t size = ReadPart(0, uncompressed);
    while (uncompressed == 0) {
        if (m_blocksLeft > 0) throw EngineFailure{kCorrupt};
        GoOnInNextCabinet();
        size += ReadPart(size, uncompressed);
    }
    return size;
}

std::size_t FolderStream::ReadPart(std::size_t at, std::size_t& uncompressed) {
    unsigned char head[kDataSize + 255];
    Input& input = m_cabinet->Data();
    if (!input.Read(head, kDataSize + m_cabinet->DataReserve())) throw EngineFailure{kCorrupt};
    const std::size_t size = Get16(head + 4);
    uncompressed = Get16(head + 6);
    if (size > kLargestData - at || uncompressed > kBlockSize) throw EngineFailure{kCorrupt};
    unsigned char* const data = m_compressed.Get() + at;
    if (!input.Read(data, size)) throw EngineFailure{kCorrupt};
    // 0 stands for a checksum that nobody made.
    const std::uint32_t checksum = Get32(head);
    if (checksum != 0 && checksum != Checksum(head + 4, 4, Checksum(data, size))) throw EngineFailure{kCorrupt};
    --m_blocksLeft;
    return size;
}

}  // namespace qv::cabinet
