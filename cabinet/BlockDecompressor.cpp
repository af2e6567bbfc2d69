#include "cabinet/BlockDecompressor.h"

#include <cstring>
#include <optional>
#include <system_error>

#include "platform/SignalHold.h"

namespace qv::cabinet {
namespace {

/// Up to this number of blocks, a thread costs more than it saves.
constexpr std::size_t kFewBlocks = 3;

}  // namespace

struct BlockDecompressor::Slot {
    explicit Slot(IMemory& memory)
        : in(memory, kLargestData, ReadError::NoMemory), out(memory, kBlockSize, ReadError::NoMemory) {}

    Buffer in, out;
    std::size_t size = 0, uncompressed = 0;
    std::optional<EngineFailure> failure;
};

BlockDecompressor::BlockDecompressor(IMemory& memory) : m_memory(memory), m_mszip(memory) {
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

unsigned char* BlockDecompressor::FreeSpace() {
    return SlotAt(m_put).in.Get();
}

void BlockDecompressor::Put(std::size_t size, std::size_t uncompressed) {
    Slot& slot = SlotAt(m_put);
    slot.size = size;
    slot.uncompressed = uncompressed;
    slot.failure.reset();
    Queue();
}

void BlockDecompressor::PutFailure(EngineFailure failure) {
    SlotAt(m_put).failure = failure;
    Queue();
}

/// The first blocks of a folder are decompressed on this thread, and all of them if there is no worker.
void BlockDecompressor::Queue() {
    if (!m_isHandedOver && m_put - m_first == kFewBlocks) StartWorker();
    if (!m_isHandedOver) {
        RunNext();
        const std::lock_guard lock(m_mutex);
        ++m_put;
        ++m_run;
        return;
    }
    bool waits = false;
    {
        const std::lock_guard lock(m_mutex);
        waits = m_run == m_put;
        ++m_put;
    }
    if (waits) m_queued.notify_one();
}

void BlockDecompressor::StartWorker() {
    if (!m_mayHaveWorker) return;
    try {
        if (!m_worker.joinable()) {
            // Inherited by the worker, which must not take signals that its caller blocks.
            const platform::SignalHold hold;
            m_worker = std::thread([this] { Work(); });
        }
        m_isHandedOver = true;
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

void BlockDecompressor::RunNext() {
    Slot& slot = SlotAt(m_run);
    if (slot.failure) return;
    if (m_method == kStored && slot.size != slot.uncompressed)
        slot.failure = ReadError::Corrupt;
    else if (!Decompress(slot))
        slot.failure = ReadError::CannotDecompress;
}

/// The history of an MSZIP block is its predecessor, whose slot is not reused before this block is taken.
bool BlockDecompressor::Decompress(Slot& slot) {
    const Bytes in{slot.in.Get(), slot.size};
    const std::span<unsigned char> out{slot.out.Get(), slot.uncompressed};
    if (m_method == kLzx) return m_lzx->Decompress(in, out);
    if (m_method == kStored) {
        std::memcpy(out.data(), in.data(), in.size());
        return true;
    }
    Bytes history;
    if (m_run > m_first) history = {SlotAt(m_run - 1).out.Get(), SlotAt(m_run - 1).uncompressed};
    return m_mszip.Decompress(history, in, out);
}

Bytes BlockDecompressor::Take() {
    const Slot& slot = SlotAt(m_taken);
    if (m_isHandedOver) {
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
    m_isHandedOver = false;
}

void BlockDecompressor::Start(unsigned compression) {
    Clear();
    m_method = compression & kCompressionMask;
    if (m_method == kStored || m_method == kMszip) return;
    const unsigned window = LzxWindowOf(compression);
    if (m_method != kLzx || window < kSmallestLzxWindow || window > kLargestLzxWindow)
        throw EngineFailure{ReadError::UnknownCompression};
    if (!m_lzx || m_lzx->WindowBits() != window) m_lzx = std::make_unique<LzxDecompressor>(m_memory, window);
    m_lzx->Reset();
}

}  // namespace qv::cabinet
