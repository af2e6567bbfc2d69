#include "framework/ReadAhead.h"

#include <system_error>

namespace qv {

ReadAhead::ReadAhead(CFile& file, std::uint64_t length) : m_file(file) {
    for (Block& block : m_blocks) block.bytes = std::make_unique_for_overwrite<char[]>(kBlock);
    if (length < kLong) return;
    try {
        m_reader = std::thread([this] { Run(); });
    } catch (const std::system_error&) {
        // No thread to be had: each block is read when it is wanted.
    }
}

ReadAhead::~ReadAhead() {
    if (!m_reader.joinable()) return;
    m_stop = true;
    m_free.release();
    m_reader.join();
}

std::string_view ReadAhead::Next() {
    Block& block = m_blocks[m_next];
    if (!m_reader.joinable()) {
        block.size = m_file.Read(block.bytes.get(), kBlock);
        return {block.bytes.get(), block.size};
    }
    if (m_inUse) m_free.release();
    m_filled.acquire();
    m_inUse = true;
    m_next = (m_next + 1) % kBlocks;
    if (block.failure) std::rethrow_exception(block.failure);
    return {block.bytes.get(), block.size};
}

void ReadAhead::Fill(Block& block) {
    try {
        block.size = m_file.Read(block.bytes.get(), kBlock);
    } catch (...) {
        block.size = 0;
        block.failure = std::current_exception();
    }
}

/// Stops behind the block that is empty or failed.
void ReadAhead::Run() {
    for (std::size_t next = 0;; next = (next + 1) % kBlocks) {
        m_free.acquire();
        if (m_stop) return;
        Fill(m_blocks[next]);
        m_filled.release();
        if (m_blocks[next].size == 0) return;
    }
}

}  // namespace qv
