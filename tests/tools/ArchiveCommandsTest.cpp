#include <gmock/gmock.h>

#include <cstdlib>

#include "platform/Path.h"
#include "tests/support/CabinetOf.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Tool.h"

namespace {

TEST(ArchiveCommands, ReadArchivesOfOtherPrograms) {
    const TempFolder folder;
    // 16 frames of 32 KB in a few bytes are no reason to refuse it.
    std::vector<std::string> frames(16, "q");
    using namespace qv::cabinet;
    folder.Write("other.cab", qv::test::CabinetOf({{kStored, {"ab"}, {{"x", 2}}},
                                                   {kQuantum | 10 << 8, frames, {{"zeros", 16 * kBlockSize}}}}));
    EXPECT_THAT(RunTool({"list", folder / "other.cab"}).output, ::testing::ContainsRegex("524288\t2025.*\tzeros"));
    EXPECT_EQ(ToolStatus({"unpack", folder / "other.cab", folder / "other"}), 1);
    EXPECT_EQ(folder.Read("other/x"), "ab");
}

TEST(ArchiveCommands, EscapeControlCharactersForTerminals) {
    const TempFolder folder;
    const std::string name = "\x1B[31mred\n0\x7F\xC2\x9B\xC3\xA9";
    folder.Write("a.cab", qv::test::CabinetOf({{qv::cabinet::kStored, {"ab"}, {{name, 2}}}}));
    const CString archive = folder / "a.cab";
    EXPECT_THAT(RunTool({"list", archive}).output, ::testing::HasSubstr(name));
    if (qv::platform::HasDriveLetters() || std::system("script -qec true /dev/null"))
        GTEST_SKIP() << "no terminals here";
    std::filesystem::create_directory(folder.Native("names"));
    folder.Write("names/" + name, "");
    for (const auto& [command, place, line] : {std::tuple("list ", "a.cab", ":00\t"), {"find ", "names", "0\t"}}) {
        const std::string list = "LC_ALL=C " + ToolPath() + " " + command + folder.Native(place).string();
        EXPECT_THAT(RunProgram("script", {"-qec", CString(list), "/dev/null"}).output,
                    ::testing::HasSubstr(line + std::string("\\033[31mred\\n0\\177\\302\\233\xC3\xA9\r\n")));
    }
}

}  // namespace
