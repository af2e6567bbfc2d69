#include <gtest/gtest.h>

#include "qvcommon/XmlHelper.h"
#include "tests/support/ComCode.h"
#include "tests/support/Raised.h"
#include "tests/support/ScopedCodePage.h"
#include "tests/support/ScopedLocale.h"
#include "tests/support/Utf8Locale.h"

namespace {

using MSXML2::IXMLDOMDocument;
using MSXML2::IXMLDOMElement;
using MSXML2::IXMLDOMNode;

IXMLDOMElement Root(std::string_view xml) {
    IXMLDOMElement root = CXmlHelper::GetDocumentElement(xml);
    EXPECT_TRUE(root) << xml;
    return root;
}

CString TextAt(const IXMLDOMNode& element, const char* path, int index = 0) {
    CString text = "left alone";
    CXmlHelper::GetString(element, path, text, index);
    return text;
}

TEST(XmlHelper, ReadsTypedValues) {
    const struct {
        const char* text;
        int integer;
        double real;
        BOOL yes;
    } rows[] = {{"12abc", 12, 12, 0},
                {"-7.5e1x", -7, -75, 0},
                {" +3", 3, 3, 0},
                {"true", 0, 0, 1},
                {"TrUe", 0, 0, 1},
                {"yes", 0, 0, 0},
                {"1", 1, 1, 0},
                {"99999999999", 2147483647, 99999999999.0, 0},
                {"-99999999999", -2147483647 - 1, -99999999999.0, 0},
                {"1e-999", 1, 0, 0},
                {"0x10", 0, 0, 0},
                {"", 0, 0, 0},
                {"+-1", 0, 0, 0}};
    int integer = 77;
    double real = 77;
    BOOL yes = 77;
    COleDateTime date;
    for (const auto& row : rows) {
        const IXMLDOMElement root = Root(CString("<r><v>") + row.text + "</v></r>");
        EXPECT_EQ(CXmlHelper::GetInteger(root, "v", integer) + CXmlHelper::GetDouble(root, "v", real), 2);
        EXPECT_EQ(CXmlHelper::GetBool(root, "v", yes), 1);
        EXPECT_EQ(integer, row.integer) << row.text;
        EXPECT_EQ(real, row.real) << row.text;
        EXPECT_EQ(yes, row.yes) << row.text;
    }
    // What is missing leaves numbers unchanged, and gives false and an invalid date.
    integer = 77, real = 77, yes = 77;
    const IXMLDOMElement root = Root("<r><v>1</v></r>");
    EXPECT_EQ(CXmlHelper::GetInteger(root, "none", integer) + CXmlHelper::GetDouble(root, "v", real, 1), 0);
    EXPECT_EQ(CXmlHelper::GetBool(root, "none", yes) + CXmlHelper::GetDate(root, "none", date), 0);
    EXPECT_TRUE(integer == 77 && real == 77 && yes == 0);
    EXPECT_EQ(date.GetStatus(), COleDateTime::invalid);
}

TEST(XmlHelper, TypedValuesRoundtrip) {
    for (const char* const locale : {"C", "de_DE.UTF-8"}) {
        const ScopedLocale scope(locale);
        const IXMLDOMElement root = Root("<r><v a='1'/><v/></r>");
        COleDateTime date(2004, 5, 5, 14, 3, 7), invalid, back;
        invalid.SetStatus(COleDateTime::invalid);
        const auto set = [&](BOOL done, const char* path = "v", int index = 0) {
            EXPECT_EQ(done, 1);
            return TextAt(root, path, index);
        };
        EXPECT_EQ(set(CXmlHelper::SetString(root, "v", " <&>\r\na\nb\r\n", 1), "v", 1), "<&>\r\na\r\nb");
        EXPECT_EQ(set(CXmlHelper::SetInteger(root, "v", -2147483647 - 1)), "-2147483648");
        EXPECT_EQ(set(CXmlHelper::SetDouble(root, "v/@a", 0.1 + 0.2), "v/@a"), "0.3");
        EXPECT_EQ(set(CXmlHelper::SetDouble(root, "v", 1e20)), "1e+20");
        EXPECT_EQ(set(CXmlHelper::SetBool(root, "v", 7)), "TRUE");
        EXPECT_EQ(set(CXmlHelper::SetDate(root, "v", date)), "05 May 2004 14:03:07");
        EXPECT_TRUE(CXmlHelper::GetDate(root, "v", back) == 1 && back == date);
        EXPECT_EQ(set(CXmlHelper::SetDate(root, "v", invalid)), "INVALID");
        EXPECT_EQ(CXmlHelper::GetDate(root, "v", back), 1);
        EXPECT_EQ(back.GetStatus(), COleDateTime::invalid);
        const CString before = root.get_xml();
        EXPECT_EQ(CXmlHelper::SetString(root, "none", "x") + CXmlHelper::SetBool(root, "v", 1, 2), 0);
        EXPECT_EQ(root.get_xml(), before);
    }
}

TEST(XmlHelper, ReadsArraysItemByItem) {
    const IXMLDOMElement root = Root(
        "<r><v>1</v><g><w>a</w></g><v>2</v><g><w>b</w><w>c</w><x1>p</x1><x0>q</x0></g>"
        "<g><w>d</w><w>e</w><w>f</w></g><v>3</v><i><k>s</k></i><i/><i><k>t</k></i></r>");
    const std::vector<const char*> kinds[] = {
        {"v", "none", "g/w", "v[1]", ".//w"},
        {"v[%d]", "g/w[%d]", "g[%d]/w", "i[%d]/k", "g/x%d", "/r/v[%d]", "/v[%d]", "*[%d]", "v[. = %d + 1]"}};
    CStringArray items{"before"}, literal{"before"};
    for (const int mode : {0, 1})
        for (CString path : kinds[mode]) {
            EXPECT_EQ(CXmlHelper::GetStringArray(root, path, items, mode), 1);
            // Item by item, as it is defined.
            const CString pattern = path;
            CString text;
            for (int i = 0;; ++i) {
                if (mode) path.Format(qv::RuntimeFormat{pattern}, i);
                if (!CXmlHelper::GetString(root, path, text, mode ? 0 : i)) break;
                literal.Add(text);
            }
            EXPECT_EQ(items, literal) << pattern.AsStd();
        }
    EXPECT_EQ(items.GetSize(), 38);
    CStringArray none;
    EXPECT_EQ(CXmlHelper::GetStringArray(root, "none", none), 0);
    EXPECT_TRUE(Raised<CInvalidArgException>([&] { CXmlHelper::GetStringArray(root, "v", none, 1); }));
    // A path that finds the same nodes for every number ends as well.
    CStringArray once, often;
    EXPECT_EQ(CXmlHelper::GetStringArray(root, "v|i", once), 1);
    EXPECT_EQ(once, CStringArray{"1"});
    EXPECT_EQ(CXmlHelper::GetStringArray(root, "v[. != %d - 9]", often, 1), 1);
    EXPECT_LE(often.GetSize(), 1000);
    CUIntArray numbers;
    CDoubleArray reals;
    EXPECT_EQ(CXmlHelper::GetIntegerArray(root, "v", numbers), 1);
    EXPECT_EQ(CXmlHelper::GetBoolArray(root, "v", numbers), 1);
    EXPECT_EQ(CXmlHelper::GetDoubleArray(root, "v", reals), 1);
    EXPECT_EQ(numbers, (CUIntArray{1, 2, 3, 0, 0, 0}));
    EXPECT_EQ(reals, (CDoubleArray{1, 2, 3}));
}

TEST(XmlHelper, MakesPathsAndDeletesThem) {
    const IXMLDOMDocument document = CXmlHelper::CreateDocument();
    const struct {
        const char *path, *value, *made, *markup;
    } rows[] = {
        {"r", "", "r[0]", "<r/>"},
        {"r/item[ 1]", "<v/>", "r[0]/item[ 1]", "<r><item><v/></item><item><v/></item></r>"},
        {"/r/item[1]/w", "x", "/r[0]/item[1]/w[0]", "<r><item><v/></item><item><v/><w>x</w></item></r>"},
        {"r/item/@k", "a<b", "r[0]/item[0]/@k", "<r><item k=\"a&lt;b\"><v/></item><item><v/><w>x</w></item></r>"},
        {"r/item[2]/n/n", "y", "r[0]/item[2]/n[0]/n[0]",
         "<r><item k=\"a&lt;b\"><v/></item><item><v/><w>x</w></item><item>y<n>y<n>y</n></n></item></r>"}};
    for (const auto& [path, value, made, markup] : rows) {
        EXPECT_EQ(CXmlHelper::CreateXmlPath(document, path, value), made);
        EXPECT_EQ(document.get_xml(), markup);
    }
    const auto codeOf = [&](const char* path, const char* value) {
        return ComCodeOf([&] { CXmlHelper::CreateXmlPath(document, path, value); });
    };
    for (const char* const path : {"r/item[@k='none']", "r/item[999999999]", "second"})
        EXPECT_EQ(codeOf(path, ""), _com_error::kInvalidArg) << path;
    EXPECT_EQ(codeOf("r/q[1]", "</q><q>"), _com_error::kPointer);
    EXPECT_EQ(codeOf("r//x", ""), _com_error::kFail);
    EXPECT_EQ(document.get_xml(), std::end(rows)[-1].markup);
    std::string deleted;
    for (const char* const path : {"r/item[1]", "r/item/@k", "r/item/@k", "none", "r"})
        deleted += CXmlHelper::DeleteXmlPath(document, path).AsStd() + ' ';
    EXPECT_EQ(deleted, "/r[0]/item[1] /r[0]/item[0]/@k   /r[0] ");
    EXPECT_FALSE(document.get_documentElement());
}

TEST(XmlHelper, ReturnsNodePaths) {
    const IXMLDOMElement root = Root("<r>t<a/><b><a/>x<!--c-->y</b><b k='1'/></r>");
    struct Row {
        const char *path, *indexed, *fromB;
    };
    for (const Row& row :
         {Row{".", "/r[0]", "/r[0]"}, Row{"b[0]", "/r[0]/b[0]", ""}, Row{"b/a", "/r[0]/b[0]/a[0]", "a[0]"},
          Row{"b/text()[1]", "/r[0]/b[0]/text()[1]", "text()[1]"}, Row{"b[1]", "/r[0]/b[1]", "/r[0]/b[1]"},
          Row{"b/comment()", "/r[0]/b[0]/comment()[0]", "comment()[0]"}, Row{"b[1]/@k", "@k", "@k"}}) {
        const IXMLDOMNode node = root.selectSingleNode(row.path), b = root.selectSingleNode("b");
        EXPECT_EQ(CXmlHelper::GetIndexedPath(node), row.indexed);
        EXPECT_EQ(CXmlHelper::GetNodePath(node, b), row.fromB);
    }
    EXPECT_EQ(CXmlHelper::GetIndexedName(root.selectSingleNode("b[1]"), 1), "b[2]");
    EXPECT_EQ(CXmlHelper::GetElementMask(IXMLDOMElement(root.selectSingleNode("b/a"))), "/r/b/a");
    EXPECT_EQ(CXmlHelper::GetIndexedPath("/r/a[2]/b/@k"), "/r[0]/a[2]/b[0]/@k");
    EXPECT_EQ(CXmlHelper::GetIndexedPath("a[b/c='/']/."), "a[b/c='/']/.");
    EXPECT_EQ(CXmlHelper::GetTagIndex(0) + CXmlHelper::GetTagIndex(-5) + CXmlHelper::GetTagIndex(2), "[2]");
}

TEST(XmlHelper, InsertsFragments) {
    const IXMLDOMElement root = Root("<r><a/></r>");
    EXPECT_EQ(CXmlHelper::AppendXml(root, "<x><b>1</b>t<c/></x>", 0).get_nodeName(), "b");
    EXPECT_EQ(CXmlHelper::AppendXml(root, "<d k='1'/>", 1).get_nodeName(), "d");
    EXPECT_EQ(CXmlHelper::AppendXmlBeforeNode(root, "<x><e/><f/></x>", root.selectSingleNode("b"), 0).get_nodeName(),
              "e");
    EXPECT_FALSE(CXmlHelper::AppendXml(root, "<x/>", 0));
    EXPECT_FALSE(CXmlHelper::AppendXml(root, " \n", 1));
    EXPECT_EQ(root.get_xml(), "<r><a/><e/><f/><b>1</b>t<c/><d k=\"1\"/></r>");
    EXPECT_EQ(CXmlHelper::GetInnerXml(root), "<a/><e/><f/><b>1</b>t<c/><d k=\"1\"/>");
    EXPECT_EQ(CXmlHelper::GetInnerXml("<a> x<b>&amp;</b></a>"), " x<b>&amp;</b>");
    EXPECT_EQ(CXmlHelper::GetInnerXml("<a>"), "");
    const IXMLDOMNode b = root.selectSingleNode("b"), d = root.selectSingleNode("d");
    EXPECT_EQ(CXmlHelper::SetXml(root, "<d>new</d>tail<b>1</b><!--c--><z/>"), 1);
    EXPECT_EQ(root.get_xml(), "<r><d>new</d>tail<b>1</b><!--c--><z/></r>");
    EXPECT_EQ(root.selectSingleNode("b"), b);
    EXPECT_EQ(root.selectSingleNode("d"), d);
    EXPECT_EQ(CXmlHelper::SetXml(root, "<broken>"), 0);
    EXPECT_EQ(CXmlHelper::SetXml(root, "</x><x>"), 0);
    EXPECT_EQ(root.selectSingleNode("z").get_xml(), "<z/>");
    EXPECT_EQ(CXmlHelper::AddElement(root, "n", 12L).get_xml(), "<n>12</n>");
    EXPECT_EQ(CXmlHelper::AddElement(root, "n", "a<b").get_xml(), "<n>a&lt;b</n>");
    EXPECT_EQ(CXmlHelper::MakeElement("t", "a<b") + CXmlHelper::MakeElement("t", 5), "<t>a&lt;b</t><t>5</t>");
    CXmlHelper instance("<r>1</r>");
    EXPECT_EQ(instance.BuildXmlTree().get_text(), "1");
    instance.SetXml("<bad>");
    EXPECT_TRUE(instance.GetXml() == "<bad>" && !instance.BuildXmlTree());
}

TEST(XmlHelper, ReadsAndSetsAttributes) {
    const IXMLDOMElement root = Root("<r n='12x' t='a&amp;b'><i k='1'/><i/><j k='3'/><i k='2'/></r>");
    UINT number = 5;
    CString text = "left";
    EXPECT_EQ(CXmlHelper::GetAttribute(root, "none", number) + CXmlHelper::GetAttribute(root, "none", text), 0);
    EXPECT_TRUE(number == 5 && text == "left");
    EXPECT_EQ(CXmlHelper::GetAttribute(root, "n", number) + CXmlHelper::GetAttribute(root, "t", text), 2);
    EXPECT_TRUE(number == 12 && text == "a&b");
    CXmlHelper::SetAttribute(root, "n", 4294967295u);
    CXmlHelper::AddAttribute(root, "new", "<\"'\n>");
    EXPECT_EQ(CXmlHelper::GetAttribute(root, "n", number) + CXmlHelper::GetAttribute(root, "new", text), 2);
    EXPECT_TRUE(number == 4294967295u && text == "<\"'\n>");
    CStringArray texts;
    CUIntArray numbers;
    EXPECT_EQ(CXmlHelper::GetAttributeArray(root, "i", "k", texts), 1);
    EXPECT_EQ(CXmlHelper::GetAttributeArray(root, "*", "k", numbers), 1);
    EXPECT_EQ(texts, (CStringArray{"1", "2"}));
    EXPECT_EQ(numbers, (CUIntArray{1, 3, 2}));
}

struct Derived : CXmlHelper {
    using CXmlHelper::CleanInvalidChars, CXmlHelper::DirtyInvalidChars;
};

TEST(XmlHelper, EscapesAndUnescapes) {
    const WesternCodePage western;
    if (!western) GTEST_SKIP() << "the system has no code page 1252";
    struct Row {
        const char *text, *clean, *attribute;
    };
    for (const Row& row : {Row{"a<b & c", "a&lt;b &amp; c", "a&lt;b &amp; c"},
                           Row{"\x93q\x9F\xA0\x7F", "&#147;q&#159;\xA0\x7F", "&#147;q&#159;\xA0\x7F"},
                           Row{"\"'>", "\"'&gt;", "&quot;&apos;&gt;"}, Row{"&lt;", "&amp;lt;", "&amp;lt;"},
                           Row{"\x01\t", "\x01\t", "\x01\t"}, Row{"", "", ""}}) {
        EXPECT_EQ(CXmlHelper::Clean(row.text), row.clean);
        EXPECT_EQ(CXmlHelper::CleanAttribute(row.text), row.attribute);
        EXPECT_EQ(CXmlHelper::Dirty(row.clean), row.text);
        EXPECT_EQ(CXmlHelper::DirtyAttribute(row.attribute), row.text);
    }
    EXPECT_EQ(CXmlHelper::Dirty("a\nb&#127;&#160;&#1470;&amp;#147;&quot;"), "a\r\nb&#127;&#160;&#1470;&#147;&quot;");
    CString characters = "a\nb<&#147;&amp;\x94";
    Derived::DirtyInvalidChars(characters);
    EXPECT_EQ(characters, "a\nb<\x93&amp;\x94");
    Derived::CleanInvalidChars(characters);
    EXPECT_EQ(characters, "a\nb<&#147;&amp;&#148;");
    const Utf8Locale utf8;
    if (utf8) {
        EXPECT_EQ(CXmlHelper::Clean("\xE2\x82\xAC\x93"), "\xE2\x82\xAC&#147;");
    }
}

}  // namespace
