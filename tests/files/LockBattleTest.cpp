#include <iostream>
#include <mutex>
#include <random>
#include <thread>

#include "tests/files/Locking.h"
#include "tests/support/Child.h"
#include "tests/support/FileTests.h"
#include "tests/support/RecordingClock.h"

// Children fight for one lock while the parent kills them at random moments. The parent is the referee: a child reports
// that it is in and waits until the parent has recorded it, and reports that it is out before it releases the lock. So a
// child that is recorded as in holds the lock, and two of them are two holders.

namespace {

/// Shortens the pauses between tries.
class HastyClock : public RecordingClock {
    void Sleep(std::chrono::nanoseconds) override {
        std::this_thread::sleep_for(std::chrono::microseconds(std::random_device()() % 200));
    }
};

/// Sends a report and waits until it is recorded. Ends the child when its parent has ended.
void Report(const char* what) {
    std::cout << what << std::endl;
    if (std::cin.get() == EOF) std::exit(0);
}

QV_CHILD(FightForLock) {
    using Clock = std::chrono::steady_clock;
    const HastyClock clock;
    DocumentLock lock(arguments.at(0).c_str());
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

    /// Runs one child, and its successors once it is killed, until all rounds are fought.
    void Run(int seat) {
        std::mt19937 random(static_cast<unsigned>(seat));
        while (m_roundsLeft > 0) {
            CProcess child;
            StartChild(child, "FightForLock", {m_document});
            Fight(child, seat, random);
        }
    }

    int kills = 0, killedHolders = 0, twoHolders = 0, lostLocks = 0;

private:
    static constexpr int kFree = -1;

    /// Records a random number of reports, then kills the child: while it waits, perhaps with the lock held, or a random
    /// moment after its last report.
    void Fight(CProcess& child, int seat, std::mt19937& random) {
        for (auto reports = 1 + random() % 200; reports > 0 && m_roundsLeft > 0; --reports) {
            Record(LineFrom(child), seat);
            if (reports == 1 && random() % 2) break;
            child.WriteInput("\n");
        }
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 300));
        Kill(child, seat);
    }

    void Record(const std::string& report, int seat) {
        const std::lock_guard guard(m_mutex);
        if (report == "in") {
            if (m_holder != kFree) ++twoHolders;
            m_holder = seat;
            --m_roundsLeft;
        } else {
            if (report != "out" || m_holder != seat) ++lostLocks;
            m_holder = kFree;
        }
    }

    void Kill(CProcess& child, int seat) {
        // A holder remains one until the system has released all that it held.
        const std::lock_guard guard(m_mutex);
        child.Kill();
        child.Wait();
        ++kills;
        if (m_holder != seat) return;
        ++killedHolders;
        m_holder = kFree;
    }

    const CString m_document;
    std::mutex m_mutex;
    std::atomic<int> m_roundsLeft;
    int m_holder = kFree;
};

TEST(LockBattle, ExclusiveAndNeverStuck) {
    // On Windows a round takes several times as long: processes start slowly there, and the shortest pause is a
    // millisecond. QV_ROUNDS sets another number.
    const char* const wanted = std::getenv("QV_ROUNDS");
    const int rounds = wanted ? std::atoi(wanted) : qv::platform::HasDriveLetters() ? 2'500 : 10'000;
    const TempFolder folder;
    Referee referee(folder / "document", rounds);
    {
        std::vector<std::jthread> seats;
        for (int seat = 0; seat < 3; ++seat) seats.emplace_back(&Referee::Run, &referee, seat);
    }
    EXPECT_EQ(referee.twoHolders, 0);
    EXPECT_EQ(referee.lostLocks, 0);
    EXPECT_GT(referee.killedHolders, 10);
    EXPECT_GT(referee.kills - referee.killedHolders, 10);

    DocumentLock lock(folder / "document");
    EXPECT_TRUE(lock.Lock(1)) << lock.GetLockException().m_cause;
    lock.Unlock();
    EXPECT_TRUE(fs::is_empty(folder.Native()));
}

}  // namespace
