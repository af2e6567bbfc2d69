#include "qvcommon/XmlEntryTemplate.h"

#include <gmock/gmock.h>

#include <memory>

#include "tests/support/Raised.h"

namespace {

/// The second version of an entry; the first one had no unit.
class Length : public CXmlObject {
public:
    CString GetType() const override { return CXmlEntryTemplate::GetTag("Length", 2); }
    void SaveXml(CXmlSection& section) const override {
        section.AddInteger("Value", value);
        section.AddString("Unit", unit);
    }
    void LoadXml(const CXmlSection& section) override {
        section.GetInteger("Value", value);
        if (!section.GetString("Unit", unit)) unit = "mm";
    }

    int value = 0;
    CString unit;
};

std::vector<std::unique_ptr<CXmlObject>> Entries(const std::string& xml) {
    CXmlSection file, document, section;
    file.SetRawXml("<File><Document>" + xml + "</Document></File>");
    file.GetSection("File", document);
    document.GetSection("Document", section);
    CXmlObjectArray objects;
    EXPECT_EQ(section.GetEntryArray("List", objects), 1);
    return {objects.begin(), objects.end()};
}

std::string Saved(const std::vector<std::unique_ptr<CXmlObject>>& entries) {
    CXmlObjectArray objects;
    for (const auto& entry : entries) objects.Add(entry.get());
    CXmlSection document("Document"), file("File"), text;
    document.AddObjectArray("List", objects);
    file.AddSection(document);
    text.AddSection(file);
    std::string list = text.GetRawXml().AsStd();
    return list.substr(list.find("<List>"), list.find("</Document>") - list.find("<List>"));
}

TEST(XmlEntryTemplate, SeparatesVersionsPreservesUnknown) {
    const std::string unknown = "<Length.3>\n  <a>x&lt;<b>\n</b></a>\t</Length.3>", other = "<Area> y </Area>";
    const std::string xml =
        "<List>" + unknown + "<Length><Value>5</Value></Length>" + other + "<Length.2></Length.2></List>";
    std::string saved;
    {
        CXmlEntryTemplate lengths("Length");
        lengths.AddVersion<Length>(1).AddVersion<Length>(2);
        const auto entries = Entries(xml);
        ASSERT_EQ(entries.size(), 4u);
        EXPECT_TRUE(dynamic_cast<CXmlUnknownEntry*>(entries[0].get()));
        const auto* const first = dynamic_cast<Length*>(entries[1].get());
        ASSERT_TRUE(first);
        EXPECT_EQ(first->value, 5);
        EXPECT_EQ(first->unit, "mm");
        saved = Saved(entries);
    }
    EXPECT_THAT(saved, testing::HasSubstr(unknown));
    EXPECT_THAT(saved, testing::HasSubstr(other));
    EXPECT_THAT(saved, testing::HasSubstr(
                           "<Length.2>\n                <Value>5</Value>\n                <Unit>mm</Unit>\n            "
                           "</Length.2>"));
    // Without the template all of them are unknown, and saving is idempotent.
    const auto entries = Entries(saved);
    EXPECT_EQ(entries.size(), 4u);
    for (const auto& entry : entries) EXPECT_TRUE(dynamic_cast<CXmlUnknownEntry*>(entry.get()));
    EXPECT_EQ(Saved(entries), saved);
}

TEST(XmlEntryTemplate, LaterTemplateOutlivesEarlierOne) {
    auto earlier = std::make_unique<CXmlEntryTemplate>("Length");
    earlier->AddVersion<Length>(2);
    CXmlEntryTemplate later("Length");
    later.AddVersion<Length>(2);
    earlier.reset();
    EXPECT_TRUE(std::unique_ptr<CXmlObject>(CXmlObjectFactory::CreateObject("Length.2")));
}

TEST(XmlEntryTemplate, SplitsTagIntoTypeAndVersion) {
    const struct {
        const char *tag, *type;
        int version;
    } cases[] = {{"A", "A", 1},         {"A.2", "A", 2},
                 {"A.b.12", "A.b", 12}, {"A.1", "A.1", 1},
                 {"A.02", "A.02", 1},   {"A.2x", "A.2x", 1},
                 {"A.-2", "A.-2", 1},   {"A.", "A.", 1},
                 {".2", "", 2},         {"A.2147483648", "A.2147483648", 1}};
    for (const auto& c : cases) {
        CString type;
        EXPECT_EQ(CXmlEntryTemplate::SplitTag(c.tag, type), c.version) << c.tag;
        EXPECT_EQ(type, c.type);
        EXPECT_EQ(CXmlEntryTemplate::GetTag(type, c.version), c.tag);
    }
    for (const char* const type : {"", "/a", "a<b", "a>", "a.2"})
        EXPECT_TRUE(Raised<CInvalidArgException>([&] { CXmlEntryTemplate{type}; })) << type;
    EXPECT_TRUE(Raised<CInvalidArgException>([] { CXmlEntryTemplate("a").AddVersion<Length>(0); }));
}

}  // namespace
