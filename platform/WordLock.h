#pragma once

/// @file How a lock of many readers or one writer, which prefers writers, is kept in one word. Over any atomics, so that
/// its steps can be taken one by one.

#include <atomic>
#include <cstdint>

namespace qv::platform {

// All counts lie in one word, so that a lock that nobody waits for costs one exchange each way. Who has to wait enters a
// count by the same exchange that finds the lock taken, and sleeps until the turn that it has seen before is over; who
// releases reads the counts by the exchange that releases, so no wake-up gets lost between the two.
//
// Who has been woken takes a while to come. Meanwhile others may take and release the lock many times; a flag keeps them
// from waking more threads, which would find it taken. Whoever finds the lock taken lowers the flag before it sleeps.
template <template <class> class Atomic>
class WordLock {
public:
    void StartRead() {
        Word word = m_word.load(std::memory_order_relaxed);
        while (!(word & kClosedToReaders))
            if (m_word.compare_exchange_weak(word, word + kReader, std::memory_order_acquire)) return;
        WaitToRead();
    }

    void EndRead() {
        const Word before = m_word.fetch_sub(kReader, std::memory_order_release);
        if ((before & kReaders) == kReader && before & kWaitingWriters) WakeOneWriter();
    }

    void StartWrite() {
        Word word = m_word.load(std::memory_order_relaxed);
        while (!(word & (kTaken | kQueueing)))
            if (m_word.compare_exchange_weak(word, word + kWriter, std::memory_order_acquire)) return;
        WaitToWrite();
    }

    void EndWrite() {
        const Word before = m_word.fetch_sub(kWriter, std::memory_order_release);
        if (before & kWaitingWriters)
            WakeOneWriter();
        else if (before & kWaitingReaders)
            WakeAllReaders();
    }

private:
    using Word = std::uint64_t;

    // From the lowest bit: active readers, the active writer, queueing, who has been woken, waiting writers, waiting
    // readers.
    static constexpr Word kReader = 1, kReaders = (Word{1} << 20) - 1;
    static constexpr Word kWriter = Word{1} << 20;
    static constexpr Word kQueueing = Word{1} << 21;
    static constexpr Word kWriterWoken = Word{1} << 22, kReadersWoken = Word{1} << 23;
    static constexpr Word kWaitingWriter = Word{1} << 24, kWaitingWriters = ((Word{1} << 20) - 1) << 24;
    static constexpr Word kWaitingReader = Word{1} << 44, kWaitingReaders = ~Word{0} << 44;
    static constexpr Word kTaken = kReaders | kWriter;
    static constexpr Word kClosedToReaders = kWriter | kWaitingWriters;
    // A writer that has been woken so often, and found the lock taken again, closes it to writers that come anew.
    static constexpr int kPatience = 4;

    void WaitToRead() {
        for (Word counted = 0;;) {
            const std::uint32_t turn = m_readersTurn.load();
            Word word = m_word.load();
            if (!(word & kClosedToReaders)) {
                if (m_word.compare_exchange_strong(word, (word & ~kReadersWoken) + kReader - counted)) return;
            } else if (!counted || word & kReadersWoken) {
                const Word entered = counted ? 0 : kWaitingReader;
                if (m_word.compare_exchange_strong(word, (word & ~kReadersWoken) + entered)) counted = kWaitingReader;
            } else {
                m_readersTurn.wait(turn);
            }
        }
    }

    void WaitToWrite() {
        Word counted = 0, closed = 0;
        for (int woken = 0;;) {
            const std::uint32_t turn = m_writersTurn.load();
            Word word = m_word.load();
            if (!(word & kTaken) && (counted || !(word & kQueueing))) {
                if (m_word.compare_exchange_strong(word, (word & ~kWriterWoken) + kWriter - counted - closed)) return;
            } else if (!counted || word & kWriterWoken) {
                const Word entered = counted ? 0 : kWaitingWriter;
                if (m_word.compare_exchange_strong(word, (word & ~kWriterWoken) + entered)) counted = kWaitingWriter;
            } else if (woken >= kPatience && !(word & kQueueing)) {
                if (m_word.compare_exchange_strong(word, word + kQueueing)) closed = kQueueing;
            } else {
                ++woken;
                m_writersTurn.wait(turn);
            }
        }
    }

    void WakeOneWriter() {
        if (!Raise(kWriterWoken, kWaitingWriters, kTaken)) return;
        ++m_writersTurn;
        m_writersTurn.notify_one();
    }

    void WakeAllReaders() {
        if (!Raise(kReadersWoken, kWaitingReaders, kClosedToReaders)) return;
        ++m_readersTurn;
        m_readersTurn.notify_all();
    }

    // False when those who wait could not get in, because of others whose end will wake them, when nobody waits any more,
    // or when the flag is up. A reader that came first is no hindrance to readers, and would not wake them at its end.
    bool Raise(Word flag, Word waiting, Word closed) {
        Word word = m_word.load(std::memory_order_relaxed);
        while (!(word & (flag | closed)) && word & waiting)
            if (m_word.compare_exchange_weak(word, word | flag, std::memory_order_relaxed)) return true;
        return false;
    }

    Atomic<Word> m_word = 0;
    Atomic<std::uint32_t> m_readersTurn = 0, m_writersTurn = 0;
};

}  // namespace qv::platform
