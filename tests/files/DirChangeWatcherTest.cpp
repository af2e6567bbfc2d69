#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <thread>

#include "qvcommon/framework/File.h"
#include "tests/files/Watching.h"
#include "tests/support/Tool.h"

namespace {

namespace fs = std::filesystem;

// Windows does; an emulation may tell only of the watched folder itself.
bool WatchesSubfolders() {
    static const bool watches = [] {
        if (!OnWindows()) return true;
        const TempFolder tree;
        MakeWatchedTree(tree);
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
                MakeWatchedTree(tree);
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
    MakeWatchedTree(tree);
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
    MakeWatchedTree(elsewhere);
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
