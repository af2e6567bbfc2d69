#include <gmock/gmock.h>

#include <cstdlib>

#include "platform/Path.h"
#include "tests/support/CabinetOf.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Tool.h"

namespace {

TEST(ArchiveCommands, PackListAndUnpack) {
    const TempFolder folder;
    std::filesystem::create_directories(folder.Native("in/sub"));
    folder.Write("in/a.txt", "hello");
    folder.Write("in/sub/b.txt", "there");
    EXPECT_EQ(ToolStatus({"pack", folder / "in", folder / "p.x"}), 0);
    EXPECT_EQ(ToolStatus({"unpack", folder / "p.cab", folder / "out"}), 0);
    EXPECT_EQ(folder.Read("out/sub/b.txt"), "there");
    const ToolAnswer list = RunTool({"list", folder / "p.cab"});
    EXPECT_EQ(list.status, 0);
    EXPECT_THAT(list.output, ::testing::HasSubstr("CabMan"));
    EXPECT_THAT(list.output, ::testing::ContainsRegex("5\t20..-..-.. ..:..:..\tb.txt"));
    EXPECT_EQ(ToolStatus({"pack", "--no-recurse", folder / "in", folder / "flat.cab"}), 0);
    EXPECT_EQ(ToolStatus({"unpack", "--no-manifest", folder / "flat.cab", folder / "bare"}), 0);
    EXPECT_EQ(folder.Read("bare/a.txt"), "hello");
    EXPECT_FALSE(folder.Has("bare/b.txt"));
    EXPECT_EQ(ToolStatus({"list", folder / "in\\a.txt"}), 1);
    // Of another program: as it is. 16 frames of 32 KB in a few bytes are no reason to refuse it.
    std::vector<std::string> frames(16, "q");
    using namespace qv::cabinet;
    folder.Write("other.cab", qv::test::CabinetOf({{kStored, {"ab"}, {{"x", 2}}},
                                                   {kQuantum | 10 << 8, frames, {{"zeros", 16 * kBlockSize}}}}));
    EXPECT_THAT(RunTool({"list", folder / "other.cab"}).output, ::testing::ContainsRegex("524288\t2025.*\tzeros"));
    EXPECT_EQ(ToolStatus({"unpack", folder / "other.cab", folder / "other"}), 1);
    EXPECT_EQ(folder.Read("other/x"), "ab");
}

TEST(ArchiveCommands, NamesDoNotCommandTheTerminal) {
    const TempFolder folder;
    const std::string name = "\x1B[31mred\n0\x7F\xC2\x9B\xC3\xA9";
    folder.Write("a.cab", qv::test::CabinetOf({{qv::cabinet::kStored, {"ab"}, {{name, 2}}}}));
    const CString archive = folder / "a.cab";
    EXPECT_THAT(RunTool({"list", archive}).output, ::testing::HasSubstr(name));
    if (qv::platform::HasDriveLetters() || std::system("script -qec true /dev/null"))
        GTEST_SKIP() << "no terminals here";
    const std::string list = ToolPath() + " list " + folder.Native("a.cab").string();
    EXPECT_THAT(RunProgram("script", {"-qec", CString("LC_ALL=C " + list), "/dev/null"}).output,
                ::testing::HasSubstr("\t\\033[31mred\\n0\\177\\302\\233\xC3\xA9\r\n"));
}

}  // namespace
