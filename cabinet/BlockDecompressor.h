#pragma once

/// @file Decompression of a folder's blocks, ahead of their consumer.

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

#include "cabinet/Lzx.h"
#include "cabinet/Mszip.h"

namespace qv::cabinet {

/// Decompresses a folder's blocks and delivers their data in the same order. A worker thread helps once there are
/// enough blocks. Memory is allocated by the constructor, and for an LZX window by Start. Not thread-safe.
class BlockDecompressor {
public:
    /// @throws EngineFailure NoMemory.
    explicit BlockDecompressor(IMemory& memory);
    ~BlockDecompressor();
    BlockDecompressor(const BlockDecompressor&) = delete;
    BlockDecompressor& operator=(const BlockDecompressor&) = delete;

    bool IsEmpty() const { return m_taken == m_put; }
    /// Whether another block may be put.
    bool HasRoom() const { return m_put - m_taken < kSlots - 1; }
    /// The space for the next block, kLargestData bytes.
    unsigned char* FreeSpace();
    /// Adds the next block: the first `size` bytes in FreeSpace(), which must decompress to `uncompressed` bytes.
    void Put(std::size_t size, std::size_t uncompressed);
    /// Adds an error instead of a block; Take throws it.
    void PutFailure(EngineFailure failure);
    /// Returns the data of the oldest block, which must exist; valid until the next call. @throws EngineFailure
    Bytes Take();
    /// Discards everything.
    void Clear();
    /// Discards everything; the next block is the first of a folder with this compression field.
    /// @throws EngineFailure UnknownCompression, NoMemory.
    void Start(unsigned compression);

private:
    static constexpr std::size_t kSlots = 64;
    struct Slot;

    Slot& SlotAt(std::size_t number) const { return *m_slots[number % kSlots]; }
    void Queue();
    void RunNext();
    bool Decompress(Slot& slot);
    void Work();
    void StartWorker();

    std::unique_ptr<Slot> m_slots[kSlots];
    IMemory& m_memory;
    unsigned m_method = kStored;
    MszipDecompressor m_mszip;
    std::unique_ptr<LzxDecompressor> m_lzx;  ///< of the last LZX folder
    std::thread m_worker;
    bool m_mayHaveWorker = true;
    bool m_isHandedOver = false;  ///< the folder's further blocks go to the worker

    // Blocks are numbered consecutively. The mutex guards the numbers that the worker uses; the thread that changes one
    // may read it without the mutex.
    std::mutex m_mutex;
    std::condition_variable m_queued, m_done;
    std::size_t m_first = 0;  ///< the folder's first block
    std::size_t m_put = 0;    ///< changed by the owner
    std::size_t m_run = 0;    ///< changed by the decompressing thread
    std::size_t m_taken = 0;  ///< used by the owner only
    bool m_stop = false;
};

}  // namespace qv::cabinet
