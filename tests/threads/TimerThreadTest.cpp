#include "qvcommon/TimerThread.h"

#include <gtest/gtest.h>

#include <mutex>
#include <string>
#include <thread>

#include "platform/Event.h"
#include "qvcommon/ChangeWatchers.h"
#include "tests/support/RecordingMessageBox.h"
#include "tests/support/TempFolder.h"

namespace {

using qv::platform::Event;

class Recorder : public CTimerThread {
public:
    explicit Recorder(int stopItselfAt = 0) : m_stopItselfAt(stopItselfAt) {}
    ~Recorder() override { CTimerThread::StopThread(); }

    void OnThreadStart() override { m_log += '<'; }
    void OnTick() override {
        m_log += '.';
        ++m_ticks;
        ticked.Set();
        if (m_ticks != m_stopItselfAt) return;
        parking.Set();
        StopThread();
    }
    void OnThreadStop() override { m_log += '>'; }

    const std::string& LogOfStopped() const { return m_log; }

    Event ticked, parking;

private:
    int m_ticks = 0, m_stopItselfAt;
    std::string m_log;
};

TEST(TimerThread, TicksImmediatelyAndStopsPromptly) {
    Recorder timer;
    EXPECT_EQ(timer.GetTickSeconds(), 900U);
    timer.StopThread();
    for (int i = 0; i < 2; ++i) {
        timer.StartThread(4'000'000'000);  // in milliseconds more than 32 bits
        timer.ticked.Wait();
        timer.StopThread();
    }
    EXPECT_EQ(timer.GetTickSeconds(), 4'000'000'000U);
    EXPECT_EQ(timer.LogOfStopped(), "<.><.>");
    timer.StartThread(0);  // ticks continuously
    for (int i = 0; i < 10; ++i) timer.ticked.Wait();
    timer.StopThread();
}

// The parked thread must not take the signal that ends the next one, nor use the object once it is destroyed.
TEST(TimerThread, ThreadStoppingItselfParks) {
    for (int i = 0; i < 20; ++i) {
        Recorder timer(1);
        timer.StartThread(0);
        timer.parking.Wait();
        timer.StopThread();
        timer.StartThread(900);
        timer.ticked.Wait();
        timer.StopThread();
    }
}

TEST(Threads, RunTheirFunction) {
    Event ran;
    DWORD id = 0;
    const auto run = [](void* event) -> UINT {
        static_cast<Event*>(event)->Set();
        return 3;
    };
    const HANDLE handle = QvCreateThread(run, &ran, &id);
    ASSERT_TRUE(handle);
    ran.Wait();
    EXPECT_NE(id, 0U);
    QvCloseThread(handle);
    QvCloseThread(nullptr);
}

// Shows a message until the user closes it, on any number of threads.
class SlowMessageBox : public RecordingMessageBox {
public:
    int Show(const char* text, UINT style) override {
        {
            const std::scoped_lock lock(m_mutex);
            m_texts += text + std::to_string(style) + ' ';
        }
        opened.Set();
        closed.Wait();
        return 1;
    }

    std::string Texts() {
        const std::scoped_lock lock(m_mutex);
        return m_texts;
    }

    Event opened, closed;

private:
    std::mutex m_mutex;
    std::string m_texts;
};

TEST(DeletedFileWatchManager, ReportsEachDeletionOnce) {
    const TempFolder folder;
    SlowMessageBox box;
    folder.Write("kept", "");
    CDeletedFileWatchManager manager(0, 0);
    manager.AddFile(folder / "kept", "no");
    manager.AddFile(folder / "gone", "one");
    box.opened.Wait();
    manager.AddFile(folder / "gone", "not this");
    EXPECT_EQ(box.Texts(), "one64 ");
    box.closed.Set();
    // A new watcher starts only when the path has left the set, which happens after the box is closed.
    while (box.Texts() == "one64 ") {
        manager.AddFile(folder / "gone", "two");
        if (box.opened.WaitFor(1)) break;
    }
    EXPECT_EQ(box.Texts(), "one64 two64 ");
    box.closed.Set();
    for (int again = 0; again < 2; ++again) manager.Close();
    EXPECT_EQ(box.Texts(), "one64 two64 ");
}

TEST(DeletedFileWatchManager, ClosesAtAnyMoment) {
    const TempFolder folder;
    SlowMessageBox box;
    for (int i = 0; i < 50; ++i) {
        CDeletedFileWatchManager manager(i % 2 ? 900 : 0, 1);
        for (int file = 0; file < 3; ++file) manager.AddFile(folder / "gone", "x");
        if (i % 3) box.opened.Wait();
        for (int file = 0; file < 3; ++file) box.closed.Set();
        if (i % 5 == 0) box.opened.WaitFor(1);
        // Closes the boxes that open late, while the manager closes.
        std::atomic<bool> done = false;
        const std::jthread user([&] {
            while (!done) {
                box.closed.Set();
                box.opened.WaitFor(1);
            }
        });
        manager.Close();
        done = true;
    }
    EXPECT_FALSE(box.Texts().empty());
}

}  // namespace
