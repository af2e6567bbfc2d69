#pragma once

/// @file Compression of a folder's data, block by block, on several threads.

#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include "cabinet/Mszip.h"
#include "threads/Executor.h"

namespace qv::cabinet {

struct CompressedBlock {
    unsigned char* data;  ///< the receiver may only change the kDataSize + 255 bytes before it
    std::size_t size, uncompressed;
};

/// Compresses data and delivers the blocks in order. The result depends on the data only, not on the number of threads.
/// All memory is allocated by the constructor. Not thread-safe; the receiver is called on the caller's thread, from
/// within Add and Finish.
class BlockCompressor {
public:
    using Receiver = std::function<void(const CompressedBlock&)>;

    /// @param threads  the number of compressing threads, including the caller's; at most kMostThreads are used.
    /// @throws EngineFailure NoMemory.
    BlockCompressor(IMemory& memory, unsigned threads, Receiver receiver);
    ~BlockCompressor();
    BlockCompressor(const BlockCompressor&) = delete;
    BlockCompressor& operator=(const BlockCompressor&) = delete;

    /// Bounds the memory: a thread and its jobs take half a megabyte.
    static constexpr unsigned kMostThreads = Executor::kMostThreads + 1;
    static unsigned ThreadsOfThisMachine();

    /// Starts a folder that is compressed (kMszip) or only divided into blocks (kStored).
    void Start(Compression compression);
    /// The space for the next bytes, up to the end of the current block; never empty.
    std::span<unsigned char> FreeSpace();
    /// Reports that `size` bytes were written to FreeSpace(). @throws EngineFailure CannotCompress if the compressor
    /// fails, and what the receiver throws; then Abandon must be called next.
    void Add(std::size_t size);
    /// Delivers everything, including a short last block. @throws as Add.
    void Finish();
    /// Discards what was not delivered.
    void Abandon();

private:
    struct Job;
    class BorrowedCompressor;

    Job& JobAt(std::size_t number) { return *m_jobs[number % m_jobs.size()]; }
    void Submit();
    void GiveOutOldest();

    Receiver m_receiver;
    Compression m_compression = kMszip;
    std::mutex m_compressorsMutex;
    std::vector<std::unique_ptr<MszipCompressor>> m_compressors;  ///< the idle ones; one per thread in total
    Executor m_executor;
    std::vector<std::unique_ptr<Job>> m_jobs;  ///< a ring buffer
    std::size_t m_filled = 0;                  ///< bytes in the job being filled
    bool m_continues = false;                  ///< that job has the previous one as its history
    std::size_t m_oldest = 0;                  ///< the first job not delivered
    std::size_t m_current = 0;                 ///< the job being filled
};

}  // namespace qv::cabinet
