#include "charts/Numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace qv::charts {
namespace {

struct Unit {
    double size;
    const char* name;
};

constexpr Unit kUnits[] = {{1e12, "tn"}, {1e9, "bn"}, {1e6, "M"}};
constexpr double kWritten = 1e15, kSmall = 1e-4;  // beyond these bounds, an exponent is used
constexpr int kDigits = 6;                        // significant digits of a value in a table
constexpr int kMostDecimals = 3;                  // decimals of a number with a unit

std::string Fixed(double value, int decimals) {
    std::array<char, 400> digits;
    const auto end =
        std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed, decimals);
    return {digits.data(), end.ptr};
}

int Exponent(double value) {
    return static_cast<int>(std::floor(std::log10(value) + 1e-9));
}

int DecimalsFor(double step) {
    return std::max(0, -Exponent(step));
}

std::string WithCommas(std::string number) {
    const std::size_t first = number.starts_with('-') ? 1 : 0;
    std::size_t end = std::min(number.find('.'), number.size());
    while (end > first + 3) number.insert(end -= 3, 1, ',');
    return number;
}

// "1.5e18"
std::string WithExponent(double value, double step, double magnitude) {
    const int precision = std::clamp(Exponent(magnitude) - Exponent(step), 0, 15);
    std::array<char, 40> digits;
    const auto end =
        std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::scientific, precision);
    std::string text(digits.data(), end.ptr);
    std::size_t at = text.find('e') + 1;
    if (text[at] == '+') text.erase(at, 1);
    at += text[at] == '-';
    while (text[at] == '0' && at + 1 < text.size()) text.erase(at, 1);
    return text;
}

const Unit* UnitFor(double step, double magnitude) {
    const Unit* const unit =
        std::find_if(std::begin(kUnits), std::end(kUnits), [&](const Unit& each) { return magnitude >= each.size; });
    return unit != std::end(kUnits) && DecimalsFor(step / unit->size) <= kMostDecimals ? unit : nullptr;
}

}  // namespace

std::string Shortest(double value) {
    std::array<char, 40> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value == 0 ? 0 : value);
    return {digits.data(), end.ptr};
}

void AppendCoordinate(std::string& out, double value) {
    const long tenths = std::lround(value * 10);
    std::array<char, 24> digits;
    char* const begin = digits.data();
    if (tenths < 0) out += '-';
    const long size = std::labs(tenths);
    const auto end = std::to_chars(begin, begin + digits.size(), size / 10).ptr;
    out.append(begin, end);
    if (size % 10) (out += '.') += static_cast<char>('0' + size % 10);
}

void AppendPoint(std::string& out, double x, double y) {
    AppendCoordinate(out, x);
    out += ' ';
    AppendCoordinate(out, y);
}

std::u32string WithMinus(const std::string& number) {
    std::u32string text(number.begin(), number.end());
    std::ranges::replace(text, U'-', U'\u2212');
    return text;
}

std::u32string TickText(double value, double step, double magnitude) {
    if (std::abs(value) < step / 2) return U"0";
    if (magnitude >= kWritten || magnitude < kSmall) return WithMinus(WithExponent(value, step, magnitude));
    if (const Unit* const unit = UnitFor(step, magnitude))
        return WithMinus(Fixed(value / unit->size, DecimalsFor(step / unit->size)) + unit->name);
    return WithMinus(WithCommas(Fixed(value, DecimalsFor(step))));
}

std::vector<std::u32string> AlignedTexts(const std::vector<double>& values) {
    double magnitude = 0;
    for (const double value : values) magnitude = std::max(magnitude, std::abs(value));
    std::vector<std::u32string> texts;
    if (magnitude >= kWritten || magnitude < kSmall) {
        for (const double value : values) texts.push_back(WithMinus(WithExponent(value, magnitude / 1000, magnitude)));
        return texts;
    }
    const int most = std::clamp(kDigits - 1 - Exponent(magnitude), 0, 9);
    std::size_t decimals = 0;
    for (const double value : values) {
        const std::string text = Fixed(value, most);
        const std::size_t zeros = text.size() - 1 - text.find_last_not_of('0');
        decimals = std::max(decimals, static_cast<std::size_t>(most) - std::min(zeros, static_cast<std::size_t>(most)));
    }
    for (const double value : values) texts.push_back(WithMinus(WithCommas(Fixed(value, static_cast<int>(decimals)))));
    return texts;
}

std::u32string PercentText(double share) {
    return WithMinus(Fixed(share * 100, 1) + '%');
}

}  // namespace qv::charts
