#include <algorithm>
#include <iostream>

#include "qvcommon/TimeHelper.h"
#include "tests/support/Child.h"
#include "tests/support/FileTests.h"
#include "tests/support/RecordingClock.h"
#include "tests/support/RecordingMessageBox.h"

namespace {

TEST(FileUtils, ClassifiesFilesFoldersAndVolumes) {
    const TempFolder folder;
    folder.Write("file", "12345");
    fs::create_directory(folder.Native("empty"));
    const CString root(qv::platform::HasDriveLetters() ? "C:\\" : "\\");
    struct Row {
        CString path;
        bool exists, isFolder;
        int size;
    };
    for (const Row& row : {Row{folder / "file", true, false, 5}, Row{folder / "empty", true, true, 0},
                           Row{folder / "empty\\", true, true, 0}, Row{folder / "none", false, false, -1},
                           Row{folder / "file\\none", false, false, -1}, Row{root, true, true, -2},
                           Row{"", false, false, -1}, Row{CString('x', 5000), false, false, -1}}) {
        EXPECT_EQ(CFileUtils::IsExist(row.path), row.exists) << row.path.AsStd();
        EXPECT_EQ(CFileUtils::IsDirectory(row.path), row.isFolder) << row.path.AsStd();
        EXPECT_TRUE(row.size == -2 || CFileUtils::GetFilesize(row.path) == row.size) << row.path.AsStd();
    }
    EXPECT_TRUE(CFileUtils::IsVolume(root));
    EXPECT_FALSE(CFileUtils::IsVolume(folder / "empty"));
    EXPECT_TRUE(CFileUtils::HasMatching(folder / "F*"));
    EXPECT_TRUE(CFileUtils::HasMatching(folder / "empty\\*.*"));
    EXPECT_FALSE(CFileUtils::HasMatching(folder / "empty\\?x*"));
    EXPECT_EQ(CFileUtils::GetShortPath(folder / "none"), folder / "none");
    EXPECT_EQ(CFileUtils::GetUppercaseShortPath("q:\\no such"), "Q:\\NO SUCH");
}

TEST(FileUtils, MatchesPathFormats) {
    for (const char* const path : {"c:\\", "Z:\\a b", "\\\\server\\share", "\\\\s\\"})
        EXPECT_TRUE(CFileUtils::MatchesPathFormat(path)) << path;
    for (const char* const path : {"", "C:", "1:\\", "C:/x", "\\\\server", "a\\b", "\\\\"})
        EXPECT_FALSE(CFileUtils::MatchesPathFormat(path)) << path;
}

TEST(FileUtils, ClampsSizeOfFilesOver4Gb) {
    const TempFolder folder;
    folder.Write("long", "");
    std::error_code full;
    fs::resize_file(folder.Native("long"), (5ull << 30) + 7, full);
    if (full) GTEST_SKIP() << full.message();
    EXPECT_EQ(CFileUtils::GetFilesize(folder / "long"), 2147483647);
    EXPECT_EQ(CFileUtils::ReadFile(folder / "long"), "");
}

TEST(FileUtils, ReturnsDatesOfTheFirstMatch) {
    const TempFolder folder;
    folder.Write("a.txt", "");
    CFileStatus status;
    ASSERT_TRUE(CFile::GetStatus(folder / "a.txt", status));
    status.m_mtime = 1083765787;
    CFile::SetStatus(folder / "a.txt", status);
    const CString expected = COleDateTime(status.m_mtime).Format("%b %d %Y, %H:%M:%S");
    EXPECT_EQ(CFileUtils::GetDateModified(folder / "*.TXT"), expected);
    EXPECT_EQ(CFileUtils::GetDateModified(folder / "a.txt", "%Y"), "2004");
    LONG time = 3;
    EXPECT_FALSE(CFileUtils::GetDateModified(folder / "b*", time));
    EXPECT_EQ(time, 3);
    EXPECT_TRUE(CFileUtils::GetDateModified(folder / "a*", time));
    const auto steps = (1083765787ull + 11644473600ull) * 10000000;
    EXPECT_EQ(time, CTimeHelper::FileTimeToUnixTime(QvFileTime::FromSteps(steps)));
    EXPECT_EQ(CFileUtils::GetDateModified(folder / "b*"), "");
}

TEST(FileUtils, FindsTheLatestSubfolder) {
    const TempFolder folder;
    CString name = "kept", date = "kept";
    folder.Write("9", "");
    CFileUtils::FindLastestSubdir(folder / "*", name, date);
    CFileUtils::FindLastestSubdirByName(folder / "*", name);
    EXPECT_EQ(name + date, "keptkept");
    // The latest comes first.
    for (const auto& names :
         {std::vector{"none", "nothing"}, {"1.9", "1.10"}, {"2.10", "v1.2.3"}, {"a7", "b7"}, {"v10", "v9", "w"}}) {
        const TempFolder fresh;
        for (const char* const made : names) fs::create_directory(fresh.Native(made));
        CFileUtils::FindLastestSubdirByName(fresh / "*.*", name);
        EXPECT_EQ(name, names[0]);
    }
    fs::create_directory(folder.Native("new"));
    CFileUtils::FindLastestSubdir(folder / "*", name, date);
    EXPECT_EQ(name, "new");
    EXPECT_GE(date, CString("Jan"));
    EXPECT_EQ(date.Mid(6, 3), " 20");
}

TEST(FileUtils, CreatesNestedFolders) {
    const TempFolder folder;
    folder.Write("file", "");
    for (const char* const path : {"a\\b\\c", "a\\b\\c\\", "a/d/e", "f\\", "a"}) {
        EXPECT_TRUE(QvCreateDirectory(folder / path)) << path;
        EXPECT_TRUE(CFileUtils::IsDirectory(folder / path)) << path;
    }
    EXPECT_FALSE(QvCreateDirectory(folder / "file\\x"));
    EXPECT_FALSE(QvCreateDirectory(folder / std::string(300, 'x')));
    EXPECT_FALSE(QvCreateDirectory(""));
}

TEST(FileUtils, PromptsBeforeCreatingFolder) {
    const TempFolder folder;
    folder.Write("file", "");
    const std::string question = "The directory specified can not be found.  Would you like to create it?";
    struct Row {
        CString path;
        int answer, valid;
        std::vector<std::string> texts;
    };
    for (const Row& row :
         {Row{folder / "", 6, 1, {}}, Row{"", 6, 0, {"No directory was specified."}},
          Row{folder / "a\\b", 7, 0, {question}}, Row{folder / "a\\b", 2, 0, {question}},
          Row{folder / "a\\b", 6, 1, {question}}, Row{folder / "a\\b", 7, 1, {}},
          Row{folder / "file\\b", 6, 0, {question, "The directory specified could not be created."}}}) {
        const RecordingMessageBox box(row.answer);
        EXPECT_EQ(ValidateDir(row.path), row.valid) << row.path.AsStd();
        std::vector<std::string> texts;
        for (const auto& shown : box.shown) {
            texts.push_back(shown.text);
            EXPECT_EQ(shown.style, shown.text == question ? 52u : 48u);
        }
        EXPECT_EQ(texts, row.texts);
    }
}

TEST(WholeFiles, Roundtrip) {
    const TempFolder folder;
    std::string bytes;
    for (int i = 0; i < 70000; ++i) bytes += static_cast<char>(i * 7);
    const CString path = folder / "new\\er\\file";
    EXPECT_EQ(Raised<CFileException>([&] { CFileUtils::WriteFile(path, CString("x"), 1, 0); })->m_cause,
              CFileException::badPath);
    for (const int multiUser : {0, 1}) {
        CFileUtils::WriteFile(path, CString(bytes + bytes), multiUser, 1);
        fs::permissions(folder.Native("new/er/file"), fs::perms::owner_read);
        CFileUtils::WriteFile(path, CString(bytes), multiUser, 0);
        EXPECT_EQ(CFileUtils::ReadFile(path).AsStd(), bytes);
    }
    for (const CString& none : {folder / "none", folder / "new", CString("")})
        EXPECT_EQ(CFileUtils::ReadFile(none), "");
}

TEST(WholeFiles, ReadAndWriteLines) {
    const TempFolder folder;
    CStringArray lines{"old"};
    CFileUtils::WriteFile(folder / "x", CStringArray{"a", "", "b c"}, 0, 0);
    CFileUtils::ReadFile(folder / "x", lines);
    EXPECT_EQ(lines, (CStringArray{"a", "", "b c"}));
    folder.Write("y", std::string("a\r\nb\n\n\0c\rd", 10));
    CFileUtils::ReadFile(folder / "y", lines);
    EXPECT_EQ(lines, (CStringArray{"a", "b", "", std::string("\0c\rd", 4)}));
    CFileUtils::WriteFile(folder / "none\\x", CStringArray{"lost"}, 1, 0);
    CFileUtils::ReadFile(folder / "none\\x", lines);
    EXPECT_TRUE(lines.IsEmpty());
}

TEST(WholeFiles, FailedReadReturnsNoPartialData) {
    const TempFolder folder;
    folder.Write("x", std::string(100'000, 'x') + "\ny");
    for (int failing = 1; failing < 6; ++failing) {
        int reads = 0;
        const SystemFaults faults([&](const SystemFaults::Call& call) {
            const bool fails = call.kind == CallKind::Read && ++reads == failing;
            return fails ? SystemFaults::Of(FileCause::HardIO) : SystemFaults::Fault{};
        });
        CStringArray lines;
        const CString text = CFileUtils::ReadFile(folder / "x");
        EXPECT_EQ(text.IsEmpty(), reads >= failing) << failing;
        reads = 0;
        CFileUtils::ReadFile(folder / "x", lines);
        EXPECT_EQ(lines.IsEmpty(), reads >= failing) << failing;
    }
}

TEST(WholeFiles, WaitForOthersOnlyOnRequest) {
    const TempFolder folder;
    folder.Write("x", "old");
    const RecordingClock clock;
    {
        const CFile holder(folder / "x", CFile::modeRead | CFile::shareDenyWrite);
        EXPECT_EQ(CFileUtils::ReadFile(folder / "x"), "old");
        EXPECT_TRUE(Raised<CFileException>([&] { CFileUtils::WriteFile(folder / "x", CString("new"), 0, 0); }));
        EXPECT_TRUE(clock.pauses.empty());
        EXPECT_EQ(Raised<CFileException>([&] { CFileUtils::WriteFile(folder / "x", CString("new"), 1, 0); })->m_cause,
                  CFileException::sharingViolation);
        EXPECT_EQ(clock.pauses.size(), 8u);
        EXPECT_EQ(CFileUtils::Log(folder / "x", "line", 0), 0);
        EXPECT_GT(clock.pauses.size(), 100u);
    }
    EXPECT_EQ(CFileUtils::ReadFile(folder / "x"), "old");
    const SystemFaults faults([&](const SystemFaults::Call& call) {
        if (call.kind == CallKind::Open && call.path.ends_with("x")) folder.Write("x", "longer");
        return SystemFaults::Fault{};
    });
    EXPECT_EQ(CFileUtils::ReadFile(folder / "x"), "longer") << "rewritten before it was opened";
}

TEST(WholeFiles, BackupsAreMoved) {
    const TempFolder folder;
    CFileUtils::BackupFile(folder / "none.txt");
    EXPECT_EQ(CFileUtils::GetBackupName("v1.2\\a"), "v1.2\\a.bak");
    EXPECT_EQ(CFileUtils::GetBackupName("a\\.profile"), "a\\.bak");
    for (const char* const text : {"first", "second"}) {
        folder.Write("a.txt", text);
        fs::permissions(folder.Native("a.txt"), fs::perms::owner_read);
        CFileUtils::BackupFile(folder / "a.txt");
        EXPECT_EQ(folder.Tree(), std::string("a.bak=") + text);
    }
    EXPECT_TRUE(Raised<CFileException>([&] { CFileUtils::BackupFile(folder / "a.bak"); }));
    fs::create_directory(folder.Native("b.bak"));
    folder.Write("b.txt", "kept");
    EXPECT_EQ(Raised<CFileException>([&] { CFileUtils::BackupFile(folder / "b.txt"); })->m_strFileName,
              folder / "b.txt");
    std::error_code refused;
    folder.Write("c.txt", "of two names");
    fs::create_hard_link(folder.Native("c.txt"), folder.Native("c.bak"), refused);
    folder.Write("d.txt", "beside a link");
    folder.Link("nowhere", "d.bak");
    for (const char* const name : {"c.txt", "d.txt"}) CFileUtils::BackupFile(folder / name);
    EXPECT_EQ(folder.Tree(), "a.bak=second b.bak/ b.txt=kept c.bak=of two names d.bak=beside a link");
}

constexpr int kLoggers = 8, kLinesEach = 60;

QV_CHILD(Logger) {
    const std::string filler(static_cast<std::size_t>(std::stoi(arguments.at(1))) * 9000, '.');
    std::cin.get();
    for (int i = 0; i < kLinesEach; ++i)
        if (!CFileUtils::Log(arguments.at(0).c_str(), (arguments.at(1) + filler + std::to_string(i)).c_str(), 0))
            return 1;
    return 0;
}

TEST(Log, ConcurrentAppendsAreAtomic) {
    const TempFolder folder;
    std::vector<CProcess> loggers(kLoggers);
    CStringArray expected, lines;
    for (int i = 0; i < kLoggers; ++i) {
        StartChild(loggers[static_cast<std::size_t>(i)], "Logger", {folder / "log", std::to_string(i)});
        for (int line = 0; line < kLinesEach; ++line)
            expected.Add(std::to_string(i) + std::string(static_cast<std::size_t>(i) * 9000, '.') +
                         std::to_string(line));
    }
    for (CProcess& logger : loggers) logger.WriteInput("go\n");
    for (CProcess& logger : loggers) EXPECT_EQ(logger.Wait(), 0);
    CFileUtils::ReadFile(folder / "log", lines);
    std::sort(lines.begin(), lines.end());
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(lines, expected);
}

TEST(Log, StampsAndEndsLinesWithCrLf) {
    const TempFolder folder;
    const CString before = COleDateTime::GetCurrentTime().Format("%c ");
    EXPECT_TRUE(CFileUtils::Log(folder / "log", "one", 1));
    const CString after = COleDateTime::GetCurrentTime().Format("%c ");
    EXPECT_TRUE(CFileUtils::Log(folder / "log", "two", 0));
    const std::string log = folder.Read("log");
    EXPECT_TRUE(log == before.AsStd() + "one\r\ntwo\r\n" || log == after.AsStd() + "one\r\ntwo\r\n") << log;
    EXPECT_FALSE(CFileUtils::Log(folder / "none\\log", "three", 0));
}

}  // namespace
