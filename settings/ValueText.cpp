#include "settings/ValueText.h"

#include <charconv>

#include "platform/Hex.h"
#include "qvcommon/StringHelper.h"

namespace qv {
namespace {

std::string_view WithoutBlanks(std::string_view text) {
    return ascii::Trimmed(text, ascii::IsBlank);
}

/// The number must be the whole text.
template <class Number>
std::optional<Number> ReadNumber(std::string_view text) {
    text = WithoutBlanks(text);
    if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
    Number value{};
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    return error == std::errc() && stop == end ? std::optional(value) : std::nullopt;
}

}  // namespace

std::optional<int> ReadIntegerText(std::string_view text) {
    return ReadNumber<int>(text);
}

std::optional<DWORD> ReadUnsignedText(std::string_view text) {
    return ReadNumber<DWORD>(text);
}

CString DoubleText(double value) {
    char digits[32];
    const auto end = std::to_chars(digits, std::end(digits), value).ptr;
    return CString(std::string_view(digits, static_cast<std::size_t>(end - digits)));
}

std::optional<double> ReadDoubleText(std::string_view text) {
    return ReadNumber<double>(text);
}

CString BoolText(BOOL value) {
    return value ? "true" : "false";
}

std::optional<BOOL> ReadBoolText(std::string_view text) {
    for (const std::string_view yes : {"true", "yes", "on", "1"})
        if (ascii::EqualsIgnoreCase(WithoutBlanks(text), yes)) return 1;
    for (const std::string_view no : {"false", "no", "off", "0"})
        if (ascii::EqualsIgnoreCase(WithoutBlanks(text), no)) return 0;
    return std::nullopt;
}

CString DateText(const COleDateTime& value) {
    if (value.GetStatus() != COleDateTime::valid) AfxThrowInvalidArgException();
    CString text;
    text.Format("%04d-%02d-%02d %02d:%02d:%02d", value.GetYear(), value.GetMonth(), value.GetDay(), value.GetHour(),
                value.GetMinute(), value.GetSecond());
    return text;
}

std::optional<COleDateTime> ReadDateText(std::string_view text) {
    COleDateTime date;
    return date.ParseDateTime(text) ? std::optional(date) : std::nullopt;
}

// The empty text is the empty list, so a list of one empty text is quoted.
CString ListText(const CStringArray& values) {
    if (values.GetSize() == 1 && values[0].IsEmpty()) return "\"\"";
    return CStringHelper::ArrayToCsv(values);
}

CStringArray ReadListText(std::string_view text) {
    return text.empty() ? CStringArray() : CStringHelper::CsvToArray(text);
}

CString BytesText(std::string_view bytes) {
    return CString(HexText(bytes));
}

std::optional<CString> ReadBytesText(std::string_view text) {
    text = WithoutBlanks(text);
    if (text.size() % 2 != 0) return std::nullopt;
    CString bytes;
    bytes.reserve(text.size() / 2);
    for (std::size_t i = 0; i < text.size(); i += 2) {
        const auto byte = HexByteAt(text, i);
        if (!byte) return std::nullopt;
        bytes += *byte;
    }
    return bytes;
}

}  // namespace qv
