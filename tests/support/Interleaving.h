#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <random>
#include <thread>
#include <utility>
#include <vector>

#include "platform/Event.h"

/// Runs threads one at a time and switches between them, in a pseudorandom order, at each operation on a Stepped value:
/// orders that a machine reaches once in a year, the same ones in every run.
class Interleaving {
public:
    explicit Interleaving(unsigned seed) : m_random(seed) {}

    /// Runs the actions to their ends. When all that have not ended sleep, it gives them up and returns false.
    bool Run(const std::vector<std::function<void()>>& actions) {
        for (std::size_t i = 0; i < actions.size(); ++i) m_threads.push_back(std::make_unique<Thread>());
        for (std::size_t i = 0; i < actions.size(); ++i)
            m_threads[i]->m_thread =
                std::jthread([this, self = m_threads[i].get(), action = actions[i]] { Live(*self, action); });
        Choose()->m_turn.Set();
        for (const auto& thread : m_threads) thread->m_thread.join();
        return !m_stuck;
    }

    /// Lets another thread go first, perhaps.
    static void Step() { t_run->HandOver(); }
    /// Returns when the place has been woken.
    static void Sleep(const void* place) {
        t_self->m_sleepsOn = place;
        Step();
        if (t_run->m_stuck) throw GivenUp();
    }
    static void WakeOne(const void* place) {
        std::vector<Thread*> asleep = t_run->Those([=](const Thread& thread) { return thread.m_sleepsOn == place; });
        if (!asleep.empty()) t_run->OneOf(asleep)->m_sleepsOn = nullptr;
    }
    static void WakeAll(const void* place) {
        for (Thread* thread : t_run->Those([=](const Thread& one) { return one.m_sleepsOn == place; }))
            thread->m_sleepsOn = nullptr;
    }

private:
    struct GivenUp {};
    struct Thread {
        qv::platform::Event m_turn;
        const void* m_sleepsOn = nullptr;
        bool m_ended = false;
        std::jthread m_thread;
    };

    void Live(Thread& self, const std::function<void()>& action) {
        t_run = this;
        t_self = &self;
        self.m_turn.Wait();
        try {
            action();
        } catch (const GivenUp&) {
        }
        self.m_ended = true;
        if (Thread* const next = Choose()) next->m_turn.Set();
    }

    void HandOver() {
        Thread* const self = t_self;
        Thread* const next = Choose();
        if (next == self) return;
        next->m_turn.Set();
        self->m_turn.Wait();
    }

    // Draws the next thread to run. Null when all have ended.
    Thread* Choose() {
        const auto runs = [](const Thread& thread) { return !thread.m_ended && !thread.m_sleepsOn; };
        std::vector<Thread*> ready = Those(runs);
        if (ready.empty()) {
            for (Thread* thread : Those([](const Thread& one) { return !one.m_ended; })) {
                m_stuck = true;
                thread->m_sleepsOn = nullptr;
            }
            ready = Those(runs);
        }
        return ready.empty() ? nullptr : OneOf(ready);
    }

    template <class Test>
    std::vector<Thread*> Those(Test test) const {
        std::vector<Thread*> found;
        for (const auto& thread : m_threads)
            if (test(*thread)) found.push_back(thread.get());
        return found;
    }

    Thread* OneOf(const std::vector<Thread*>& threads) { return threads[m_random() % threads.size()]; }

    static inline thread_local Interleaving* t_run = nullptr;
    static inline thread_local Thread* t_self = nullptr;

    std::mt19937 m_random;
    std::vector<std::unique_ptr<Thread>> m_threads;
    bool m_stuck = false;
};

/// An atomic word whose operations are the steps of an Interleaving. It ignores memory orders.
class SteppedWord {
public:
    SteppedWord(std::uint64_t value) : m_value(value) {}

    std::uint64_t load(std::memory_order) const {
        Interleaving::Step();
        return m_value;
    }
    bool compare_exchange_weak(std::uint64_t& expected, std::uint64_t value, std::memory_order) {
        Interleaving::Step();
        const bool same = m_value == expected;
        (same ? m_value : expected) = same ? value : m_value;
        return same;
    }
    std::uint64_t fetch_sub(std::uint64_t value, std::memory_order) {
        Interleaving::Step();
        return std::exchange(m_value, m_value - value);
    }

private:
    std::uint64_t m_value;
};

/// qv::EventCount in such steps.
class SteppedEventCount {
public:
    std::uint64_t Count() const {
        Interleaving::Step();
        return m_count;
    }
    void WaitWhile(std::uint64_t count) const {
        for (Interleaving::Step(); m_count == count;) Interleaving::Sleep(this);
    }
    void NotifyOne() {
        Advance();
        Interleaving::WakeOne(this);
    }
    void NotifyAll() {
        Advance();
        Interleaving::WakeAll(this);
    }

private:
    void Advance() {
        Interleaving::Step();
        ++m_count;
        Interleaving::Step();
    }

    std::uint64_t m_count = 0;
};
