#include "cabinet/BlockCompressor.h"

#include <algorithm>
#include <cstring>

namespace qv::cabinet {
namespace {

constexpr std::size_t kJobsPerThread = 3;
constexpr std::size_t kHead = kDataSize + 255;

}  // namespace

/// Takes a compressor from the pool for the duration of one block.
class BlockCompressor::BorrowedCompressor {
public:
    explicit BorrowedCompressor(BlockCompressor& owner) : m_owner(owner) {
        const std::lock_guard lock(owner.m_compressorsMutex);
        m_compressor = std::move(owner.m_compressors.back());
        owner.m_compressors.pop_back();
    }
    ~BorrowedCompressor() {
        const std::lock_guard lock(m_owner.m_compressorsMutex);
        m_owner.m_compressors.push_back(std::move(m_compressor));
    }
    BorrowedCompressor(const BorrowedCompressor&) = delete;
    BorrowedCompressor& operator=(const BorrowedCompressor&) = delete;
    MszipCompressor& operator*() const { return *m_compressor; }

private:
    BlockCompressor& m_owner;
    std::unique_ptr<MszipCompressor> m_compressor;
};

/// A block, its predecessor and the result.
struct BlockCompressor::Job {
    explicit Job(IMemory& memory)
        : in(memory, 2 * kBlockSize, WriteError::NoMemory),
          out(memory, kHead + kLargestCompressed, WriteError::NoMemory) {}

    unsigned char* Block() const { return in.Get() + kBlockSize; }
    unsigned char* Result() const { return out.Get() + kHead; }
    std::size_t Run(MszipCompressor& compressor) const {
        return compressor.Compress({in.Get(), historySize}, {Block(), size}, Result());
    }

    Buffer in, out;
    std::size_t historySize = 0, size = 0;
    Task<std::size_t> compressed;  ///< the size of the result; none for a block that is stored
};

unsigned BlockCompressor::ThreadsOfThisMachine() {
    return Executor::SpareProcessors() + 1;
}

BlockCompressor::BlockCompressor(IMemory& memory, unsigned threads, Receiver receiver)
    : m_receiver(std::move(receiver)), m_executor(std::clamp(threads, 1u, kMostThreads) - 1) {
    threads = m_executor.Threads() + 1;
    const std::size_t jobs = threads == 1 ? 2 : threads * kJobsPerThread;
    for (std::size_t i = 0; i < jobs; ++i) m_jobs.push_back(std::make_unique<Job>(memory));
    for (unsigned i = 0; i < threads; ++i) m_compressors.push_back(std::make_unique<MszipCompressor>(memory));
}

BlockCompressor::~BlockCompressor() = default;

void BlockCompressor::Start(Compression compression) {
    m_compression = compression;
    m_continues = false;
}

std::span<unsigned char> BlockCompressor::FreeSpace() {
    return {JobAt(m_current).Block() + m_filled, kBlockSize - m_filled};
}

void BlockCompressor::Add(std::size_t size) {
    m_filled += size;
    if (m_filled == kBlockSize) Submit();
}

void BlockCompressor::Submit() {
    Job& job = JobAt(m_current);
    job.size = m_filled;
    if (!m_continues) job.historySize = 0;
    m_filled = 0;
    if (m_compression == kStored)
        std::memcpy(job.Result(), job.Block(), job.size);
    else
        job.compressed = m_executor.Start([this, &job] { return job.Run(*BorrowedCompressor(*this)); });
    ++m_current;
    if (m_current - m_oldest == m_jobs.size()) GiveOutOldest();
    // Other threads only read the block they work on, so its bytes can be copied meanwhile.
    Job& next = JobAt(m_current);
    std::memcpy(next.in.Get(), job.Block(), job.size);
    next.historySize = job.size;
    m_continues = true;
}

void BlockCompressor::GiveOutOldest() {
    Job& job = JobAt(m_oldest++);
    const std::size_t compressed = job.compressed ? job.compressed.Get() : job.size;
    if (compressed == 0) throw EngineFailure{WriteError::CannotCompress};
    m_receiver({job.Result(), compressed, job.size});
}

void BlockCompressor::Finish() {
    if (m_filled > 0) Submit();
    while (m_oldest < m_current) GiveOutOldest();
    m_continues = false;
}

void BlockCompressor::Abandon() {
    m_filled = 0;
    m_continues = false;
    for (; m_oldest < m_current; ++m_oldest) JobAt(m_oldest).compressed = {};
}

}  // namespace qv::cabinet
