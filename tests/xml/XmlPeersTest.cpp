// Documents made from the grammar of XML 1.0, whole or with one rule broken, beside the verdict of xmllint; and what the
// loading of documents opens, by strace.
#include <gtest/gtest.h>

#include <fstream>
#include <random>

#include "platform/Path.h"
#include "platform/Process.h"
#include "qvcommon/XmlHelper.h"
#include "tests/support/Child.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Tool.h"

namespace {

using MSXML2::IXMLDOMDocument;

// The status of a program that says nothing; 127 when there is none of that name.
int StatusOf(const std::string& program, const CStringArray& arguments) {
    if (qv::platform::HasDriveLetters()) return 127;
    CStringArray words{"-c", "exec \"$0\" \"$@\" >/dev/null 2>&1", program};
    words.Append(arguments);
    return RunProgram("sh", words).status;
}

// Where a piece stands.
enum Place { Content, Prolog, Subset, Attributes, Epilog, kPlaces };

struct Piece {
    Place place;
    const char* text;
    const char* difference = nullptr;  // why our verdict may differ: we refuse more
};

constexpr const char* kEntity = "documents must not declare entities";
constexpr const char* kUndeclared = "nobody reads what may declare it";
constexpr const char* kNamespace = "names follow Namespaces in XML too, of which xmllint only warns";

// Each production that may stand there, in its forms.
const Piece kGood[] = {
    {Content, "text"},
    {Content, "&lt;&amp;&gt;&quot;&apos;"},
    {Content, "&#65;&#x10FFFF;"},
    {Content, "]] >"},
    {Content, "<![CDATA[ <&]> ]]>"},
    {Content, "<!-- - -->"},
    {Content, "<!---->"},
    {Content, "<?p?>"},
    {Content, "<?p  a ?b>c?>"},
    {Content, "<b />"},
    {Content, "<b\n></b\t>"},
    {Content, "<\xC3\xA9.-_1/>"},
    {Content, "<b xmlns:p='u'><p:c p:d=''/></b>"},
    {Content, "\xF0\x9F\x98\x80\xEF\xBF\xBD"},
    {Content, "\r\n\t "},
    {Content, "<b xml:lang='de' xml:space='preserve'> </b>"},
    {Content, "<b xmlns='u'><c xmlns=''/></b>"},
    {Prolog, "<!-- c -->"},
    {Prolog, "<?p x?>"},
    {Prolog, "\n\t \r\n"},
    {Subset, "<!ELEMENT b EMPTY>"},
    {Subset, "<!ELEMENT c ANY>"},
    {Subset, "<!ELEMENT d (#PCDATA|b|c)*>"},
    {Subset, "<!ELEMENT e ( (b | c)?, d+ )>"},
    {Subset, "<!ELEMENT f ((b|c)*,d?)+>"},
    {Subset, "<!ATTLIST b k CDATA #REQUIRED l (x|y) 'x' m ID #IMPLIED>"},
    {Subset, "<!ATTLIST c k CDATA #FIXED '&#38;'>"},
    {Subset, "<!NOTATION n PUBLIC 'p'>"},
    {Subset, "<!NOTATION o SYSTEM \"s\">"},
    {Subset, "<!ATTLIST b o NOTATION (n|o) #IMPLIED>"},
    {Subset, "<!-- ]> -->"},
    {Subset, "<?p ]>?>"},
    {Subset, "<!ATTLIST c v NMTOKENS ' a  b '>"},
    {Attributes, "k='1'"},
    {Attributes, "l=\"'\""},
    {Attributes, "m = '&lt;&#10;\">'"},
    {Attributes, "\xC3\xA9='x\ny'"},
    {Epilog, "<!-- c -->"},
    {Epilog, "<?p x?>"},
    {Epilog, "\n"},
};

// Each constraint, broken once.
const Piece kBroken[] = {
    {Content, "&undeclared;", "beside an external subset, which may declare it, xmllint lets it pass"},
    {Content, "&#0;"},
    {Content, "&#xFFFF;"},
    {Content, "&#xD800;"},
    {Content, "&#x110000;"},
    {Content, "&#12a;"},
    {Content, "&#;"},
    {Content, "&"},
    {Content, "& "},
    {Content, "&lt"},
    {Content, "]]>"},
    {Content, "<"},
    {Content, "<b>"},
    {Content, "</b>"},
    {Content, "<b></c>"},
    {Content, "<b><c></b></c>"},
    {Content, "<1/>"},
    {Content, "< b/>"},
    {Content, "<b / >"},
    {Content, "</ b>"},
    {Content, "<!-- -- -->"},
    {Content, "<!-- --->"},
    {Content, "<![CDATA["},
    {Content, "<![cdata[x]]>"},
    {Content, "<?xml version='1.0'?>"},
    {Content, "<?XmL x?>"},
    {Content, "<?1?>"},
    {Content, "<?p"},
    {Content, "\x01"},
    {Content, "\xFF"},
    {Content, "\xED\xA0\x80"},
    {Content, "\xEF\xBF\xBF"},
    {Content, "\xC0\x80"},
    {Content, "\xF5\x80\x80\x80"},
    {Content, "<b\xC3\x97/>"},
    {Content, "<\xCC\x81/>"},
    {Content, "<!DOCTYPE a>"},
    {Content, "<!ELEMENT b ANY>"},
    {Content, "<p:b/>", kNamespace},
    {Content, "<b p:c=''/>", kNamespace},
    {Content, "<b xmlns:p=''/>", kNamespace},
    {Content, "<b xmlns:p='u' xmlns:q='u' p:k='' q:k=''/>", kNamespace},
    {Content, "<a:b:c xmlns:a='u'/>", kNamespace},
    {Content, "<b xmlns:xml='u'/>", kNamespace},
    {Content, "<b xmlns:xmlns='u'/>", kNamespace},
    {Content, "<:b/>", kNamespace},
    {Content, "<b xmlns:p='http://www.w3.org/XML/1998/namespace'/>", kNamespace},
    {Content, "<?a:b x?>", kNamespace},
    {Attributes, "k"},
    {Attributes, "k="},
    {Attributes, "k=1"},
    {Attributes, "k='<'"},
    {Attributes, "k='&'"},
    {Attributes, "k='&u;'"},
    {Attributes, "k='1' k='2'"},
    {Attributes, "1='1'"},
    {Attributes, "k='"},
    {Attributes, "k='1'l='2'"},
    {Attributes, "k='&#1;'"},
    {Attributes, "xmlns:p='u' p:k='' p:k=''"},
    {Prolog, "x"},
    {Prolog, "&#32;"},
    {Prolog, "<![CDATA[ ]]>"},
    {Prolog, "<?xml version='1.0'?>"},
    {Prolog, "<!DOCTYPE a><!DOCTYPE a>"},
    {Subset, "<!ELEMENT b>"},
    {Subset, "<!ELEMENT b (c,d|e)>"},
    {Subset, "<!ELEMENT b (#PCDATA,c)>"},
    {Subset, "<!ELEMENT b (c>"},
    {Subset, "<!ELEMENT b ()>"},
    {Subset, "<!ATTLIST b k CDATA>"},
    {Subset, "<!ATTLIST b k CDATA x>"},
    {Subset, "<!ATTLIST b k WORDS 'x'>"},
    {Subset, "<!ATTLIST b k CDATA '<'>"},
    {Subset, "<!ATTLIST b k () 'x'>"},
    {Subset, "<!NOTATION n>"},
    {Subset, "<!THING x>"},
    {Subset, "<![INCLUDE[]]>"},
    {Subset, "<!-- -- -->"},
    {Subset, "x"},
    {Subset, "<b/>"},
    {Subset, "<!ENTITY e 'x'>", kEntity},
    {Subset, "<!ENTITY % e 'x'>", kEntity},
    {Subset, "<!ENTITY e SYSTEM 's' NDATA n>", kEntity},
    {Subset, "%u;", kUndeclared},
    {Subset, "<!ENTITY lt '&#38;#60;'>", kEntity},
    {Subset, "<!ENTITY e SYSTEM 's'"},
    {Subset, "<!ELEMENT b (%u;)>"},
    {Epilog, "<b/>"},
    {Epilog, "x"},
    {Epilog, "&#65;"},
    {Epilog, "<![CDATA[]]>"},
    {Epilog, "<!DOCTYPE a>"},
    {Epilog, "</a>"},
};

// A whole document around pieces, at most one of which is broken.
class Grammar {
public:
    std::string Make(const Piece* broken) {
        const auto some = [&](Place place, int most) {
            std::string text;
            const int count = static_cast<int>(m_random() % static_cast<unsigned>(most + 1));
            for (int i = 0; i < count; ++i) text += Good(place);
            if (broken && broken->place == place) text += broken->text;
            return text;
        };
        std::string text = m_random() % 2 ? "<?xml version='1.0' encoding=\"UTF-8\" standalone='yes' ?>" : "";
        text += some(Prolog, 2);
        const std::string subset = some(Subset, 3);
        const bool external = m_random() % 3 == 0;
        if (!subset.empty() || external)
            text += "<!DOCTYPE a " + std::string(external ? "PUBLIC 'p' \"none.dtd\" " : "") + "[" + subset + "] >";
        // One after the other, so that every compiler makes the same documents.
        text += some(Prolog, 1);
        text += "<a " + Distinct() + (broken && broken->place == Attributes ? broken->text : "") + ">";
        text += some(Content, 5);
        text += "<b>" + some(Content, 2) + "</b></a>";
        return text += some(Epilog, 2);
    }

private:
    std::string Good(Place place) {
        for (;;)
            if (const Piece& piece = kGood[m_random() % std::size(kGood)]; piece.place == place) return piece.text;
    }

