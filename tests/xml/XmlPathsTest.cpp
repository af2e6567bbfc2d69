// Documents, paths and the nodes they select, the same with every DOM.
#include <gtest/gtest.h>

#include <map>

#include "qvcommon/XmlHelper.h"
#include "tests/support/ComCode.h"
#include "tests/support/ScopedCodePage.h"
#include "xml/dom/Path.h"

namespace {

using MSXML2::IXMLDOMDocument;
using MSXML2::IXMLDOMElement;
using MSXML2::IXMLDOMNode;

constexpr const char* kTree =
    "<r><a>1</a><b i='x'>2</b><a>3<c>in0</c><c>in1</c></a><a k=\"v\">4</a><p><q/></p><p><q>deep</q><q>er</q></p></r>";
constexpr const char* kLanguages = "<r xml:lang='de'><a xml:lang='en-GB'>1</a><a>2</a></r>";
constexpr const char* kNames = "<a xmlns='u' xmlns:p='v'><p:b p:k='7'>1</p:b><b>2</b></a>";

const struct {
    const char *document, *text;  // null: no node
    std::vector<const char*> paths;
} kTexts[] = {
    // Indexes count from 0; a step without an index takes the first node that leads on.
    {kTree, "1", {"a", "a[0]"}},
    {kTree, "in0", {"a/c", "/r/a[1]/c", "a[c='in1']/c[0]", "child::a[1]/c"}},
    {kTree, "in1", {"a[1]/c[1]", "//c[1]"}},
    {kTree, "4", {"a[2]", "a[ 2 ]", "a[@k='v']", "a[@k][0]", "a[2][@k]", "a[not(c)][1]", "a[last()]", "a[.='4']"}},
    {kTree, "er", {"p/q[1]", ".//q[1]"}},
    {kTree, "2", {"*[1]", "/r[0]/b[0]", "zz | b"}},
    {kTree, "x", {"*[1]/@i", "b/@i"}},
    {kTree, "v", {"a/@k"}},
    {kTree, "3", {"a[1]/text()"}},
    {kTree, "3in0in1", {"a[c and c='in1']", "a[count(c) * 2 = 4]"}},
    {kTree, "123in0in14deeper", {"..", "/"}},
    {kTree, nullptr, {"a[3]", "a[99999999999]", "a[0]/c", "@i", "/a"}},
    {"<and><or>1</or></and>", "1", {"or"}},
    {"<r><and>x</and><div>y</div></r>", "x", {"and[. = 'x' and ../div = 'y']"}},
    // White space in texts
    {"<r><a>  x  y\n z </a></r>", "x  y\n z", {"a"}},
    {"<r> <a> </a> </r>", "", {"a"}},
    {"<r><a xml:space='preserve'> x </a></r>", " x ", {"a"}},
    {"<r><a>&#32;x&#32;</a></r>", "x", {"a"}},
    {"<r><a>l1\r\nl2\rl3</a></r>", "l1\nl2\nl3", {"a"}},
    {"<r a=' x  y\n'/>", " x  y ", {"@a"}},
    {"<r> <b> x</b><c>y</c>  z </r>", "xy  z", {"."}},
    // References, CDATA, comments
    {"<r>&lt;&amp;&quot;&apos;&gt;&#65;&#x42;</r>", "<&\"'>AB", {"."}},
    {"<r>x<![CDATA[ <&> ]]>y</r>", "x <&> y", {"."}},
    {"<r><![CDATA[ p ]]></r>", " p ", {"."}},
    {"<r>x<!--c-->y<?pi z?>w</r>", "xyw", {"."}},
    // Names are compared as written, with the prefix
    {kNames, "2", {"b", "//b"}},
    {kNames, "1", {"p:b", "/a/p:b[@p:k='7']", "*[name()='p:b']", "*[local-name(.)='b']", "*[namespace-uri(.)='v']"}},
    {kNames, "7", {"p:b/@p:k"}},
    {"<r xmlns='u' a='1'/>", "1", {"/r/@a"}},
    // The language of an element is that of the nearest element that names one
    {kLanguages, "1", {"a[lang('en')]", "a[lang('EN-gb')]"}},
    {kLanguages, "2", {"a[not(lang('en'))]", "a[lang('de')]"}},
    {kLanguages, nullptr, {"a[lang('e')]", "a[lang('en-US')]", "a[lang('')]"}},
};

TEST(XmlPaths, SameResultsOnEverySystem) {
    for (const auto& [document, text, paths] : kTexts)
        for (const char* const path : paths) {
            SCOPED_TRACE(path);
            const IXMLDOMElement root = CXmlHelper::GetDocumentElement(document);
            ASSERT_TRUE(root) << document;
            const IXMLDOMNode node = root.selectSingleNode(path);
            ASSERT_EQ(!node, !text);
            if (!text) continue;
            CString expected(text), read;
            EXPECT_EQ(node.get_text(), expected);
            EXPECT_EQ(CXmlHelper::GetString(root, path, read), 1);
            expected.Replace("\n", "\r\n");
            EXPECT_EQ(read, expected);
        }
}

// Simple paths are walked, others are evaluated: both find the same nodes in the same order.
TEST(XmlPaths, WalkingMatchesEvaluation) {
    const IXMLDOMElement root = CXmlHelper::GetDocumentElement(kTree);
    for (const char* const path : {"a", "a/c", "a[1]/c", "p/q", "p/q[1]", "*", "*/*", "*/c[1]", "a/@k", "*/@i",
                                   "/r/*/q", "/*/p[1]/q", "p[1]/q[0]", "x/y"}) {
        ASSERT_TRUE(qv::dom::ReadSimplePath(path)) << path;
        const auto walked = root.selectNodes(path), evaluated = root.selectNodes(CString(path) + " | zz");
        ASSERT_EQ(walked.size(), evaluated.size()) << path;
        for (std::size_t i = 0; i < walked.size(); ++i) EXPECT_EQ(walked[i].get_xml(), evaluated[i].get_xml()) << path;
    }
}

TEST(XmlPaths, InvalidPathsRaise) {
    const IXMLDOMElement root = CXmlHelper::GetDocumentElement(kTree);
    CStringArray paths = {"",   "a[",  "a[[", "[",  "@",    "a['",      "a b",     "a/", "//",  "!",
                          "$x", "f()", "a[1", "a]", "a::b", "count(a)", "a[')']]", "]",  "a[(]"};
    paths.Append({std::string(100, '('), std::string(100000, 'a') + "|b", std::string_view("a\0", 2)});
    for (const CString& path : paths)
        EXPECT_EQ(ComCodeOf([&] { root.selectSingleNode(path); }), _com_error::kFail) << path.AsStd().substr(0, 40);
}

TEST(XmlPaths, UseTheCodePage) {
    for (const int page : {1252, 65001}) {
        const ScopedCodePage scope(page);
        const bool utf8 = qv::platform::CurrentCodePage() == qv::platform::CodePage::Utf8;
        const CString umlaut = utf8 ? "\xC3\xA4" : "\xE4";
        const IXMLDOMElement root =
            CXmlHelper::GetDocumentElement("<r><" + umlaut + ">" + umlaut + "</" + umlaut + "></r>");
        ASSERT_TRUE(root);
        for (const CString& path : {umlaut, "zz|" + umlaut, "//" + umlaut + "[.='" + umlaut + "']"})
            EXPECT_EQ(root.selectSingleNode(path).get_text(), umlaut) << path.AsStd();
        EXPECT_EQ(root.get_xml(), "<r><" + umlaut + ">" + umlaut + "</" + umlaut + "></r>");
        // What a text declares does not matter: it is in the code page.
        const IXMLDOMElement declared =
            CXmlHelper::GetDocumentElement("<?xml version='1.0' encoding='utf-8'?><r>\xE4</r>");
        EXPECT_EQ(!declared, utf8);
    }
}

// Some COM DOMs report the place of the last thing that they understood.
bool ReportsExactPlaces() {
    const IXMLDOMDocument document = CXmlHelper::CreateDocument();
    CXmlHelper::LoadXml(document, "<a>\n\n<b x=1/></a>");
    return document.get_parseError().get_line() == 3;
}

TEST(XmlDocuments, MalformedInputGivesNullAndReason) {
    const bool exact = ReportsExactPlaces();
    const std::string bomb = "<!DOCTYPE r [<!ENTITY a 'aaaaaaaaaa'><!ENTITY b '&a;&a;&a;&a;'>]><r>&b;</r>",
                      file = "<!DOCTYPE r [<!ENTITY x SYSTEM 'file:///etc/passwd'>]><r>&x;</r>";
    const std::map<long, std::vector<std::string>> documents = {
        {0, {"", "  ", "<a>"}},  // not the same line on every system
        {1,
         {"text", "<a/><b/>", "<a>&foo;</a>", "<a>&#0;</a>", "<a x='1' x='2'/>", "<a>x ]]> y</a>", "<a b='<'/>",
          " <?xml version='1.0'?><a/>", bomb, file, "<!DOCTYPE r SYSTEM 'n.dtd'><r>A&foo;B</r>",
          "<!DOCTYPE r SYSTEM 'n.dtd'><r t='x&foo;y'/>"}},
        {2,
         {"<a>\n<b></c>\n</a>", "<a>\n\x01</a>", std::string("<a>\n\0</a>", 9),
          "\n<!DOCTYPE r [<!ENTITY % p SYSTEM 'http://localhost/'> %p;]><r/>"}},
        {3, {"<a>\n\n<b x=1/></a>"}}};
    for (const auto& [line, texts] : documents)
        for (const std::string& text : texts) {
            SCOPED_TRACE(text);
            const IXMLDOMDocument document = CXmlHelper::CreateDocument();
            ASSERT_EQ(CXmlHelper::LoadXml(document, "<old/>"), 1);
            EXPECT_EQ(CXmlHelper::LoadXml(document, text), 0);
            EXPECT_FALSE(document.get_documentElement());
            const auto problem = document.get_parseError();
            EXPECT_NE(problem.get_errorCode(), 0);
            EXPECT_FALSE(problem.get_reason().IsEmpty());
            if (line && exact) {
                EXPECT_EQ(problem.get_line(), line) << problem.get_reason().AsStd();
                EXPECT_GT(problem.get_linepos(), 0);
            } else if (line) {
                EXPECT_LE(problem.get_line(), line) << problem.get_reason().AsStd();
            }
            EXPECT_FALSE(CXmlHelper::GetDocumentElement(text));
            EXPECT_EQ(CXmlHelper::LoadXml(document, "<new/>"), 1);
            EXPECT_EQ(document.get_parseError().get_errorCode(), 0);
        }
}

TEST(XmlDocuments, LoadAtLimits) {
    for (const std::string& text : {std::string("<!DOCTYPE r SYSTEM 'http://localhost/never.dtd'><r/>"),
                                    "<a>" + std::string(9000000, 'x') + "</a>"})
        EXPECT_TRUE(CXmlHelper::GetDocumentElement(text)) << text.substr(0, 60);
}

TEST(XmlDocuments, SavePreservesEncoding) {
    const std::string declared = "<?xml version=\"1.0\" encoding=\"";
    for (const auto& [encoding, umlaut] : {std::pair("utf-8", "\xC3\xA4"), std::pair("iso-8859-1", "\xE4")}) {
        const IXMLDOMDocument document = CXmlHelper::CreateDocument();
        document.put_preserveWhiteSpace(true);
        ASSERT_TRUE(document.load(declared + encoding + "\"?>\n<r> <a>" + umlaut + "</a></r>"));
        EXPECT_EQ(CXmlHelper::SetString(document.get_documentElement(), "a", "x"), 1);
        document.get_documentElement().setAttribute("k", "v");
        const std::string saved = document.save();
        EXPECT_NE(saved.find(encoding), saved.npos) << saved;
        EXPECT_NE(saved.find("<r k=\"v\"> <a>x</a></r>"), saved.npos) << saved;
    }
    const IXMLDOMDocument wide = CXmlHelper::CreateDocument();
    EXPECT_TRUE(wide.load(std::string("\xFF\xFE<\0r\0/\0>\0", 10)));
}

TEST(XmlNodes, OutliveParentAndDocument) {
    IXMLDOMElement kept, moved;
    {
        const IXMLDOMElement root = CXmlHelper::GetDocumentElement("<r xmlns:p='v'><p:a><p:b>1</p:b></p:a><c/></r>");
        const IXMLDOMNode a = root.selectSingleNode("p:a");
        kept = IXMLDOMElement(a.selectSingleNode("p:b"));
        root.removeChild(a);
        EXPECT_FALSE(root.selectSingleNode("p:a"));
        const IXMLDOMElement other = CXmlHelper::GetDocumentElement("<o><z>2</z></o>");
        moved = IXMLDOMElement(other.selectSingleNode("z"));
        root.insertBefore(moved, root.selectSingleNode("c"));
        EXPECT_EQ(root.get_xml(), "<r xmlns:p=\"v\"><z>2</z><c/></r>");
        EXPECT_EQ(other.get_xml(), "<o/>");
        root.put_text("gone");
    }
    EXPECT_EQ(kept.get_text(), "1");
    EXPECT_EQ(kept.get_xml(), "<p:b xmlns:p=\"v\">1</p:b>");
    moved.put_text("3");
    EXPECT_EQ(moved.get_xml(), "<z>3</z>");
}

TEST(XmlNodes, InvalidOperationsRaise) {
    const IXMLDOMElement root = CXmlHelper::GetDocumentElement("<r><a><b/></a></r>");
    const IXMLDOMNode a = root.selectSingleNode("a"), b = root.selectSingleNode("a/b");
    const auto invalid = _com_error::kInvalidArg;
    EXPECT_EQ(ComCodeOf([&] { b.appendChild(a); }), invalid);
    EXPECT_EQ(ComCodeOf([&] { a.appendChild(a); }), invalid);
    EXPECT_EQ(ComCodeOf([&] { root.removeChild(b); }), invalid);
    EXPECT_EQ(ComCodeOf([&] { root.insertBefore(a, b); }), invalid);
    EXPECT_EQ(ComCodeOf([&] { root.get_ownerDocument().createElement("a b"); }), invalid);
    EXPECT_EQ(ComCodeOf([&] { CXmlHelper::AppendXml(root.get_ownerDocument(), "<second/>", 1); }), invalid);
    EXPECT_EQ(ComCodeOf([&] { IXMLDOMNode().get_text(); }), _com_error::kPointer);
    EXPECT_EQ(ComCodeOf([&] { CXmlHelper::AppendXml(root, "<bad>", 1); }), _com_error::kPointer);
    EXPECT_EQ(root.get_xml(), "<r><a><b/></a></r>");
    EXPECT_STREQ(_com_error(_com_error::kPointer).ErrorMessage(), "Invalid pointer");
    EXPECT_EQ(a, b.get_parentNode());
    EXPECT_FALSE(a == b);
}

}  // namespace
