#include "cabinet/BlockDecompressor.h"

#include <cstring>
#include <optional>
#include <system_error>

namespace qv::cabinet {
namespace {

/// Up to here a thread costs more than it saves.
constexpr std::size_t kFewBlocks = 3;

}  // namespace

struct BlockDecompressor::Slot {
    explicit Slot(IMemory& memory)
        : in(memory, kLargestData, ReadError::NoMemory), out(memory, kBlockSize, ReadError::NoMemory) {}

    Buffer in, out;
    Compression compression = kStored;
    std::size_t size = 0, uncompressed = 0;
    std::optional<EngineFailure> failure;
};

BlockDecompressor::BlockDecompressor(IMemory& memory) : m_decompressor(memory) {
    for (std::unique_ptr<Slot>& slot : m_slots) slot = std::make_unique<Slot>(memory);
}

BlockDecompressor::~BlockDecompressor() {
    {
        const std::lock_guard lock(m_mutex);
        m_stop = true;
    }
    m_queued.notify_one();
    if (m_worker.joinable()) m_worker.join();
}

unsigned char* BlockDecompressor::Room() {
    return SlotAt(m_put).in.Get();
}

void BlockDecompressor::Put(Compression compression, std::size_t size, std::size_t uncompressed) {
    Slot& slot = SlotAt(m_put);
    slot.compression = compression;
    slot.size = size;
    slot.uncompressed = uncompressed;
    slot.failure.reset();
    Queue();
}

void BlockDecompressor::PutFailure(EngineFailure failure) {
    SlotAt(m_put).failure = failure;
    Queue();
}

void BlockDecompressor::Queue() {
    if (!m_hasWorker && m_mayHaveWorker && m_put - m_first == kFewBlocks) StartWorker();
    bool waits = false;
    {
        const std::lock_guard lock(m_mutex);
        waits = m_run == m_put;
        ++m_put;
    }
    if (m_hasWorker && waits) m_queued.notify_one();
    if (!m_hasWorker) {
        RunNext();
        ++m_run;
    }
}

void BlockDecompressor::StartWorker() {
    try {
        m_worker = std::thread([this] { Work(); });
        m_hasWorker = true;
    } catch (const std::system_error&) {
        m_mayHaveWorker = false;
    }
}

void BlockDecompressor::Work() {
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_queued.wait(lock, [this] { return m_stop || m_run < m_put; });
        if (m_stop) return;
        lock.unlock();
        RunNext();
        lock.lock();
        ++m_run;
        m_done.notify_one();
    }
}

/// A block's history is the one before it, whose slot is not used again before this one is taken.
void BlockDecompressor::RunNext() {
    Slot& slot = SlotAt(m_run);
    if (slot.failure) return;
    const Bytes in{slot.in.Get(), slot.size};
    if (slot.compression == kStored) {
        if (slot.size != slot.uncompressed)
            slot.failure = ReadError::Corrupt;
        else
            std::memcpy(slot.out.Get(), slot.in.Get(), slot.size);
        return;
    }
    Bytes history;
    if (m_run > m_first) history = {SlotAt(m_run - 1).out.Get(), SlotAt(m_run - 1).uncompressed};
    if (!m_decompressor.Decompress(history, in, {slot.out.Get(), slot.uncompressed}))
        slot.failure = ReadError::CannotDecompress;
}

Bytes BlockDecompressor::Take() {
    const Slot& slot = SlotAt(m_taken);
    if (m_hasWorker) {
        std::unique_lock lock(m_mutex);
        m_done.wait(lock, [this] { return m_run > m_taken; });
    }
    ++m_taken;
    if (slot.failure) throw *slot.failure;
    return {slot.out.Get(), slot.uncompressed};
}

void BlockDecompressor::Clear() {
    std::unique_lock lock(m_mutex);
    m_done.wait(lock, [this] { return m_run == m_put; });
    m_taken = m_first = m_put;
}

}  // namespace qv::cabinet
