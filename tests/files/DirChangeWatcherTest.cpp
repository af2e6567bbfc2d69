#include <memory>
#include <random>
#include <thread>

#include "tests/files/Watching.h"
#include "tests/support/Tool.h"

namespace {

// Windows does; an emulation may report only the watched folder itself.
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
    DWORD bits;  // the filter's bits that must report it
    DWORD more;  // those that may
};

// Every write changes the times too. Some systems report late that a file's size has changed, Linux each time.
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

// Wine does not distinguish the names of files and folders. Linux reports folders that appear and disappear with every filter
// where subfolders count.
TEST(DirChangeWatcher, ReportsOnlyFilteredChanges) {
    for (const Operation& operation : kOperations)
        for (const DWORD filter : {0x01, 0x02, 0x04, 0x08, 0x10}) {
            for (const char* const folder : {"", "sub"}) {
                if (*folder && !WatchesSubfolders()) continue;
                const TempFolder tree;
                MakeWatchedTree(tree);
                Watcher watcher(tree / "", filter, *folder != 0);
                operation.run(tree.Native(folder));
                const bool name = operation.bits & 0x03 && filter & 0x03;
                if (operation.bits & filter || (*folder && !OnWindows() && operation.bits == 0x02)) {
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

TEST(DirChangeWatcher, WatchesNewSubfolders) {
    if (!WatchesSubfolders()) GTEST_SKIP() << "the system does not report subfolders";
    const TempFolder tree, elsewhere;
    MakeWatchedTree(elsewhere);
    for (int round = 0; round < 30; ++round) {
        const std::string top = "top" + std::to_string(round);
        Watcher watcher(tree / "", 0x01);
        // A new folder may have files before its watch begins; they count.
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

TEST(DirChangeWatcher, WatchesThroughLinksAndUnusualNames) {
    if (OnWindows()) GTEST_SKIP() << "the names are those of Linux";
    const TempFolder tree;
    const fs::path before = fs::current_path();
    fs::create_directories(tree.Native("real/back\\slash/sub"));
    fs::create_directory_symlink(tree.Native("real"), tree.Native("link"));
    fs::current_path(tree.Native());
    for (const char* const folder : {"link", "link\\", "real"}) {
        Watcher watcher(folder, 0x10);
        fs::current_path(before);
        tree.Write("real/back\\slash/sub/file", "x");
        EXPECT_TRUE(watcher.SeesChange()) << folder;
        fs::create_directory(tree.Native("real/new"));
        EXPECT_TRUE(watcher.SeesChange()) << folder;
        watcher.Settle();
        tree.Write("real/new/file", "x");
        EXPECT_TRUE(watcher.SeesChange()) << folder;
        fs::remove_all(tree.Native("real/new"));
        fs::current_path(tree.Native());
    }
    fs::current_path(before);
}

/// Two folders, "in" and "out", in which files and folders appear, disappear and move under few names.
class RestlessTree {
public:
    explicit RestlessTree(unsigned seed) : m_random(seed) {
        for (const char* const top : {"in", "out"}) fs::create_directory(m_tree.Native(top));
    }
    CString In() const { return m_tree / "in"; }
    void Begin() const { m_tree.Write("in/first", "x"); }

    /// Makes a change, or none. Returns the filter's bits that must report it in "in".
    DWORD Step() {
        constexpr DWORD kAll = ~0u;
        const fs::path from = Any(m_random() % 2 == 1), to = Any(true) / std::string(1, "abc"[m_random() % 3]);
        const DWORD bits = fs::is_directory(from) ? kAll : 0x01;
        std::error_code error;
        switch (m_random() % 5) {
            case 0: return fs::create_directory(to, error) ? InBits(to, kAll) : 0;
            case 1:
            case 2: return Write(to);
            case 3: return !IsTop(from) && fs::remove_all(from, error) ? InBits(from, bits) : 0;
            default:
                if (IsTop(from) || from == to) return 0;
                fs::rename(from, to, error);
                return error ? 0 : InBits(from, bits) | InBits(to, bits);
        }
    }

private:
    DWORD Write(const fs::path& file) const {
        if (fs::is_directory(file)) return 0;
        const bool isNew = !fs::exists(file);
        std::ofstream(file) << "x";
        return InBits(file, isNew ? 0x11 : 0x10);
    }
    fs::path Any(bool folders) {
        std::vector<fs::path> found;
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(m_tree.Native()))
            if (entry.is_directory() == folders) found.push_back(entry.path());
        std::sort(found.begin(), found.end());
        return found.empty() ? m_tree.Native("in") : found[m_random() % found.size()];
    }
    bool IsTop(const fs::path& path) const { return path.parent_path() / "" == m_tree.Native(); }
    DWORD InBits(const fs::path& path, DWORD bits) const {
        return path.string().starts_with(m_tree.Native("in/").string()) ? bits : 0;
    }

    TempFolder m_tree;
    std::minstd_rand m_random;
};

// A change while OnChange runs leads to another call, even one that has been undone by then.
TEST(DirChangeWatcher, ReportsChangesDuringOnChange) {
    if (OnWindows()) GTEST_SKIP() << "the system watches subfolders itself, if it does";
    for (const DWORD filter : {0x01, 0x10, 0x11}) {
        RestlessTree tree(filter);
        Watcher watcher(tree.In(), filter, 1, true);
        tree.Begin();
        ASSERT_TRUE(watcher.SeesChange());
        std::minstd_rand random(7);
        for (int round = 0; round < 100; ++round) {
            DWORD changed = 0;
            for (int steps = 1 + static_cast<int>(random() % 6); steps > 0; --steps) changed |= tree.Step();
            if (!(changed & filter)) continue;
            watcher.GoOn();
            ASSERT_TRUE(watcher.SeesChange()) << round << ", " << filter;
        }
    }
}

TEST(WatchCommand, PrintsALineForEachChange) {
    const TempFolder tree;
    std::atomic<bool> done = false;
    std::jthread writer([&] {
        for (int i = 0; !done; ++i) tree.Write(std::to_string(i % 50), "x");
    });
    const ToolAnswer answer = RunTool({"watch", tree / "", "--count", "2"});
    const std::string object = RunTool({"watch", tree / "", "-jc1"}).output;
    done = true;
    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(object, testing::ContainsRegex("^.\"folder\":\".*\",\"time\":\"20..-..-..T..:..:..Z\"."));
    EXPECT_EQ(answer.output.substr(0, 7), "changed");
    EXPECT_EQ(std::count(answer.output.begin(), answer.output.end(), '\n'), 2);
    EXPECT_EQ(ToolStatus({"watch", tree / "missing"}), 1);
}

}  // namespace
