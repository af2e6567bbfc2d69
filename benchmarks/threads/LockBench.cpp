// The read-write lock compared with other implementations: uncontended, shared by threads, and the longest wait of a
// thread.

#include <absl/synchronization/mutex.h>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <boost/thread/shared_mutex.hpp>
#include <chrono>
#include <cstdint>
#include <shared_mutex>
#include <string>
#include <thread>
#include <vector>

#include "benchmarks/threads/system/WriterFirstLock.h"
#include "qvcommon/ReadWriteLock.h"

namespace {

using Clock = std::chrono::steady_clock;

// Adapts ours to its peers' names.
class Ours {
public:
    void lock_shared() { m_lock.StartRead(); }
    void unlock_shared() { m_lock.EndRead(); }
    void lock() { m_lock.StartWrite(); }
    void unlock() { m_lock.EndWrite(); }

private:
    CReadWriteLock m_lock;
};

class AbseilLock {
public:
    void lock_shared() { m_lock.ReaderLock(); }
    void unlock_shared() { m_lock.ReaderUnlock(); }
    void lock() { m_lock.WriterLock(); }
    void unlock() { m_lock.WriterUnlock(); }

private:
    absl::Mutex m_lock;
};

template <class Lock>
void Read(benchmark::State& state) {
    Lock lock;
    for (auto _ : state) {
        lock.lock_shared();
        lock.unlock_shared();
    }
}

template <class Lock>
void Write(benchmark::State& state) {
    Lock lock;
    for (auto _ : state) {
        lock.lock();
        lock.unlock();
    }
}

/// Decides whether the next operation reads, with a given percentage.
class Mix {
public:
    Mix(unsigned reads, int seed) : m_reads(reads), m_random(0x9E3779B9U * static_cast<std::uint32_t>(seed + 1)) {}
    bool Reads() {
        m_random = m_random * 1664525 + 1013904223;
        return (m_random >> 16) % 100 < m_reads;
    }

private:
    unsigned m_reads;
    std::uint32_t m_random;
};

/// Threads that all read and write one number.
template <class Lock>
void Share(benchmark::State& state, unsigned reads) {
    static Lock lock;
    static std::uint64_t number = 0;
    Mix mix(reads, state.thread_index());
    for (auto _ : state) {
        if (mix.Reads()) {
            const std::shared_lock held(lock);
            benchmark::DoNotOptimize(number);
        } else {
            const std::unique_lock held(lock);
            benchmark::DoNotOptimize(++number);
        }
    }
}

struct Waits {
    Clock::duration reader{}, writer{};
};

/// Acquires the lock repeatedly until the end is signalled, and returns the longest waits.
template <class Lock>
Waits Take(Lock& lock, Mix mix, const std::atomic<bool>& end) {
    Waits longest;
    while (!end.load(std::memory_order_relaxed)) {
        const bool reads = mix.Reads();
        const auto before = Clock::now();
        reads ? lock.lock_shared() : lock.lock();
        Clock::duration& wait = reads ? longest.reader : longest.writer;
        wait = std::max(wait, Clock::now() - before);
        reads ? lock.unlock_shared() : lock.unlock();
    }
    return longest;
}

/// The longest wait of eight threads in a fifth of a second, in which every tenth operation writes.
template <class Lock>
void Wait(benchmark::State& state, Clock::duration Waits::*which) {
    constexpr int count = 8;
    for (auto _ : state) {
        Lock lock;
        std::atomic<bool> end = false;
        std::vector<Waits> waits(static_cast<std::size_t>(count));
        {
            std::vector<std::jthread> threads;
            for (int i = 0; i < count; ++i)
                threads.emplace_back([&, i] { waits[static_cast<std::size_t>(i)] = Take(lock, Mix(90, i), end); });
            std::this_thread::sleep_for(std::chrono::milliseconds(200));
            end = true;
        }
        Clock::duration longest{};
        for (const Waits& one : waits) longest = std::max(longest, one.*which);
        state.SetIterationTime(std::chrono::duration<double>(longest).count());
    }
}

template <class Lock>
bool Register(const std::string& who) {
    const auto add = [&who](const std::string& group, auto function, auto... arguments) {
        return benchmark::RegisterBenchmark((group + "/" + who).c_str(), function, arguments...);
    };
    add("LockRead", &Read<Lock>);
    add("LockWrite", &Write<Lock>);
    for (const int threads : {2, 8, 32})
        for (const unsigned reads : {50U, 90U, 99U})
            add("Lock" + std::to_string(threads) + "Threads" + std::to_string(reads) + "Reads", &Share<Lock>, reads)
                ->Threads(threads)
                ->UseRealTime();
    add("LongestWriterWait", &Wait<Lock>, &Waits::writer)->Iterations(1)->UseManualTime();
    add("LongestReaderWait", &Wait<Lock>, &Waits::reader)->Iterations(1)->UseManualTime();
    return true;
}

const bool g_registered = Register<Ours>("QvCommon") && Register<std::shared_mutex>("std::shared_mutex") &&
                          Register<boost::shared_mutex>("boost::shared_mutex") &&
                          Register<WriterFirstLock>("pthread_rwlock, writers first") &&
                          Register<AbseilLock>("absl::Mutex");

}  // namespace
