#include <gtest/gtest.h>

#include "qvcommon/XmlHelper.h"
#include "tests/support/ScopedCodePage.h"
#include "tests/support/ScopedLocale.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Tool.h"

namespace {

TEST(XmlCommand, GetsSetsAndCreates) {
    const TempFolder folder;
    const CString file = folder / "a.xml";
    struct Row {
        CStringArray arguments;
        int status;
        const char* output;
    };
    for (const Row& row :
         {Row{{"get", file, "r"}, 1, ""}, Row{{"create", file, "r/item[1]", "a<b"}, 0, "r[0]/item[1]\n"},
          Row{{"get", file, "r/item[1]"}, 0, "a<b\n"}, Row{{"get", file, "r/item[2]"}, 1, ""},
          Row{{"set", file, "r/item[0]", "TruE", "--type", "bool"}, 0, ""}, Row{{"get", file, "r/item"}, 0, "TRUE\n"},
          Row{{"set", file, "r/item[2]", "x"}, 1, ""}, Row{{"set", file, "r/item", "x1", "--type", "integer"}, 1, ""},
          Row{{"set", file, "r/item", "2004-05-05 14:03", "--type", "date"}, 0, ""},
          Row{{"get", file, "r/item", "--type", "date"}, 0, "05 May 2004 14:03:00\n"},
          Row{{"get", file, "r/item", "--type", "integer"}, 0, "5\n"},
          Row{{"create", file, "r/@k", "v"}, 0, "r[0]/@k\n"}, Row{{"get", file, "r/@k"}, 0, "v\n"},
          Row{{"get", file, "r["}, 1, ""}, Row{{"create", file, "other"}, 1, ""},
          Row{{"get", file, "r", "--type", "odd"}, 2, ""}}) {
        CStringArray arguments{"xml"};
        arguments.Append(row.arguments);
        const ToolAnswer answer = RunTool(arguments);
        EXPECT_EQ(answer.status, row.status)
            << row.arguments[0].AsStd() << " " << row.arguments[2 % row.arguments.GetSize()].AsStd();
        EXPECT_EQ(answer.output, row.output);
    }
}

TEST(XmlCommand, LeavesTheRestOfTheFile) {
    const WesternCodePage western;
    const TempFolder folder;
    const std::string before = "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n<!--\xE4-->\n<r>\n  <a>\xF6</a>\n</r>";
    folder.Write("b.xml", before);
    EXPECT_EQ(ToolStatus({"xml", "set", folder / "b.xml", "r/a", "x"}), 0);
    const std::string after = folder.Read("b.xml");
    const auto document = CXmlHelper::CreateDocument();
    document.put_preserveWhiteSpace(true);
    EXPECT_TRUE(document.load(after));
    CString markup = document.get_xml();
    markup.Remove('\n');
    EXPECT_EQ(markup, "<!--\xE4--><r>  <a>x</a></r>") << after;
    folder.Write("bad.xml", "<r>\n<a></r>");
    EXPECT_EQ(ToolStatus({"xml", "set", folder / "bad.xml", "r", "x"}), 1);
    EXPECT_EQ(folder.Read("bad.xml"), "<r>\n<a></r>");
    std::size_t files = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder.Native())) ++files;
    EXPECT_EQ(files, 2u);
}

TEST(XmlCommand, CreatesTheFileThatALinkLeadsTo) {
    const TempFolder folder;
    std::error_code refused;
    std::filesystem::create_symlink("target.xml", folder.Native("link.xml"), refused);
    if (refused) GTEST_SKIP() << "no links here: " << refused.message();
    EXPECT_EQ(ToolStatus({"xml", "create", folder / "link.xml", "r/a", "x"}), 0);
    EXPECT_TRUE(std::filesystem::is_symlink(folder.Native("link.xml")));
    EXPECT_NE(folder.Read("target.xml").find("<r><a>x</a></r>"), std::string::npos);
}

// A service, a container, a user's terminal: what goes in comes out, byte for byte.
TEST(XmlCommand, KeepsTextsInEveryEnvironment) {
    if (qv::platform::HasDriveLetters()) GTEST_SKIP() << "the code page does not follow the environment here";
    const TempFolder folder;
    const CString file = folder / "a.xml";
    const std::string qv = ToolPath();
    const CStringArray utf8[] = {{"-i"}, {"LC_ALL=C"}, {"LC_ALL=POSIX"}, {"-i", "LANG=C.UTF-8"}};
    for (CStringArray environment : utf8) {
        environment.Append({qv, "xml", "create", file, "a/b", "Gr\u00F6\u00DFe \u65E5"});
        EXPECT_EQ(RunProgram("env", environment).status, 0);
        EXPECT_NE(folder.Read("a.xml").find("<b>Gr\u00F6\u00DFe \u65E5</b>"), std::string::npos)
            << environment[0].AsStd();
    }
    EXPECT_EQ(RunProgram("env", {"-i", qv, "xml", "get", file, "a/b"}).output, "Gr\u00F6\u00DFe \u65E5\n");
    EXPECT_EQ(RunProgram("env", {"-i", qv, "text", "title-case"}, "\u00C4h \u00E9T\u00C9").output,
              "\u00C4h \u00C9t\u00E9");
    const char* const western = "LC_ALL=en_US.ISO-8859-1";
    if (!ScopedLocale("en_US.ISO-8859-1")) GTEST_SKIP() << "no single-byte locale is installed";
    EXPECT_EQ(RunProgram("env", {western, qv, "xml", "set", file, "a/b",
                                 "Gr\xF6\xDF"
                                 "e"})
                  .status,
              0);
    EXPECT_NE(folder.Read("a.xml").find("<b>Gr\u00F6\u00DFe</b>"), std::string::npos);
    EXPECT_EQ(RunProgram("env", {western, qv, "text", "title-case"}, "\xC4h \xE9T\xC9").output, "\xC4h \xC9t\xE9");
}

}  // namespace
