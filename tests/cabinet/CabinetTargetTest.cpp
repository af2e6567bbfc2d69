#include <gtest/gtest.h>

#include "cabinet/Manifest.h"
#include "platform/Path.h"
#include "qvcommon/Cabinet.h"
#include "tests/support/CabinetError.h"
#include "tests/support/CabinetOf.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Tree.h"

namespace {

namespace fs = std::filesystem;
using namespace qv::cabinet;

/// Makes "a.cab" of a manifest, unless it is empty, and one member.
void MakeArchive(const TempFolder& folder, const CStringArray& manifest, const std::string& member = "m") {
    const std::string list = manifest.IsEmpty() ? "" : ManifestText(manifest).AsStd();
    std::vector<std::pair<std::string, std::size_t>> members = {{"CabManABCDEF.xml", list.size()}, {member, 7}};
    if (list.empty()) members.erase(members.begin());
    folder.Write("a.cab", qv::test::CabinetOf({{kStored, {list + "content"}, members}}));
}

TEST(CabinetTarget, WritesNothingOutsideItsFolder) {
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
    for (const auto& [name, accepted] : names)
        for (const bool byManifest : {false, true}) {
            SCOPED_TRACE(std::string(name) + (byManifest ? " in the manifest" : ""));
            const TempFolder folder;
            fs::create_directories(folder.Native("a/target"));
            const auto outside = [&] {
                auto tree = ReadTree(folder.Native());
                std::erase_if(tree, [](const auto& item) { return item.first.starts_with("a/target/"); });
                return tree;
            };
            CReadCab reader;
            if (byManifest) {
                MakeArchive(folder, {CString("*ROOT*") + name});
                reader.UseManifest(1);
                reader.AddSubstitution("*ROOT*", folder / "a\\target\\");
            } else {
                MakeArchive(folder, {}, name);
                reader.SetDestPath(folder / "a\\target");
            }
            const auto before = outside();
            EXPECT_EQ(CabinetError([&] { reader.ReadCab(folder / "a.cab"); }), accepted ? 0 : 4);
            EXPECT_EQ(outside(), before);
            EXPECT_EQ(fs::is_empty(folder.Native("a/target")), !accepted);
        }
}

TEST(CabinetTarget, ConfinesSubstitutionsToTargetFolder) {
    const TempFolder folder;
    MakeArchive(folder, {"*ROOT*dir\\", "*ROOT*MEMBER"});
    const auto unpack = [&](const char* destination, std::vector<std::pair<CString, CString>> pairs) {
        CReadCab reader;
        reader.UseManifest(1);
        if (destination) reader.SetDestPath(folder / destination);
        for (const auto& [source, target] : pairs) reader.AddSubstitution(source, target);
        return CabinetError([&] { reader.ReadCab(folder / "a.cab"); });
    };
    const CString to = folder / "to\\", other = folder / "other\\";
    EXPECT_EQ(unpack(nullptr, {{"*ROOT*", to}, {"MEMBER", "named"}}), 0);
    EXPECT_TRUE(folder.Has("to/named"));
    EXPECT_EQ(unpack(nullptr, {{"*ROOT*", to}, {"\\to\\", "\\other\\"}}), 0) << "a later pair moves the folder itself";
    EXPECT_TRUE(folder.Has("other/MEMBER") && folder.Has("other/dir"));
    EXPECT_EQ(unpack(nullptr, {{"MEMBER", "..\\x"}, {"*ROOT*", to}}), 4);
    EXPECT_EQ(unpack("to", {{"*ROOT*", other}}), 4) << "a destination folder is the only one";
    EXPECT_EQ(unpack("to", {{"*ROOT*", to}}), 0);
}

TEST(CabinetTarget, DoesNotFollowLinksInTargetFolder) {
    const TempFolder folder;
    fs::create_directories(folder.Native("outside"));
    fs::create_directories(folder.Native("target"));
    folder.Write("victim", "untouched");
    std::error_code error;
    fs::create_directory_symlink(folder.Native("outside"), folder.Native("target/link"), error);
    if (!error) fs::create_symlink(folder.Native("victim"), folder.Native("target/m"), error);
    if (error) GTEST_SKIP() << "no links here: " << error.message();
    MakeArchive(folder, {"*ROOT*link\\m"});
    EXPECT_EQ(CabinetError([&] { CReadCab::CabToDirectory(folder / "target", folder / "a.cab"); }), 11);
    EXPECT_TRUE(fs::is_empty(folder.Native("outside")));
    MakeArchive(folder, {"*ROOT*m"});
    CReadCab::CabToDirectory(folder / "target", folder / "a.cab");
    EXPECT_EQ(folder.Read("victim"), "untouched");
    EXPECT_FALSE(fs::is_symlink(folder.Native("target/m")));
}

TEST(CabinetTarget, RequiresValidAndCompleteManifest) {
    const TempFolder folder;
    for (const CStringArray& manifest : {CStringArray{"*ROOT*only a folder\\"}, {}}) {
        MakeArchive(folder, manifest);
        EXPECT_EQ(CabinetError([&] { CReadCab::CabToDirectory(folder / "out", folder / "a.cab"); }), 4);
        EXPECT_FALSE(folder.Has("out/m"));
    }
    for (const std::string end : {"", "\n", "\r\n"}) {
        const std::string item = "<ITEM>*ROOT*a&amp;&#10;</ITEM>";
        EXPECT_EQ(ReadManifest("<MANIFEST>" + end + item + end + "</MANIFEST>" + end), (CStringArray{"*ROOT*a&\n"}));
    }
    EXPECT_TRUE(ReadManifest("")->IsEmpty());
    EXPECT_TRUE(ReadManifest("<MANIFEST></MANIFEST>")->IsEmpty());
    for (const char* const text : {"content", "<A></A>", "<MANIFEST>", "</MANIFEST>", "<A></B>", "<"})
        EXPECT_FALSE(ReadManifest(text)) << text;
}

}  // namespace
