#include "qvcommon/CopyTree.h"
#include "tests/support/FileTests.h"

namespace {

/// Records its calls.
struct Observer : ICopyProgress {
    std::string log;
    std::uint64_t bytes = 0;
    DWORD lastError = 0;
    int answer = 1;

    void OnStartCopy() override { log += "start;"; }
    void OnCopyFile(const char* path) override { log += CFileUtils::GetFilenameFromPath(path).AsStd() + ";"; }
    void OnCopyBytes(std::uint64_t count) override { bytes += count; }
    void OnFinishCopy() override { log += "finish;"; }
    int OnError(DWORD error, const char* message) override {
        log += error && *message ? "error;" : "unknown error;";
        lastError = error;
        return answer;
    }
};

class CopyTreeTest : public testing::Test {
protected:
    /// Copies "from" to `target` and returns what the observer recorded.
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

TEST_F(CopyTreeTest, PreservesTimesAndAttributes) {
    MakeTree(m_folder.Native("from"), {"b", "A/x", "A/empty/", "c/y"});
    Age(m_folder.Native("from/b"), 100000);
    fs::permissions(m_folder.Native("from/b"), fs::perms::owner_read);
    m_folder.Write("from/A/x", std::string(200000, 'x'));
    EXPECT_EQ(Copy("deep\\to"), "start;x;b;y;finish;");
    EXPECT_EQ(m_observer.bytes, 200004u);
    EXPECT_EQ(m_folder.Tree("deep/to"), m_folder.Tree("from"));
    CFileStatus from, to;
    ASSERT_TRUE(CFile::GetStatus(m_folder / "from\\b", from) && CFile::GetStatus(m_folder / "deep\\to\\b", to));
    EXPECT_EQ(from.m_mtime, to.m_mtime);
    EXPECT_EQ(from.m_attribute, to.m_attribute);
    EXPECT_TRUE(to.m_attribute & CFile::readOnly);
    CCopyTree count;
    EXPECT_EQ(count.GetFileCount(m_folder / "from"), 3);
    const bool linked = m_folder.Link("from", "link");
    EXPECT_EQ(count.GetFileCount(m_folder / "link"), linked ? 3 : 0);
    EXPECT_EQ(count.GetFileCount(m_folder / "from\\A\\empty"), 0);
    EXPECT_EQ(count.GetFileCount(m_folder / "none"), 0);
}

TEST_F(CopyTreeTest, CopiesWhatOnCopyFileHasWritten) {
    struct Writer : Observer {
        void OnCopyFile(const char* path) override { CFileUtils::WriteFile(path, CString("new"), 0, 0); }
    } writer;
    for (int i = 0; i < 40; ++i) m_folder.Write("from/" + std::to_string(i), "old");
    CCopyTree copy;
    copy.SetSourceDirectory(m_folder / "from");
    copy.SetDestinationDirectory(m_folder / "to");
    copy.SetProgressMonitor(&writer);
    copy.CopyTree();
    for (const auto& [name, content] : ReadTree(m_folder.Native("to"))) EXPECT_EQ(content, "new") << name;
}

TEST_F(CopyTreeTest, LaterOnlyCopiesNewerFiles) {
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
    EXPECT_EQ(m_folder.Tree("to"), m_folder.Tree("from"));
    std::error_code noLinks;
    fs::create_symlink("older", m_folder.Native("from/link"), noLinks);
    EXPECT_EQ(Copy("to", 1), noLinks ? "start;finish;" : "start;link;finish;");
    EXPECT_EQ(Copy("to", 1), "start;finish;") << "the time of the link's file counts";
}

TEST_F(CopyTreeTest, DryRunsReportTheSameAndChangeNothing) {
    MakeTree(m_folder.Native(), {"from/a", "from/b", "from/kept", "from/new/sub/c", "from/taken/d", "to/b/", "to/kept",
                                 "to/taken", "file"});
    fs::permissions(m_folder.Native("to/kept"), fs::perms::owner_read);
    const auto mode = [&] { return fs::status(m_folder.Native("to/kept")).permissions(); };
    for (const char* const target : {"to", "fresh\\deep", "file\\x"}) {
        const auto before = std::pair(m_folder.Tree(), mode());
        const std::string dry = Copy(target, 0, 1);
        EXPECT_EQ(std::pair(m_folder.Tree(), mode()), before) << target;
        EXPECT_EQ(dry, Copy(target)) << target;
    }
}

TEST_F(CopyTreeTest, TerminatesWhenTargetIsSubfolder) {
    MakeTree(m_folder.Native("from"), {"a", "sub/b", "z/c"});
    EXPECT_EQ(Copy("from\\sub\\to"), "start;a;b;c;finish;");
    EXPECT_EQ(m_folder.Read("from/sub/to/sub/b"), "sub/b");
    EXPECT_FALSE(m_folder.Has("from/sub/to/sub/to"));
}

TEST_F(CopyTreeTest, ErrorsAreReportedAndMayAbort) {
    MakeTree(m_folder.Native(), {"from/a", "from/sub/b", "from/sub/c", "from/z", "to/sub/b/", "missing/"});
    EXPECT_EQ(Copy("to"), "start;a;b;error;c;z;finish;");
    m_observer.answer = 0;
    EXPECT_TRUE(Raised<CUserException>([&] { Copy("to"); }));
    EXPECT_EQ(m_observer.log, "start;a;b;error;");
    EXPECT_TRUE(m_folder.Has("to/a"));
    EXPECT_TRUE(Raised<CUserException>([&] { Copy("to\\a\\x"); }));  // a file where a folder should be
    {
        const SystemFaults faults(SystemFaults::Always(CallKind::CreateFolder, FileCause::AccessDenied));
        EXPECT_TRUE(Raised<CUserException>([&] { Copy("denied"); }));
        EXPECT_EQ(m_observer.lastError, SystemFaults::ErrorFor(FileCause::AccessDenied));
    }
    CCopyTree().CopyTree(m_folder / "from", m_folder / "to");
    EXPECT_EQ(m_folder.Read("to/sub/c"), "from/sub/c");
}

// In folders like this one, threads write copies ahead.
TEST_F(CopyTreeTest, LargeFoldersCopyInOrderAndStopOnRequest) {
    std::string expected = "start;";
    for (std::size_t i = 100; i < 160; ++i) {
        m_folder.Write("from/" + std::to_string(i), std::string(i * 500, 'x'));
        expected += std::to_string(i) + ";";
    }
    EXPECT_EQ(Copy("to"), expected + "finish;");
    EXPECT_EQ(m_observer.bytes, 500u * (100 + 159) * 30);
    EXPECT_EQ(m_folder.Tree("to"), m_folder.Tree("from"));
    EXPECT_EQ(Copy("to"), expected + "finish;");  // over existing files
    struct Stopping : CCopyTree {
        int left = 30;
        bool writesNames = false;
        int CopyFileA(const char* source, const char* target) override {
            if (left-- == 0) AfxThrowUserException();
            if (!writesNames) return CCopyTree::CopyFileA(source, target);
            CFileUtils::WriteFile(target, CFileUtils::GetFilenameFromPath(source), 0, 0);
            return 1;
        }
    };
    for (const char* const target : {"part", "names"}) {
        Stopping copy;
        copy.writesNames = target == std::string("names");
        const CString from = m_folder / "from", to = m_folder / target;
        EXPECT_TRUE(Raised<CUserException>([&] { copy.CopyTree(from, to); }));
        EXPECT_EQ(ReadTree(m_folder.Native(target)).size(), 30u);  // no others, no temporary ones
        EXPECT_EQ(m_folder.Read(target + std::string("/100")) == "100", copy.writesNames);
    }
}

TEST_F(CopyTreeTest, KeepsHolesAndFilesBeyond4Gb) {
    if (qv::platform::HasDriveLetters()) GTEST_SKIP() << "files have no holes here, and 4 GB take long to copy";
    m_folder.Write("from/long", "");
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

TEST_F(CopyTreeTest, RespectsShareModes) {
    MakeTree(m_folder.Native(), {"from/a", "to/a"});
    {
        const CFile used(m_folder / "to\\a", CFile::modeRead | CFile::shareDenyWrite);
        EXPECT_EQ(Copy("to"), "start;a;error;finish;");
    }
    const CFile kept(m_folder / "from\\a", CFile::modeRead | CFile::shareExclusive);
    EXPECT_EQ(Copy("to"), "start;a;error;finish;");
    EXPECT_EQ(m_folder.Tree("to"), "a=to/a");
}

}  // namespace
