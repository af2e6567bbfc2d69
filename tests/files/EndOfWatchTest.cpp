#include <cerrno>
#include <functional>
#include <memory>
#include <thread>

#include "tests/files/Watching.h"
#include "tests/support/Blocked.h"

namespace {

TEST(DirChangeWatcher, RemovedFolderEndsWatch) {
    if (OnWindows()) GTEST_SKIP() << "the system keeps a watched folder";
    for (const int subfolders : {0, 1}) {
        const TempFolder tree;
        fs::create_directories(tree.Native("watched/sub"));
        Watcher watcher(tree / "watched", 0x10, subfolders);
        fs::rename(tree.Native("watched"), tree.Native("renamed"));
        EXPECT_TRUE(watcher.SeesChange());
        EXPECT_TRUE(subfolders || watcher.IsWatching());
        fs::remove_all(tree.Native("renamed"));
        while (watcher.IsWatching()) std::this_thread::yield();
        EXPECT_FALSE(watcher.Start());
    }
    const TempFolder tree;
    fs::create_directories(tree.Native("above/watched"));
    Watcher watcher(tree / "above\\watched", 0x10);
    fs::rename(tree.Native("above"), tree.Native("renamed"));
    fs::create_directory(tree.Native("renamed/watched/new"));
    EXPECT_TRUE(watcher.SeesChange());
    while (watcher.IsWatching()) std::this_thread::yield();
}

// Without descriptors or watches for a new folder its changes would be missed.
TEST(DirChangeWatcher, EndsWhenOutOfDescriptorsOrWatches) {
    if (OnWindows()) GTEST_SKIP() << "the system watches subfolders itself";
    for (const auto& [name, error] : {std::pair("openat", EMFILE), {"inotify_add_watch", ENOSPC}}) {
        const TempFolder tree, outside;
        fs::create_directories(outside.Native("new/below"));
        Watcher watcher(tree / "", 0x01);
        const SystemFaults faults([only = std::string_view(name), code = error](const SystemFaults::Call& call) {
            const bool fails = call.name == only && LastName(call) == "new";
            return SystemFaults::Fault{.error = fails ? static_cast<unsigned long>(code) : 0};
        });
        fs::rename(outside.Native("new"), tree.Native("new"));
        EXPECT_TRUE(watcher.SeesChange()) << name;
        while (watcher.IsWatching()) std::this_thread::yield();
        EXPECT_FALSE(watcher.Start()) << name;
    }
}

// More changes than the system keeps, while OnChange is busy, count as a change, and what was lost is watched again.
TEST(DirChangeWatcher, QueueOverflowCountsAsChange) {
    if (OnWindows()) GTEST_SKIP() << "the system keeps the one change that it reports";
    int kept = 0;
    std::ifstream("/proc/sys/fs/inotify/max_queued_events") >> kept;
    if (kept == 0 || kept > 100'000) GTEST_SKIP() << "no such end of the list, or one too far away";
    const TempFolder tree;
    MakeWatchedTree(tree);
    Watcher watcher(tree / "", 0x01, 1, true);
    tree.Write("new", "");
    ASSERT_TRUE(watcher.SeesChange());
    for (int i = 0; i <= kept; i += 2) {
        fs::rename(tree.Native("file"), tree.Native("other"));
        fs::rename(tree.Native("other"), tree.Native("file"));
    }
    fs::create_directory(tree.Native("lost"));
    watcher.GoOn();
    EXPECT_TRUE(watcher.SeesChange());
    tree.Write("lost/late", "");
    watcher.GoOn();
    EXPECT_TRUE(watcher.SeesChange());
    EXPECT_TRUE(watcher.IsWatching());
}

TEST(DirChangeWatcher, UnmountEndsWatch) {
    if (OnWindows()) GTEST_SKIP() << "the system keeps a watched volume";
    const TempFolder tree;
    const std::string at = tree.Native().string();
    for (const char* const folder : {"", "below"}) {
        if (std::system(("mount -t tmpfs tmpfs " + at + " 2> /dev/null").c_str())) GTEST_SKIP() << "may not mount";
        fs::create_directories(tree.Native("below"));
        Watcher watcher(tree / folder, 0x19);
        EXPECT_EQ(std::system(("umount " + at).c_str()), 0);
        EXPECT_TRUE(watcher.SeesChange());
        while (watcher.IsWatching()) std::this_thread::yield();
    }
}

// 0 on systems that do not list them.
std::ptrdiff_t CountHandles() {
    return OnWindows() ? 0 : std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
}

// Stops, restarts or deletes its watcher inside OnChange.
struct Acting : CDirChangeWatcher {
    ~Acting() override { Stop(); }
    void OnChange() override {
        const auto kept = acted;
        act(*this);
        kept->Set();
    }

    std::function<void(Acting&)> act;
    std::shared_ptr<qv::platform::Event> acted = std::make_shared<qv::platform::Event>();
};

TEST(DirChangeWatcher, OnChangeMayStopRestartOrDelete) {
    const TempFolder tree;
    void (*const acts[])(Acting&) = {[](Acting& watcher) { watcher.Stop(); }, [](Acting& watcher) { watcher.Start(); },
                                     [](Acting& watcher) { delete &watcher; }};
    int files = 0;
    for (const auto& act : acts) {
        auto* const watcher = new Acting;
        watcher->act = act;
        const auto acted = watcher->acted;
        watcher->SetDirectory(tree / "");
        ASSERT_TRUE(watcher->Start());
        tree.Write(std::to_string(++files), "");
        ASSERT_TRUE(acted->WaitFor(kPatience));
        if (&act == &acts[2]) continue;
        EXPECT_EQ(watcher->IsWatching(), &act == &acts[1]);
        const std::ptrdiff_t handles = CountHandles();
        for (int more = 0; watcher->IsWatching() && more < 20; ++more) {
            tree.Write(std::to_string(++files), "");
            ASSERT_TRUE(acted->WaitFor(kPatience));
        }
        EXPECT_LE(CountHandles(), handles + 9) << "each former watch has some";
        delete watcher;
    }
}

// Another thread stops the watcher while a new watch is being armed, and before OnChange restarts it once more.
TEST(DirChangeWatcher, StopPreventsRestartFromOnChange) {
    const TempFolder tree;
    std::atomic<bool> restarts = false;
    qv::platform::Event arming, never;
    const SystemFaults faults([&](const SystemFaults::Call& call) {
        if (call.kind != CallKind::Watch || !restarts.exchange(false)) return SystemFaults::Fault{};
        arming.Set();
        never.WaitFor(kAWhile);
        return SystemFaults::Fault{};
    });
    Acting watcher;
    watcher.act = [&](Acting& self) {
        restarts = true;
        self.Start();
        while (self.IsWatching()) std::this_thread::yield();
        EXPECT_FALSE(self.Start());
    };
    watcher.SetDirectory(tree / "");
    ASSERT_TRUE(watcher.Start());
    tree.Write("new", "");
    arming.Wait();
    watcher.Stop();
}

// There is another change before each read of changes.
TEST(DirChangeWatcher, ContinuousChangesDoNotBlockCallers) {
    if (OnWindows()) GTEST_SKIP() << "the system merges changes";
    const TempFolder tree;
    std::atomic<bool> done = false;
    fs::path name = tree.Native("first"), other = tree.Native("second");
    tree.Write("first", "");
    Watcher watcher(tree / "", 0x01);
    const SystemFaults endless([&](const SystemFaults::Call& call) {
        const std::string_view made = call.name;
        if (done || (made != "read" && made != "poll")) return SystemFaults::Fault{};
        fs::rename(name, other);
        name.swap(other);
        return SystemFaults::Fault{};
    });
    tree.Write("third", "");  // for the wait that began before
    for (int i = 0; i < 3; ++i) EXPECT_TRUE(watcher.SeesChange());
    Background stop([&] { watcher.Stop(); });
    EXPECT_TRUE(stop.Ends());
    done = true;
}

}  // namespace
