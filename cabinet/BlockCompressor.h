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
    unsigned char* data;  ///< the receiver may change the kDataSize + 255 bytes before it, and nothing else
    std::size_t size, uncompressed;
};

/// Takes data, gives compressed blocks in their order. What comes out depends on the data alone, not on the number of
/// threads. Memory is taken when the object is made. One thread uses it; the receiver is called on that thread, within Add
/// and Finish.
class BlockCompressor {
public:
    using Receiver = std::function<void(const CompressedBlock&)>;

    /// @param threads  that compress, the caller's among them; more than kMostThreads count as that many.
    /// @throws EngineFailure NoMemory.
    BlockCompressor(IMemory& memory, unsigned threads, Receiver receiver);
    ~BlockCompressor();
    BlockCompressor(const BlockCompressor&) = delete;
    BlockCompressor& operator=(const BlockCompressor&) = delete;

    /// Bounds the memory: a thread and what it works on take half a megabyte.
    static constexpr unsigned kMostThreads = Executor::kMostThreads + 1;
    static unsigned ThreadsOfThisMachine();

    /// The next folder is compressed (kMszip) or only cut into blocks (kStored).
    void Start(Compression compression);
    /// Where the next bytes go, up to the end of the present block: never empty.
    std::span<unsigned char> Room();
    /// That many bytes were put into the room. @throws EngineFailure CannotCompress when the compressor broke down, and
    /// what the receiver throws; Abandon then, before anything else.
    void Add(std::size_t size);
    /// Gives out everything, a short last block too. @throws as Add.
    void Finish();
    /// Drops what is not given out.
    void Abandon();

private:
    struct Job;
    class Lent;

    Job& JobAt(std::size_t number) { return *m_jobs[number % m_jobs.size()]; }
    void Submit();
    void GiveOutOldest();

    Receiver m_receiver;
    Compression m_compression = kMszip;
    std::mutex m_lending;
    std::vector<std::unique_ptr<MszipCompressor>> m_compressors;  ///< one for each thread; those not in use
    Executor m_executor;
    std::vector<std::unique_ptr<Job>> m_jobs;  ///< a ring
    std::size_t m_filled = 0;                  ///< bytes in the job that is being filled
    bool m_continues = false;                  ///< that job has the one before it for its history
    std::size_t m_oldest = 0;                  ///< the first job not given out
    std::size_t m_current = 0;                 ///< the one being filled
};

}  // namespace qv::cabinet
