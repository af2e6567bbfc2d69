#include "threads/Executor.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include "qvcommon/framework/File.h"
#include "tests/support/Raised.h"

namespace {

using qv::Executor;
using qv::Task;

// With as many threads as machines have, with one, and with none.
class Executors : public testing::TestWithParam<unsigned> {
protected:
    Executor m_executor{GetParam()};
};

TEST_P(Executors, ReturnResultsInAnyOrder) {
    std::vector<Task<std::string>> tasks;
    for (int i = 0; i < 500; ++i) tasks.push_back(m_executor.Start([i] { return std::to_string(i); }));
    for (std::size_t i = tasks.size(); i-- > 0;) EXPECT_EQ(tasks[i].Get(), std::to_string(i));
    EXPECT_FALSE(tasks[0]);
}

TEST_P(Executors, CallWithEachNumberOnce) {
    for (const std::size_t count : {0u, 1u, 2u, 3u, 1000u}) {
        std::vector<int> calls(count);
        m_executor.ForEach(count, [&](std::size_t i) { ++calls[i]; });
        EXPECT_EQ(std::count(calls.begin(), calls.end(), 1), std::ptrdiff_t(count));
    }
}

TEST_P(Executors, RaiseFailureOfLowestIndex) {
    std::atomic<int> lowest = 1000;
    for (int round = 0; round < 50; ++round) {
        const auto fail = [&](std::size_t i) {
            if (i >= 30) AfxThrowFileException(CFileException::diskFull, static_cast<LONG>(i));
            if (static_cast<int>(i) < lowest) lowest = static_cast<int>(i);
        };
        const auto error = Raised<CFileException>([&] { m_executor.ForEach(100, fail); });
        ASSERT_TRUE(error);
        EXPECT_EQ(error->m_lOsError, 30);
    }
    EXPECT_EQ(lowest, 0);
    auto failing = m_executor.Start([]() -> int { throw std::string("no"); });
    EXPECT_THROW(failing.Get(), std::string);
    // An exception that is never retrieved is freed.
    const auto dropped = m_executor.Start([]() -> int { AfxThrowInvalidArgException(); });
}

TEST_P(Executors, DropPendingAndAwaitRunningTasks) {
    std::atomic<int> running = 0, ended = 0;
    {
        std::vector<Task<int>> tasks;
        for (int i = 0; i < 100; ++i)
            tasks.push_back(m_executor.Start([&] {
                ++running;
                std::this_thread::yield();
                return ++ended;
            }));
    }
    const int seen = running;
    EXPECT_EQ(ended, seen);
    std::this_thread::yield();
    EXPECT_EQ(running, seen);
}

INSTANTIATE_TEST_SUITE_P(Threads, Executors, testing::Values(0u, 1u, 4u, 1000u));

TEST(Executor, RunsConcurrentlyWithOwner) {
    Executor executor(1);
    std::promise<void> begun, mayEnd;
    auto task = executor.Start([&] {
        begun.set_value();
        mayEnd.get_future().wait();
        return std::this_thread::get_id();
    });
    begun.get_future().wait();  // before the result is asked for
    mayEnd.set_value();
    EXPECT_NE(task.Get(), std::this_thread::get_id());
}

}  // namespace
