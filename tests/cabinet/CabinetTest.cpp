#include <gmock/gmock.h>

#include <cstring>
#include <functional>
#include <map>
#include <random>

#include "cabinet/Manifest.h"
#include "platform/DosTime.h"
#include "platform/Path.h"
#include "qvcommon/Cabinet.h"
#include "qvcommon/Exceptions.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/framework/File.h"
#include "tests/support/FileFaults.h"
#include "tests/support/Raised.h"
#include "tests/support/TempFolder.h"

namespace {

namespace fs = std::filesystem;
using Tree = std::map<std::string, std::string>;  // folders end in "/"

Tree TreeAt(const fs::path& root) {
    Tree tree;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root)) {
        const std::string name = entry.path().lexically_relative(root).generic_string();
        if (entry.is_directory() && !entry.is_symlink()) {
            tree[name + "/"];
            continue;
        }
        std::ostringstream bytes;
        bytes << std::ifstream(entry.path(), std::ios::binary).rdbuf();
        tree[name] = bytes.str();
    }
    return tree;
}

void MakeTree(const TempFolder& folder) {
    fs::create_directories(folder.Native("in/sub/deeper"));
    fs::create_directories(folder.Native("in/empty"));
    folder.Write("in/same.txt", "one");
    folder.Write("in/sub/same.txt", "two");
    folder.Write("in/sub/deeper/same.txt", std::string(100000, 'x') + "three");
    folder.Write("in/zero", "");
    folder.Write("in/a & b.txt", "named with an escape");
}

int Error(const std::function<void()>& action) {
    const auto error = Raised<CVorbexException>(action);
    if (!error) return 0;
    EXPECT_EQ(error->GetSeverity(), 16);
    EXPECT_FALSE(error->GetText().IsEmpty());
    return static_cast<int>(error->GetCode());
}

TEST(Cabinet, PacksATreeAndUnpacksItAnywhere) {
    const TempFolder folder;
    MakeTree(folder);
    CMakeCab::DirectoryToCab(folder / "in", folder / "pack.zip", 1);
    EXPECT_FALSE(folder.Has("pack.zip"));
    CReadCab::CabToDirectory(folder / "out/new", folder / "pack.cab");
    EXPECT_EQ(TreeAt(folder.Native("out/new")), TreeAt(folder.Native("in")));
    CMakeCab::DirectoryToCab(folder / "in", folder / "flat", 0);
    CReadCab::CabToDirectory(folder / "flat out", folder / "flat.cab");
    EXPECT_EQ(
        TreeAt(folder.Native("flat out")),
        (Tree{{"same.txt", "one"}, {"zero", ""}, {"a & b.txt", "named with an escape"}, {"sub/", ""}, {"empty/", ""}}));
    EXPECT_EQ(TreeAt(folder.Native()).count("pack.cab"), 1u);
    for (const auto& [name, content] : TreeAt(folder.Native())) EXPECT_EQ(name.find(".qv"), name.npos) << name;
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
    const Tree out = TreeAt(folder.Native("out"));
    EXPECT_EQ(out.size(), 5u) << "one of the three of one name";
    EXPECT_EQ(folder.Read("out/\xC3\xA4.txt"), "umlaut");
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
        if (static_cast<std::time_t>(seconds) != seconds) continue;  // beyond the file status's clock of 32 bits
        folder.Write("stamped", "x");
        CFileStatus status;
        ASSERT_TRUE(CFile::GetStatus(folder / "stamped", status));
        status.m_mtime = static_cast<std::time_t>(seconds);
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
    using qv::FileCall;
    using qv::platform::FileCause;
    const TempFolder folder;
    MakeTree(folder);
    CMakeCab maker;
    EXPECT_EQ(Error([&] { maker.Commit(); }), 6) << "not begun";
    maker.SetDestPath(folder / "nowhere");
    maker.SetName("n");
    EXPECT_EQ(Error([&] { maker.CreateNewCab(); }), 4);
    maker.SetDestPath(folder / "");
    maker.CreateNewCab();
    EXPECT_EQ(Error([&] { maker.AddFile(folder / "missing"); }), 1);
    EXPECT_FALSE(folder.Has("n.cab"));
    EXPECT_EQ(Error([&] { CReadCab::CabToDirectory(folder / "out", folder / "in\\same.txt"); }), 2);
    const auto none = Raised<CVorbexException>([&] { CReadCab::CabToDirectory(folder / "out", folder / "none.cab"); });
    ASSERT_TRUE(none);
    EXPECT_EQ(none->GetText(), "Cabinet not found");
    CMakeCab::DirectoryToCab(folder / "in", folder / "p", 1);
    const Tree before = TreeAt(folder.Native());
    for (const FileCall call : {FileCall::Write, FileCall::Read, FileCall::Close, FileCall::Rename}) {
        fs::create_directory(folder.Native("out"));
        {
            const FileFaults faults(FileFaults::Always(call, FileCause::DiskFull));
            EXPECT_NE(Error([&] {
                          CReadCab reader;
                          reader.SetDestPath(folder / "out");
                          reader.ReadCab(folder / "p.cab");
                      }),
                      0);
        }
        EXPECT_TRUE(fs::is_empty(folder.Native("out")));
        fs::remove_all(folder.Native("out"));
    }
    EXPECT_EQ(TreeAt(folder.Native()), before);
}

