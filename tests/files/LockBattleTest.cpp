#include <gtest/gtest.h>

#include <iostream>
#include <mutex>
#include <random>
#include <thread>

#include "platform/Clock.h"
#include "platform/Path.h"
#include "qvcommon/LockFile.h"
#include "tests/support/Child.h"
#include "tests/support/TempFolder.h"

// Children fight for one lock while the parent kills them at random moments. The parent is the referee: a child reports
// that it is in and goes on only when that was taken down, and reports that it is out before it gives the lock back. So a
// child that the referee counts as in really holds the lock, and two at once are two holders.

namespace {

/// Waits hardly at all between two tries.
class HastyClock : public qv::platform::IClock {
public:
    HastyClock() { qv::platform::SetClock(this); }
    ~HastyClock() override { qv::platform::SetClock(nullptr); }
    std::chrono::system_clock::time_point Now() override { return std::chrono::system_clock::now(); }
    std::chrono::steady_clock::time_point SteadyNow() override { return std::chrono::steady_clock::now(); }
    void Sleep(std::chrono::nanoseconds) override {
        std::this_thread::sleep_for(std::chrono::microseconds(std::random_device()() % 200));
    }
};

/// Sends a report and waits until it was taken down; ends the child when nobody listens any more.
void Report(const char* what) {
    std::cout << what << std::endl;
    if (std::cin.get() == EOF) std::exit(0);
}

QV_CHILD(FightForLock) {
    using Clock = std::chrono::steady_clock;
    const HastyClock clock;
    CLockFile lock;
    lock.SetSourceFile(arguments.at(0).c_str());
    for (auto last = Clock::now();; last = Clock::now()) {
        while (!lock.Lock(1))
            if (Clock::now() - last > std::chrono::seconds(30)) Report("stuck");
        Report("in");
        Report("out");
        lock.Unlock();
    }
}

class Referee {
public:
    Referee(const CString& document, int rounds) : m_document(document), m_roundsLeft(rounds) {}

    /// Follows one child, and its successors after it was killed, until all rounds are fought.
    void Follow(int seat) {
        std::mt19937 random(static_cast<unsigned>(seat));
        while (!IsOver()) {
            CProcess child;
            StartChild(child, "FightForLock", {m_document});
            Fight(child, seat, random);
        }
    }

    int kills = 0, killedHolders = 0, twoHolders = 0, lostLocks = 0;

private:
    static constexpr int kNobody = -1;

    bool IsOver() {
        const std::lock_guard guard(m_mutex);
        return m_roundsLeft <= 0;
    }

    /// Takes down a random number of reports, then kills the child: while it waits with the lock in hand, or a random
    /// moment after it went on, wherever it is then.
    void Fight(CProcess& child, int seat, std::mt19937& random) {
        for (auto reports = 1 + random() % 200; reports > 0 && !IsOver(); --reports) {
            TakeDown(LineFrom(child), seat);
            if (reports == 1 && random() % 2) break;
            child.WriteInput("\n");
        }
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 300));
        Kill(child, seat);
    }

    void TakeDown(const std::string& report, int seat) {
        const std::lock_guard guard(m_mutex);
        if (report == "in") {
            if (m_holder != kNobody) ++twoHolders;
            m_holder = seat;
            --m_roundsLeft;
        } else {
            if (report != "out" || m_holder != seat) ++lostLocks;
            m_holder = kNobody;
        }
    }

    void Kill(CProcess& child, int seat) {
        // A holder stays one until the system has taken everything from it.
        const std::lock_guard guard(m_mutex);
        child.Kill();
        child.Wait();
        ++kills;
        if (m_holder != seat) return;
        ++killedHolders;
        m_holder = kNobody;
    }

    const CString m_document;
    std::mutex m_mutex;
    int m_roundsLeft;
    int m_holder = kNobody;
};

TEST(LockBattle, NeverTwoHoldersAndNeverAStuckLock) {
    // Where paths have drive letters a round takes several times as long: a process starts slowly there, and the shortest
    // pause is a millisecond. QV_ROUNDS says how many otherwise.
    const char* const wanted = std::getenv("QV_ROUNDS");
    const int rounds = wanted ? std::atoi(wanted) : qv::platform::HasDriveLetters() ? 2'500 : 10'000;
    const TempFolder folder;
    Referee referee(folder / "document", rounds);
    std::thread seats[] = {std::thread(&Referee::Follow, &referee, 0), std::thread(&Referee::Follow, &referee, 1),
                           std::thread(&Referee::Follow, &referee, 2)};
    for (std::thread& seat : seats) seat.join();
    EXPECT_EQ(referee.twoHolders, 0);
    EXPECT_EQ(referee.lostLocks, 0);
    EXPECT_GT(referee.killedHolders, 10);
    EXPECT_GT(referee.kills - referee.killedHolders, 10);

    CLockFile lock;
    lock.SetSourceFile(folder / "document");
    EXPECT_TRUE(lock.Lock(1)) << lock.GetLockException().m_cause;
    lock.Unlock();
    EXPECT_TRUE(std::filesystem::is_empty(folder.Native()));
}

}  // namespace
