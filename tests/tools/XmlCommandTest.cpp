#include <gtest/gtest.h>

#include <thread>

#include "qvcommon/XmlHelper.h"
#include "tests/support/ScopedLocale.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Tool.h"

namespace {

TEST(XmlCommand, PreservesRestOfFileByteForByte) {
    const char* const kRich =
        "<?xml version='1.0'?>\r\n<!DOCTYPE r [<!-- ]> -->\r\n<?p ]> ?><!ATTLIST x y CDATA '>'>]>\r\n<!--<x>-->\r\n"
        "<r>\r\n <w></w><e  /><x>1</x>\r\n <x k='&#65;&lt;' n = \"2\"\r\n>&#246;<![CDATA[</x>]]></x>\r\n "
        "<x>a</x></r>\r\n";
    struct Row {
        const char *before, *path, *value, *from, *to;
    };
    const TempFolder folder;
    for (const Row& row : {
             Row{kRich, "r/x", "<7>", "<x>1</x>", "<x>&lt;7&gt;</x>"},
             Row{kRich, "r/w", "new", "<w></w>", "<w>new</w>"},
             Row{kRich, "r/e", "new", "<e  />", "<e>new</e>"},
             Row{kRich, "r/x[2]", "", "<x>a</x>", "<x></x>"},
             Row{kRich, "r/x[1]/@k", "it's", "'&#65;&lt;'", "\"it's\""},
             Row{kRich, "r/x[1]/@n", "3", "\"2\"", "\"3\""},
             Row{"<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n<!--\xE4-->\n<r>\n  <a>\xF6</a>\n</r>", "r/a", "x",
                 "<a>\xF6<", "<a>x<"},
             Row{"\xEF\xBB\xBF<r q='>'><a/>\r</r>", "r/a", "x", "<a/>", "<a>x</a>"},
         }) {
        folder.Write("a.xml", row.before);
        EXPECT_EQ(ToolStatus({"xml", "set", folder / "a.xml", row.path, row.value}), 0) << row.path;
        std::string expected = row.before;
        expected.replace(expected.find(row.from), std::string(row.from).size(), row.to);
        EXPECT_EQ(folder.Read("a.xml"), expected) << row.path;
    }
    // An element with more than a text: the whole document is saved again.
    folder.Write("a.xml", "<r><a>b<!--c--></a></r>");
    EXPECT_EQ(ToolStatus({"xml", "set", folder / "a.xml", "r/a", "x"}), 0);
    EXPECT_NE(folder.Read("a.xml").find("<r><a>x</a></r>"), std::string::npos);
    folder.Write("a.xml", "<r>\n<a></r>");
    EXPECT_EQ(ToolStatus({"xml", "set", folder / "a.xml", "r", "x"}), 1);
    EXPECT_EQ(folder.Read("a.xml"), "<r>\n<a></r>");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Native()), {}), 1);
}

// Several users change one document at a time, and others in the same folder.
TEST(XmlCommand, ConcurrentUpdatesAreNotLost) {
    constexpr int kRounds = 10;
    const TempFolder folder;
    const auto change = [&](const char* file, const char* element) {
        for (int i = 0; i < kRounds; ++i) {
            CString path;
            path.Format("%s/%s[%d]", "r", element, i);
            EXPECT_EQ(ToolStatus({"xml", "create", folder / file, path, file}), 0);
        }
    };
    std::thread users[] = {std::thread(change, "a.xml", "x"), std::thread(change, "a.xml", "y"),
                           std::thread(change, "b.xml", "x"), std::thread(change, "c.xml", "x")};
    for (std::thread& user : users) user.join();
    for (const char* const file : {"a.xml", "b.xml", "c.xml"}) {
        const auto document = CXmlHelper::CreateDocument();
        ASSERT_TRUE(document.load(folder.Read(file)));
        const auto values = document.selectNodes("r/*");
        EXPECT_EQ(values.size(), *file == 'a' ? 2u * kRounds : 1u * kRounds);
        for (const auto& value : values) EXPECT_EQ(value.get_text(), file);
    }
}

TEST(XmlCommand, CreatesTargetOfDanglingLink) {
    const TempFolder folder;
    std::error_code refused;
    std::filesystem::create_symlink("target.xml", folder.Native("link.xml"), refused);
    if (refused) GTEST_SKIP() << "no links here: " << refused.message();
    EXPECT_EQ(ToolStatus({"xml", "create", folder / "link.xml", "r/a", "x"}), 0);
    EXPECT_TRUE(std::filesystem::is_symlink(folder.Native("link.xml")));
    EXPECT_NE(folder.Read("target.xml").find("<r><a>x</a></r>"), std::string::npos);
}

// Texts are kept byte for byte in services, containers and terminals.
TEST(XmlCommand, PreservesBytesInAnyEnvironment) {
    if (qv::platform::HasDriveLetters()) GTEST_SKIP() << "the code page does not follow the environment here";
    const TempFolder folder;
    const CString file(folder.Native("a.xml").string());
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
    EXPECT_EQ(RunProgram("env", {"LC_ALL=de_DE.UTF-8", qv, "xml", "set", file, "a/b", "1.5", "--type=double"}).status,
              0);
    const char* const western = "LC_ALL=en_US.ISO-8859-1";
    if (!ScopedLocale("en_US.ISO-8859-1")) GTEST_SKIP() << "no single-byte locale is installed";
    const CStringArray set = {western, qv, "xml", "set", file, "a/b", "Gr\366\337e"};
    EXPECT_EQ(RunProgram("env", set).status, 0);
    EXPECT_NE(folder.Read("a.xml").find("<b>Gr\u00F6\u00DFe</b>"), std::string::npos);
    EXPECT_EQ(RunProgram("env", {western, qv, "text", "title-case"}, "\xC4h \xE9T\xC9").output, "\xC4h \xC9t\xE9");
    const CString out(folder.Native("out").string());
    EXPECT_EQ(RunProgram("env", {western, qv, "report", CString(folder.Native().string()), "-o", out, "--title",
                                 "Gr\366\337e"})
                  .status,
              0);
    EXPECT_NE(folder.Read("out/index.html").find("<title>Gr\u00F6\u00DFe"), std::string::npos);
}

}  // namespace
