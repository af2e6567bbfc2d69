#pragma once

/// @file Distribution of work to the processors.

#include <algorithm>
#include <atomic>
#include <exception>
#include <memory>
#include <optional>
#include <utility>

namespace qv {

/// Work that runs once, on a thread of an executor or on the thread that requests its result.
class Job {
public:
    virtual ~Job();
    Job() = default;
    Job(const Job&) = delete;
    Job& operator=(const Job&) = delete;

private:
    friend class Executor;
    enum class State : unsigned char { Waiting, Running, Done };

    /// Stores exceptions.
    virtual void Run() noexcept = 0;

    State m_state = State::Waiting;
};

/// Frees an unhandled exception, including the object that it points to.
void DropException(std::exception_ptr error) noexcept;

template <class Result>
class Task;

/// Runs tasks on its own threads in addition to its owner's, which is the only one that may call it. Threads start when
/// there is work for them, and end with the executor. No task depends on them: a task whose result is requested before
/// a thread has taken it runs on the requesting thread, so that nothing waits for work that has not begun, and if the
/// system refuses threads, the work only becomes slower.
///
///     Executor executor;
///     auto left = executor.Start([&] { return Sum(a); });
///     const int right = Sum(b);
///     return left.Get() + right;
class Executor {
public:
    /// Maximum number of threads besides the owner's.
    static constexpr unsigned kMostThreads = 15;
    /// Returns the number of processors that this process may use, minus one for the calling thread. 0 if that thread
    /// has a thread-specific locale, which other threads would not use.
    static unsigned SpareProcessors();

    explicit Executor(unsigned threads = SpareProcessors());
    /// Waits for running tasks; those that have not begun are discarded.
    ~Executor();
    Executor(const Executor&) = delete;
    Executor& operator=(const Executor&) = delete;

    /// Returns the maximum number of threads besides the owner's.
    unsigned Threads() const { return m_threads; }

    /// Queues a task. It must not outlive the executor, nor what `work` refers to.
    template <class Work>
    [[nodiscard]] Task<std::invoke_result_t<Work&>> Start(Work work);

    /// Calls `body` with every number below `count`, in any order and on several threads, including the caller's, and
    /// returns after all calls. If calls raise exceptions, raises that of the lowest number; higher numbers may not
    /// have been called, lower ones have.
    template <class Body>
    void ForEach(std::size_t count, const Body& body);

private:
    template <class Result>
    friend class Task;
    struct Pool;

    void Queue(std::shared_ptr<Job> job);
    /// Returns once the job has run, running it on this thread if necessary.
    static void Finish(Pool& pool, Job& job);
    /// Returns once the job has run or never will.
    static void Abandon(Pool& pool, Job& job) noexcept;

    const unsigned m_threads;
    const std::shared_ptr<Pool> m_pool;
};

/// The result of work queued in an executor. If Get is not called, work that has not begun is discarded.
template <class Result>
class Task {
public:
    Task() = default;
    Task(Task&&) noexcept = default;
    Task& operator=(Task&& other) noexcept {
        std::swap(m_pool, other.m_pool);
        std::swap(m_outcome, other.m_outcome);
        return *this;
    }
    ~Task() {
        if (m_outcome) Executor::Abandon(*m_pool, *m_outcome);
    }

    /// Returns false for a task that was never started or whose result was taken.
    explicit operator bool() const { return m_outcome != nullptr; }

    /// Waits for the result and returns it. @throws what the work raised.
    Result Get() {
        const auto outcome = std::exchange(m_outcome, nullptr);
        Executor::Finish(*m_pool, *outcome);
        if (outcome->error) std::rethrow_exception(std::exchange(outcome->error, nullptr));
        return std::move(*outcome->result);
    }

private:
    friend class Executor;

    struct Outcome : Job {
        ~Outcome() override { DropException(std::move(error)); }

        std::optional<Result> result;
        std::exception_ptr error;
    };

    template <class Work>
    struct Call final : Outcome {
        explicit Call(Work&& body) : work(std::move(body)) {}
        void Run() noexcept override {
            try {
                this->result.emplace(work());
            } catch (...) {
                this->error = std::current_exception();
            }
        }

        Work work;
    };

    std::shared_ptr<Executor::Pool> m_pool;
    std::shared_ptr<Outcome> m_outcome;
};

template <class Work>
Task<std::invoke_result_t<Work&>> Executor::Start(Work work) {
    using Started = Task<std::invoke_result_t<Work&>>;
    auto call = std::make_shared<typename Started::template Call<Work>>(std::move(work));
    Started task;
    task.m_pool = m_pool;
    task.m_outcome = call;
    Queue(std::move(call));
    return task;
}

/// State shared by the threads of one ForEach.
class Numbers {
public:
    explicit Numbers(std::size_t count) : m_end(count) {}
    ~Numbers() { DropException(std::move(m_error)); }
    Numbers(const Numbers&) = delete;
    Numbers& operator=(const Numbers&) = delete;

    template <class Body>
    bool CallAll(const Body& body) noexcept {
        for (std::size_t number; (number = m_next.fetch_add(1)) < m_end.load();) try {
                body(number);
            } catch (...) {
                Fail(number, std::current_exception());
            }
        return true;
    }
    void RaiseFirst() {
        if (m_error) std::rethrow_exception(std::exchange(m_error, nullptr));
    }

private:
    void Fail(std::size_t number, std::exception_ptr error) noexcept;

    std::atomic<std::size_t> m_next = 0;
    std::atomic<std::size_t> m_end;  ///< lowered by failures
    std::atomic_flag m_isChanging;   ///< guards m_end while it is lowered, and the error
    std::exception_ptr m_error;
};

template <class Body>
void Executor::ForEach(std::size_t count, const Body& body) {
    Numbers numbers(count);
    const std::size_t others = std::min<std::size_t>(m_threads, count == 0 ? 0 : count - 1);
    Task<bool> tasks[kMostThreads];
    for (std::size_t i = 0; i < others; ++i) tasks[i] = Start([&] { return numbers.CallAll(body); });
    numbers.CallAll(body);
    for (std::size_t i = 0; i < others; ++i) tasks[i].Get();
    numbers.RaiseFirst();
}

}  // namespace qv
