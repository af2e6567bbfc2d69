#pragma once

/// @file Decompression of a folder's blocks, ahead of the one who takes them.

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

#include "cabinet/Lzx.h"
#include "cabinet/Mszip.h"

namespace qv::cabinet {

/// Takes a folder's blocks and gives their data in the same order. A thread of its own works on them, once there are enough
/// to be worth it. Memory is taken when the object is made, and for an LZX window by Start. One thread uses it.
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
    /// kLargestData bytes for the next block.
    unsigned char* Room();
    /// The next block: what lies in the room is so long, and is to give that many bytes.
    void Put(std::size_t size, std::size_t uncompressed);
    /// In a block's place, an error that Take is to raise.
    void PutFailure(EngineFailure failure);
    /// The data of the oldest block put, which there has to be; valid until the next call. @throws EngineFailure
    Bytes Take();
    /// Drops everything.
    void Clear();
    /// Drops everything; the next block is the first of a folder with this compression field. @throws EngineFailure
    /// UnknownCompression, NoMemory.
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
    bool m_isHandedOver = false;  ///< the folder's blocks go to the worker from now on

    // Blocks are numbered through. The mutex guards the numbers that the worker sees; who moves one may read it without.
    std::mutex m_mutex;
    std::condition_variable m_queued, m_done;
    std::size_t m_first = 0;  ///< the folder's first block
    std::size_t m_put = 0;    ///< moved by the owner
    std::size_t m_run = 0;    ///< moved by whoever decompresses
    std::size_t m_taken = 0;  ///< the owner's own
    bool m_stop = false;
};

}  // namespace qv::cabinet
