// Documents made from the grammar of XML 1.0, whole or with one rule broken, compared with the verdict of xmllint; and the
// files that loading opens, seen by strace.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <random>

#include "platform/Path.h"
#include "platform/Process.h"
#include "qvcommon/XmlHelper.h"
#include "tests/support/Child.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Tool.h"

namespace {

using MSXML2::IXMLDOMDocument;

// The status of a program whose output is discarded; 127 when no program has that name.
int StatusOf(const std::string& program, const CStringArray& arguments) {
    if (qv::platform::HasDriveLetters()) return 127;
    CStringArray words{"-c", "exec \"$0\" \"$@\" >/dev/null 2>&1", program};
    words.Append(arguments);
    return RunProgram("sh", words).status;
}

enum Place { Content, Prolog, Subset, Attributes, Epilog };

// What the grammar allows in one place, in all its forms.
const std::map<Place, std::vector<const char*>> kGood = {
    {Content,
     {"text", "&lt;&amp;&gt;&quot;&apos;", "&#65;&#x10FFFF;", "]] >", "<![CDATA[ <&]> ]]>", "<!-- - -->", "<!---->",
      "<?p?>", "<?p  a ?b>c?>", "<b />", "<b\n></b\t>", "<\xC3\xA9.-_1/>", "<b xmlns:p='u'><p:c p:d=''/></b>",
      "\xF0\x9F\x98\x80\xEF\xBF\xBD", "\r\n\t ", "<b xml:lang='de' xml:space='preserve'> </b>",
      "<b xmlns='u'><c xmlns=''/></b>"}},
    {Prolog, {"<!-- c -->", "<?p x?>", "\n\t \r\n"}},
    {Subset,
     {"<!ELEMENT b EMPTY>", "<!ELEMENT c ANY>", "<!ELEMENT d (#PCDATA|b|c)*>", "<!ELEMENT e ( (b | c)?, d+ )>",
      "<!ELEMENT f ((b|c)*,d?)+>", "<!ATTLIST b k CDATA #REQUIRED l (x|y) 'x' m ID #IMPLIED>",
      "<!ATTLIST c k CDATA #FIXED '&#38;'>", "<!NOTATION n PUBLIC 'p'>", "<!NOTATION o SYSTEM \"s\">",
      "<!ATTLIST b o NOTATION (n|o) #IMPLIED>", "<!-- ]> -->", "<?p ]>?>", "<!ATTLIST c v NMTOKENS ' a  b '>"}},
    {Attributes, {"k='1'", "l=\"'\"", "m = '&lt;&#10;\">'", "\xC3\xA9='x\ny'"}},
    {Epilog, {"<!-- c -->", "<?p x?>", "\n"}}};

// Each constraint, broken once.
const struct {
    Place place;
    const char* stricter;  // why the library may refuse what xmllint accepts; null: it may not
    std::vector<const char*> texts;
} kBroken[] = {
    {Content, "an external subset might declare the entity, so xmllint accepts it", {"&undeclared;"}},
    {Content, nullptr, {"&#0;", "&#xFFFF;", "&#xD800;", "&#x110000;", "&#12a;", "&#;", "&", "& ", "&lt"}},
    {Content, nullptr, {"<", "<b>", "</b>", "<b></c>", "<b><c></b></c>", "<1/>", "< b/>", "<b / >", "</ b>"}},
    {Content,
     nullptr,
     {"]]>", "<!-- -- -->", "<!-- --->", "<![CDATA[", "<![cdata[x]]>", "<?xml version='1.0'?>", "<?XmL x?>", "<?1?>",
      "<?p", "<!DOCTYPE a>", "<!ELEMENT b ANY>"}},
    {Content,
     nullptr,
     {"\x01", "\xFF", "\xED\xA0\x80", "\xEF\xBF\xBF", "\xC0\x80", "\xF5\x80\x80\x80", "<b\xC3\x97/>", "<\xCC\x81/>"}},
    {Content,
     "names follow Namespaces in XML too, of which xmllint only warns",
     {"<p:b/>", "<b p:c=''/>", "<b xmlns:p=''/>", "<b xmlns:p='u' xmlns:q='u' p:k='' q:k=''/>", "<a:b:c xmlns:a='u'/>",
      "<b xmlns:xml='u'/>", "<b xmlns:xmlns='u'/>", "<:b/>", "<b xmlns:p='http://www.w3.org/XML/1998/namespace'/>",
      "<?a:b x?>"}},
    {Attributes,
     nullptr,
     {"k", "k=", "k=1", "k='<'", "k='&'", "k='1' k='2'", "1='1'", "k='", "k='1'l='2'", "k='&#1;'",
      "xmlns:p='u' p:k='' p:k=''"}},
    {Attributes, "an external subset might declare the entity, so xmllint accepts it", {"k='&u;'"}},
    {Prolog, nullptr, {"x", "&#32;", "<![CDATA[ ]]>", "<?xml version='1.0'?>", "<!DOCTYPE a><!DOCTYPE a>"}},
    {Subset,
     nullptr,
     {"<!ELEMENT b>", "<!ELEMENT b (c,d|e)>", "<!ELEMENT b (#PCDATA,c)>", "<!ELEMENT b (c>", "<!ELEMENT b ()>",
      "<!ATTLIST b k CDATA>", "<!ATTLIST b k CDATA x>", "<!ATTLIST b k WORDS 'x'>", "<!ATTLIST b k CDATA '<'>",
      "<!ATTLIST b k () 'x'>", "<!NOTATION n>", "<!THING x>", "<![INCLUDE[]]>", "<!-- -- -->", "x", "<b/>",
      "<!ENTITY e SYSTEM 's'", "<!ELEMENT b (%u;)>"}},
    {Subset,
     "documents must not declare entities",
     {"<!ENTITY e 'x'>", "<!ENTITY % e 'x'>", "<!ENTITY e SYSTEM 's' NDATA n>", "<!ENTITY lt '&#38;#60;'>"}},
    {Subset, "no external subset is read, which might declare the entity", {"%u;"}},
    {Epilog, nullptr, {"<b/>", "x", "&#65;", "<![CDATA[]]>", "<!DOCTYPE a>", "</a>"}}};

// A whole document around pieces, at most one of which is broken.
class Grammar {
public:
    std::string Make(Place brokenPlace = Content, const std::string& broken = "") {
        const auto some = [&](Place place, unsigned most) {
            std::string text;
            for (unsigned count = m_random() % (most + 1); count > 0; --count) text += Good(place);
            return brokenPlace == place ? text + broken : text;
        };
        std::string text = m_random() % 2 ? "<?xml version='1.0' encoding=\"UTF-8\" standalone='yes' ?>" : "";
        text += some(Prolog, 2);
        const std::string subset = some(Subset, 3);
        const bool external = m_random() % 3 == 0;
        if (!subset.empty() || external)
            text += "<!DOCTYPE a " + std::string(external ? "PUBLIC 'p' \"none.dtd\" " : "") + "[" + subset + "] >";
        // One statement each, so that every compiler makes the same documents.
        text += some(Prolog, 1);
        text += "<a " + Distinct() + (brokenPlace == Attributes ? broken : "") + ">";
        text += some(Content, 5);
        text += "<b>" + some(Content, 2) + "</b></a>";
        return text += some(Epilog, 2);
    }

private:
    const char* Good(Place place) {
        const auto& texts = kGood.at(place);
        return texts[m_random() % texts.size()];
    }

