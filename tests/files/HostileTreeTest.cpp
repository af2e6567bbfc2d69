#include <algorithm>
#include <cstdlib>
#include <set>

#include "platform/Process.h"
#include "qvcommon/Cabinet.h"
#include "qvcommon/Checksum.h"
#include "qvcommon/StringHelper.h"
#include "tests/support/Child.h"
#include "tests/support/FileTests.h"
#include "tests/support/HostileNames.h"
#include "tests/support/Tool.h"
#include "tests/support/Walks.h"

namespace {

CStringArray Find(const CString& folder) {
    FileFinder finder;
    Discover(finder, folder);
    return finder.GetFileOffsets();
}

bool MakePipe(const fs::path& path) {
    return !qv::platform::HasDriveLetters() && std::system(("mkfifo " + path.string()).c_str()) == 0;
}

TEST(HostileTree, HandlesEveryFileName) {
    const TempFolder folder;
    const fs::path root = WithoutLimit(folder.Native()), from = root / "from";
    const std::set<std::string> made = qv::platform::HasDriveLetters() ? NamesOfTheCodePage() : AllNames();
    MakeFiles(from, made);
    std::set<std::string> found;
    for (const CString& path : Find(folder / "from")) found.insert(CFileUtils::GetNativePath(path).AsStd());
    EXPECT_THAT(found, testing::ContainerEq(made));

    EXPECT_EQ(ToolStatus({"copy", folder / "from", folder / "copy"}), 0);
    EXPECT_EQ(ToolStatus({"pack", folder / "from", folder / "p"}), 0);
    EXPECT_EQ(ToolStatus({"list", folder / "p.cab"}), 0);
    EXPECT_EQ(ToolStatus({"unpack", folder / "p.cab", folder / "unpacked"}), 0);
    EXPECT_EQ(ToolStatus({"unpack", "--no-manifest", folder / "p.cab", folder / "bare"}), 0);
    const auto tree = ReadTree(from);
    for (const char* const copy : {"copy", "unpacked"}) {
        EXPECT_TRUE(ReadTree(root / copy) == tree) << copy;
        if (qv::platform::HasDriveLetters()) continue;
        EXPECT_EQ(RunProgram("diff", {"-r", CString(from.string()), CString(folder.Native(copy).string())}).status, 0);
    }

    const char* const separator = qv::platform::HasDriveLetters() ? "\\" : "/";
    CStringArray arguments = {"crc"};
    std::string checksums;
    for (const std::string& name : made) {
        const CString path = CFileUtils::GetNativePath(folder / "from") + separator + name.c_str();
        CString line;
        line.Format("%08X  %s\n", MemCRC(name), static_cast<const char*>(path));
        arguments.Add(path);
        checksums += line.AsStd();
    }
    EXPECT_TRUE(RunTool(arguments).output == checksums);

    EXPECT_EQ(ToolStatus({"report", folder / "from", "-o", folder / "out"}), 0);
    const std::string page = folder.Read("out/index.html");
    for (const std::string& name : qv::platform::HasDriveLetters() ? std::set<std::string>() : made)
        EXPECT_NE(page.find("../from/" + CStringHelper::EscapePath(name).AsStd() + '"'), page.npos) << name;
    for (const char* const shown :
         qv::platform::HasDriveLetters()
             ? std::initializer_list<const char*>{">%s%n<", ">\xE2\x90\xA3x<"}
             : std::initializer_list<const char*>{">\\u202Ecod.exe<", ">\xE2\x90\xA3x<", ">end\xE2\x90\xA3<",
                                                  ">\\033x<", ">\\377x<", ">\\r\\n<", ">a\\b<"})
        EXPECT_NE(page.find(shown), page.npos) << shown;

    EXPECT_EQ(ToolStatus({"delete", folder / "from"}), 0);
    EXPECT_FALSE(folder.Has("from"));
}

TEST(HostileTree, PipesAreListedAndDeletedAndNeverOpened) {
    const TempFolder folder;
    MakeTree(folder.Native("from"), {"a", "z"});
    if (!MakePipe(folder.Native("from/pipe"))) GTEST_SKIP() << "no pipes with names here";
    EXPECT_EQ(Find(folder / "from").GetSize(), 3);
    EXPECT_EQ(CopyErrors(folder / "from", folder / "to"), 1);  // opening the pipe would block forever
    EXPECT_EQ(FileCRC(folder / "from\\pipe"), 0u);
    EXPECT_EQ(CFileUtils::ReadFile(folder / "from\\pipe"), "");
    EXPECT_EQ(CFileUtils::Log(folder / "from\\pipe", "text", 0), 0);
    EXPECT_EQ(folder.Read("to/z"), "z");
    CFileUtils::DelTree(folder / "from", 1);
    EXPECT_FALSE(folder.Has("from"));
}

/// The errors that the tool prints when an unprivileged user runs it.
ToolAnswer ErrorsOfOtherUser(const CStringArray& arguments) {
    CStringArray words = {"sh", "-c", "\"$0\" \"$@\" 2>&1 >/dev/null", CString(ToolPath())};
    for (const CString& word : arguments) words.Add(CFileUtils::GetNativePath(word));
    CProcess tool;
    return StartAs("65534", tool, words) ? AnswerOf(tool) : ToolAnswer{-1, {}};
}

TEST(HostileTree, SkippedEntriesAreNamedAndCounted) {
    const TempFolder folder;
    MakeTree(folder.Native(), {"from/a", "from/locked/x", "from/secret", "from/z/y", "open/"});
    if (!MakePipe(folder.Native("from/pipe")) || ErrorsOfOtherUser({"--help"}).status != 0)
        GTEST_SKIP() << "no pipes or no other user here";
    folder.Link("nowhere", "from/dangling");
    folder.Link("z", "from/link");
    fs::permissions(folder.Native("from/locked"), fs::perms::none);
    fs::permissions(folder.Native("from/secret"), fs::perms::none);
    fs::permissions(folder.Native("open"), fs::perms::all);
    const CString from = folder / "from", open = folder / "open\\";
    const std::string refused = ": Permission denied", dangling = "dangling: link that leads nowhere",
                      link = "link: link to a folder, not followed", pipe = "pipe: device, pipe or socket, not read";
    const struct {
        CStringArray arguments;
        std::vector<std::string> leftOut;
    } rows[] = {{{"find", from, "--recurse"}, {"locked" + refused}},
                {{"copy", from, open + "to"}, {dangling, link, "locked" + refused, pipe, "secret" + refused}},
                {{"pack", from, open + "p"}, {dangling, link, "locked" + refused, pipe, "secret" + refused}},
                {{"report", from, "-o", open + "r"}, {dangling, "locked" + refused, pipe, "secret" + refused}},
                {{"crc", from + "\\secret"}, {"secret was refused"}},
                {{"delete", from},
                 {"a" + refused, "dangling" + refused, "link" + refused, "locked" + refused, "pipe" + refused,
                  "secret" + refused, "z/y" + refused}}};
    for (const auto& row : rows) {
        const ToolAnswer answer = ErrorsOfOtherUser(row.arguments);
        EXPECT_EQ(answer.status, 1) << answer.output;
        for (const std::string& line : row.leftOut)
            EXPECT_THAT(answer.output, ::testing::HasSubstr((folder.Native("from") / line).string()));
        EXPECT_EQ(std::count(answer.output.begin(), answer.output.end(), '\n'), std::ssize(row.leftOut) + 1)
            << answer.output;
    }
    EXPECT_EQ(ReadTree(folder.Native("open/to")).size(), 4u);  // the locked folder is copied empty
    CReadCab::CabToDirectory(open + "unpacked", open + "p.cab");
    EXPECT_EQ(ReadTree(folder.Native("open/unpacked")).size(), 5u);  // and the link as an empty folder
    const std::string page = folder.Read("open/r/index.html");
    for (const char* const shown :
         {"#left-out\">4 left out</A>", "<td>leads nowhere\n", "<td>folder\n", "<td>unreadable: Permission denied\n",
          "<td>locked<td>Permission denied<",
          // The menu leads to what could not be read, and has the sizes of all that is below.
          "TreeNode('locked\\t0 bytes', 'report-files/folder.gif', '#folder-1'", "TreeNode('from\\t25 bytes', "})
        EXPECT_THAT(page, ::testing::HasSubstr(shown));
    EXPECT_EQ(ReadTree(folder.Native("from")).size(), 9u);
}

TEST(HostileTree, ExceptionOfObserverEndsSearch) {
    if (qv::platform::HasDriveLetters()) GTEST_SKIP() << "a listing has whole records";
    struct Throwing : ILeftOut {
        void OnLeftOut(const QvLeftOut&) override { throw 1; }
    } throwing;
    const TempFolder folder;
    MakeTree(folder.Native(), {"a", "b", "c", "d", "e", "f", "g", "h"});
    const SystemFaults faults(SystemFaults::Always(CallKind::Status, FileCause::HardIO, "b"));
    CFileFind find;
    find.SetLeftOut(&throwing);
    EXPECT_THROW(for (BOOL more = find.FindFile(folder / "*"); more;) more = find.FindNextFile(), int);
    EXPECT_FALSE(find.FindNextFile());
}

TEST(HostileTree, ReportsEntriesVanishingDuringWalk) {
    struct Vanishing : FileFinder {
        fs::path root;
        void UpdateProgress(const char* title) override {
            std::error_code ignored;
            if (CString(title) == "a") fs::remove_all(root / "b", ignored);
        }
    } finder;
    const TempFolder folder;
    Recorder recorder;
    MakeTree(folder.Native(), {"a", "b/x", "d/y"});
    finder.root = folder.Native();
    finder.SetLeftOut(&recorder);
    Discover(finder, folder / "");
    EXPECT_EQ(finder.GetFileOffsets()[finder.GetFileOffsets().GetSize() - 1], "d\\y");
    EXPECT_EQ(finder.GetFileOffsets()[0], "a");
    if (qv::platform::HasDriveLetters()) return;  // the system reports another cause
    EXPECT_EQ(recorder.names, std::vector{std::to_string(QvLeftOut::vanished) + " b"});
}

TEST(HostileTree, FoldersOverPathLimitAreReportedAndDeleted) {
    if (qv::platform::HasDriveLetters()) GTEST_SKIP() << "no such depth can be made here";
    const TempFolder folder;
    const std::string name(250, 'd'), at = "cd '" + folder.Native().string() + "' && ";
    const std::string make = at + "for i in $(seq 18); do mkdir " + name + " && cd -P " + name + " || exit; done";
    ASSERT_EQ(std::system(make.c_str()), 0);
    Recorder found;
    FileFinder finder;
    finder.SetLeftOut(&found);
    Discover(finder, folder / "", "*");
    const std::vector<std::string> reported = {std::to_string(QvLeftOut::failed) + " dddddddd"};
    EXPECT_EQ(found.names, reported);
    EXPECT_TRUE(LeftOutOfCopy(folder / "", folder / "copy").empty());  // it needs no paths
    const std::string count = at + "test $(find " + name + " | wc -l) = $(find copy/" + name + " | wc -l)";
    EXPECT_EQ(std::system(count.c_str()), 0);
    CFileUtils::DelTree(folder / "", 0, found);
    EXPECT_EQ(found.names, reported);
    EXPECT_TRUE(fs::is_empty(folder.Native()));
}

// Each returns what it returns for a missing file or fails in its documented way. None reaches another file.
TEST(HostileTree, RejectsPathsBeyondLimits) {
    const TempFolder folder;
    for (const int length : {255, 3000, 5000, 70000}) {
        SCOPED_TRACE(length);
        const std::string name(static_cast<std::size_t>(length), 'n');
        const CString path = folder / name, deep = folder / (name + "/" + name);
        CStringArray lines{"old"};
        LONG time = 7;
        EXPECT_FALSE(CFileUtils::IsExist(path) || CFileUtils::IsDirectory(deep) || CFileUtils::IsVolume(path));
        EXPECT_TRUE(CFileUtils::MakeWritable(deep));
        EXPECT_EQ(CFileUtils::GetFilesize(path), -1);
        EXPECT_EQ(CFileUtils::GetShortPath(deep), deep);
        EXPECT_FALSE(CFileUtils::HasMatching(deep) || CFileUtils::GetDateModified(deep, time));
        EXPECT_EQ(CFileUtils::ReadFile(path), "");
        CFileUtils::ReadFile(deep, lines);
        EXPECT_EQ(lines.GetSize(), 0);
        EXPECT_FALSE(CFileUtils::Log(deep, "text", 0));
        EXPECT_EQ(FileCRC(path), 0u);
        const int quiet = CFileUtils::shellNoConfirmation | CFileUtils::shellNoErrorBox;
        EXPECT_FALSE(CFileUtils::ShellDeleteFile(deep, quiet, {}, nullptr));
        EXPECT_TRUE(Raised<CFileException>([&] { CFileUtils::WriteFile(deep, "text", 0, 0); }));
        EXPECT_EQ(Find(deep).GetSize(), 0);
        EXPECT_EQ(CopyErrors(deep, folder / "to"), 1);
        CFileUtils::DelTree(deep, 1);
        CFileUtils::BackupFile(deep);
        EXPECT_EQ(length > 255 ? QvCreateDirectory(deep) : 0, 0);
    }
    EXPECT_EQ(folder.Tree(), "to/");
}

}  // namespace
