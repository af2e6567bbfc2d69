#include <gmock/gmock.h>

#include "platform/DosTime.h"
#include "platform/Path.h"
#include "platform/Text.h"
#include "qvcommon/Cabinet.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/framework/File.h"
#include "tests/support/CabinetError.h"
#include "tests/support/Noise.h"
#include "tests/support/SystemFaults.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Tree.h"

namespace {

namespace fs = std::filesystem;
using Tree = std::map<std::string, std::string>;

void MakeTree(const TempFolder& folder) {
    fs::create_directories(folder.Native("in/sub/deeper"));
    fs::create_directories(folder.Native("in/empty"));
    folder.Write("in/same.txt", "one");
    folder.Write("in/sub/same.txt", "two");
    folder.Write("in/sub/deeper/same.txt", std::string(100000, 'x') + "three");
    folder.Write("in/zero", "");
    folder.Write("in/a & b.txt", "named with an escape");
}

TEST(Cabinet, PacksATreeAndUnpacksItAnywhere) {
    const TempFolder folder;
    MakeTree(folder);
    CMakeCab::DirectoryToCab(folder / "in", folder / "pack.zip", 1);
    EXPECT_FALSE(folder.Has("pack.zip"));
    CReadCab::CabToDirectory(folder / "out/new", folder / "pack.cab");
    EXPECT_EQ(ReadTree(folder.Native("out/new")), ReadTree(folder.Native("in")));
    CMakeCab::DirectoryToCab(folder / "in", folder / "flat", 0);
    CReadCab::CabToDirectory(folder / "flat out", folder / "flat.cab");
    EXPECT_EQ(
        ReadTree(folder.Native("flat out")),
        (Tree{{"same.txt", "one"}, {"zero", ""}, {"a & b.txt", "named with an escape"}, {"sub/", ""}, {"empty/", ""}}));
    EXPECT_EQ(ReadTree(folder.Native()).count("pack.cab"), 1u);
    for (const auto& [name, content] : ReadTree(folder.Native())) EXPECT_EQ(name.find(".qv"), name.npos) << name;
}

TEST(Cabinet, LeavesMembersTheirBareNamesWithoutTheManifest) {
    const TempFolder folder;
    MakeTree(folder);
    folder.Write("in/\xC3\xA4.txt", "umlaut");
    CMakeCab::DirectoryToCab(folder / "in", folder / "p", 1);
    CReadCab reader;
    reader.SetDestPath(folder / "out");
    QvCabinetInfo info;
    ASSERT_NE(reader.GetCabInfo(folder / "p.cab", info), 0);
    EXPECT_EQ(info.setId, 5193);
    EXPECT_EQ(info.files, 7);
    EXPECT_EQ(info.folders, 1);
    EXPECT_EQ(reader.GetCabInfo(folder / "in/zero", info), 0);
    reader.ReadCab(folder / "p.cab");
    const Tree out = ReadTree(folder.Native("out"));
    EXPECT_EQ(out.size(), 5u) << "one of the three of one name";
    const bool hasUmlaut = !qv::platform::HasDriveLetters() || qv::platform::FromWide(u"\u00E4") != "?";
    EXPECT_EQ(folder.Read("out/\xC3\xA4.txt"), hasUmlaut ? "umlaut" : "");
    EXPECT_THAT(out.at("same.txt"), ::testing::AnyOf("one", "two", std::string(100000, 'x') + "three"));
    const auto manifest =
        std::find_if(out.begin(), out.end(), [](const auto& item) { return item.first.starts_with("CabMan"); });
    ASSERT_NE(manifest, out.end());
    EXPECT_EQ(manifest->first.size(), 16u);
    EXPECT_THAT(manifest->second, ::testing::HasSubstr("    <ITEM>*ROOT*a &amp; b.txt</ITEM>"));
}

TEST(Cabinet, KeepsTimesAndAttributes) {
    const TempFolder folder;
    for (const qv::platform::DosTime& time : {qv::platform::DosTime{1 << 5 | 1, 0},
                                              {(2024 - 1980) << 9 | 2 << 5 | 29, 13 << 11 | 59 << 5 | 29},
                                              {127 << 9 | 12 << 5 | 31, 23 << 11 | 59 << 5 | 29}}) {
        const auto seconds = qv::platform::FromDosTime(time);
        folder.Write("stamped", "x");
        CFileStatus status;
        ASSERT_TRUE(CFile::GetStatus(folder / "stamped", status));
        status.m_mtime = seconds;
        status.m_attribute |= CFile::readOnly;
        CFile::SetStatus(folder / "stamped", status);
        CMakeCab::DirectoryToCab(folder.Native().string().c_str(), folder / "t", 0);
        CReadCab reader;
        reader.SetDestPath(folder / "out");
        for (int times = 0; times < 2; ++times) reader.ReadCab(folder / "t.cab");  // over a read-only file too
        CFileStatus restored;
        ASSERT_TRUE(CFile::GetStatus(folder / "out\\stamped", restored));
        EXPECT_EQ(restored.m_mtime, status.m_mtime);
        EXPECT_TRUE(restored.m_attribute & CFile::readOnly);
        for (const char* const name : {"stamped", "out\\stamped"}) ASSERT_TRUE(CFileUtils::MakeWritable(folder / name));
        fs::remove_all(folder.Native("out"));
        fs::remove(folder.Native("t.cab"));
    }
}

TEST(Cabinet, TellsWhatFailedAndLeavesNothingHalf) {
    using qv::platform::CallKind;
    using qv::platform::FileCause;
    const TempFolder folder;
    MakeTree(folder);
    CMakeCab maker;
    EXPECT_EQ(CabinetError([&] { maker.Commit(); }), 6) << "not begun";
    maker.SetDestPath(folder / "nowhere");
    maker.SetName("n");
    EXPECT_EQ(CabinetError([&] { maker.CreateNewCab(); }), 4);
    maker.SetDestPath(folder / "");
    maker.CreateNewCab();
    EXPECT_EQ(CabinetError([&] { maker.AddFile(folder / "missing"); }), 1);
    EXPECT_FALSE(folder.Has("n.cab"));
    EXPECT_EQ(CabinetError([&] { CReadCab::CabToDirectory(folder / "out", folder / "in\\same.txt"); }), 2);
    const auto none = Raised<CVorbexException>([&] { CReadCab::CabToDirectory(folder / "out", folder / "none.cab"); });
    ASSERT_TRUE(none);
    EXPECT_EQ(none->GetText(), "Cabinet not found");
    CMakeCab::DirectoryToCab(folder / "in", folder / "p", 1);
    const Tree before = ReadTree(folder.Native());
    for (const CallKind call : {CallKind::Write, CallKind::Read, CallKind::Close, CallKind::Rename}) {
        // Windows says all there is to say of written data before its file is closed.
        if (call == CallKind::Close && qv::platform::HasDriveLetters()) continue;
        fs::create_directory(folder.Native("out"));
        {
            const SystemFaults faults(call == CallKind::Rename ? SystemFaults::AlwaysNaming(FileCause::DiskFull)
                                                               : SystemFaults::Always(call, FileCause::DiskFull));
            EXPECT_NE(CabinetError([&] {
                          CReadCab reader;
                          reader.SetDestPath(folder / "out");
                          reader.ReadCab(folder / "p.cab");
                      }),
                      0);
        }
        EXPECT_TRUE(fs::is_empty(folder.Native("out")));
        fs::remove_all(folder.Native("out"));
    }
    EXPECT_EQ(ReadTree(folder.Native()), before);
}

TEST(Cabinet, WritesASetThatItReadsAsOne) {
    class SmallCab : public CMakeCab {
    public:
        int placed = 0;

    private:
        DWORD GetMediaSize() const override { return 4000; }
        int FilePlaced(const QvCabinetDescription&, const char*, DWORD, BOOL) override {
            ++placed;
            return 0;
        }
    };
    const TempFolder folder;
    MakeTree(folder);
    folder.Write("in/sub/noise", Noise(20000, 1));
    SmallCab maker;
    maker.Pack(folder / "in", folder / "s", 1);
    EXPECT_TRUE(folder.Has("s.cab") && folder.Has("s1.cab") && folder.Has("s5.cab"));
    EXPECT_GT(maker.placed, 7);
    CReadCab::CabToDirectory(folder / "out", folder / "s.cab");
    EXPECT_EQ(ReadTree(folder.Native("out")), ReadTree(folder.Native("in")));
    folder.Write("s2.cab", folder.Read("s3.cab"));
    EXPECT_EQ(CabinetError([&] { CReadCab::CabToDirectory(folder / "out", folder / "s.cab"); }), 10);
    fs::remove(folder.Native("s2.cab"));
    EXPECT_EQ(CabinetError([&] { CReadCab::CabToDirectory(folder / "out", folder / "s.cab"); }), 1);
}

TEST(Cabinet, PassesOnWhatAnOverriddenMemberRaises) {
    class Cancelled : public CMakeCab {
        long Status(UINT, DWORD, DWORD) override { ThrowQvCancelException(); }
    };
    class Refused : public CMakeCab {
        long Status(UINT, DWORD, DWORD) override { return -1; }
    };
    const TempFolder folder;
    MakeTree(folder);
    EXPECT_TRUE(Raised<CVorbexCancelException>([&] { Cancelled().Pack(folder / "in", folder / "c", 1); }));
    EXPECT_EQ(CabinetError([&] { Refused().Pack(folder / "in", folder / "c", 1); }), 7);
    for (const auto& [name, content] : ReadTree(folder.Native())) EXPECT_TRUE(name.starts_with("in/")) << name;
}

}  // namespace