    std::string Distinct() { return m_random() % 2 ? Good(Attributes) + std::string(" z='' ") : ""; }

    std::mt19937 m_random{5};
};

TEST(XmlPeers, AgreeOnWellFormedness) {
    if (StatusOf("xmllint", {"--version"}) != 0) GTEST_SKIP() << "no xmllint here";
    const TempFolder folder;
    Grammar grammar;
    int accepted = 0, refused = 0, differences = 0;
    const auto compare = [&](const std::string& text, const char* stricter = nullptr) {
        folder.Write("document.xml", text);
        const bool theirs = StatusOf("xmllint", {"--nonet", "--noout", folder.Native("document.xml").string()}) == 0;
        const IXMLDOMDocument document = CXmlHelper::CreateDocument();
        const bool ours = document.load(text);
        ++(ours != theirs ? differences : ours ? accepted : refused);
        EXPECT_TRUE(ours == theirs || (stricter && theirs)) << text << "\n"
                                                            << document.get_parseError().get_reason().AsStd();
    };
    for (int i = 0; i < 100; ++i) compare(grammar.Make());
    for (const auto& [place, stricter, texts] : kBroken)
        for (const char* const text : texts)
            for (int i = 0; i < 2; ++i) compare(grammar.Make(place, text), stricter);
    EXPECT_GE(accepted, 90);
    EXPECT_GE(refused, 120);
    EXPECT_GE(differences, 10);
}

QV_CHILD(XmlLoader) {
    std::ifstream control(arguments.at(0) + "/control");
    const std::string address = "'file://" + arguments.at(0) + "/outside'";
    const std::string schema = "xmlns:x='http://www.w3.org/2001/XMLSchema-instance' x:noNamespaceSchemaLocation=";
    for (const std::string& text :
         {"<!DOCTYPE r SYSTEM " + address + "><r/>", "<!DOCTYPE r SYSTEM " + address + "><r k='&e;'>&e;</r>",
          "<!DOCTYPE r [<!ENTITY e SYSTEM " + address + ">]><r>&e;</r>",
          "<!DOCTYPE r [<!ENTITY % e SYSTEM " + address + "> %e;]><r/>",
          "<!DOCTYPE r PUBLIC 'p' " + address + " [<!ATTLIST r k CDATA 'x'> %e;]><r/>",
          std::string("<!DOCTYPE r SYSTEM 'http://127.0.0.1:9/outside'><r/>"),
          "<r xmlns:i='http://www.w3.org/2001/XInclude'><i:include href=" + address + "/></r>",
          "<?xml-stylesheet href=" + address + "?><r " + schema + address + "/>"}) {
        const IXMLDOMDocument document = CXmlHelper::CreateDocument();
        document.loadXML(text);
        document.load(text);
    }
    return 0;
}

TEST(XmlPeers, OpensNoExternalFiles) {
    const TempFolder folder;
    folder.Write("control", "x");
    folder.Write("outside", "<!ENTITY e 'x'>");
    const std::string trace = folder.Native("trace").string();
    const int status =
        StatusOf("strace", {"-f", "-e", "trace=file,network", "-o", trace, qv::platform::CurrentProgram(),
                            "--child=XmlLoader", folder.Native().string()});
    const std::string calls = folder.Read("trace");
    if (status != 0 || calls.empty()) GTEST_SKIP() << "no strace here, or it may not trace";
    EXPECT_NE(calls.find("/control"), calls.npos);
    EXPECT_EQ(calls.find("outside"), calls.npos) << calls.substr(calls.find("outside") - 100, 200);
    EXPECT_EQ(calls.find("socket("), calls.npos);
}

}  // namespace
