#include "tests/support/FileTests.h"
#include "tests/support/RecordingMessageBox.h"

namespace {

constexpr unsigned short kQuiet = CFileUtils::shellSilent | CFileUtils::shellNoConfirmation |
                                  CFileUtils::shellNoConfirmMakeFolder | CFileUtils::shellNoErrorBox;

TEST(ShellOperations, CopyAndDeleteFilesTreesAndMasks) {
    const TempFolder folder;
    const auto copy = [&](const char* from, const char* to, int more = 0) {
        const auto flags = static_cast<unsigned short>(kQuiet | more);
        return CFileUtils::ShellCopyFile(folder / from, folder / to, flags, nullptr, nullptr);
    };
    const auto remove = [&](const char* path) {
        return CFileUtils::ShellDeleteFile(folder / path, kQuiet, nullptr, nullptr);
    };
    MakeTree(folder.Native(), {"in/a.txt", "in/b.doc", "in/sub/c.txt", "into/"});
    EXPECT_EQ(copy("in\\a.txt", "copy.txt"), 1);
    EXPECT_EQ(folder.Read("copy.txt"), "in/a.txt");
    EXPECT_EQ(copy("in", "into"), 1);
    EXPECT_EQ(copy("in\\*.txt", "into"), 1);
    EXPECT_EQ(folder.Tree("into"), "a.txt=in/a.txt in/ in/a.txt in/b.doc in/sub/ in/sub/c.txt");
    EXPECT_EQ(copy("none", "into"), 0);
    EXPECT_EQ(copy(std::string(1400, 'x').c_str(), "into"), 0);
    EXPECT_EQ(remove("into\\in\\*.txt"), 1);
    EXPECT_EQ(folder.Tree("into"), "a.txt=in/a.txt in/ in/b.doc in/sub/ in/sub/c.txt");
    EXPECT_EQ(remove("into"), 1);
    EXPECT_EQ(remove("copy.txt"), 1);
    EXPECT_EQ(remove("none"), 0);
    EXPECT_EQ(folder.Tree(), "in/ in/a.txt in/b.doc in/sub/ in/sub/c.txt");
}

struct Progress : IShellProgress {
    explicit Progress(int stopAfter) : left(stopAfter), before(CFileUtils::SetShellProgress(this)) {}
    ~Progress() override { CFileUtils::SetShellProgress(before); }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    bool OnEntry(const char* given, const char* path) override {
        seen += std::string(given) + ":" + CFileUtils::GetFilenameFromPath(path).AsStd() + ";";
        return left-- > 0;
    }
    int left;
    IShellProgress* before;
    std::string seen;
};

TEST(ShellOperations, PromptAndReportWithoutSystemShell) {
    if (qv::platform::HasDriveLetters()) GTEST_SKIP() << "the system's shell has windows of its own";
    const TempFolder folder;
    MakeTree(folder.Native(), {"in/a", "in/b", "to/in/a"});
    const auto copy = [&](unsigned short flags) {
        return CFileUtils::ShellCopyFile(folder / "in", folder / "to", flags, nullptr, "Title");
    };
    {
        const RecordingMessageBox no(7);
        EXPECT_EQ(copy(0), 0);
        ASSERT_EQ(no.shown.size(), 1u);
        EXPECT_NE(no.shown[0].text.find("exists already"), std::string::npos);
        EXPECT_EQ(CFileUtils::ShellDeleteFile(folder / "in", 0, nullptr, nullptr), 0);
        EXPECT_EQ(folder.Tree(), "in/ in/a in/b to/ to/in/ to/in/a to/in/b=in/b");
    }
    const RecordingMessageBox yes(6);
    EXPECT_EQ(copy(CFileUtils::shellRenameOnCollision), 1);
    EXPECT_EQ(folder.Read("to/Copy of in/a"), "in/a");
    EXPECT_EQ(copy(0), 1);
    EXPECT_EQ(folder.Read("to/in/a"), "in/a");
    Progress stopping(2);
    EXPECT_EQ(copy(kQuiet & ~CFileUtils::shellSilent), 0);
    EXPECT_EQ(stopping.seen, "Title:in;Title:a;Title:b;");
    EXPECT_EQ(CFileUtils::ShellDeleteFile(folder / "none", 0, nullptr, "Title"), 0);
    // The target of a link stays as it is.
    ASSERT_TRUE(folder.Link("a", "in/link"));
    fs::permissions(folder.Native("in/a"), fs::perms::owner_read);
    EXPECT_EQ(CFileUtils::ShellCopyFile(folder / "in/b", folder / "in/link", kQuiet, nullptr, nullptr), 1);
    ASSERT_TRUE(folder.Link("a", "in/other"));
    EXPECT_EQ(CFileUtils::ShellDeleteFile(folder / "in/other", kQuiet, nullptr, nullptr), 1);
    EXPECT_EQ(fs::status(folder.Native("in/a")).permissions(), fs::perms::owner_read);
    const SystemFaults faults(SystemFaults::Always(CallKind::Remove, FileCause::AccessDenied, "in"));
    EXPECT_EQ(CFileUtils::ShellDeleteFile(folder / "in", kQuiet, nullptr, nullptr), 0);
    EXPECT_EQ(yes.shown.back().style, 16u);
}

}  // namespace
