// Any section text is read or refused; what was read survives writing and reading.
#include "fuzz/FuzzInput.h"
#include "qvcommon/Exceptions.h"
#include "qvcommon/XmlSection.h"

namespace {

bool Parse(CXmlSection& section, std::string_view text) {
    try {
        section.SetRawXml(text);
        return true;
    } catch (CVorbexException* error) {
        error->Delete();
        return false;
    }
}

void ReadAll(const CXmlSection& section, std::string_view tag) {
    CString text;
    int number = 0;
    double real = 0;
    BOOL flag = 0;
    COleDateTime date;
    CStringArray list;
    CMapStringToString map;
    CXmlSection inner;
    for (int i = 0; i < 3 && section.GetString(tag, text, i); ++i) {
        Require(CXmlSection::Dirty(CXmlSection::Clean(text)) == text, "escaping comes back");
        section.GetInteger(tag, number, i);
        section.GetDouble(tag, real, i);
        section.GetBool(tag, flag, i);
        section.GetDate(tag, date, i);
        Require(section.GetSection(tag, inner, i), "every value is a section");
        section.GetStringArray(tag, list);
        section.GetStringToStringMap(tag, map);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    CXmlSection section(input.Flag() ? "t" : "");
    const std::string_view text = input.Rest();
    if (!Parse(section, text)) return 0;
    const CString tag = section.GetNextTag();
    ReadAll(section, tag);
    CXmlSection outer, again, inner;
    outer.AddSection(section, 1);
    Require(Parse(again, outer.GetRawXml()), "what was written is read");
    Require(again.GetSection(section.GetTagName(), inner), "it is where it was put");
    Require(inner.GetRawXml() == section.GetRawXml() && inner.GetNextTag() == tag, "it is what it was");
    return 0;
}
