#include <algorithm>
#include <set>

#include "qvcommon/Cabinet.h"
#include "qvcommon/FilePath.h"
#include "tests/files/Locking.h"
#include "tests/support/FileTests.h"
#include "tests/support/Host.h"
#include "tests/support/ScopedCodePage.h"
#include "tests/support/Walks.h"

// Names that the code page cannot hold, and names in each code page.

namespace {

void Write(const fs::path& path, const std::string& bytes) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
}

/// The contents of all files below a folder.
std::multiset<std::string> Contents(const fs::path& root) {
    std::multiset<std::string> contents;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root)) {
        std::ostringstream bytes;
        bytes << std::ifstream(entry.path(), std::ios::binary).rdbuf();
        if (entry.is_regular_file()) contents.insert(bytes.str());
    }
    return contents;
}

bool HasTwice(const std::multiset<std::string>& contents) {
    return std::set(contents.begin(), contents.end()).size() < contents.size();
}

/// All files that are found, and how many entries are reported as left out.
struct Found {
    explicit Found(const CString& folder) {
        Recorder recorder;
        FileFinder finder;
        finder.SetLeftOut(&recorder);
        Discover(finder, folder);
        files = finder.GetFiles();
        leftOut = recorder.names.size();
    }

    CStringArray files;
    std::size_t leftOut;
};

void PackAndUnpack(const CString& folder, const CString& archive, const CString& target) {
    CMakeCab::DirectoryToCab(folder, archive, 1);
    CReadCab::CabToDirectory(target, archive);
}

std::size_t CountIn(const fs::path& folder) {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), {}));
}