/// Members of any name.
class NamedCab : public CMakeCab {
public:
    static void Make(const TempFolder& folder, const std::vector<std::string>& manifest, const std::string& member) {
        folder.Write("m", "content");
        NamedCab maker;
        maker.SetDestPath(folder / "");
        maker.SetName("named");
        maker.CreateNewCab();
        CStringArray entries;
        for (const std::string& entry : manifest) entries.Add(entry);
        if (!manifest.empty()) maker.AddManifest(entries);
        maker.AddFile(folder / "m");
        maker.Commit();
        if (member.empty()) return;
        // The name, "m", is where the list of members ends.
        std::string bytes = folder.Read("named.cab");
        const std::size_t place = bytes.find(std::string("m\0", 2), 36 + 8 + 16);
        bytes.replace(place, 1, member);
        const auto grow = [&](std::size_t at) {
            std::uint32_t value = 0;
            std::memcpy(&value, &bytes[at], 4);
            value += static_cast<std::uint32_t>(member.size() - 1);
            std::memcpy(&bytes[at], &value, 4);
        };
        grow(8);
        grow(36);
        folder.Write("named.cab", bytes);
    }
};

TEST(Cabinet, WritesNothingOutsideItsFolder) {
    const bool windows = qv::platform::HasDriveLetters();
    const std::pair<const char*, bool> names[] = {
        {"plain", true},           {"sub\\name", true},    {"sub/name", true},
        {".\\name", true},         {"..\\evil", false},    {"sub\\..\\..\\evil", false},
        {"../evil", false},        {"\\evil", false},      {"/evil", false},
        {"C:\\evil", false},       {"C:evil", false},      {"\\\\srv\\share\\e", false},
        {"\\\\?\\C:\\e", false},   {"..", false},          {"sub\\\\name", false},
        {"NUL", !windows},         {"com1.txt", !windows}, {"ab:stream", !windows},
        {"dots..", !windows},      {"blank ", !windows},   {"CON.a.b\\x", !windows},
        {"sub\\lpt9 .x", !windows}};
    for (const auto& [name, accepted] : names) {
        const TempFolder folder;
        fs::create_directories(folder.Native("a/target"));
        const auto outside = [&] {
            Tree tree = TreeAt(folder.Native());
            std::erase_if(tree, [](const auto& item) { return item.first.starts_with("a/target/"); });
            return tree;
        };
        for (const bool byManifest : {false, true}) {
            SCOPED_TRACE(std::string(name) + (byManifest ? " in the manifest" : ""));
            NamedCab::Make(
                folder,
                byManifest ? std::vector<std::string>{std::string("*ROOT*") + name} : std::vector<std::string>{},
                byManifest ? "" : name);
            const Tree before = outside();
            CReadCab reader;
            if (byManifest) {
                reader.UseManifest(1);
                reader.AddSubstitution("*ROOT*", folder / "a\\target\\");
            } else
                reader.SetDestPath(folder / "a\\target");
            EXPECT_EQ(Error([&] { reader.ReadCab(folder / "named.cab"); }), accepted ? 0 : 4);
            EXPECT_EQ(outside(), before);
            EXPECT_EQ(fs::is_empty(folder.Native("a/target")), !accepted);
            fs::remove_all(folder.Native("a/target"));
            fs::create_directories(folder.Native("a/target"));
        }
    }
}

