#pragma once

/// @file A writer-preferring read-write lock whose whole state is one atomic word.

#include <atomic>
#include <cstdint>

namespace qv {

/// The word, from the lowest bit:
///
///     field           | bits | meaning
///     ----------------+------+---------------------------------------------------------------------------
///     readers         |  32  | number of holders; the highest bit means that the count is full
///     writer          |   1  | held by a writer
///     queueing        |   1  | new writers announce that they wait before they take the lock
///     writer woken    |   1  | a waiting writer has been woken and has not read the word since
///     readers wait    |   1  | readers sleep, or are about to
///     waiting writers |  28  | number
///
/// The operations:
///
///     state of the lock       | StartRead   | StartWrite             | EndRead                   | EndWrite
///     ------------------------+-------------+------------------------+---------------------------+-----------------
///     free                    | readers + 1 | writer                 |                           |
///     free, writers wait      | waits       | writer; if queueing,   |                           |
///                             |             | announces first that   |                           |
///                             |             | it waits               |                           |
///     readers                 | readers + 1 | waits                  | readers - 1               |
///     readers, full           | waits       | waits                  | readers - 1; wakes        |
///                             |             |                        | waiting readers           |
///     readers, writers wait   | waits       | waits                  | readers - 1; the last one |
///                             |             |                        | wakes a writer            |
///     writer                  | waits       | waits                  |                           | free; wakes all
///                             |             |                        |                           | waiting readers
///     writer, writers wait    | waits       | waits                  |                           | free; wakes one
///                             |             |                        |                           | writer
///
/// An uncontended lock costs one exchange each way. A thread that must wait announces it in the word by the same
/// exchange that finds the lock taken, and the releasing thread reads that by the exchange that releases, so no wake-up
/// is lost between the two. A woken thread competes with arriving ones: until it runs, the lock may be taken and
/// released many times. Meanwhile "writer woken" and the absence of "readers wait" prevent the others from waking more
/// threads, which would find the lock taken. A writer that has been woken kPatience times without success sets
/// "queueing" until it has written: the others then lose time, and clear "writer woken", so that it is woken again. A
/// strict queue would make the longest waits of many threads longer, since each turn would cost a wake-up.
///
/// Limits. Readers beyond 2^31 wait until another one ends. Each waiting writer is a thread, and no system has 2^28
/// threads (Linux has 2^22 at most). A lock must outlive every call: a releasing thread may read the word once more
/// after others have taken and released the lock.
///
/// Memory order. A thread takes the lock by an exchange with acquire order and releases it with release order, so what
/// was done under the lock is visible to the next holder. All changes of the word are read-modify-write operations,
/// which continue a release sequence: a writer sees what every reader before it has done, not only the last one. An
/// initial load is relaxed since its value is only a guess that the exchange checks. Announcing a wait and waking need
/// no order of their own: they protect only the word, and exchanges of one atomic always find its latest value. The
/// order between the word and an event count is that of the event count: a waiting thread reads the count before the
/// word, a waking thread changes the word before it advances the count. A thread that reads a word from before the
/// change has therefore read a count that will be advanced, or has been since.
///
/// @tparam AtomicWord  std::atomic<std::uint64_t>, or a test's replacement that executes the steps one by one.
/// @tparam EventCounter  EventCount, likewise.
/// @tparam kReaderBits  the size of the readers' field: 2 to 32.
template <class AtomicWord, class EventCounter, int kReaderBits = 32>
class WordLock {
    static_assert(kReaderBits >= 2 && kReaderBits <= 32, "the last of a full lock's readers must not be the only one");

public:
    WordLock() = default;
    /// Copies the current state of the other lock: held by as many readers, or a writer, and with as many waiting
    /// threads. The holders and waiting threads of the other lock have no part in the copy.
    WordLock(const WordLock& other)
        : m_word(other.m_word.load(std::memory_order_acquire) & ~(kQueueing | kWriterWoken)) {}
    WordLock& operator=(const WordLock&) = delete;

    /// Maximum number of readers that hold the lock at once.
    static constexpr std::uint64_t kMostReaders = std::uint64_t{1} << (kReaderBits - 1);

    void StartRead() {
        Word word = m_word.load(std::memory_order_relaxed);
        while (!(word & kClosedToReaders))
            if (m_word.compare_exchange_weak(word, word + kReader, std::memory_order_acquire)) return;
        WaitToRead();
    }

    void EndRead() {
        const Word before = m_word.fetch_sub(kReader, std::memory_order_release);
        if ((before & kReaders) == kReader && before & kWaitingWriters)
            WakeOneWriter();
        else if (before & kFull)
            WakeAllReaders();
    }

