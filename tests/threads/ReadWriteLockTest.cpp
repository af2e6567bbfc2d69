#include "qvcommon/ReadWriteLock.h"

#include <gtest/gtest.h>

#include <atomic>
#include <random>
#include <thread>
#include <vector>

#include "qvcommon/LockedObjects.h"
#include "tests/support/Blocked.h"

namespace {

TEST(ReadWriteLock, WaitingWriterBlocksNewReaders) {
    CReadWriteLock lock;
    bool wrote = false;
    lock.StartRead();
    lock.StartRead();
    Background writer([&] {
        lock.StartWrite();
        wrote = true;
        lock.EndWrite();
    });
    ASSERT_TRUE(writer.IsBlocked());
    Background reader([&] {
        lock.StartRead();
        EXPECT_TRUE(wrote);
        lock.EndRead();
    });
    EXPECT_TRUE(reader.IsBlocked());
    lock.EndRead();
    EXPECT_TRUE(writer.IsBlocked());
    lock.EndRead();
    EXPECT_TRUE(writer.Ends() && reader.Ends());
}

TEST(ReadWriteLock, WriterHandsOverToWriterThenReaders) {
    CReadWriteLock lock;
    std::atomic<int> reading = 0;
    bool wrote = false;
    lock.StartWrite();
    const auto read = [&] {
        lock.StartRead();
        EXPECT_TRUE(wrote);
        for (++reading; reading < 3;) std::this_thread::yield();  // all of them hold it at once
        lock.EndRead();
    };
    Background first(read), second(read), third(read);
    ASSERT_TRUE(first.IsBlocked() && second.IsBlocked() && third.IsBlocked());
    Background writer([&] {
        lock.StartWrite();
        wrote = true;
        lock.EndWrite();
    });
    ASSERT_TRUE(writer.IsBlocked());
    lock.EndWrite();
    EXPECT_TRUE(writer.Ends() && first.Ends() && second.Ends() && third.Ends());
}

class Counted : public CLockableObject {
public:
    explicit Counted(std::atomic<int>& alive) : m_alive(alive) { ++m_alive; }
    Counted(const Counted& other) : CLockableObject(other), m_alive(other.m_alive) { ++m_alive; }
    ~Counted() override { --m_alive; }

    int m_value = 0;

private:
    std::atomic<int>& m_alive;
};

TEST(LockedObjectMap, DoesNotDeleteReplacedOrRemoved) {
    std::atomic<int> alive = 0;
    CLockedObjectMap map;
    Counted first(alive), other(alive);
    EXPECT_EQ(map.AddItem("one", &first), 1);
    EXPECT_EQ(map.AddItem("one", &other), 0);
    EXPECT_TRUE(map.IsExist("one"));
    EXPECT_FALSE(map.IsExist("ONE"));
    CLockedRef reference;
    EXPECT_EQ(map.GetAt("two", reference, 1), 0);
    EXPECT_EQ(reference.Get(), nullptr);
    EXPECT_EQ(map.GetAt("one", reference, 0), 1);
    EXPECT_EQ(reference.Get(), &first);
    EXPECT_EQ(map.RemoveAt("two"), nullptr);
    map.SetAt("two", &first);
    EXPECT_EQ(map.GetAt("two", reference, 1), 1);  // what it held for writing was released first
    map.SetAt("two", &other);
    reference.SetDeleted();
    EXPECT_EQ(reference.Get(), nullptr);
    EXPECT_EQ(map.RemoveAt("two", 0), &other);
    EXPECT_EQ(alive, 2);
}

TEST(LockedObjectMap, RemovingAndClearingWaitForHolders) {
    std::atomic<int> alive = 0;
    CLockedObjectMap map;
    map.AddItem("held", new Counted(alive));
    map.AddItem("other", new Counted(alive));
    auto held = std::make_unique<CLockedRef>();
    ASSERT_TRUE(map.GetAt("held", *held, 1));
    {
        std::unique_ptr<CLockableObject> removed;
        Background remover([&] { removed.reset(map.RemoveAt("held")); });
        EXPECT_TRUE(remover.IsBlocked());
        EXPECT_FALSE(map.IsExist("held"));
        held.reset();
        EXPECT_TRUE(remover.Ends());
        EXPECT_NE(removed, nullptr);
    }
    EXPECT_EQ(alive, 1);

    held = std::make_unique<CLockedRef>();
    ASSERT_TRUE(map.GetAt("other", *held, 0));
    EXPECT_EQ(map.AddItem("null", nullptr), 1);
    CLockedRef null;
    EXPECT_EQ(map.GetAt("null", null, 0), 0);
    Background clearer([&] { map.Clear(); });
    EXPECT_TRUE(clearer.IsBlocked());
    held.reset();
    EXPECT_TRUE(clearer.Ends());
    EXPECT_EQ(alive, 0);
    EXPECT_TRUE(map.IsEmpty());
}

TEST(LockedObjectMap, CopiesHaveTheirOwnLocks) {
    struct Plain : CLockableObject {};
    Plain original, copy(original), assigned;
    assigned = original;
    CLockedObjectMap map;
    map.AddItem("original", &original);
    map.AddItem("copy", &copy);
    map.AddItem("assigned", &assigned);
    CLockedRef references[3];
    EXPECT_TRUE(map.GetAt("original", references[0], 0) && map.GetAt("copy", references[1], 0));
    EXPECT_TRUE(map.GetAt("assigned", references[2], 0));
}

TEST(ReadWriteLock, CopyTakesOverHeldLock) {
    CReadWriteLock lock;
    lock.StartWrite();
    CReadWriteLock copy(lock);
    lock.EndWrite();
    Background reader([&] {
        copy.StartRead();
        copy.EndRead();
    });
    EXPECT_TRUE(reader.IsBlocked());
    lock.StartWrite();  // is free
    lock.EndWrite();
    copy.EndWrite();
    EXPECT_TRUE(reader.Ends());
}

// Values under the locks are not atomic: the thread sanitizer finds races that the counts miss.
TEST(LockedObjectMap, ConcurrentOperations) {
    std::atomic<int> alive = 0;
    std::atomic<long> added = 0, counted = 0, sum = 0;
    CLockedObjectMap map;
    const auto take = [&](CLockableObject* object) {
        if (!object) return;
        sum += static_cast<Counted*>(object)->m_value;
        delete object;
    };
    const auto work = [&](unsigned seed) {
        std::mt19937 random(seed);
        for (int i = 0; i < 10'000; ++i) {
            const CString key(static_cast<char>('a' + random() % 5));
            const unsigned action = random() % 8;
            if (action == 0) {
                auto object = std::make_unique<Counted>(alive);
                if (!map.AddItem(key, object.get())) continue;
                static_cast<void>(object.release());
                ++added;
            } else if (action == 1) {
                take(map.RemoveAt(key));
            } else {
                CLockedRef reference;
                if (!map.GetAt(key, reference, action > 3)) continue;
                auto& object = static_cast<Counted&>(*reference.Get());
                if (action > 3) {
                    EXPECT_GE(object.m_value, 0);
                } else {
                    ++object.m_value;
                    ++counted;
                }
            }
        }
    };
    {
        std::vector<std::jthread> threads;
        for (unsigned seed = 0; seed < 6; ++seed) threads.emplace_back(work, seed);
    }
    for (const char* key : {"a", "b", "c", "d", "e"}) take(map.RemoveAt(key));
    EXPECT_GT(added, 0);
    EXPECT_EQ(sum, counted);
    EXPECT_EQ(alive, 0);
}

}  // namespace
