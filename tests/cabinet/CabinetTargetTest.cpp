#include <gtest/gtest.h>

#include <cstring>

#include "cabinet/Manifest.h"
#include "platform/Path.h"
#include "qvcommon/Cabinet.h"
#include "tests/support/CabinetError.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Tree.h"

namespace {

namespace fs = std::filesystem;

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
    for (const auto& [name, accepted] : names) {
        const TempFolder folder;
        fs::create_directories(folder.Native("a/target"));
        const auto outside = [&] {
            auto tree = ReadTree(folder.Native());
            std::erase_if(tree, [](const auto& item) { return item.first.starts_with("a/target/"); });
            return tree;
        };
        for (const bool byManifest : {false, true}) {
            SCOPED_TRACE(std::string(name) + (byManifest ? " in the manifest" : ""));
            NamedCab::Make(
                folder,
                byManifest ? std::vector<std::string>{std::string("*ROOT*") + name} : std::vector<std::string>{},
                byManifest ? "" : name);
            const auto before = outside();
            CReadCab reader;
            if (byManifest) {
                reader.UseManifest(1);
                reader.AddSubstitution("*ROOT*", folder / "a\\target\\");
            } else {
                reader.SetDestPath(folder / "a\\target");
            }
            EXPECT_EQ(CabinetError([&] { reader.ReadCab(folder / "named.cab"); }), accepted ? 0 : 4);
            EXPECT_EQ(outside(), before);
            EXPECT_EQ(fs::is_empty(folder.Native("a/target")), !accepted);
            fs::remove_all(folder.Native("a/target"));
            fs::create_directories(folder.Native("a/target"));
        }
    }
}

TEST(CabinetTarget, HoldsSubstitutionsToTheTargetFolder) {
    const TempFolder folder;
    NamedCab::Make(folder, {"*ROOT*dir\\", "*ROOT*MEMBER"}, "");
    const auto unpack = [&](const char* destination, std::vector<std::pair<std::string, std::string>> pairs) {
        CReadCab reader;
        reader.UseManifest(1);
        if (destination) reader.SetDestPath(folder / destination);
        for (const auto& [source, target] : pairs) reader.AddSubstitution(source.c_str(), target.c_str());
        return CabinetError([&] { reader.ReadCab(folder / "named.cab"); });
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

TEST(CabinetTarget, FollowsNoLinkInTheTargetFolder) {
    const TempFolder folder;
    fs::create_directories(folder.Native("outside"));
    fs::create_directories(folder.Native("target"));
    folder.Write("victim", "untouched");
    std::error_code error;
    fs::create_directory_symlink(folder.Native("outside"), folder.Native("target/link"), error);
    if (!error) fs::create_symlink(folder.Native("victim"), folder.Native("target/m"), error);
    if (error) GTEST_SKIP() << "no links here: " << error.message();
    NamedCab::Make(folder, {"*ROOT*link\\m"}, "");
    EXPECT_EQ(CabinetError([&] { CReadCab::CabToDirectory(folder / "target", folder / "named.cab"); }), 11);
    EXPECT_TRUE(fs::is_empty(folder.Native("outside")));
    NamedCab::Make(folder, {"*ROOT*m"}, "");
    CReadCab::CabToDirectory(folder / "target", folder / "named.cab");
    EXPECT_EQ(folder.Read("victim"), "untouched");
    EXPECT_FALSE(fs::is_symlink(folder.Native("target/m")));
}

TEST(CabinetTarget, AsksForAManifestThatCanBeReadAndIsLongEnough) {
    const TempFolder folder;
    for (const std::vector<std::string>& manifest : {std::vector<std::string>{"*ROOT*only a folder\\"}, {}}) {
        NamedCab::Make(folder, manifest, "");
        EXPECT_EQ(CabinetError([&] { CReadCab::CabToDirectory(folder / "out", folder / "named.cab"); }), 4);
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

}  // namespace
