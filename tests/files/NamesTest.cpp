#include <gmock/gmock.h>

#include <algorithm>
#include <set>

#include "platform/FileSearch.h"
#include "platform/Path.h"
#include "qvcommon/Cabinet.h"
#include "qvcommon/CopyTree.h"
#include "qvcommon/FileFinder.h"
#include "qvcommon/FilePath.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/framework/File.h"
#include "tests/support/Host.h"
#include "tests/support/LeftOutRecorder.h"
#include "tests/support/Raised.h"
#include "tests/support/ScopedCodePage.h"
#include "tests/support/TempFolder.h"

// Names that differ from what the code page says of them, and names in each code page.

namespace {

namespace fs = std::filesystem;

void Write(const fs::path& path, const std::string& bytes) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
}

/// The contents of all files below a folder, whatever their names.
std::multiset<std::string> Contents(const fs::path& root) {
    std::multiset<std::string> contents;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root)) {
        std::ostringstream bytes;
        bytes << std::ifstream(entry.path(), std::ios::binary).rdbuf();
        if (entry.is_regular_file()) contents.insert(bytes.str());
    }
    return contents;
}

/// How many entries of a folder are told as left out, and all files that are found.
std::size_t FindAll(const CString& folder, CStringArray& files) {
    Recorder recorder;
    FileFinder finder;
    finder.SetSearchPath(folder);
    finder.SetSearchMask("*.*");
    finder.SetRecurse(1);
    finder.SetLeftOut(&recorder);
    finder.Discover();
    files = finder.GetFiles();
    return recorder.names.size();
}

void CopyAll(const CString& from, const CString& to, ILeftOut& leftOut) {
    CCopyTree copy;
    copy.SetLeftOut(&leftOut);
    copy.CopyTree(from, to);
}

std::size_t CountIn(const fs::path& folder) {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), {}));
}

// Full-width points, separators and letters look like those of ASCII, and best fit takes them for these.
TEST(Names, BeyondTheCodePageNeverMeanOthers) {
    if (!qv::platform::HasDriveLetters()) GTEST_SKIP() << "names are bytes here";
    const WesternCodePage western;
    if (!western) GTEST_SKIP() << "the system has no code page 1252";
    const TempFolder folder;
    const fs::path tree = folder.Native("tree");
    const std::u16string names[] = {
        u"\uFF0E\uFF0E\uFF3Cvictim/x", u"report.txt", u"\uFF52eport.txt",     u"\u221E",
        u"\u30BD/\u8868.txt",          u"a/plain",    u"\uFF0E/\uFF0E\uFF0E", u"a\u0308.txt"};
    std::multiset<std::string> made;
    for (const std::u16string& name : names) {
        const std::string bytes = std::to_string(made.size());
        made.insert(bytes);
        Write(tree / name, bytes);
    }
    folder.Write("keep", "kept");
    Write(folder.Native("victim/x"), "kept");

    CStringArray files;
    const std::size_t untold = FindAll(folder / "tree", files);
    std::multiset<std::string> read;
    for (const CString& file : files) read.insert(CFileUtils::ReadFile(file).AsStd());
    EXPECT_EQ(read.size(), std::set(read.begin(), read.end()).size()) << "one file by two names";
    EXPECT_TRUE(std::ranges::includes(made, read));
    EXPECT_TRUE(untold > 0 || read == made);

    Recorder left;
    CopyAll(folder / "tree", folder / "copy", left);
    const std::multiset<std::string> copied = Contents(folder.Native("copy"));
    EXPECT_TRUE(std::ranges::includes(made, copied));
    EXPECT_TRUE(!left.names.empty() || copied == made);

    CMakeCab::DirectoryToCab(folder / "tree", folder / "p.cab", 1);
    CReadCab::CabToDirectory(folder / "unpacked", folder / "p.cab");
    EXPECT_TRUE(std::ranges::includes(Contents(folder.Native("unpacked")), read));

    CFileUtils::DelTree(folder / "tree", 1);
    EXPECT_FALSE(folder.Has("tree"));
    EXPECT_EQ(folder.Read("victim/x"), "kept");
    EXPECT_EQ(CountIn(folder.Native()), 5u) << "copy, keep, p.cab, unpacked and victim";
}

/// Three letters of which two end with the byte of a backslash, or of a bar, in code page 932, and one in each script.
struct Page {
    int number;
    std::string name;  // ソ表ポ
};

class InCodePage : public testing::TestWithParam<Page> {};

