#include "fuzz/FuzzInput.h"
#include "qvcommon/StringHelper.h"

namespace {

// A reference implementation, byte by byte.
CStringArray ReadPlainly(std::string_view text) {
    CStringArray fields;
    std::string field;
    bool quoted = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (quoted && text.substr(i, 2) == "\"\"") {
            field += text[i++];
        } else if (c == '"') {
            quoted = !quoted;
        } else if (c == ',' && !quoted) {
            fields.Add(std::string_view(field));
            field.clear();
        } else {
            field += c;
        }
    }
    fields.Add(std::string_view(field));
    return fields;
}

// Comma lists cannot represent a text with their escaped comma, and drop empty elements.
bool SurvivesCommaLists(const CStringArray& fields) {
    for (const CString& field : fields)
        if (field.IsEmpty() || field.Find("\\0x2C") >= 0) return false;
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = FuzzInput(data, size).Rest();
    CStringArray fields, again;
    CStringHelper::CsvToArray(text, fields);
    Require(fields == ReadPlainly(text), "CSV is read by its rule");
    CStringHelper::CsvToArray(CStringHelper::ArrayToCsv(fields), again);
    Require(again == fields, "what ArrayToCsv writes is read back");

    again.RemoveAll();
    CStringHelper::SplitString(text, "\"", again, 1);
    Require(std::string_view(CStringHelper::MakeString(again, "\"", -1, 1)) == text, "MakeString undoes SplitString");

    if (SurvivesCommaLists(fields)) {
        CStringHelper::StringToStringArray(CStringHelper::StringArrayToString(fields), again);
        Require(again == fields, "what StringArrayToString writes is read back");
    }
    return 0;
}
