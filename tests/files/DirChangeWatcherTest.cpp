#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <thread>

#include "platform/Event.h"
#include "platform/Path.h"
#include "qvcommon/ChangeWatchers.h"
#include "qvcommon/framework/File.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Tool.h"

namespace {

namespace fs = std::filesystem;

constexpr int kPatience = 20'000, kAWhile = 60;  // milliseconds

class Watcher : public CDirChangeWatcher {
public:
    Watcher(const CString& folder, DWORD filter, int subfolders = 1) {
        SetDirectory(folder);
        SetFilter(filter);
        SetCheckSubdirectories(subfolders);
        EXPECT_TRUE(Start());
    }
    ~Watcher() override { Stop(); }

    void OnChange() override {
        CDirChangeWatcher::OnChange();
        m_changed.Set();
    }

    bool SeesChange() { return m_changed.WaitFor(kPatience); }
    // Until nothing has come for a while.
    void Settle() {
        while (m_changed.WaitFor(kAWhile)) {
        }
    }
    bool StaysQuiet() { return !m_changed.WaitFor(kAWhile); }

private:
    qv::platform::Event m_changed;
};

bool OnWindows() {
    return qv::platform::HasDriveLetters();
}

// The tree in which operations are done: "file" and "folder", "sub" with the same in it.
void MakeTree(const TempFolder& tree) {
    for (const char* const folder : {"", "sub/"}) {
        fs::create_directories(tree.Native(folder + std::string("folder")));
        tree.Write(folder + std::string("file"), "text");
    }
}

// Windows does; an emulation may tell only of the watched folder itself.
bool WatchesSubfolders() {
    static const bool watches = [] {
        if (!OnWindows()) return true;
        const TempFolder tree;
        MakeTree(tree);
        Watcher watcher(tree / "", 0x01);
        tree.Write("sub/new", "");
        return !watcher.StaysQuiet();
    }();
    return watches;
}

void SetReadOnly(const fs::path& path) {
    fs::permissions(path, fs::perms::owner_write, fs::perm_options::remove);
}

struct Operation {
    const char* name;
    void (*run)(const fs::path& folder);
    DWORD bits;  // the filter's bits that have to find it
    DWORD more;  // those that may
};

// Every write changes the times too; that a file's size has changed some systems tell late, and Linux each time.
const Operation kOperations[] = {
    {"file made", [](const fs::path& folder) { std::ofstream(folder / "new"); }, 0x01, 0x78},
    {"file deleted", [](const fs::path& folder) { fs::remove(folder / "file"); }, 0x01, 0x18},
    {"file renamed", [](const fs::path& folder) { fs::rename(folder / "file", folder / "other"); }, 0x01, 0x58},
    {"file written", [](const fs::path& folder) { std::ofstream(folder / "file", std::ios::app) << "more"; }, 0x18, 0},
    {"file read-only", [](const fs::path& folder) { SetReadOnly(folder / "file"); }, 0x04, 0x110},
    {"folder made", [](const fs::path& folder) { fs::create_directory(folder / "new"); }, 0x02, 0x58},
    {"folder deleted", [](const fs::path& folder) { fs::remove(folder / "folder"); }, 0x02, 0x18},
    {"folder renamed", [](const fs::path& folder) { fs::rename(folder / "folder", folder / "other"); }, 0x02, 0x58},
};

// Wine tells of names without a difference between files and folders.
TEST(DirChangeWatcher, TheFilterSaysWhatCounts) {
    for (const Operation& operation : kOperations)
        for (const DWORD filter : {0x01, 0x02, 0x04, 0x08, 0x10}) {
            for (const char* const folder : {"", "sub"}) {
                if (*folder && !WatchesSubfolders()) continue;
                const TempFolder tree;
                MakeTree(tree);
                Watcher watcher(tree / "", filter);
                operation.run(tree.Native(folder));
                const bool name = operation.bits & 0x03 && filter & 0x03;
                if (operation.bits & filter) {
                    EXPECT_TRUE(watcher.SeesChange()) << operation.name << ", " << filter << ", " << folder;
                } else if (!(operation.more & filter) && !(OnWindows() && name) && !*folder) {
                    EXPECT_TRUE(watcher.StaysQuiet()) << operation.name << ", " << filter;
                }
            }
        }
}

TEST(DirChangeWatcher, KeepsTheChangeUntilItIsReset) {
    const TempFolder tree;
    MakeTree(tree);
    Watcher watcher(tree / "", 0x01, 0);
    EXPECT_FALSE(watcher.HasChanged(0));
    tree.Write("sub/new", "");
    EXPECT_TRUE(watcher.StaysQuiet()) << "without subfolders";
    tree.Write("new", "");
    ASSERT_TRUE(watcher.SeesChange());
    EXPECT_TRUE(watcher.HasChanged(0));
    EXPECT_TRUE(watcher.HasChanged(1));
    EXPECT_TRUE(watcher.IsWatching());
    watcher.Stop();
    EXPECT_FALSE(watcher.IsWatching());
    watcher.Stop();
    watcher.SetDirectory(tree / "missing");
    EXPECT_FALSE(watcher.Start());
    EXPECT_FALSE(watcher.IsWatching());
}

TEST(DirChangeWatcher, FollowsFoldersThatAppear) {
    if (!WatchesSubfolders()) GTEST_SKIP() << "the system does not tell of subfolders";
    const TempFolder tree, elsewhere;
    MakeTree(elsewhere);
    for (int round = 0; round < 30; ++round) {
        const std::string top = "top" + std::to_string(round);
        Watcher watcher(tree / "", 0x01);
        // What is in new folders by the time that they are watched counts.
        fs::create_directories(tree.Native(top + "/a/b"));
        tree.Write(top + "/a/b/early", "");
        EXPECT_TRUE(watcher.SeesChange()) << round;
        watcher.Settle();
        tree.Write(top + "/a/b/late", "");
        EXPECT_TRUE(watcher.SeesChange()) << round;
        fs::rename(tree.Native(top), tree.Native(top + " renamed"));
        watcher.Settle();
        tree.Write(top + " renamed/a/b/later", "");
        EXPECT_TRUE(watcher.SeesChange()) << round;
    }
    Watcher watcher(tree / "", 0x01);
    fs::rename(elsewhere.Native("sub"), tree.Native("moved in"));
    watcher.Settle();
    tree.Write("moved in/folder/new", "");
    EXPECT_TRUE(watcher.SeesChange());
    fs::rename(tree.Native("moved in"), elsewhere.Native("moved out"));
    watcher.Settle();
    elsewhere.Write("moved out/folder/x", "");
    EXPECT_TRUE(OnWindows() || watcher.StaysQuiet());
}

// Each operation, wherever in a tree that moves about, is told.
TEST(DirChangeWatcher, MissesNothing) {
    if (!WatchesSubfolders()) GTEST_SKIP() << "the system tells of some changes only";
    const TempFolder tree;
    std::mt19937 random(4);
    std::vector<std::string> folders = {""};
    Watcher watcher(tree / "", 0x1B);
    for (int i = 0; i < 300; ++i) {
        const std::string folder = folders[random() % folders.size()], name = folder + std::to_string(i);
        switch (random() % 5) {
            case 0:
                fs::create_directory(tree.Native(name));
                folders.push_back(name + '/');
                break;
            case 1: {
                if (folder.empty()) continue;
                const std::string from = folder.substr(0, folder.size() - 1), to = from + "r";
                fs::rename(tree.Native(from), tree.Native(to));
                for (std::string& path : folders)
                    if (path.starts_with(folder)) path = to + '/' + path.substr(folder.size());
                break;
            }
            case 2:
                if (folder.empty() || random() % 3) continue;
                fs::remove_all(tree.Native(folder));
                std::erase_if(folders, [folder](const std::string& path) { return path.starts_with(folder); });
                break;
            default: tree.Write(name, "x");
        }
        ASSERT_TRUE(watcher.SeesChange()) << i << ", " << name;
    }
}

TEST(DirChangeWatcher, TheEndOfTheFolderEndsTheWatch) {
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
}

// More changes than the system keeps, while OnChange is busy: that counts as a change, and what was lost is watched again.
TEST(DirChangeWatcher, AnOverflowIsAChange) {
    if (OnWindows()) GTEST_SKIP() << "the system keeps the one change that it tells of";
    int kept = 0;
    std::ifstream("/proc/sys/fs/inotify/max_queued_events") >> kept;
    if (kept == 0 || kept > 100'000) GTEST_SKIP() << "no such end of the list, or one too far away";
    class Busy : public Watcher {
    public:
        using Watcher::Watcher;
        ~Busy() override { Stop(); }
        void OnChange() override {
            Watcher::OnChange();
            if (!m_free) m_goOn.Wait();
        }
        std::atomic<bool> m_free = false;
        qv::platform::Event m_goOn;
    };
    const TempFolder tree;
    MakeTree(tree);
    Busy watcher(tree / "", 0x01);
    tree.Write("new", "");
    ASSERT_TRUE(watcher.SeesChange());
    for (int i = 0; i <= kept; i += 2) {
        fs::rename(tree.Native("file"), tree.Native("other"));
        fs::rename(tree.Native("other"), tree.Native("file"));
    }
    fs::create_directory(tree.Native("lost"));
    watcher.m_free = true;
    watcher.m_goOn.Set();
    EXPECT_TRUE(watcher.SeesChange());
    watcher.Settle();
    tree.Write("lost/late", "");
    EXPECT_TRUE(watcher.SeesChange());
    EXPECT_TRUE(watcher.IsWatching());
}

TEST(DirChangeWatcher, AnUnmountEndsTheWatch) {
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

// Stops, starts anew or ends its watcher from inside OnChange.
class Acting : public CDirChangeWatcher {
public:
    explicit Acting(void (*act)(Acting&)) : m_act(act) {}
    ~Acting() override { Stop(); }

    void OnChange() override {
        const std::shared_ptr<qv::platform::Event> told = m_told;
        m_act(*this);
        told->Set();
    }

    std::shared_ptr<qv::platform::Event> m_told = std::make_shared<qv::platform::Event>();

private:
    void (*m_act)(Acting&);
};

TEST(DirChangeWatcher, OnChangeMayEndIt) {
    const TempFolder tree;
    void (*const acts[])(Acting&) = {[](Acting& watcher) { watcher.Stop(); }, [](Acting& watcher) { watcher.Start(); },
                                     [](Acting& watcher) { delete &watcher; }};
    int files = 0;
    for (const auto& act : acts) {
        auto* const watcher = new Acting(act);
        const auto told = watcher->m_told;
        watcher->SetDirectory(tree / "");
        ASSERT_TRUE(watcher->Start());
        tree.Write(std::to_string(++files), "");
        ASSERT_TRUE(told->WaitFor(kPatience));
        if (&act == &acts[2]) continue;
        EXPECT_EQ(watcher->IsWatching(), &act == &acts[1]);
        delete watcher;
    }
}

TEST(DirChangeWatcher, StopsWhileChangesPourIn) {
    const TempFolder tree;
    std::atomic<bool> done = false;
    const std::jthread writer([&] {
        for (int i = 0; !done; ++i) tree.Write("file" + std::to_string(i % 10), "x");
    });
    for (int i = 0; i < 50; ++i) {
        Watcher watcher(tree / "", 0x19);
        if (i % 2) {
            EXPECT_TRUE(watcher.SeesChange());
        }
        watcher.Stop();
    }
    done = true;
}

TEST(WatchCommand, PrintsALineForEachChange) {
    const TempFolder tree;
    std::atomic<bool> done = false;
    std::jthread writer([&] {
        for (int i = 0; !done; ++i) tree.Write(std::to_string(i % 50), "x");
    });
    const ToolAnswer answer = RunTool({"watch", tree / "", "--count", "2"});
    done = true;
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.output.substr(0, 7), "changed");
    EXPECT_EQ(std::count(answer.output.begin(), answer.output.end(), '\n'), 2);
    EXPECT_EQ(ToolStatus({"watch", tree / "missing"}), 1);
    EXPECT_EQ(ToolStatus({"watch"}), 2);
}

}  // namespace
