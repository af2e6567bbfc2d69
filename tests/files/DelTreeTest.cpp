#include <algorithm>
#include <thread>

#include "tests/support/FileTests.h"

namespace {

TEST(DelTree, DeletesAllAndKeepsTheRootOnRequest) {
    const TempFolder folder;
    for (const int removeItself : {0, 1}) {
        MakeTree(folder.Native("tree"), {"a", "b/c/d/", "b/read-only", "b/e/f"});
        fs::permissions(folder.Native("tree/b/read-only"), fs::perms::owner_read);
        CFileUtils::DelTree(folder / "tree\\", removeItself);
        EXPECT_EQ(folder.Tree(), removeItself ? "" : "tree/");
    }
    folder.Write("file", "file");
    for (const CString& none : {folder / "tree", folder / "no\\such", CString(""), folder / "file"}) {
        CFileUtils::DelTree(none, 0);
        CFileUtils::DelTree(none, 1);
    }
    EXPECT_EQ(folder.Tree(), "file");
}

TEST(DelTree, DeletesNothingAfterIncompleteListing) {
    if (qv::platform::HasDriveLetters()) return;  // there each entry is a call
    const TempFolder folder;
    MakeTree(folder.Native("tree"), {"a", "b"});
    {
        int calls = 0;
        const SystemFaults faults([&](const SystemFaults::Call& call) {
            const bool fails = call.kind == CallKind::ListFolder && ++calls == 2;
            return fails ? SystemFaults::Of(FileCause::HardIO) : SystemFaults::Fault{};
        });
        EXPECT_TRUE(Raised<CFileException>([&] { CFileUtils::DelTree(folder / "tree", 1); }));
    }
    EXPECT_EQ(folder.Tree("tree"), "a b");
}

// In trees like this one, threads delete ahead.
TEST(DelTree, LargeTreeReportsUndeletedEntries) {
    struct Log : ILeftOut {
        std::vector<std::string> paths;
        const std::thread::id thread = std::this_thread::get_id();
        void OnLeftOut(const QvLeftOut& entry) override {
            EXPECT_EQ(std::this_thread::get_id(), thread);
            paths.push_back(entry.path.AsStd());
        }
    } log;
    const TempFolder folder;
    std::vector<std::string> staying;
    for (int i = 100; i < 150; ++i) {
        MakeTree(folder.Native("tree/" + std::to_string(i)), {"a", "stays", "sub/b", "sub/c/"});
        staying.push_back((folder / ("tree\\" + std::to_string(i) + "\\stays").c_str()).AsStd());
    }
    {
        const SystemFaults faults(SystemFaults::Always(CallKind::Remove, FileCause::AccessDenied, "stays"));
        CFileUtils::DelTree(folder / "tree", 1, log);
    }
    std::ranges::sort(log.paths);
    EXPECT_EQ(log.paths, staying);
    EXPECT_EQ(ReadTree(folder.Native("tree")).size(), 100u);
    CFileUtils::DelTree(folder / "tree", 1, log);
    EXPECT_FALSE(folder.Has("tree"));
    MakeTree(folder.Native(), {"file", "closed/"});
    log.paths.clear();
    const SystemFaults faults(SystemFaults::Always(CallKind::OpenFolder, FileCause::AccessDenied, "closed"));
    for (const char* const name : {"file", "closed"}) CFileUtils::DelTree(folder / name, 1, log);
    EXPECT_EQ(log.paths, std::vector{(folder / "closed").AsStd()});
    EXPECT_TRUE(folder.Has("closed")) << "it was reported, so it stays, though it is empty";
}

TEST(DelTree, LeavesCurrentFolderBeforeDeleting) {
    const TempFolder folder;
    const fs::path before = fs::current_path();
    fs::create_directory(folder.Native("here"));
    fs::current_path(folder.Native("here"));
    CString here(fs::current_path().string());
    here.Replace('/', '\\');
    CFileUtils::DelTree(here, 1);
    EXPECT_FALSE(folder.Has("here"));
    EXPECT_TRUE(fs::current_path().string() == "/" || fs::exists(fs::current_path() / "system32"));
    fs::current_path(before);
}

TEST(DelTree, DeletesLinksButNotTheirTargets) {
    const TempFolder folder;
    MakeTree(folder.Native(), {"outside/kept", "tree/sub/x"});
    if (!folder.Link("../../outside", "tree/sub/link")) GTEST_SKIP() << "no links here";
    CFileUtils::DelTree(folder / "tree", 1);
    EXPECT_EQ(folder.Tree(), "outside/ outside/kept");
    folder.Link("outside", "link");
    for (const char* const link : {"link", "link\\"})
        EXPECT_TRUE(Raised<CFileException>([&] { CFileUtils::DelTree(folder / link, 0); }));
    CFileUtils::DelTree(folder / "link\\", 1);
    EXPECT_EQ(folder.Tree(), "outside/ outside/kept");
}

// Just before a folder is opened, another user puts a link in its place: the worst moment.
TEST(DelTree, DoesNotFollowLinkReplacingFolder) {
    const TempFolder folder;
    MakeTree(folder.Native(), {"outside/kept", "tree/a/b/c/x", "tree/a/y"});
    if (!folder.Link("outside", "probe")) GTEST_SKIP() << "no links here";
    bool swapped = false;
    const SystemFaults swap([&](const SystemFaults::Call& call) {
        if (call.kind == CallKind::OpenFolder && LastName(call) == "b" && !std::exchange(swapped, true)) {
            fs::rename(folder.Native("tree/a/b"), folder.Native("moved"));
            folder.Link("../../outside", "tree/a/b");
        }
        return SystemFaults::Fault{};
    });
    CFileUtils::DelTree(folder / "tree", 1);
    EXPECT_EQ(folder.Tree(), "moved/ moved/c/ moved/c/x=tree/a/b/c/x outside/ outside/kept probe@");
}

TEST(DelTree, DepthExceedsOpenFileLimit) {
    const TempFolder folder;
    const fs::path before = fs::current_path();
    fs::current_path(folder.Native());
    // Where paths have drives they are short.
    const int deepest = qv::platform::HasDriveLetters() ? 60 : 3000;
    int depth = 0;
    for (std::error_code refused; depth < deepest && !refused; ++depth) {
        fs::create_directory("d", refused);
        if (!refused) fs::current_path("d", refused);
    }
    fs::current_path(before);
    EXPECT_GT(depth, 50);
    CFileUtils::DelTree(folder / "d", 1);
    EXPECT_FALSE(folder.Has("d"));
}

TEST(DelTree, ErrorNamesUndeletableFile) {
    const TempFolder folder;
    MakeTree(folder.Native(), {"tree/a/x"});
    const SystemFaults faults(SystemFaults::Always(CallKind::Remove, FileCause::HardIO, "x"));
    const auto error = Raised<CFileException>([&] { CFileUtils::DelTree(folder / "tree", 1); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->m_strFileName, folder / "tree\\a\\x");
    EXPECT_EQ(error->m_cause, CFileException::hardIO);
}

}  // namespace
