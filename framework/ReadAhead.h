#pragma once

#include <array>
#include <atomic>
#include <exception>
#include <memory>
#include <semaphore>
#include <string_view>
#include <thread>

#include "qvcommon/framework/File.h"

namespace qv {

/// Reads an open file from its position to its end, a block at a time. A long file is read by a thread of its own, one block
/// ahead of the one in use. Nobody else may use the file meanwhile.
class ReadAhead {
public:
    /// From this length on a thread is worth its start.
    static constexpr std::uint64_t kLong = 4 << 20;

    QVCOMMON_INTERNAL_API ReadAhead(CFile& file, std::uint64_t length);
    QVCOMMON_INTERNAL_API ~ReadAhead();
    ReadAhead(const ReadAhead&) = delete;
    ReadAhead& operator=(const ReadAhead&) = delete;

    /// The next block, valid until the next call; empty at the end of the file. @throws CFileException*
    QVCOMMON_INTERNAL_API std::string_view Next();

private:
    static constexpr UINT kBlock = 256 * 1024;
    static constexpr std::size_t kBlocks = 2;

    struct Block {
        std::unique_ptr<char[]> bytes;
        UINT size = 0;
        std::exception_ptr failure = {};
    };

    void Fill(Block& block);
    void Run();

    CFile& m_file;
    std::array<Block, kBlocks> m_blocks;
    std::size_t m_next = 0;
    bool m_inUse = false;  ///< a block was given out
    std::atomic<bool> m_stop = false;
    std::counting_semaphore<kBlocks + 1> m_free{kBlocks}, m_filled{0};
    std::thread m_reader;
};

}  // namespace qv
