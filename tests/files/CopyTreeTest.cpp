#include "qvcommon/CopyTree.h"

#include <gtest/gtest.h>

#include "platform/Path.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/framework/File.h"
#include "tests/support/Raised.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Tree.h"

namespace {

namespace fs = std::filesystem;

/// Writes down what it hears.
struct Observer : ICopyProgress {
    std::string log;
    std::uint64_t bytes = 0;
    int answer = 1;

    void OnStartCopy() override { log += "start;"; }
    void OnCopyFile(const char* path) override { log += CFileUtils::GetFilenameFromPath(path).AsStd() + ";"; }
    void OnCopyBytes(std::uint64_t count) override { bytes += count; }
    void OnFinishCopy() override { log += "finish;"; }
    int OnError(DWORD error, const char* message) override {
        log += error && *message ? "error;" : "unknown error;";
        return answer;
    }
};

class CopyTreeTest : public testing::Test {
protected:
    /// Copies "from" to `target` and gives what the observer heard.
    std::string Copy(const char* target, int laterOnly = 0, int dryRun = 0) {
        m_observer.log.clear();
        CCopyTree copy;
        copy.SetSourceDirectory(m_folder / "from");
        copy.SetDestinationDirectory(m_folder / target);
        copy.SetLaterOnly(laterOnly);
        copy.SetDryRun(dryRun);
        copy.SetProgressMonitor(&m_observer);
        copy.CopyTree();
        return m_observer.log;
    }
    static void Age(const fs::path& file, int seconds) {
        fs::last_write_time(file, fs::last_write_time(file) - std::chrono::seconds(seconds));
    }

