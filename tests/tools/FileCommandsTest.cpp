#include <gtest/gtest.h>

#include "tests/support/TempFolder.h"
#include "tests/support/Tool.h"
#include "tests/support/Tree.h"

namespace {

std::string NativeLine(std::string line) {
    std::replace(line.begin(), line.end(), '/', static_cast<char>(std::filesystem::path::preferred_separator));
    return line;
}

TEST(FileCommands, DoWhatTheySay) {
    const TempFolder folder;
    MakeTree(folder.Native("in"), {"a.txt", "b.doc", "one/x.txt", "two/y.txt"});
    const CString in = folder / "in", out = folder / "out";
    EXPECT_EQ(RunTool({"find", in, "--mask", "*.TXT", "--recurse"}).output,
              NativeLine("0\ta.txt\n0\tone/x.txt\n1\ttwo/y.txt\n"));
    EXPECT_EQ(RunTool({"find", in, "--folders", "only"}).output, "0\tone\n0\ttwo\n");
    EXPECT_EQ(ToolStatus({"copy", in, out, "--later-only"}), 0);
    EXPECT_EQ(ReadTree(folder.Native("out")), ReadTree(folder.Native("in")));
    EXPECT_EQ(ToolStatus({"delete", out, "--keep-root"}), 0);
    EXPECT_TRUE(folder.Has("out") && std::filesystem::is_empty(folder.Native("out")));
    EXPECT_EQ(ToolStatus({"delete", out}), 0);
    EXPECT_FALSE(folder.Has("out"));
    folder.Write("crc", "123456789");
    EXPECT_EQ(RunTool({"crc", folder / "crc"}).output, "CBF43926  " + folder.Native("crc").string() + "\n");
    EXPECT_EQ(ToolStatus({"backup", folder / "crc"}), 0);
    EXPECT_EQ(folder.Read("crc.bak"), "123456789");
    EXPECT_EQ(ToolStatus({"log", folder / "log", "a line"}), 0);
    EXPECT_EQ(ToolStatus({"log", folder / "log", "stamped", "--stamp"}), 0);
    EXPECT_EQ(folder.Read("log").substr(0, 8), "a line\r\n");
    EXPECT_EQ(folder.Read("log").find("stamped\r\n"), folder.Read("log").size() - 9);
}

TEST(FileCommands, SayWhatTheyCannotDo) {
    const TempFolder folder;
    MakeTree(folder.Native(), {"in/a", "in/b", "out/a/", "file"});
    EXPECT_EQ(ToolStatus({"copy", folder / "in", folder / "out"}), 1);
    EXPECT_EQ(folder.Read("out/b"), "in/b");
    EXPECT_EQ(RunTool({"crc", folder / "none", folder / "file"}).output.size(), 11u + (folder / "file").AsStd().size());
    EXPECT_EQ(ToolStatus({"copy", folder / "file", folder / "x"}), 1);
    EXPECT_EQ(ToolStatus({"find", folder / "in", "--folders", "some"}), 2);
    EXPECT_EQ(ReadTree(folder.Native()).size(), 7u);
}

}  // namespace
