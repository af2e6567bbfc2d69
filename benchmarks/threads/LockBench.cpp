#include <benchmark/benchmark.h>

#include <boost/thread/shared_mutex.hpp>
#include <cstdint>
#include <shared_mutex>
#include <string>
#include <tuple>

#include "benchmarks/threads/system/WriterFirstLock.h"
#include "qvcommon/ReadWriteLock.h"

namespace {

// Ours under the names that its peers have.
class Ours {
public:
    void lock_shared() { m_lock.StartRead(); }
    void unlock_shared() { m_lock.EndRead(); }
    void lock() { m_lock.StartWrite(); }
    void unlock() { m_lock.EndWrite(); }

private:
    CReadWriteLock m_lock;
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

/// Threads that all read and write one number, with so many reads in a hundred.
template <class Lock, unsigned kReads>
void Share(benchmark::State& state) {
    static Lock lock;
    static std::uint64_t number = 0;
    std::uint32_t random = 0x9E3779B9U * static_cast<std::uint32_t>(state.thread_index() + 1);
    for (auto _ : state) {
        random = random * 1664525 + 1013904223;
        if ((random >> 16) % 100 < kReads) {
            const std::shared_lock held(lock);
            benchmark::DoNotOptimize(number);
        } else {
            const std::unique_lock held(lock);
            benchmark::DoNotOptimize(++number);
        }
    }
}

template <class Lock>
bool Register(const std::string& who) {
    benchmark::RegisterBenchmark(("LockRead/" + who).c_str(), &Read<Lock>)->MinTime(0.1);
    benchmark::RegisterBenchmark(("LockWrite/" + who).c_str(), &Write<Lock>)->MinTime(0.1);
    const std::tuple<const char*, void (*)(benchmark::State&), int> shared[] = {
        {"Lock2Threads90Reads/", &Share<Lock, 90>, 2},
        {"Lock2Threads50Reads/", &Share<Lock, 50>, 2},
        {"Lock8Threads90Reads/", &Share<Lock, 90>, 8},
        {"Lock8Threads50Reads/", &Share<Lock, 50>, 8}};
    for (const auto& [name, function, threads] : shared)
        benchmark::RegisterBenchmark((name + who).c_str(), function)->Threads(threads)->UseRealTime()->MinTime(0.2);
    return true;
}

const bool g_registered = Register<Ours>("qvcommon") && Register<std::shared_mutex>("std_shared_mutex") &&
                          Register<boost::shared_mutex>("boost_shared_mutex") &&
                          Register<WriterFirstLock>("pthread_rwlock_writers_first");

}  // namespace