    TempFolder m_folder;
    Observer m_observer;
};

TEST_F(CopyTreeTest, CopiesAllWithTimesAndAttributes) {
    MakeTree(m_folder.Native("from"), {"b", "A/x", "A/empty/", "c/y"});
    Age(m_folder.Native("from/b"), 100000);
    fs::permissions(m_folder.Native("from/b"), fs::perms::owner_read);
    m_folder.Write("from/A/x", std::string(200000, 'x'));
    EXPECT_EQ(Copy("deep\\to"), "start;x;b;y;finish;");
    EXPECT_EQ(m_observer.bytes, 200004u);
    EXPECT_EQ(ReadTree(m_folder.Native("deep/to")), ReadTree(m_folder.Native("from")));
    CFileStatus from, to;
    ASSERT_TRUE(CFile::GetStatus(m_folder / "from\\b", from) && CFile::GetStatus(m_folder / "deep\\to\\b", to));
    EXPECT_EQ(from.m_mtime, to.m_mtime);
    EXPECT_EQ(from.m_attribute, to.m_attribute);
    EXPECT_TRUE(to.m_attribute & CFile::readOnly);
    CCopyTree count;
    EXPECT_EQ(count.GetFileCount(m_folder / "from"), 3);
    EXPECT_EQ(count.GetFileCount(m_folder / "from\\A\\empty"), 0);
    EXPECT_EQ(count.GetFileCount(m_folder / "none"), 0);
}

TEST_F(CopyTreeTest, LaterOnlyTakesWhatIsNewer) {
    MakeTree(m_folder.Native("from"), {"same", "newer", "older"});
    Copy("to");
    EXPECT_EQ(Copy("to", 1), "start;finish;");
    Age(m_folder.Native("to/newer"), 5);
    Age(m_folder.Native("from/older"), 5);
    fs::permissions(m_folder.Native("to/newer"), fs::perms::owner_read);
    MakeTree(m_folder.Native("from"), {"missing"});
    EXPECT_EQ(Copy("to", 1), "start;missing;newer;finish;");
    m_folder.Write("to/older", "changed");
    EXPECT_EQ(Copy("to", 0), "start;missing;newer;older;same;finish;");
    EXPECT_EQ(ReadTree(m_folder.Native("to")), ReadTree(m_folder.Native("from")));
}

TEST_F(CopyTreeTest, DryRunsHearTheSameAndTouchNothing) {
    MakeTree(m_folder.Native(), {"from/a", "from/b", "from/kept", "from/new/sub/c", "from/taken/d", "to/b/", "to/kept",
                                 "to/taken", "file"});
    fs::permissions(m_folder.Native("to/kept"), fs::perms::owner_read);
    const auto mode = [&] { return fs::status(m_folder.Native("to/kept")).permissions(); };
    for (const char* const target : {"to", "fresh\\deep", "file\\x"}) {
        const auto before = std::pair(ReadTree(m_folder.Native()), mode());
        const std::string dry = Copy(target, 0, 1);
        EXPECT_EQ(std::pair(ReadTree(m_folder.Native()), mode()), before) << target;
        EXPECT_EQ(dry, Copy(target)) << target;
    }
}

TEST_F(CopyTreeTest, EndsInItsOwnSubfolder) {
    MakeTree(m_folder.Native("from"), {"a", "sub/b", "z/c"});
    EXPECT_EQ(Copy("from\\sub\\to"), "start;a;b;c;finish;");
    EXPECT_EQ(m_folder.Read("from/sub/to/sub/b"), "sub/b");
    EXPECT_FALSE(m_folder.Has("from/sub/to/sub/to"));
}

TEST_F(CopyTreeTest, ErrorsAreToldAndMayEndIt) {
    MakeTree(m_folder.Native(), {"from/a", "from/sub/b", "from/sub/c", "from/z", "to/sub/b/", "missing/"});
    EXPECT_EQ(Copy("to"), "start;a;b;error;c;z;finish;");
    m_observer.answer = 0;
    EXPECT_TRUE(Raised<CUserException>([&] { Copy("to"); }));
    EXPECT_EQ(m_observer.log, "start;a;b;error;");
    EXPECT_TRUE(m_folder.Has("to/a"));
    EXPECT_TRUE(Raised<CUserException>([&] { Copy("to\\a\\x"); }));  // a file where a folder should be
    CCopyTree unheard;
    unheard.CopyTree(m_folder / "from", m_folder / "to");
    EXPECT_EQ(m_folder.Read("to/sub/c"), "from/sub/c");
}

// In folders like this one, threads write copies ahead.
TEST_F(CopyTreeTest, LargeFoldersAreCopiedInOrderAndNotBeyondAStop) {
    std::vector<std::string> names;
    std::string expected = "start;";
    fs::create_directory(m_folder.Native("from"));
    for (int i = 100; i < 160; ++i) {
        names.push_back(std::to_string(i));
        m_folder.Write("from/" + names.back(), std::string(static_cast<std::size_t>(i) * 500, 'x'));
        expected += names.back() + ";";
    }
    EXPECT_EQ(Copy("to"), expected + "finish;");
    EXPECT_EQ(m_observer.bytes, 500u * (100 + 159) * 30);
    EXPECT_EQ(ReadTree(m_folder.Native("to")), ReadTree(m_folder.Native("from")));
    EXPECT_EQ(Copy("to"), expected + "finish;");  // over what is there
    struct Stopping : CCopyTree {
        int left = 0;
        bool skips = false;
        int CopyFileA(const char* source, const char* target) override {
            if (left-- == 0) AfxThrowUserException();
            return skips ? 1 : CCopyTree::CopyFileA(source, target);
        }
    };
    for (const bool skips : {false, true}) {
        Stopping copy;
        copy.left = 30;
        copy.skips = skips;
        EXPECT_TRUE(Raised<CUserException>(
            [&] { copy.CopyTree(CString(m_folder / "from"), CString(m_folder / (skips ? "none" : "part"))); }));
    }
    EXPECT_EQ(ReadTree(m_folder.Native("part")).size(), 30u);  // no others, no temporary ones
    EXPECT_EQ(ReadTree(m_folder.Native("none")).size(), 0u);
}

TEST_F(CopyTreeTest, KeepsHolesAndFilesBeyond4Gb) {
    if (qv::platform::HasDriveLetters()) GTEST_SKIP() << "files have no holes here, and 4 GB take long to copy";
    MakeTree(m_folder.Native(), {"from/"});
    std::ofstream file(m_folder.Native("from/long"), std::ios::binary);
    file.seekp((4ll << 30) + 12345);
    if (!(file << "end").flush()) GTEST_SKIP() << "no such long files here";
    file.close();
    Copy("to");
    EXPECT_EQ(fs::file_size(m_folder.Native("to/long")), (4ull << 30) + 12348);
    std::ifstream copy(m_folder.Native("to/long"), std::ios::binary);
    copy.seekg((4ll << 30) + 12340);
    std::string end;
    copy >> end;
    EXPECT_EQ(end, std::string(5, '\0') + "end");
}

TEST_F(CopyTreeTest, CanCopyInAnotherWay) {
    struct Touch : CCopyTree {
        int CopyFileA(const char* source, const char* target) override {
            CFileUtils::WriteFile(target, CString(CFileUtils::GetFilenameFromPath(source)), 0, 0);
            return 1;
        }
    } copy;
    MakeTree(m_folder.Native("from"), {"sub/x"});
    copy.CopyTree(m_folder / "from", m_folder / "to");
    EXPECT_EQ(m_folder.Read("to/sub/x"), "x");
}

TEST_F(CopyTreeTest, RespectsShareModes) {
    MakeTree(m_folder.Native(), {"from/a", "to/a"});
    {
        const CFile used(m_folder / "to\\a", CFile::modeRead | CFile::shareDenyWrite);
        EXPECT_EQ(Copy("to"), "start;a;error;finish;");
    }
    const CFile kept(m_folder / "from\\a", CFile::modeRead | CFile::shareExclusive);
    EXPECT_EQ(Copy("to"), "start;a;error;finish;");
    EXPECT_EQ(ReadTree(m_folder.Native("to")), (std::map<std::string, std::string>{{"a", "to/a"}}));
}

}  // namespace