TEST_P(InCodePage, PathsAreSplitByCharacters) {
    const ScopedCodePage page(GetParam().number);
    if (!page) GTEST_SKIP() << "the system has no code page " << GetParam().number;
    const CString name(GetParam().name), path = "C:\\" + name + "\\" + name + "." + name;
    EXPECT_EQ(CFileUtils::TerminateDir(name), name + "\\");
    EXPECT_EQ(CFileUtils::UnterminateDir(name), name);
    EXPECT_EQ(CFileUtils::UnterminateDir(name + "\\"), name);
    EXPECT_EQ(CFileUtils::GetFilenameFromPath(path), name + "." + name);
    EXPECT_EQ(CFileUtils::GetDirectoryFromPath(path), "C:\\" + name + "\\");
    EXPECT_EQ(CFileUtils::StripInvalidFilenameChars(" " + path + "|?"), "C" + name + name + "." + name);
    EXPECT_EQ(CFileUtils::MatchesPathFormat("\\\\" + name + "x"), 0);
    const CFilePath parts(path);
    EXPECT_EQ(parts.GetFile(), name);
    EXPECT_EQ(parts.GetExt(), "." + name);
    EXPECT_EQ(parts.GetFullPath(), path);
    EXPECT_EQ(CFilePath::MakePath("", name, name, ""), name + "\\" + name);
}

TEST(Names, ArchivesOfAnotherCodePageKeepThem) {
    if (!qv::platform::HasDriveLetters()) GTEST_SKIP() << "names are bytes here";
    const TempFolder folder;
    Write(folder.Native("in") / u"\u00E4" / u"\u00F6.txt", "umlauts");
    Write(folder.Native("in") / u"\u03B1.txt", "alpha");
    {
        const ScopedCodePage utf8(65001);
        if (!utf8) GTEST_SKIP() << "the system has no code page 65001";
        CMakeCab::DirectoryToCab(folder / "in", folder / "a.cab", 1);
    }
    const WesternCodePage western;
    if (!western) GTEST_SKIP() << "the system has no code page 1252";
    Recorder left;
    CReadCab reader;
    reader.SetLeftOut(&left);
    reader.Unpack(folder / "out", folder / "a.cab");
    EXPECT_THAT(left.names, testing::ElementsAre(testing::EndsWith("?.txt")));
    EXPECT_TRUE(fs::exists(folder.Native("out") / u"\u00E4" / u"\u00F6.txt"));
    EXPECT_EQ(std::distance(fs::recursive_directory_iterator(folder.Native("out")), {}), 2);
}

TEST_P(InCodePage, TreesAreFoundCopiedPackedAndDeleted) {
    const ScopedCodePage page(GetParam().number);
    if (!page) GTEST_SKIP() << "the system has no code page " << GetParam().number;
    if (!qv::platform::HasDriveLetters() && qv::platform::CurrentCodePage() == qv::platform::CodePage::DoubleByte)
        GTEST_SKIP() << "names are bytes here";
    const TempFolder folder;
    const CString name(GetParam().name), tree = folder / "" + name, file = tree + "\\" + name + "\\" + name;
    ASSERT_TRUE(QvCreateDirectory(tree + "\\" + name + "\\"));
    CFileUtils::WriteFile(file, CString("text"), 0, 0);
    EXPECT_TRUE(!qv::platform::HasDriveLetters() || fs::exists(folder.Native() / u"\u30BD\u8868\u30DD"));
    CStringArray files;
    EXPECT_EQ(FindAll(tree, files), 0u);
    ASSERT_EQ(files.GetSize(), 1);
    EXPECT_EQ(files[0], file);
    Recorder left;
    CopyAll(tree, folder / "copy", left);
    EXPECT_EQ(left.names.size(), 0u);
    EXPECT_EQ(CFileUtils::ReadFile(folder / "copy\\" + name + "\\" + name), "text");
    CMakeCab::DirectoryToCab(tree, folder / "" + name + ".cab", 1);
    CReadCab::CabToDirectory(folder / "out" + name, folder / "" + name + ".cab");
    EXPECT_EQ(CFileUtils::ReadFile(folder / "out" + name + "\\" + name + "\\" + name), "text");
    const int others = RunInShell(folder.Native(),
                                  "{ ! command -v cabextract || cabextract -q -t *.cab; } > /dev/null && "
                                  "{ ! command -v 7zz || 7zz t *.cab; } > /dev/null");
    EXPECT_LE(others, 0) << "a program that is here refuses the archive";
    CFileUtils::DelTree(tree, 1);
    EXPECT_FALSE(CFileUtils::IsExist(tree));
    EXPECT_EQ(CountIn(folder.Native()), 3u);
}

INSTANTIATE_TEST_SUITE_P(Names, InCodePage,
                         testing::Values(Page{932, "\x83\x5C\x95\x5C\x83\x7C"}, Page{936, "\xA5\xBD\xB1\xED\xA5\xDD"},
                                         Page{65001, "\xE3\x82\xBD\xE8\xA1\xA8\xE3\x83\x9D"}),
                         [](const auto& made) { return std::to_string(made.param.number); });