TEST(Cabinet, HoldsSubstitutionsToTheTargetFolder) {
    const TempFolder folder;
    NamedCab::Make(folder, {"*ROOT*dir\\", "*ROOT*MEMBER"}, "");
    const auto unpack = [&](const char* destination, std::vector<std::pair<std::string, std::string>> pairs) {
        CReadCab reader;
        reader.UseManifest(1);
        if (destination) reader.SetDestPath(folder / destination);
        for (const auto& [source, target] : pairs) reader.AddSubstitution(source.c_str(), target.c_str());
        return Error([&] { reader.ReadCab(folder / "named.cab"); });
    };
    const std::string to = (folder / "to\\").AsStd(), other = (folder / "other\\").AsStd();
    EXPECT_EQ(unpack(nullptr, {{"*ROOT*", to}, {"MEMBER", "named"}}), 0);
    EXPECT_TRUE(folder.Has("to/named"));
    EXPECT_EQ(unpack(nullptr, {{"*ROOT*", to}, {"\\to\\", "\\other\\"}}), 0) << "a later pair moves the folder itself";
    EXPECT_TRUE(folder.Has("other/MEMBER") && folder.Has("other/dir"));
    EXPECT_EQ(unpack(nullptr, {{"MEMBER", "..\\x"}, {"*ROOT*", to}}), 4);
    EXPECT_EQ(unpack("to", {{"*ROOT*", other}}), 4) << "a destination folder is the only one";
    EXPECT_EQ(unpack("to", {{"*ROOT*", to}}), 0);
}

TEST(Cabinet, FollowsNoLinkInTheTargetFolder) {
    const TempFolder folder;
    fs::create_directories(folder.Native("outside"));
    fs::create_directories(folder.Native("target"));
    folder.Write("victim", "untouched");
    std::error_code error;
    fs::create_directory_symlink(folder.Native("outside"), folder.Native("target/link"), error);
    if (!error) fs::create_symlink(folder.Native("victim"), folder.Native("target/m"), error);
    if (error) GTEST_SKIP() << "no links here: " << error.message();
    NamedCab::Make(folder, {"*ROOT*link\\m"}, "");
    EXPECT_EQ(Error([&] { CReadCab::CabToDirectory(folder / "target", folder / "named.cab"); }), 11);
    EXPECT_TRUE(fs::is_empty(folder.Native("outside")));
    NamedCab::Make(folder, {"*ROOT*m"}, "");
    CReadCab::CabToDirectory(folder / "target", folder / "named.cab");
    EXPECT_EQ(folder.Read("victim"), "untouched");
    EXPECT_FALSE(fs::is_symlink(folder.Native("target/m")));
}

TEST(Cabinet, AsksForAManifestThatCanBeReadAndIsLongEnough) {
    const TempFolder folder;
    for (const std::vector<std::string>& manifest : {std::vector<std::string>{"*ROOT*only a folder\\"}, {}}) {
        NamedCab::Make(folder, manifest, "");
        EXPECT_EQ(Error([&] { CReadCab::CabToDirectory(folder / "out", folder / "named.cab"); }), 4);
        EXPECT_FALSE(folder.Has("out/m"));
    }
    using qv::cabinet::ReadManifest;
    for (const char* const end : {"\n", "\r\n"}) {
        const std::string line = end;
        const auto entries =
            ReadManifest("<MANIFEST>" + line + "<ITEM>*ROOT*a&amp;&#10;</ITEM>" + line + "</MANIFEST>" + line);
        ASSERT_TRUE(entries);
        EXPECT_EQ(*entries, (CStringArray{"*ROOT*a&\n"}));
    }
    EXPECT_TRUE(ReadManifest("")->IsEmpty());
    EXPECT_TRUE(ReadManifest("<MANIFEST></MANIFEST>")->IsEmpty());
    for (const char* const text : {"content", "<A></A>", "<MANIFEST>", "</MANIFEST>", "<A></B>", "<"})
        EXPECT_FALSE(ReadManifest(text)) << text;
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
    std::mt19937 random(1);
    std::string noise(20000, '\0');
    for (char& c : noise) c = static_cast<char>(random());
    folder.Write("in/sub/noise", noise);
    SmallCab maker;
    maker.Pack(folder / "in", folder / "s", 1);
    EXPECT_TRUE(folder.Has("s.cab") && folder.Has("s1.cab") && folder.Has("s5.cab"));
    EXPECT_GT(maker.placed, 7);
    CReadCab::CabToDirectory(folder / "out", folder / "s.cab");
    EXPECT_EQ(TreeAt(folder.Native("out")), TreeAt(folder.Native("in")));
    folder.Write("s2.cab", folder.Read("s3.cab"));
    EXPECT_EQ(Error([&] { CReadCab::CabToDirectory(folder / "out", folder / "s.cab"); }), 10);
    fs::remove(folder.Native("s2.cab"));
    EXPECT_EQ(Error([&] { CReadCab::CabToDirectory(folder / "out", folder / "s.cab"); }), 1);
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
    EXPECT_EQ(Error([&] { Refused().Pack(folder / "in", folder / "c", 1); }), 7);
    for (const auto& [name, content] : TreeAt(folder.Native())) EXPECT_TRUE(name.starts_with("in/")) << name;
}

}  // namespace
