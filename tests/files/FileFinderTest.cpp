#include <cstring>
#include <thread>

#include "platform/Wildcard.h"
#include "tests/support/FileTests.h"
#include "tests/support/ScopedCodePage.h"
#include "tests/support/Walks.h"

namespace {

class FinderTest : public testing::Test {
protected:
    void Make(std::initializer_list<const char*> names) const { MakeTree(m_folder.Native(), names); }
    /// The depths and offsets of what is found.
    std::string Find(const char* mask, int recurse, int mode, const char* folder = "") {
        Discover(m_finder, m_folder / folder, mask, recurse, mode);
        std::string found;
        for (int i = 0; i < m_finder.GetFiles().GetSize(); ++i)
            found += std::to_string(m_finder.GetOffsetDepths()[i]) + " " + m_finder.GetFileOffsets()[i].AsStd() + ",";
        return found;
    }

    TempFolder m_folder;
    FileFinder m_finder;
};

TEST_F(FinderTest, ListsByMaskModeAndDepth) {
    Make({"b.txt", "A.TXT", "c.doc", "one/x.txt", "one/deep/z.txt", "three/x.txt", "Two/x.txt", "Two/y.doc"});
    struct Row {
        const char* mask;
        int recurse, mode;
        const char* found;
    };
    for (const Row& row :
         {Row{"*.txt", 0, 0, "0 A.TXT,0 b.txt,"}, Row{"*.*", 0, 0, "0 A.TXT,0 b.txt,0 c.doc,"},
          Row{"*", 0, 1, "0 one,0 three,0 Two,"}, Row{"t*", 0, 2, "0 three,0 Two,"}, Row{"", 0, 2, ""},
          Row{"X.txt", 1, 0, "0 one\\x.txt,1 three\\x.txt,2 Two\\x.txt,"},
          Row{"*", 1, 1, "0 one,0 three,0 Two,0 one\\deep,"},
          Row{"*.*", 1, 0,
              "0 A.TXT,0 b.txt,0 c.doc,0 one\\x.txt,0 one\\deep\\z.txt,1 three\\x.txt,2 Two\\x.txt,2 Two\\y.doc,"}})
        EXPECT_EQ(Find(row.mask, row.recurse, row.mode), row.found) << row.mask << row.recurse << row.mode;
    const CFoundInfo last = m_finder.GetFoundInfo()[7];
    EXPECT_EQ(last.GetFilePath(), m_finder.GetFiles()[7]);
    EXPECT_EQ(m_finder.GetFiles()[7], m_folder / "Two\\y.doc");
    EXPECT_EQ(last.GetLength64(), fs::file_size(m_folder.Native("Two/y.doc")));
    EXPECT_EQ(Find("*.*", 1, 0, "missing"), "");
    EXPECT_TRUE(m_finder.GetFoundInfo().IsEmpty());
}

TEST_F(FinderTest, ReadsRecordsOnDemand) {
    Make({"kept", "gone", "folder/x"});
    m_finder.SetRecordsOnDemand(1);
    Find("*", 0, 2);
    std::ofstream(m_folder.Native("kept")) << "longer than before";
    fs::remove(m_folder.Native("gone"));
    const CArray<CFoundInfo>& found = m_finder.GetFoundInfo();
    ASSERT_EQ(found.GetSize(), 3);
    EXPECT_TRUE(found[0].IsDirectory() && !found[0].IsLink() && found[0].GetLength64() == 0);
    if (qv::platform::HasDriveLetters()) return;  // listings include the records there
    EXPECT_EQ(found[2].GetLength64(), 18u);
    QvFileTime time;
    EXPECT_TRUE(found[1].GetLastWriteTime(&time));
    EXPECT_EQ(time.Steps(), 0u);
    EXPECT_FALSE(found[1].IsDirectory());
}

TEST_F(FinderTest, LargeTreesKeepSingleThreadedOrder) {
    CStringArray expected;
    for (int i = 100; i < 140; ++i)
        for (const char* const file : {"1.txt", "2.doc", "a/1.txt", "a/2.doc", "b/1.txt", "b/2.doc"}) {
            CString name = "f" + std::to_string(i) + "/" + file;
            Make({name});
            name.Replace('/', '\\');
            expected.Add(name);
        }
    struct Recorder : FileFinder {
        int titles = 0;
        std::thread::id thread = std::this_thread::get_id();
        void UpdateProgress(const char* title) override {
            EXPECT_EQ(std::this_thread::get_id(), thread);
            if (titles++ == 300) throw std::string(title);
        }
    } recorder;
    for (const char* const mask : {"*.*", "*.?*"}) {  // one search of each folder, and two
        Find(mask, 1, 0);
        EXPECT_EQ(m_finder.GetFileOffsets(), expected) << mask;
        EXPECT_EQ(m_finder.GetFoundInfo()[77].GetLength(), static_cast<DWORD>(expected[77].GetLength()));
    }
    EXPECT_THROW(Discover(recorder, m_folder / "", "*"), std::string);
}

TEST_F(FinderTest, CallsItsHooksOnceAFolder) {
    struct Recorder : FileFinder {
        std::string log;
        void StartProgress() override { log += "("; }
        void UpdateProgress(const char* title) override { log += std::string(title) + ","; }
        void StopProgress() override { log += ")"; }
    } finder;
    Make({"a.b.c", "f/.x"});
    Discover(finder, m_folder / "");
    EXPECT_EQ(finder.log, "(,.,a.b,f,)(,.,,)");  // the titles of "." and ".." come first
}

TEST_F(FinderTest, DoesNotEnterLinks) {
    Make({"in/file", "out/secret"});
    if (!m_folder.Link("../out", "in/link") || !m_folder.Link("nowhere", "in/broken")) GTEST_SKIP() << "no links here";
    EXPECT_EQ(Find("*", 1, 2, "in"), "0 broken,0 file,0 link,");
    EXPECT_TRUE(m_finder.GetFoundInfo()[2].IsDirectory());
    EXPECT_EQ(Find("*", 1, 2, "in\\link"), "0 secret,");  // requested by name
}

TEST(FoundInfo, ReturnsRecordFields) {
    QvFindData data;
    data.dwFileAttributes = 0x10 | 0x02 | 0x800;
    data.nFileSizeHigh = 1;
    data.nFileSizeLow = 5;
    data.ftLastWriteTime = QvFileTime::FromSteps(116444736000000000ull + 15000000);
    std::strcpy(data.cFileName, "..");
    const CFoundInfo dots(&data, "C:/x/"), none;
    EXPECT_TRUE(dots.IsDots() && dots.IsDirectory() && dots.IsHidden() && dots.IsCompressed());
    EXPECT_FALSE(dots.IsReadOnly() || dots.IsNormal() || dots.IsSystem() || dots.IsArchived() || dots.IsTemporary());
    EXPECT_EQ(dots.GetFilePath(), "C:/x/..");
    EXPECT_EQ(dots.GetLength(), 5u);
    EXPECT_EQ(dots.GetLength64(), (1ull << 32) + 5);
    CTime time;
    ASSERT_TRUE(dots.GetLastWriteTime(time));
    EXPECT_EQ(time.GetTime(), 1);
    std::strcpy(data.cFileName, "a.b.txt");
    CFoundInfo file(&data, "\\\\server\\share");
    const CFoundInfo copy = file;
    file = none;
    EXPECT_EQ(copy.GetFileURL(), "file://\\\\server\\share\\a.b.txt");
    EXPECT_EQ(copy.GetFileTitle(), "a.b");
    EXPECT_FALSE(file.MatchesMask(0xFFFFFFFF) || file.IsDots() || file.GetCreationTime(time));
    EXPECT_EQ(file.GetFileName() + file.GetFileTitle(), "");
}

TEST(FtpFileFind, ListsEntriesFromConnection) {
    struct Listing : qv::IFileSearch {
        int left = 2;
        bool Next(QvFindData& entry) override {
            std::strcpy(entry.cFileName, left == 2 ? "a.txt" : "b.txt");
            entry.nFileSizeLow = static_cast<DWORD>(left);
            return left-- > 0;
        }
    };
    struct Server : CFtpConnection {
        std::string asked;
        std::unique_ptr<qv::IFileSearch> Search(const char* pattern, std::uintptr_t context) override {
            asked += pattern + std::to_string(context);
            return asked.find("none") == asked.npos ? std::make_unique<Listing>() : nullptr;
        }
    } server;
    CQvFtpFileFind find(&server, 7);
    std::string found;
    for (BOOL more = find.FindFile("pub/x/*.txt"); more;) {
        more = find.FindNextFile();
        const CFoundInfo info = find.GetFoundInfo();
        found += info.GetFilePath().AsStd() + " " + std::to_string(info.GetLength()) + ";";
    }
    EXPECT_EQ(found, "pub/x/a.txt 2;pub/x/b.txt 1;");
    EXPECT_FALSE(find.FindFile("none/*"));
    EXPECT_EQ(server.asked, "pub/x/*.txt7none/*7");
    EXPECT_FALSE(CFtpConnection::Connect("127.0.0.1", 1));
}

TEST(Wildcard, MatchesLikeWindows) {
    const WesternCodePage western;
    struct Row {
        const char *mask, *name;
        bool matches;
    };
    for (const Row& row :
         {Row{"*.*", "name", true}, Row{"*", ".x", true}, Row{"*.", "name", true}, Row{"*.", "a.b", false},
          Row{"a.*", "A", true}, Row{"a.*", "ab", false}, Row{"*.TXT", "x.txt", true}, Row{"*.txt", "x.txt.bak", false},
          Row{"?", "ab", false}, Row{"a?", "a", true}, Row{"a??.c", "a.c", true}, Row{"a?c", "a.c", false},
          Row{"*a*b*", "xxaxxbxx", true}, Row{"*a*b*", "xxbxxaxx", false}, Row{"", "", true}, Row{"", "a", false},
          Row{"\xE4*", "\xC4pfel", true}, Row{"x*.?z", "x.y.yz", true}})
        EXPECT_EQ(qv::platform::Wildcard(row.mask).Matches(row.name), row.matches) << row.mask << " " << row.name;
    const std::string stars = std::string(2000, '*') + "b", name(255, 'a');
    EXPECT_FALSE(qv::platform::Wildcard(stars).Matches(name));
}

}  // namespace
