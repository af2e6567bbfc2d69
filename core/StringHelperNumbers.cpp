#include <charconv>
#include <cmath>

#include "platform/Ascii.h"
#include "qvcommon/MathHelper.h"
#include "qvcommon/StringHelper.h"

namespace {

constexpr int kNoIndex = -1, kFindIndex = -2;

struct Amount {
    double value;
    std::string_view unit;
};

Amount Rebase(const Amount& amount, const CDoubleArray& thresholds, const CStringArray& unitNames, int index) {
    if (index == kFindIndex) index = CMathHelper::GetIndexHighestAtOrUnder(thresholds, amount.value);
    if (index == kNoIndex) return amount;
    return {amount.value / thresholds[index], unitNames[index]};
}

// Returns the remainder below the threshold after `count` times it. Corrects rounding errors: slightly negative
// results, and arbitrary ones if the count has more digits than a double.
double Rest(double value, double count, double threshold) {
    const double rest = value - count * threshold;
    if (!(rest > 0)) return 0;
    return rest < threshold ? rest : std::fmod(value, threshold);
}

// Truncates to a whole number, with all its digits, even beyond the range of int.
CString WholeText(double value) {
    CString text;
    text.Format("%.0f", std::trunc(value) + 0.0);
    return text;
}

void AppendPart(CString& text, double count, std::string_view unit, bool plural) {
    if (!text.IsEmpty()) text += ", ";
    text += WholeText(count) + " " + unit;
    if (plural && std::trunc(count) > 1) text += 's';
}

UINT ReadNumber(std::string_view text) {
    text = qv::ascii::TrimmedLeft(text, qv::ascii::IsSpace);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    UINT number = 0;
    for (; !text.empty() && qv::ascii::IsDigit(text[0]); text.remove_prefix(1))
        number = number * 10 + static_cast<UINT>(text[0] - '0');
    return negative ? 0 - number : number;
}

}  // namespace

CString CStringHelper::ToString(double value) {
    CString text;
    text.Format("%g", value);
    return text;
}

CString CStringHelper::ToString(const CUIntArray& values) {
    std::string text;
    for (UINT value : values) {
        char digits[12];
        const auto end = std::to_chars(digits, digits + sizeof digits, static_cast<int>(value)).ptr;
        if (!text.empty()) text += ',';
        text.append(digits, end);
    }
    return text;
}

void CStringHelper::FromString(std::string_view text, CUIntArray& values) {
    for (std::size_t from = 0; from < text.size();) {
        const std::size_t end = std::min(text.find(',', from), text.size());
        if (end > from) values.Add(ReadNumber(text.substr(from, end - from)));
        from = end + 1;
    }
}

CString CStringHelper::ToBasedString(double value, int base, std::string_view separator) {
    double whole;
    const double fraction = std::modf(value, &whole) * base;
    CString text;
    text.Format("%s%s%02d", WholeText(whole), separator, std::isnan(fraction) ? 0 : static_cast<int>(fraction));
    return text;
}

CString CStringHelper::RebaseUnits(double value, std::string_view unitName, const CDoubleArray& thresholds,
                                   const CStringArray& unitNames, int decimals, int index) {
    const Amount amount = Rebase({value, unitName}, thresholds, unitNames, index);
    CString text, unit = amount.unit;
    unit.Replace("%%", "%");  // the unit is used in a format
    text.Format("%.*f %s", decimals, amount.value, unit);
    return text;
}

CString CStringHelper::RebaseUnitsRoundUp(double value, std::string_view unitName, const CDoubleArray& thresholds,
                                          const CStringArray& unitNames) {
    const Amount amount = Rebase({value, unitName}, thresholds, unitNames, kFindIndex);
    CString text;
    text.Format("%.0f %ss", amount.value + 1, amount.unit);
    return text;
}

CString CStringHelper::ToMultibase(double value, std::string_view baseUnitName, const CDoubleArray& thresholds,
                                   const CStringArray& unitNames, int plural) {
    CString text;
    while (std::isfinite(value)) {
        // Each remainder is less than its threshold, so no threshold is used twice.
        const int index = CMathHelper::GetIndexHighestAtOrUnder(thresholds, value);
        if (index == kNoIndex || !(thresholds[index] > 0)) break;
        const double count = std::floor(value / thresholds[index]);
        AppendPart(text, count, unitNames[index], plural != 0);
        value = Rest(value, count, thresholds[index]);
    }
    if (value != 0 || text.IsEmpty()) AppendPart(text, value, baseUnitName, plural != 0);
    return text;
}