    void StartWrite() {
        Word word = m_word.load(std::memory_order_relaxed);
        while (!(word & (kTaken | kQueueing)))
            if (m_word.compare_exchange_weak(word, word | kWriter, std::memory_order_acquire)) return;
        WaitToWrite();
    }

    void EndWrite() {
        const Word before = m_word.fetch_sub(kWriter, std::memory_order_release);
        if (before & kWaitingWriters)
            WakeOneWriter();
        else if (before & kReadersWait)
            WakeAllReaders();
    }

private:
    using Word = std::uint64_t;

    static constexpr Word kReader = 1, kReaders = 2 * kMostReaders - 1, kFull = kMostReaders;
    static constexpr Word kWriter = Word{1} << 32;
    static constexpr Word kQueueing = Word{1} << 33;
    static constexpr Word kWriterWoken = Word{1} << 34;
    static constexpr Word kReadersWait = Word{1} << 35;
    static constexpr Word kWaitingWriter = Word{1} << 36, kWaitingWriters = ~Word{0} << 36;

    static_assert((kReaders | kWriter | kQueueing | kWriterWoken | kReadersWait | kWaitingWriters) ==
                      kReaders + kWriter + kQueueing + kWriterWoken + kReadersWait + kWaitingWriters,
                  "the fields do not overlap");
    static_assert(kReaderBits < 32 ||
                      (kReaders | kWriter | kQueueing | kWriterWoken | kReadersWait | kWaitingWriters) == ~Word{0},
                  "the fields cover the word");
    static_assert((kReaders & (kReaders + 1)) == 0 && kFull == (kReaders + 1) / 2, "full is the readers' highest bit");

    static constexpr Word kTaken = kReaders | kWriter;
    static constexpr Word kClosedToReaders = kFull | kWriter | kWaitingWriters;
    static constexpr int kPatience = 4;

    // Waiting and waking are not inlined into the callers, which would save registers for them even if the lock is
    // free.
    [[gnu::noinline]] void WaitToRead() {
        for (;;) {
            const std::uint64_t count = m_readersEvent.Count();
            Word word = m_word.load(std::memory_order_relaxed);
            if (!(word & kClosedToReaders)) {
                if (m_word.compare_exchange_weak(word, word + kReader, std::memory_order_acquire)) return;
            } else if (word & kReadersWait ||
                       m_word.compare_exchange_weak(word, word | kReadersWait, std::memory_order_relaxed)) {
                m_readersEvent.WaitWhile(count);
            }
        }
    }

    [[gnu::noinline]] void WaitToWrite() {
        Word own = 0;  // this thread's contribution to the word
        for (int woken = 0;;) {
            const std::uint64_t count = m_writersEvent.Count();
            Word word = m_word.load(std::memory_order_relaxed);
            if (!(word & kTaken) && (own || !(word & kQueueing))) {
                const Word taken = ((word - own) & ~kWriterWoken) | kWriter;
                if (m_word.compare_exchange_weak(word, taken, std::memory_order_acquire)) return;
            } else if (!own || word & kWriterWoken) {
                const Word entered = own ? 0 : kWaitingWriter;
                const Word waiting = (word & ~kWriterWoken) + entered;
                if (m_word.compare_exchange_weak(word, waiting, std::memory_order_relaxed)) own += entered;
            } else if (woken >= kPatience && !(word & kQueueing)) {
                if (m_word.compare_exchange_weak(word, word | kQueueing, std::memory_order_relaxed)) own += kQueueing;
            } else {
                ++woken;
                m_writersEvent.WaitWhile(count);
            }
        }
    }

    // No writer can enter while the lock is taken: its release will wake one.
    [[gnu::noinline]] void WakeOneWriter() {
        Word word = m_word.load(std::memory_order_relaxed);
        while (word & kWaitingWriters && !(word & (kWriterWoken | kTaken))) {
            if (!m_word.compare_exchange_weak(word, word | kWriterWoken, std::memory_order_relaxed)) continue;
            m_writersEvent.NotifyOne();
            return;
        }
    }

    // Readers that hold the lock do not block readers, and would not wake them on release.
    [[gnu::noinline]] void WakeAllReaders() {
        Word word = m_word.load(std::memory_order_relaxed);
        while (word & kReadersWait && !(word & kClosedToReaders)) {
            if (!m_word.compare_exchange_weak(word, word & ~kReadersWait, std::memory_order_relaxed)) continue;
            m_readersEvent.NotifyAll();
            return;
        }
    }

    AtomicWord m_word = 0;
    EventCounter m_readersEvent = {}, m_writersEvent = {};
};

}  // namespace qv
