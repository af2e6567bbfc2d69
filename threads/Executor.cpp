#include "threads/Executor.h"

#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

#include "platform/Locale.h"
#include "platform/SignalHold.h"
#include "qvcommon/framework/Exception.h"

namespace qv {

struct Executor::Pool {
    std::mutex mutex;  ///< guards everything here, and the jobs' states
    std::condition_variable queued, done;
    std::vector<std::shared_ptr<Job>> queue;  ///< some of its jobs may have been taken from elsewhere
    std::vector<std::thread> threads;         ///< used only by the owner
    std::size_t idle = 0;
    bool stop = false;

    void Work();
};

Job::~Job() = default;

void DropException(std::exception_ptr error) noexcept {
    if (!error) return;
    try {
        std::rethrow_exception(std::move(error));
    } catch (CException* exception) {
        exception->Delete();
    } catch (...) {
    }
}

unsigned Executor::SpareProcessors() {
    if (platform::HasOwnLocale()) return 0;
    return std::clamp(std::thread::hardware_concurrency(), 1u, kMostThreads + 1) - 1;
}

Executor::Executor(unsigned threads) : m_threads(std::min(threads, kMostThreads)), m_pool(std::make_shared<Pool>()) {}

Executor::~Executor() {
    {
        const std::lock_guard lock(m_pool->mutex);
        m_pool->stop = true;
    }
    m_pool->queued.notify_all();
    for (std::thread& thread : m_pool->threads) thread.join();
}

void Executor::Queue(std::shared_ptr<Job> job) {
    if (m_threads == 0) return;
    Pool& pool = *m_pool;
    std::size_t idle = 0, waiting = 0;
    {
        const std::lock_guard lock(pool.mutex);
        pool.queue.push_back(std::move(job));
        idle = pool.idle;
        waiting = pool.queue.size();
    }
    if (idle > 0) pool.queued.notify_one();
    if (idle >= waiting || pool.threads.size() == m_threads) return;
    const platform::SignalHold hold;  // inherited: a thread must not receive signals that its owner blocks
    try {
        pool.threads.emplace_back([&pool] { pool.Work(); });
    } catch (const std::system_error&) {
        // The thread that requests the result does the work.
    }
}

void Executor::Pool::Work() {
    std::unique_lock lock(mutex);
    for (;;) {
        ++idle;
        queued.wait(lock, [this] { return stop || !queue.empty(); });
        --idle;
        if (stop) return;
        // The newest: the owner requests the oldest first, and can run that meanwhile.
        const std::shared_ptr<Job> job = std::move(queue.back());
        queue.pop_back();
        if (job->m_state != Job::State::Waiting) continue;
        job->m_state = Job::State::Running;
        lock.unlock();
        job->Run();
        lock.lock();
        job->m_state = Job::State::Done;
        done.notify_all();
    }
}

void Executor::Finish(Pool& pool, Job& job) {
    {
        std::unique_lock lock(pool.mutex);
        pool.done.wait(lock, [&] { return job.m_state != Job::State::Running; });
        if (job.m_state == Job::State::Done) return;
        job.m_state = Job::State::Done;  // no thread will take it
    }
    job.Run();
}

void Executor::Abandon(Pool& pool, Job& job) noexcept {
    std::unique_lock lock(pool.mutex);
    pool.done.wait(lock, [&] { return job.m_state != Job::State::Running; });
    job.m_state = Job::State::Done;
}

void Numbers::Fail(std::size_t number, std::exception_ptr error) noexcept {
    while (m_isChanging.test_and_set(std::memory_order_acquire)) std::this_thread::yield();
    if (number < m_end.load()) {
        m_end.store(number);
        std::swap(m_error, error);
    }
    m_isChanging.clear(std::memory_order_release);
    DropException(std::move(error));
}

}  // namespace qv