// Full-width points, separators and letters look like those of ASCII, and best fit takes them for these.
TEST(Names, UnmappableNamesNeverAliasOtherFiles) {
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
    folder.Write("victim/x", "kept");

    const Found found(folder / "tree");
    std::multiset<std::string> read;
    for (const CString& file : found.files) read.insert(CFileUtils::ReadFile(file).AsStd());
    EXPECT_FALSE(HasTwice(read)) << "one file by two names";
    EXPECT_TRUE(std::ranges::includes(made, read));
    EXPECT_TRUE(found.leftOut > 0 || read == made);

    const std::vector<std::string> left = LeftOutOfCopy(folder / "tree", folder / "copy");
    const std::multiset<std::string> copied = Contents(folder.Native("copy"));
    EXPECT_TRUE(std::ranges::includes(made, copied));
    EXPECT_TRUE(!left.empty() || copied == made);

    PackAndUnpack(folder / "tree", folder / "p.cab", folder / "unpacked");
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

class InCodePage : public testing::TestWithParam<Page> {
protected:
    void SetUp() override {
        if (!m_page) GTEST_SKIP() << "the system has no code page " << GetParam().number;
    }

    const ScopedCodePage m_page{GetParam().number};
    const CString m_name{GetParam().name};
};

TEST_P(InCodePage, PathsAreSplitByCharacters) {
    const CString &name = m_name, path = "C:\\" + name + "\\" + name + "." + name;
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

TEST(Names, PreservedInArchivesOfOtherCodePage) {
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
    if (!qv::platform::HasDriveLetters() && qv::platform::CurrentCodePage() == qv::platform::CodePage::DoubleByte)
        GTEST_SKIP() << "names are bytes here";
    const TempFolder folder;
    const CString &name = m_name, tree = folder / "" + name, file = tree + "\\" + name + "\\" + name;
    CFileUtils::WriteFile(file, CString("text"), 0, 1);
    EXPECT_TRUE(!qv::platform::HasDriveLetters() || fs::exists(folder.Native() / u"\u30BD\u8868\u30DD"));
    const Found found(tree);
    EXPECT_EQ(found.leftOut, 0u);
    EXPECT_EQ(found.files, CStringArray{file});
    EXPECT_TRUE(LeftOutOfCopy(tree, folder / "copy").empty());
    EXPECT_EQ(CFileUtils::ReadFile(folder / "copy\\" + name + "\\" + name), "text");
    PackAndUnpack(tree, folder / "" + name + ".cab", folder / "out" + name);
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

TEST(Names, TrailingDotsAndSpacesAreExact) {
    const TempFolder folder;
    if (RunInShell(folder.Native(), "mkdir t && cd t && echo a > end && echo b > end. && echo c > 'end '") != 0)
        GTEST_SKIP() << "no shell here that makes such names: on Windows run it under Wine, with its drive Z:";
    const Found found(folder / "t");
    EXPECT_EQ(static_cast<std::size_t>(found.files.GetSize()) + found.leftOut, 3u);
    const std::size_t left = LeftOutOfCopy(folder / "t", folder / "copy").size();
    const std::multiset<std::string> copied = Contents(folder.Native("copy"));
    EXPECT_FALSE(HasTwice(copied)) << "one file by two names";
    EXPECT_EQ(copied.size() + left, 3u);
    CFileUtils::DelTree(folder / "t", 1);
    EXPECT_FALSE(folder.Has("t"));
}

// Wine shows the links of its host without a tag, and opens their targets.
TEST(Names, HostLinksAreNotFollowed) {
    const TempFolder folder;
    folder.Write("outside/kept", "kept");
    folder.Write("t/sub/x", "x");
    if (RunInShell(folder.Native("t"), "ln -s ../outside link && ln -s ../../outside sub/link") != 0)
        GTEST_SKIP() << "no shell here that makes links: on Windows run it under Wine, with its drive Z:";
    EXPECT_EQ(Found(folder / "t").files.GetSize(), 1);
    EXPECT_EQ(LeftOutOfCopy(folder / "t", folder / "copy").size(), 2u);
    PackAndUnpack(folder / "t", folder / "p.cab", folder / "out");
    for (const char* const target : {"copy", "out"}) EXPECT_EQ(Contents(folder.Native(target)).size(), 1u) << target;
    Recorder deleted;
    EXPECT_TRUE(Raised<CFileException>([&] { CFileUtils::DelTree(folder / "t\\link", 0); }));
    CFileUtils::DelTree(folder / "t", 1, deleted);
    EXPECT_EQ(folder.Has("t"), !deleted.names.empty()) << "Wine deletes no link to a folder that is not empty";
    EXPECT_FALSE(folder.Has("t/sub/x"));
    EXPECT_EQ(folder.Read("outside/kept"), "kept");
}

TEST(Names, LongPathsAreSupported) {
    const TempFolder folder;
    CString deep = folder / "t";
    for (int i = 0; i < 6; ++i) deep += "\\" + CString(std::string(200, static_cast<char>('a' + i)));
    CFileUtils::WriteFile(deep + "\\x.txt", CString("text"), 0, 1);
    EXPECT_TRUE(CFileUtils::IsExist(deep + "\\x.txt"));
    const Found found(folder / "t");
    EXPECT_EQ(found.leftOut, 0u);
    EXPECT_EQ(found.files, CStringArray{deep + "\\x.txt"});
    EXPECT_TRUE(LeftOutOfCopy(folder / "t", folder / "copy").empty());
    PackAndUnpack(folder / "copy", deep + "\\p.cab", deep + "\\out");
    CFile::Rename(deep + "\\x.txt", deep + "\\y.txt");
    CFileUtils::BackupFile(deep + "\\y.txt");
    EXPECT_EQ(CFileUtils::ReadFile(deep + "\\y.bak"), "text");
    CFile::Remove(deep + "\\y.bak");
    EXPECT_EQ(Found(deep).files.GetSize(), 2);
    EXPECT_EQ(CFileUtils::HasMatching(deep + "\\*.cab"), 1);
    {
        DocumentLock lock(deep + "\\report.abc");
        EXPECT_EQ(lock.GetFile(), deep + "\\report.lck");
        EXPECT_TRUE(lock.TryLock() ? CFileUtils::IsExist(deep + "\\report.lid")
                                   : lock.GetLockException().m_cause == CFileException::badPath);
    }
    for (const char* const name : {"t", "copy"}) CFileUtils::DelTree(folder / name, 1);
    EXPECT_EQ(CountIn(folder.Native()), 0u);
}

TEST(Names, FileTimesHave64Bits) {
    const TempFolder folder;
    folder.Write("x", "x");
    // The years 1900, 1969, 2040, 2107 and 9000.
    for (const std::int64_t seconds : {-2208988800ll, -1ll * 86400, 2208988800ll, 4323456000ll, 221845392000ll}) {
        CFileStatus status;
        ASSERT_TRUE(CFile::GetStatus(folder / "x", status));
        status.m_mtime = seconds;
        CFile::SetStatus(folder / "x", status);
        ASSERT_TRUE(CFile::GetStatus(folder / "x", status));
        if (status.m_mtime != seconds) continue;  // the file system holds fewer years
        LONG time = 7;
        const bool fits = std::abs(seconds) < 2147000000;
        EXPECT_EQ(CFileUtils::GetDateModified(folder / "x", time), fits);
        EXPECT_TRUE(fits ? std::abs(time - seconds) <= 86400 : time == 7) << time;
    }
}

}  // namespace
