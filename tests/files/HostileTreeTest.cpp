#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>

#include "platform/Path.h"
#include "platform/Process.h"
#include "qvcommon/Checksum.h"
#include "qvcommon/CopyTree.h"
#include "qvcommon/FileFinder.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/framework/File.h"
#include "tests/support/Raised.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Tool.h"
#include "tests/support/Tree.h"

namespace {

namespace fs = std::filesystem;

CStringArray Find(const CString& folder, int folders = 0) {
    FileFinder finder;
    finder.SetSearchPath(folder);
    finder.SetSearchMask("*.*");
    finder.SetRecurse(1);
    finder.SetIncludeDirectories(folders);
    finder.Discover();
    return finder.GetFileOffsets();
}

struct Errors : ICopyProgress {
    int count = 0;
    int OnError(DWORD, const char*) override { return ++count; }
};

int CopyErrors(const CString& from, const CString& to) {
    Errors errors;
    CCopyTree copy;
    copy.SetProgressMonitor(&errors);
    copy.CopyTree(from, to);
    return errors.count;
}

TEST(HostileTree, NamesOfAnyBytesAreFoundCopiedAndDeleted) {
    if (qv::platform::HasDriveLetters()) GTEST_SKIP() << "names are no bytes here";
    const TempFolder folder;
    fs::create_directory(folder.Native("from"));
    int made = 0;
    for (int byte = 1; byte < 256; ++byte)
        if (byte != '/' && byte != '\\') made += 1, folder.Write(std::string("from/") + char(byte) + "x", "content");
    EXPECT_EQ(Find(folder / "from").GetSize(), made);
    EXPECT_EQ(CopyErrors(folder / "from", folder / "to"), 0);
    EXPECT_EQ(ReadTree(folder.Native("to")), ReadTree(folder.Native("from")));
    EXPECT_EQ(FileCRC(folder / "to\\\xFFx"), MemCRC("content", 7));
    CFileUtils::DelTree(folder / "from", 1);
    EXPECT_FALSE(folder.Has("from"));
}

TEST(HostileTree, PipesAreListedAndDeletedAndNeverOpened) {
    const TempFolder folder;
    MakeTree(folder.Native("from"), {"a", "z"});
    if (qv::platform::HasDriveLetters() || std::system(("mkfifo " + folder.Native("from/pipe").string()).c_str()))
        GTEST_SKIP() << "no pipes with names here";
    EXPECT_EQ(Find(folder / "from").GetSize(), 3);
    EXPECT_EQ(CopyErrors(folder / "from", folder / "to"), 1);  // who opened the pipe would wait for ever
    EXPECT_EQ(FileCRC(folder / "from\\pipe"), 0u);
    EXPECT_EQ(CFileUtils::ReadFile(folder / "from\\pipe"), "");
    EXPECT_EQ(CFileUtils::Log(folder / "from\\pipe", "text", 0), 0);
    EXPECT_EQ(folder.Read("to/z"), "z");
    CFileUtils::DelTree(folder / "from", 1);
    EXPECT_FALSE(folder.Has("from"));
}

/// The tool as run by a user who is not allowed everything.
ToolAnswer RunAsNobody(const CStringArray& arguments) {
    const fs::path tool = fs::path(qv::platform::CurrentProgram()).replace_filename("qv");
    CStringArray words = {"--reuid=65534", "--regid=65534", "--clear-groups", CString(tool.string())};
    words.Append(arguments);
    return RunProgram("setpriv", words);
}

TEST(HostileTree, WhatMayNotBeReadIsToldAndPassedOver) {
    const TempFolder folder;
    if (qv::platform::HasDriveLetters() || RunAsNobody({"--help"}).status != 0) GTEST_SKIP() << "no other user here";
    MakeTree(folder.Native(), {"from/a", "from/locked/x", "from/z", "open/"});
    fs::permissions(folder.Native("from/locked"), fs::perms::none);
    fs::permissions(folder.Native("open"), fs::perms::all);
    const CString from = folder / "from", to = folder / "open\\to";
    EXPECT_EQ(RunAsNobody({"find", from, "--recurse"}).output, "0\ta\n0\tz\n");
    EXPECT_EQ(RunAsNobody({"copy", from, to}).status, 1);
    const auto copied = ReadTree(folder.Native("open/to"));
    EXPECT_EQ(copied.size(), 3u);  // the folder itself comes along, empty
    EXPECT_EQ(copied.at("z"), "from/z");
    EXPECT_EQ(RunAsNobody({"delete", from}).status, 1);
    EXPECT_EQ(ReadTree(folder.Native("from")).size(), 4u);
}

TEST(HostileTree, WhatVanishesDuringTheWalkIsPassedOver) {
    struct Vanishing : FileFinder {
        fs::path root;
        void UpdateProgress(const char* title) override {
            std::error_code ignored;
            if (CString(title) == "a") fs::remove_all(root / "b", ignored), fs::remove(root / "c", ignored);
        }
    } finder;
    const TempFolder folder;
    MakeTree(folder.Native(), {"a", "b/x", "c", "d/y"});
    finder.root = folder.Native();
    finder.SetSearchPath(folder / "");
    finder.SetSearchMask("*.*");
    finder.SetRecurse(1);
    finder.Discover();
    EXPECT_EQ(finder.GetFileOffsets()[finder.GetFileOffsets().GetSize() - 1], "d\\y");
    EXPECT_EQ(finder.GetFileOffsets()[0], "a");
}

// Each answers as if nothing were there, or as the operation says that it fails; none reaches another file.
TEST(HostileTree, PathsBeyondAllLimitsAreRefused) {
    const TempFolder folder;
    for (const int length : {255, 3000, 5000, 70000}) {
        SCOPED_TRACE(length);
        const std::string name(static_cast<std::size_t>(length), 'n');
        const CString path = folder / name, deep = folder / (name + "/" + name);
        CString text;
        CStringArray lines;
        LONG time = 7;
        lines.Add("old");
        EXPECT_FALSE(CFileUtils::IsExist(path) || CFileUtils::IsDirectory(deep) || CFileUtils::IsVolume(path));
        EXPECT_TRUE(CFileUtils::MakeWritable(deep));
        EXPECT_EQ(CFileUtils::GetFilesize(path), -1);
        EXPECT_EQ(CFileUtils::GetShortPath(deep), deep);
        EXPECT_EQ(CFileUtils::HasMatching(deep), 0);
        EXPECT_EQ(CFileUtils::GetDateModified(deep, time), 0);
        EXPECT_EQ(CFileUtils::ReadFile(path), "");
        CFileUtils::ReadFile(deep, lines);
        EXPECT_EQ(lines.GetSize(), 0);
        EXPECT_EQ(CFileUtils::Log(deep, "text", 0), 0);
        EXPECT_EQ(FileCRC(path), 0u);
        EXPECT_EQ(CFileUtils::ShellDeleteFile(deep, CFileUtils::shellNoConfirmation | CFileUtils::shellNoErrorBox, {},
                                              nullptr),
                  0);
        EXPECT_TRUE(Raised<CFileException>([&] { CFileUtils::WriteFile(deep, "text", 0, 0); }));
        EXPECT_EQ(Find(deep).GetSize(), 0);
        EXPECT_EQ(CopyErrors(deep, folder / "to"), 1);
        CFileUtils::DelTree(deep, 1);
        CFileUtils::BackupFile(deep);
        EXPECT_EQ(length > 255 ? QvCreateDirectory(deep) : 0, 0);
    }
    EXPECT_EQ(ReadTree(folder.Native()).size(), 1u);  // the empty folder of the copies
}

}  // namespace
