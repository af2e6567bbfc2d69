#include <gtest/gtest.h>

#include "platform/Path.h"
#include "tests/support/Metafile.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Tool.h"

namespace {

using namespace qv::test;

TEST(EmfCommand, ListsRecordsAndTheHeader) {
    const TempFolder folder;
    folder.Write("a.emf", SmallMetafile('#'));
    const ToolAnswer answer = RunTool({"emf", "list", folder / "a.emf"});
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.output,
              "1\tEMR_HEADER\t134\nbounds\t0 0 99 49\nframe\t0 0 2000 1000\ndevice\t1024 768\nmillimetres\t320 240\n"
              "description\tMaker|Name\n2\tEMR_SETWINDOWORGEX\t16\n3\tEMR_EXTCREATEFONTINDIRECTW\t332\n"
              "4\tEMR_EXTTEXTOUTW\t88\n5\tEMR_EXTCREATEPEN\t52\n6\tEMR_RECTANGLE\t24\n7\tEMR_EOF\t20\n");
    const std::string objects = RunTool({"emf", "list", "-", "--json"}, SmallMetafile('#')).output;
    EXPECT_EQ(objects.substr(0, objects.find('\n', objects.find('\n') + 1)),
              "{\"number\":1,\"name\":\"EMR_HEADER\",\"size\":134,\"bounds\":[0,0,99,49],\"frame\":[0,0,2000,1000],"
              "\"device\":[1024,768],\"millimetres\":[320,240],\"description\":\"Maker|Name\"}\n"
              "{\"number\":2,\"name\":\"EMR_SETWINDOWORGEX\",\"size\":16}");
    folder.Write("cut.emf", SmallMetafile('#').substr(0, 500));
    EXPECT_EQ(RunTool({"emf", "list", folder / "cut.emf"}).output.substr(0, 16), answer.output.substr(0, 16));
    for (const char* const broken : {"cut.emf", "none.emf"})
        EXPECT_EQ(ToolStatus({"emf", "list", folder / broken}), 1) << broken;
}

TEST(EmfCommand, NormalisesDeterministicallyAndAtomically) {
    const TempFolder folder;
    for (const char rubbish : {'#', '$'}) {
        folder.Write("in.emf", SmallMetafile(static_cast<char16_t>(rubbish)) + "more");
        EXPECT_EQ(ToolStatus({"emf", "normalise", folder / "in.emf", folder / "in.emf"}), 0);
        EXPECT_EQ(folder.Read("in.emf"), SmallMetafile(0));
    }
    EXPECT_EQ(RunTool({"emf", "normalise", "-", "-"}, SmallMetafile('#')).output, SmallMetafile(0));
    EXPECT_EQ(RunTool({"emf", "normalise", "-", "-"}, SmallMetafile('#').substr(0, 500)).output, "");
    folder.Write("cut.emf", SmallMetafile('#').substr(0, 500));
    EXPECT_EQ(ToolStatus({"emf", "normalise", folder / "cut.emf", folder / "in.emf"}), 1);
    EXPECT_EQ(folder.Read("in.emf"), SmallMetafile(0));
    EXPECT_EQ(ToolStatus({"emf", "normalise", folder / "in.emf", folder / "none/out.emf"}), 1);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Native()), {}), 2);
    if (qv::platform::HasDriveLetters()) return;
    // The new version is made in the folder of its target: the current folder is not writable.
    const CStringArray elsewhere = {"-c", "cd /proc && exec \"$0\" emf normalise \"$1\" \"$2\"", CString(ToolPath()),
                                    CString(folder.Native("in.emf").string()), CString(folder.Native("b\\c").string())};
    EXPECT_EQ(RunProgram("sh", elsewhere).status, 0);
    EXPECT_EQ(folder.Read("b\\c"), SmallMetafile(0));
}

// Metafiles of other programs; tests/data/emf/README.md says how they were made, and that the cleaned ones look the same.
TEST(EmfCommand, WalksMetafilesOfOtherPrograms) {
    const std::filesystem::path data = std::filesystem::path(QV_SOURCE_DIR) / "tests/data/emf";
    if (!exists(data)) GTEST_SKIP() << "the source tree is not at " << QV_SOURCE_DIR;
    const struct {
        const char* name;
        std::vector<std::size_t> cleared;  // the hatches of its pens
    } files[] = {{"inkscape.emf", {500, 776, 1176}}, {"libreoffice.emf", {}}};
    for (const auto& [name, cleared] : files) {
        const TempFolder folder;
        copy_file(data / name, folder.Native(name));
        std::string expected = folder.Read(name);
        for (const std::size_t at : cleared) expected[at] = 0;
        EXPECT_EQ(ToolStatus({"emf", "normalise", folder / name, folder / "out.emf"}), 0);
        EXPECT_TRUE(folder.Read("out.emf") == expected) << name;
    }
}

}  // namespace