TEST(Names, ThatTheSystemCutsAreReachedAsTheyAre) {
    const TempFolder folder;
    if (RunInShell(folder.Native(), "mkdir t && cd t && echo a > end && echo b > end. && echo c > 'end '") != 0)
        GTEST_SKIP() << "no shell here that makes such names: on Windows run it under Wine, with its drive Z:";
    Recorder left;
    CStringArray files;
    const std::size_t told = FindAll(folder / "t", files);
    CopyAll(folder / "t", folder / "copy", left);
    const std::multiset<std::string> copied = Contents(folder.Native("copy"));
    EXPECT_EQ(copied.size(), std::set(copied.begin(), copied.end()).size()) << "one file by two names";
    EXPECT_EQ(copied.size() + left.names.size(), 3u);
    EXPECT_EQ(static_cast<std::size_t>(files.GetSize()) + told, 3u);
    CFileUtils::DelTree(folder / "t", 1);
    EXPECT_FALSE(folder.Has("t"));
}

// Wine shows the links of its host without a tag, and opens what they lead to.
TEST(Names, OfLinksThatOthersMadeLeadNowhere) {
    const TempFolder folder;
    Write(folder.Native("outside/kept"), "kept");
    Write(folder.Native("t/sub/x"), "x");
    if (RunInShell(folder.Native("t"), "ln -s ../outside link && ln -s ../../outside sub/link") != 0)
        GTEST_SKIP() << "no shell here that makes links: on Windows run it under Wine, with its drive Z:";
    CStringArray files;
    Recorder copied, deleted;
    FindAll(folder / "t", files);
    EXPECT_EQ(files.GetSize(), 1);
    CopyAll(folder / "t", folder / "copy", copied);
    EXPECT_EQ(copied.names.size(), 2u);
    EXPECT_EQ(Contents(folder.Native("copy")).size(), 1u);
    CMakeCab::DirectoryToCab(folder / "t", folder / "p.cab", 1);
    CReadCab::CabToDirectory(folder / "out", folder / "p.cab");
    EXPECT_EQ(Contents(folder.Native("out")).size(), 1u);
    EXPECT_TRUE(Raised<CFileException>([&] { CFileUtils::DelTree(folder / "t\\link", 0); }));
    CFileUtils::DelTree(folder / "t", 1, deleted);
    EXPECT_EQ(folder.Has("t"), !deleted.names.empty()) << "Wine deletes no link to a folder that is not empty";
    EXPECT_FALSE(folder.Has("t/sub/x"));
    EXPECT_EQ(folder.Read("outside/kept"), "kept");
}

TEST(Names, OfPathsBeyondAllBuffersAreServed) {
    const TempFolder folder;
    CString deep = folder / "t";
    for (int i = 0; i < 6; ++i) deep += "\\" + CString(std::string(200, static_cast<char>('a' + i)));
    ASSERT_TRUE(QvCreateDirectory(deep));
    CFileUtils::WriteFile(deep + "\\x.txt", CString("text"), 0, 0);
    EXPECT_TRUE(CFileUtils::IsExist(deep + "\\x.txt"));
    CStringArray files;
    Recorder left;
    EXPECT_EQ(FindAll(folder / "t", files), 0u);
    ASSERT_EQ(files.GetSize(), 1);
    EXPECT_EQ(files[0], deep + "\\x.txt");
    CopyAll(folder / "t", folder / "copy", left);
    EXPECT_TRUE(left.names.empty());
    CMakeCab::DirectoryToCab(folder / "copy", deep + "\\p.cab", 1);
    CReadCab::CabToDirectory(deep + "\\out", deep + "\\p.cab");
    CFile::Rename(deep + "\\x.txt", deep + "\\y.txt");
    CFile::Remove(deep + "\\y.txt");
    FindAll(deep, files);
    EXPECT_EQ(files.GetSize(), 2);
    EXPECT_EQ(CFileUtils::HasMatching(deep + "\\*.cab"), 1);
    for (const char* const name : {"t", "copy"}) CFileUtils::DelTree(folder / name, 1);
    EXPECT_EQ(CountIn(folder.Native()), 0u);
}

TEST(Names, TimesOfFilesHaveSixtyFourBits) {
    const TempFolder folder;
    folder.Write("x", "x");
    // 1900, 1969, 2040, 2107, 9000; one the 32 bits of the C library's clock, and none that a file system may not hold.
    for (const std::int64_t seconds : {-2208988800ll, -1ll * 86400, 2208988800ll, 4323456000ll, 221845392000ll}) {
        CFileStatus status;
        ASSERT_TRUE(CFile::GetStatus(folder / "x", status));
        status.m_mtime = seconds;
        CFile::SetStatus(folder / "x", status);
        ASSERT_TRUE(CFile::GetStatus(folder / "x", status));
        if (status.m_mtime != seconds) continue;  // the file system holds fewer years
        CFile::SetStatus(folder / "x", status);
        ASSERT_TRUE(CFile::GetStatus(folder / "x", status));
        EXPECT_EQ(status.m_mtime, seconds);
        LONG time = 7;
        const bool fits = std::abs(seconds) < 2147000000;
        EXPECT_EQ(CFileUtils::GetDateModified(folder / "x", time), fits);
        EXPECT_TRUE(fits ? std::abs(time - seconds) <= 86400 : time == 7) << time;
    }
}

}  // namespace
