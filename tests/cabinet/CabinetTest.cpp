#include <gmock/gmock.h>

#include <limits>

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

void MakeInput(const TempFolder& folder) {
    fs::create_directories(folder.Native("in/empty"));
    MakeTree(folder.Native(), {"in/same.txt", "in/sub/same.txt", "in/a & b.txt"});
    fs::create_directory(folder.Native("in/sub/deeper"));
    folder.Write("in/sub/deeper/same.txt", std::string(100000, 'x') + "three");
    folder.Write("in/zero", "");
}

TEST(Cabinet, RoundtripsTree) {
    const TempFolder folder;
    MakeInput(folder);
    CMakeCab::DirectoryToCab(folder / "in", folder / "pack.zip", 1);
    EXPECT_FALSE(folder.Has("pack.zip"));
    CReadCab::CabToDirectory(folder / "out/new", folder / "pack.cab");
    EXPECT_EQ(ReadTree(folder.Native("out/new")), ReadTree(folder.Native("in")));
    CMakeCab::DirectoryToCab(folder / "in", folder / "flat", 0);
    CReadCab::CabToDirectory(folder / "flat out", folder / "flat.cab");
    EXPECT_EQ(
        ReadTree(folder.Native("flat out")),
        (Tree{{"same.txt", "in/same.txt"}, {"zero", ""}, {"a & b.txt", "in/a & b.txt"}, {"sub/", ""}, {"empty/", ""}}));
    CMakeCab::DirectoryToCab(folder / "in/empty", folder / "nothing", 1);
    CReadCab::CabToDirectory(folder / "a\\out", folder / "nothing.cab");
    EXPECT_TRUE(fs::is_directory(folder.Native("a/out")));
    for (const auto& [name, content] : ReadTree(folder.Native())) EXPECT_EQ(name.find(".qv"), name.npos) << name;
}

TEST(Cabinet, UsesBareMemberNamesWithoutManifest) {
    const TempFolder folder;
    MakeInput(folder);
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
    EXPECT_THAT(out.at("same.txt"),
                ::testing::AnyOf("in/same.txt", "in/sub/same.txt", std::string(100000, 'x') + "three"));
    const auto manifest = out.lower_bound("CabMan");
    ASSERT_NE(manifest, out.end());
    EXPECT_THAT(manifest->first, ::testing::AllOf(::testing::StartsWith("CabMan"), ::testing::SizeIs(16)));
    EXPECT_THAT(manifest->second, ::testing::HasSubstr("    <ITEM>*ROOT*a &amp; b.txt</ITEM>"));
}

TEST(Cabinet, PreservesTimesAndAttributes) {
    EXPECT_EQ(qv::platform::ToDosTime(std::numeric_limits<std::int64_t>::max()).date >> 9, 2107 - 1980);
    for (const qv::platform::DosTime& time : {qv::platform::DosTime{1 << 5 | 1, 0},
                                              {(2024 - 1980) << 9 | 2 << 5 | 29, 13 << 11 | 59 << 5 | 29},
                                              {127 << 9 | 12 << 5 | 31, 23 << 11 | 59 << 5 | 29}}) {
        const TempFolder folder;
        folder.Write("stamped", "x");
        CFileStatus status;
        ASSERT_TRUE(CFile::GetStatus(folder / "stamped", status));
        status.m_mtime = qv::platform::FromDosTime(time);
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
    }
}

TEST(Cabinet, OneReaderUnpacksSeveralArchives) {
    const TempFolder folder;
    for (const char* const name : {"a", "b"}) {
        folder.Write("in/" + std::string(name), name + Noise(100'000, 1));
        CMakeCab::DirectoryToCab(folder / "in", folder / name, 0);
        fs::remove_all(folder.Native("in"));
    }
    CReadCab reader;
    for (const char* const name : {"a", "b"}) reader.Unpack(folder / "to" + name, folder / name + ".cab");
    EXPECT_TRUE(folder.Has("toa/a") && folder.Has("tob/b") && !folder.Has("toa/b"));
    // A dry run does not read the members.
    std::string damaged = folder.Read("b.cab");
    damaged.back() = static_cast<char>(damaged.back() ^ 1);
    folder.Write("b.cab", damaged);
    reader.SetDryRun(1);
    reader.Unpack(folder / "dry", folder / "b.cab");
    EXPECT_FALSE(folder.Has("dry"));
}

TEST(Cabinet, FileOfSkippedMemberIsClosedOnce) {
    /// Skips members after their files have been opened.
    struct Skipping : CReadCab {
        int NotifyCopyFile(QvCabinetNotification& member) override {
            const int opened = CReadCab::NotifyCopyFile(member);
            skips = member.name.Left(6) != "CabMan";
            return skips ? 0 : opened;
        }
        std::atomic<bool> skips = false;
    };
    const TempFolder folder;
    folder.Write("in/a", "a");
    CMakeCab::DirectoryToCab(folder / "in", folder / "p", 0);
    Skipping reader;
    std::ofstream others[3];  // one of them gets the member's handle, after that and the cabinets' are closed
    int closed = 0;
    const SystemFaults faults([&](const SystemFaults::Call& call) {
        if (reader.skips && call.kind == qv::platform::CallKind::Close && ++closed == 4)
            for (std::ofstream& other : others) other.open(folder.Native("other"));
        return SystemFaults::Fault{};
    });
    reader.Unpack(folder / "out", folder / "p.cab");
    for (std::ofstream& other : others) EXPECT_TRUE(other << "still open" << std::flush);
}

TEST(Cabinet, PropagatesErrorsFromOverrides) {
    class Cancelled : public CMakeCab {
        long Status(UINT, DWORD, DWORD) override { ThrowQvCancelException(); }
    };
    class Refused : public CMakeCab {
        long Status(UINT, DWORD, DWORD) override { return -1; }
    };
    const TempFolder folder;
    MakeInput(folder);
    EXPECT_TRUE(Raised<CVorbexCancelException>([&] { Cancelled().Pack(folder / "in", folder / "c", 1); }));
    EXPECT_EQ(CabinetError([&] { Refused().Pack(folder / "in", folder / "c", 1); }), 7);
    for (const auto& [name, content] : ReadTree(folder.Native())) EXPECT_TRUE(name.starts_with("in/")) << name;
}

}  // namespace
