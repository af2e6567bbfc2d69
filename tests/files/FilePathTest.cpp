#include "qvcommon/FilePath.h"

#include "tests/support/FileTests.h"
#include "tests/support/ScopedLocale.h"

namespace {

/// A drive is a separate part where there are drives, else the beginning of the directory.
std::string Directory(const std::string& drive, const std::string& directory) {
    return qv::platform::HasDriveLetters() ? directory : drive + directory;
}

TEST(FilePath, SplitsAndJoins) {
    struct Row {
        const char* path;
        std::string dir;
        const char *file, *ext, *full;
    };
    for (const Row& row : {Row{"C:\\a\\b.c.txt", Directory("C:", "\\a\\"), "b.c", ".txt", "C:\\a\\b.c.txt"},
                           Row{"", "", "", "", ""}, Row{"x", "", "x", "", "x"}, Row{".x", "", "", ".x", ".x"},
                           Row{"a.b/c", "a.b/", "c", "", "a.b/c"}, Row{"a.b\\c/d.", "a.b\\c/", "d", ".", "a.b\\c/d."},
                           Row{"\\\\srv\\s\\f.e", "\\\\srv\\s\\", "f", ".e", "\\\\srv\\s\\f.e"},
                           Row{"dir\\", "dir\\", "", "", "dir\\"}}) {
        const CFilePath path(row.path);
        EXPECT_EQ(path.GetDir(), row.dir.c_str()) << row.path;
        EXPECT_EQ(path.GetFile(), row.file) << row.path;
        EXPECT_EQ(path.GetExt(), row.ext) << row.path;
        EXPECT_EQ(path.GetFullPath(), row.full);
    }
    const CFilePath path("C:\\a\\b.c.txt");
    EXPECT_EQ(path.GetFullFile(), "b.c.txt");
    EXPECT_EQ(path.GetPath(1), "C:\\a\\");
    EXPECT_EQ(path.GetPath(0), "C:\\a");
}

TEST(FilePath, MergesOrReplaces) {
    CFilePath path("C:\\a\\b.txt");
    path.SplitPath("x.doc", 0);
    EXPECT_EQ(path.GetFullPath(), "C:\\a\\x.doc");
    path.SplitPath("", 0);
    EXPECT_EQ(path.GetFullPath(), "C:\\a\\x.doc");
    CFilePath copy;
    copy = path;
    path = "y";
    EXPECT_EQ(path.GetFullPath(), "y");
    EXPECT_EQ(copy.GetFullPath(), "C:\\a\\x.doc");
    copy.SetExt("bak");
    copy.SetDir("d");
    EXPECT_EQ(copy.GetFullFile(), "x.bak");
    EXPECT_TRUE(copy.GetFullPath().AsStd().ends_with("d\\x.bak"));
    EXPECT_EQ(CFilePath::MakePath("C", "a", nullptr, "e"), "C:a\\.e");
    EXPECT_EQ(CFilePath::MakePath("", "a/", "f", ".e"), "a/f.e");
}

TEST(FilePath, TruncatesLongComponents) {
    const std::string part(300, 'x');
    const CFilePath path((part + "\\" + part + "." + part).c_str());
    EXPECT_EQ(path.GetDir().AsStd(), part.substr(0, 255));
    EXPECT_EQ(path.GetFile().AsStd(), part.substr(0, 255));
    EXPECT_EQ(path.GetExt().AsStd(), "." + part.substr(0, 254));
    EXPECT_EQ(path.GetFullPath().AsStd(), part.substr(0, 255) + "\\xxx");
}

TEST(FileUtils, ManipulatesPathStrings) {
    using Function = CString (*)(const char*);
    const Function filename = [](const char* path) { return CFileUtils::GetFilenameFromPath(path); };
    const Function directory = [](const char* path) { return CFileUtils::GetDirectoryFromPath(path); };
    const struct {
        Function function;
        std::vector<std::pair<const char*, const char*>> results;
    } rows[] = {{CFileUtils::TerminateDir, {{"", ""}, {"a", "a\\"}, {"a\\", "a\\"}, {"a/", "a/\\"}}},
                {CFileUtils::UnterminateDir, {{"a\\\\", "a\\"}, {"a/", "a/"}, {"", ""}}},
                {filename, {{"a\\b/c", "b/c"}, {"c", "c"}, {"a\\", ""}}},
                {directory, {{"a\\b\\c", "a\\b\\"}, {"a/b", ""}}},
                {CFileUtils::StripInvalidFilenameChars, {{" a<b>:c ", "abc"}, {"\\/:*?\"<>|", ""}, {"? x y |", "x y"}}},
                {CFileUtils::FileNameToFileUrl, {{"C:\\a b", "file://C:/a b"}, {"\\\\s\\x", "file:////s/x"}}},
                {CFileUtils::FileUrlToFileName,
                 {{"file:///C:/My%20Files/a.txt", "C:\\My Files\\a.txt"},
                  {"file://C:/a", "file:\\\\C:\\a"},
                  {"FILE%3A%2F//a%2fb", "a\\b"}}}};
    for (const auto& row : rows)
        for (const auto& [text, result] : row.results) EXPECT_EQ(row.function(text), result) << text;
    const ScopedLocale turkish("tr_TR.UTF-8");
    EXPECT_EQ(CFileUtils::FileUrlToFileName("FILE:///a"), "a") << "a scheme is ASCII";
}

}  // namespace
