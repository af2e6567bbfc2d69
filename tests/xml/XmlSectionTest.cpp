#include "qvcommon/XmlSection.h"

#include <gmock/gmock.h>

#include <functional>
#include <memory>

#include "qvcommon/Exceptions.h"
#include "tests/support/Raised.h"
#include "tests/support/ScopedLocale.h"

namespace {

class Shape : public CXmlObject {
public:
    explicit Shape(const char* typeName = "", const char* ownName = "") : type(typeName), name(ownName) {}
    CString GetType() const override { return type; }
    void SaveXml(CXmlSection& section) const override { section.AddString("Name", name); }
    void LoadXml(const CXmlSection& section) override { section.GetString("Name", name); }

    CString type, name;
};
class Circle : public Shape {
public:
    Circle() : Shape("Big Circle") {}
};

std::string Failure(const CString& text, const char* tag = "") {
    CXmlSection section(tag);
    const auto error = Raised<CVorbexException>([&] { section.SetRawXml(text); });
    if (!error) return "";
    EXPECT_TRUE(error->GetSeverity() == 16 && error->GetCode() == 1 && error->GetReportErrorCode() == 1);
    EXPECT_EQ(section.EmptyForSave(), 1);
    return error->GetText().AsStd();
}

TEST(XmlSection, WritesLines) {
    const ScopedLocale german("de_DE.UTF-8");
    CXmlSection section("Root"), inner("In ner");
    section.AddInteger("Count", 0);
    section.AddString("Name", "");
    section.AddBool("Flag", 0);
    section.AddDouble("Real", 0);
    COleDateTime date(2004, 5, 5, 14, 3, 7), invalid;
    invalid.SetStatus(COleDateTime::invalid);
    section.AddDate("Date", invalid);
    section.AddStringArray("List", {});
    section.AddSection(inner);
    EXPECT_EQ(section.EmptyForSave(), 1);
    section.AddInteger("Count", 0, 1);
    section.AddString("My Tag", "a<b>&\r\n\"");
    section.AddDouble("Real", -0.5);
    section.AddBool("Flag", 5);
    section.AddDate("Date", date);
    section.AddDate("Date", invalid, 1);
    section.AddStringArray("List", {"x", "", "y"});
    section.AddStringArray("List", {""}, 1);
    CMapStringToInt map;
    map.SetAt("k<", -3);
    inner.AddStringToIntMap("Map", map);
    section.AddSection(inner);
    section.AddSection(CXmlSection("Empty"), 1);
    EXPECT_EQ(
        section.GetRawXml(),
        "<Count>0</Count>\n<My_Tag>a&lt;b&gt;&amp;&#13;&#10;\"</My_Tag>\n<Real>-0.500000</Real>\n<Flag>TRUE</Flag>\n"
        "<Date>05 May 2004 14:03</Date>\n<Date>INVALID DATE</Date>\n<List>\n    <ITEM>x</ITEM>\n    <ITEM>y</ITEM>\n"
        "</List>\n<List>\n    <ITEM></ITEM>\n</List>\n<In_ner>\n    <Map>\n        <ENTRY>\n"
        "            <KEY>k&lt;</KEY>\n            <VALUE>-3</VALUE>\n        </ENTRY>\n    </Map>\n</In_ner>\n"
        "<Empty>\n</Empty>\n");
    CXmlSection read;
    EXPECT_EQ(read.SetRawXml(section.GetRawXml()), section.GetRawXml().GetLength());
    EXPECT_EQ(read.GetNextTag(), "Count");
    CString text;
    EXPECT_EQ(read.GetString("My Tag", text), 1);
    EXPECT_EQ(text, "a<b>&\r\n\"");
    COleDateTime back;
    EXPECT_TRUE(read.GetDate("Date", back) && back == COleDateTime(2004, 5, 5, 14, 3, 0));
    EXPECT_EQ(read.GetDate("Date", back, 1), 1);
    EXPECT_EQ(back.GetStatus(), COleDateTime::invalid);
    CStringArray list{"old"};
    EXPECT_TRUE(read.GetStringArray("List", list) && list == (CStringArray{"x", "y"}));
    int number = 7;
    EXPECT_EQ(read.GetSection("In_ner", inner), 1);
    EXPECT_TRUE(inner.GetStringToIntMap("Map", map) && map.GetCount() == 1 && map.Lookup("k<", number) && number == -3);
    // What was read is written again.
    CXmlSection again("Root"), twice;
    again.AddSection(inner);
    twice.SetRawXml(again.GetRawXml());
    EXPECT_TRUE(twice.GetSection("In ner", inner) && inner.GetStringToIntMap("Map", map) && map.GetCount() == 1);
}

TEST(XmlSection, ReadsByTagAndNumber) {
    CXmlSection section;
    CString text = "<r> x";
    for (int i = 0; i < 16; ++i) text += CString("<Name>") + std::to_string(i).c_str() + "</Name> y\n<a b>" + "</a b>";
    EXPECT_EQ(section.SetRawXml(text + "</r>tail"), text.GetLength() + 8);
    EXPECT_EQ(section.GetNextTag(), "r");
    EXPECT_EQ(section.GetRawXml(), "tail");
    CXmlSection r;
    ASSERT_EQ(section.GetSection("r", r), 1);
    section.Clear();
    int number = 7;
    double real = 7;
    BOOL flag = 7;
    COleDateTime date;
    EXPECT_TRUE(r.GetInteger("Name", number, 15) && number == 15);
    EXPECT_TRUE(r.GetDouble("Name", real, 3) && real == 3);
    EXPECT_EQ(r.GetString("a_b", text, 15), 1);
    EXPECT_EQ(r.GetRawXml().Left(10), " x y\n y\n y");
    for (const int missing : {16, -1}) {
        EXPECT_EQ(r.GetInteger("Name", number, missing) + r.GetDouble("Name", real, missing), 0);
        EXPECT_EQ(r.GetBool("Name", flag, missing) + r.GetDate("Name", date, missing), 0);
        EXPECT_EQ(r.GetString("Name", text, missing) + r.GetSection("Name", section, missing), 0);
        EXPECT_TRUE(number == 0 && real == 0 && flag == 0 && text.IsEmpty() && section.EmptyForSave());
        EXPECT_EQ(date.GetStatus(), COleDateTime::invalid);
    }
    for (const char* const both : {"<a_b>1</a_b><a b>2</a b>", "<a b>1</a b><a_b>2</a_b>"}) {
        CXmlSection counted;
        counted.SetRawXml(both);
        EXPECT_TRUE(counted.GetInteger("a b", number, 0) && number == 1) << both;
        EXPECT_TRUE(counted.GetInteger("a_b", number, 1) && number == 2) << both;
    }
    EXPECT_EQ(CXmlSection::GetIndex(15, "My Tag"), "0000000fMy_Tag");
    CXmlSection tagged("t");
    EXPECT_EQ(tagged.SetRawXml("x<a></a></t>rest"), 12);
    EXPECT_EQ(tagged.GetRawXml(), "x");
}

TEST(XmlSection, ReportsMalformedInput) {
    struct Row {
        const char *text, *tag, *message;
    };
    for (const Row& row :
         {Row{"<a><b></a>", "", "A closing XML brace did not match the opening brace (expecting b, but found a)"},
          Row{"</a>", "", "A closing XML brace did not match the opening brace (expecting , but found a)"},
          Row{"x<", "", "A brace at the end of the file was opened but not closed"},
          Row{"<a", "", "An opening brace at the end of the file was opened but not closed"},
          Row{"<a></a", "", "A closing brace at the end of the file was opened but not closed (a)"},
          Row{"a>b", "", "An closing brace was found without a corresponding opening brace"},
          Row{"<a><b>x</b>", "", "An XML tag was found missing the closing triangular brace (a)"},
          Row{"x", "t", "An XML tag was found missing the closing triangular brace (t)"}, Row{"x<a></a>", "", ""}})
        EXPECT_EQ(Failure(row.text, row.tag), row.message);
    std::string deep;
    for (int i = 0; i < 1000000; ++i) deep += "<a>";
    EXPECT_EQ(Failure(deep), "An XML tag was found missing the closing triangular brace (a)");
    for (int i = 0; i < 1000000; ++i) deep += "</a>";
    CXmlSection section, copy("copy");
    EXPECT_EQ(section.SetRawXml(deep), 7000000);
    copy.AddSection(section);
    EXPECT_EQ(copy.GetRawXml().GetLength(), 7000000 + 6);
}

// A text that is too long is refused before it is read, and an exception leaves no partial element.
TEST(XmlSection, FailureLeavesNoPartialElement) {
    struct Broken : Shape {
        void SaveXml(CXmlSection&) const override { CXmlSection::ThrowXmlException(7, "broken"); }
    } broken;
    static const char one = 'x';
    const std::string_view longText(&one, 0x80000000);
    CXmlSection section;
    section.AppendRawXml("<t>", 1, 0);
    const CString before = section.GetRawXml();
    Shape whole("Shape", "n");
    const std::function<void()> actions[] = {[&] { section.AddString("a", longText); },
                                             [&] { section.AppendRawXml(longText, 1, 1); },
                                             [&] {
                                                 section.AddObjectArray("Shapes", {&whole, &broken});
                                             }};
    for (const auto& action : actions) {
        EXPECT_TRUE(Raised<CVorbexException>(action));
        EXPECT_EQ(section.GetRawXml(), before);
    }
    section.AddInteger("a", 1);
    EXPECT_EQ(section.GetRawXml(), before + "    <a>1</a>\n");
    const auto error = Raised<CVorbexException>([&] { section.SetRawXml(longText); });
    EXPECT_TRUE(error && error->GetText() == "The text is too long");
}

TEST(XmlSection, SavesAndLoadsObjects) {
    CXmlObjectFactory::Register<Circle>("Big Circle");
    Circle one, two;
    Shape other("Unknown", "u");
    one.name = "a\nb";
    CXmlSection section, read;
    section.AddObject(two);
    EXPECT_EQ(section.EmptyForSave(), 1);
    section.AddObject(one);
    section.AddObjectArray("Shapes", {&two, &other, &one});
    read.SetRawXml(section.GetRawXml());
    EXPECT_EQ(read.LoadObject(two), 1);
    EXPECT_EQ(two.name, "a\nb");
    EXPECT_EQ(read.LoadObject(two, 1), 0);
    CXmlObjectArray loaded;
    EXPECT_EQ(read.GetObjectArray("Shapes", loaded), 1);
    ASSERT_EQ(loaded.GetSize(), 2);
    EXPECT_EQ(static_cast<Circle*>(loaded[0])->name + static_cast<Circle*>(loaded[1])->name, "a\nb");
    const CRuntimeClass maker(
        "Maker", 0, 0xFFFF, []() -> CObject* { return new Circle; }, RUNTIME_CLASS(CXmlObject));
    EXPECT_EQ(read.GetObjectArray("Shapes", loaded, &maker), 1);
    EXPECT_EQ(loaded.GetSize(), 5);
    EXPECT_EQ(read.GetObjectArray("None", loaded), 0);
    for (CXmlObject* const object : loaded) delete object;
    EXPECT_TRUE(CXmlObjectFactory::Unregister("Big_Circle"));
    EXPECT_EQ(CXmlObjectFactory::CreateObject("Big Circle"), nullptr);
}

TEST(XmlSection, EscapeRoundtripsAllBytePairs) {
    for (int pair = 0; pair < 65536; ++pair) {
        const char bytes[] = {static_cast<char>(pair >> 8), static_cast<char>(pair)};
        const CString text(bytes, 2), clean = CXmlSection::Clean(text);
        ASSERT_EQ(CXmlSection::Dirty(clean), text);
        ASSERT_EQ(clean.FindOneOf("<>\r\n"), -1);
    }
    EXPECT_EQ(CXmlSection::Dirty("&amp;lt;&#10;&#1;&"), "&lt;\n&#1;&");
}

}  // namespace