    std::string Distinct() { return m_random() % 2 ? Good(Attributes) + std::string(" z='' ") : ""; }

    std::mt19937 m_random{5};
};

TEST(XmlPeers, AgreeOnWhatIsWellFormed) {
    if (StatusOf("xmllint", {"--version"}) != 0) GTEST_SKIP() << "no xmllint here";
    const TempFolder folder;
    Grammar grammar;
    int accepted = 0, refused = 0, differences = 0;
    const auto compare = [&](const std::string& text, const char* difference) {
        folder.Write("document.xml", text);
        const bool theirs = StatusOf("xmllint", {"--nonet", "--noout", folder.Native("document.xml").string()}) == 0;
        const IXMLDOMDocument document = CXmlHelper::CreateDocument();
        const bool ours = document.load(text);
        (ours ? accepted : refused) += ours == theirs;
        if (ours == theirs) return;
        ++differences;
        EXPECT_TRUE(difference && theirs) << text << "\n" << document.get_parseError().get_reason().AsStd();
    };
    for (int i = 0; i < 100; ++i) compare(grammar.Make(nullptr), nullptr);
    for (const Piece& broken : kBroken)
        for (int i = 0; i < 2; ++i) compare(grammar.Make(&broken), broken.difference);
    EXPECT_GE(accepted, 90);
    EXPECT_GE(refused, 120);
    EXPECT_GE(differences, 10);
}

QV_CHILD(XmlLoader) {
    std::ifstream control(arguments.at(0) + "/control");
    const std::string address = "'file://" + arguments.at(0) + "/outside'";
    for (const std::string& text :
         {"<!DOCTYPE r SYSTEM " + address + "><r/>", "<!DOCTYPE r SYSTEM " + address + "><r k='&e;'>&e;</r>",
          "<!DOCTYPE r [<!ENTITY e SYSTEM " + address + ">]><r>&e;</r>",
          "<!DOCTYPE r [<!ENTITY % e SYSTEM " + address + "> %e;]><r/>",
          "<!DOCTYPE r PUBLIC 'p' " + address + " [<!ATTLIST r k CDATA 'x'> %e;]><r/>",
          std::string("<!DOCTYPE r SYSTEM 'http://127.0.0.1:9/outside'><r/>"),
          "<r xmlns:i='http://www.w3.org/2001/XInclude'><i:include href=" + address + "/></r>",
          "<?xml-stylesheet href=" + address +
              "?><r xmlns:x='http://www.w3.org/2001/XMLSchema-instance' "
              "x:noNamespaceSchemaLocation=" +
              address + "/>"}) {
        const IXMLDOMDocument document = CXmlHelper::CreateDocument();
        document.loadXML(text);
        document.load(text);
    }
    return 0;
}

TEST(XmlPeers, SeeNothingOpened) {
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
