#include "xml/Numbers.h"

#include <charconv>
#include <cmath>
#include <limits>

#include "platform/Ascii.h"

namespace qv {
namespace {

// Removes what the C library skips before a number.
std::string_view WithoutBlanks(std::string_view text) {
    return ascii::TrimmedLeft(text, ascii::IsSpace);
}

// from_chars accepts no plus sign.
std::string_view WithoutPlus(std::string_view text) {
    if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
    return text;
}

template <class... Form>
std::string Write(double value, Form... form) {
    char buffer[400];  // the longest double has 309 digits before the decimal point
    return {buffer, std::to_chars(buffer, buffer + sizeof buffer, value, form...).ptr};
}

}  // namespace

int ReadInteger(std::string_view text) {
    text = WithoutPlus(WithoutBlanks(text));
    int value = 0;
    if (std::from_chars(text.data(), text.data() + text.size(), value).ec == std::errc::result_out_of_range)
        return text[0] == '-' ? std::numeric_limits<int>::min() : std::numeric_limits<int>::max();
    return value;
}

double ReadDouble(std::string_view text) {
    text = WithoutPlus(WithoutBlanks(text));
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc::result_out_of_range) return value;
    const std::string_view number(text.data(), static_cast<std::size_t>(end - text.data()));
    const bool small = number.find("e-") != number.npos || number.find("E-") != number.npos ||
                       number.find_first_of("123456789") > number.find('.');
    return small ? 0 : text[0] == '-' ? -HUGE_VAL : HUGE_VAL;
}

bool ReadBool(std::string_view text) {
    return ascii::EqualsIgnoreCase(text, "true");
}

std::string WriteShort(double value) {
    return Write(value, std::chars_format::general, 6);
}

std::string WriteFixed(double value) {
    return Write(value, std::chars_format::fixed, 6);
}

std::string WriteDate(const COleDateTime& date, bool seconds) {
    constexpr std::string_view months = "JanFebMarAprMayJunJulAugSepOctNovDec";
    const auto month = static_cast<std::size_t>(date.GetMonth() - 1) * 3;
    CString text;
    text.Format("%02d %s %d %02d:%02d", date.GetDay(), months.substr(month, 3), date.GetYear(), date.GetHour(),
                date.GetMinute());
    CString rest;
    if (seconds) rest.Format(":%02d", date.GetSecond());
    return (text + rest).AsStd();
}

}  // namespace qv
