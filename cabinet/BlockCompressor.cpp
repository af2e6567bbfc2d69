#include "cabinet/BlockCompressor.h"

#include <algorithm>
#include <cstring>
#include <system_error>

#include "platform/SignalHold.h"

namespace qv::cabinet {
namespace {

constexpr std::size_t kJobsPerThread = 3;
constexpr std::size_t kHead = kDataSize + 255;

}  // namespace

/// A block, the one before it, and what becomes of it.
struct BlockCompressor::Job {
    explicit Job(IMemory& memory)
        : in(memory, 2 * kBlockSize, WriteError::NoMemory),
          out(memory, kHead + kLargestCompressed, WriteError::NoMemory) {}

    unsigned char* Block() const { return in.Get() + kBlockSize; }
    unsigned char* Result() const { return out.Get() + kHead; }
    void Run(MszipCompressor& compressor) {
        const Bytes history{in.Get(), historySize};
        compressed = compressor.Compress(history, {Block(), size}, Result());
    }

    Buffer in, out;
    std::size_t historySize = 0, size = 0, compressed = 0;
    State state = State::Free;
};

unsigned BlockCompressor::ThreadsOfThisMachine() {
    return std::clamp(std::thread::hardware_concurrency(), 1u, kMostThreads);
}

BlockCompressor::BlockCompressor(IMemory& memory, unsigned threads, Receiver receiver)
    : m_receiver(std::move(receiver)) {
    threads = std::clamp(threads, 1u, kMostThreads);
    const std::size_t jobs = threads == 1 ? 2 : threads * kJobsPerThread;
    for (std::size_t i = 0; i < jobs; ++i) m_jobs.push_back(std::make_unique<Job>(memory));
    for (unsigned i = 0; i < threads; ++i) m_compressors.push_back(std::make_unique<MszipCompressor>(memory));
    if (threads > 1) StartWorkers(threads);
}

void BlockCompressor::StartWorkers(unsigned threads) {
    const platform::SignalHold hold;  // inherited: workers must not take what their caller holds back
    try {
        for (unsigned i = 0; i < threads; ++i) m_workers.emplace_back([this, i] { Work(*m_compressors[i]); });
    } catch (const std::system_error&) {
        // The ones that are there will do, and without any the caller's thread.
    }
}

BlockCompressor::~BlockCompressor() {
    {
        const std::lock_guard lock(m_mutex);
        m_stop = true;
    }
    m_queued.notify_all();
    for (std::thread& worker : m_workers) worker.join();
}

void BlockCompressor::Work(MszipCompressor& compressor) {
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_queued.wait(lock, [this] { return m_stop || m_next < m_current; });
        if (m_stop) return;
        Job& job = JobAt(m_next++);
        job.state = State::Running;
        lock.unlock();
        job.Run(compressor);
        lock.lock();
        job.state = State::Done;
        m_done.notify_one();
    }
}

void BlockCompressor::Start(Compression compression) {
    m_compression = compression;
    m_continues = false;
}

std::span<unsigned char> BlockCompressor::Room() {
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
    if (m_compression == kStored) {
        std::memcpy(job.Result(), job.Block(), job.size);
        job.compressed = job.size;
    } else if (m_workers.empty()) {
        job.Run(*m_compressors[0]);
    }
    const bool done = m_compression == kStored || m_workers.empty();
    {
        const std::lock_guard lock(m_mutex);
        job.state = done ? State::Done : State::Queued;
        ++m_current;
        if (done) m_next = m_current;
    }
    if (!done) m_queued.notify_one();
    if (m_current - m_oldest == m_jobs.size()) GiveOutOldest();
    // Workers read the block that they work on, so its bytes can be copied meanwhile.
    Job& next = JobAt(m_current);
    std::memcpy(next.in.Get(), job.Block(), job.size);
    next.historySize = job.size;
    m_continues = true;
}

void BlockCompressor::GiveOutOldest() {
    Job& job = JobAt(m_oldest);
    {
        std::unique_lock lock(m_mutex);
        m_done.wait(lock, [&] { return job.state == State::Done; });
        job.state = State::Free;
    }
    ++m_oldest;
    if (job.compressed == 0) throw EngineFailure{WriteError::CannotCompress};
    m_receiver({job.Result(), job.compressed, job.size});
}

void BlockCompressor::Finish() {
    if (m_filled > 0) Submit();
    while (m_oldest < m_current) GiveOutOldest();
    m_continues = false;
}

void BlockCompressor::Abandon() {
    m_filled = 0;
    m_continues = false;
    std::unique_lock lock(m_mutex);
    for (; m_oldest < m_current; ++m_oldest) {
        Job& job = JobAt(m_oldest);
        m_done.wait(lock, [&] { return job.state == State::Done; });
        job.state = State::Free;
    }
}

}  // namespace qv::cabinet
