#include "charts/DateTicks.h"

#include <algorithm>
#include <cmath>

#include "charts/Characters.h"
#include "qvcommon/framework/DateTime.h"

namespace qv::charts {
namespace {

constexpr double kSecond = 1.0 / 86400, kMinute = 1.0 / 1440, kHour = 1.0 / 24;
constexpr double kMonth = 30.44, kYear = 365.25;
constexpr double kMondayOffset = 2;  // 1 January 1900 was a Monday, day 2

enum class Unit { Days, Months, Years };

struct Step {
    Unit unit;
    double count;         ///< days, months or years
    const char* text;     ///< format of each tick's text
    const char* context;  ///< format of its context
};

constexpr Step kSteps[] = {{Unit::Days, kSecond, "%H:%M:%S", "%d %b %Y"},
                           {Unit::Days, 2 * kSecond, "%H:%M:%S", "%d %b %Y"},
                           {Unit::Days, 5 * kSecond, "%H:%M:%S", "%d %b %Y"},
                           {Unit::Days, 15 * kSecond, "%H:%M:%S", "%d %b %Y"},
                           {Unit::Days, 30 * kSecond, "%H:%M:%S", "%d %b %Y"},
                           {Unit::Days, kMinute, "%H:%M", "%d %b %Y"},
                           {Unit::Days, 2 * kMinute, "%H:%M", "%d %b %Y"},
                           {Unit::Days, 5 * kMinute, "%H:%M", "%d %b %Y"},
                           {Unit::Days, 15 * kMinute, "%H:%M", "%d %b %Y"},
                           {Unit::Days, 30 * kMinute, "%H:%M", "%d %b %Y"},
                           {Unit::Days, kHour, "%H:%M", "%d %b %Y"},
                           {Unit::Days, 3 * kHour, "%H:%M", "%d %b %Y"},
                           {Unit::Days, 6 * kHour, "%H:%M", "%d %b %Y"},
                           {Unit::Days, 12 * kHour, "%H:%M", "%d %b %Y"},
                           {Unit::Days, 1, "%d", "%b %Y"},
                           {Unit::Days, 2, "%d", "%b %Y"},
                           {Unit::Days, 7, "%d", "%b %Y"},
                           {Unit::Days, 14, "%d", "%b %Y"},
                           {Unit::Months, 1, "%b", "%Y"},
                           {Unit::Months, 3, "%b", "%Y"},
                           {Unit::Months, 6, "%b", "%Y"}};

double Length(const Step& step) {
    return step.count * (step.unit == Unit::Days ? 1 : step.unit == Unit::Months ? kMonth : kYear);
}

Step StepFor(const Range& range, int most) {
    const double wanted = (range.high - range.low) / most;
    const Step* const fits = std::ranges::find_if(kSteps, [&](const Step& step) { return Length(step) >= wanted; });
    if (fits != std::end(kSteps)) return *fits;
    const double years = RoundStep({range.low / kYear, range.high / kYear}, most);
    return {Unit::Years, std::max(1.0, years), "%Y", ""};
}

COleDateTime DateAt(double evenDays) {
    // Rounded to a second, the resolution of date fields.
    return COleDateTime() + COleDateTimeSpan(std::round(evenDays * 86400) / 86400);
}

double EvenDays(const COleDateTime& date) {
    return date.GetStatus() == COleDateTime::valid ? (date - COleDateTime()).GetTotalDays() : kMissing;
}

// Returns the tick with a number, counted in steps over all time; missing if there is no such date.
double Moment(const Step& step, double number) {
    switch (step.unit) {
        case Unit::Days: return number * step.count + (step.count >= 7 ? kMondayOffset : 0);
        case Unit::Months: {
            const double month = number * step.count, year = std::floor(month / 12);
            return EvenDays(COleDateTime(static_cast<int>(year), static_cast<int>(month - year * 12) + 1, 1, 0, 0, 0));
        }
        default: return EvenDays(COleDateTime(static_cast<int>(number * step.count), 1, 1, 0, 0, 0));
    }
}

double FirstNumber(const Step& step, double low) {
    const COleDateTime date = DateAt(low);
    switch (step.unit) {
        case Unit::Days: return std::floor((low - (step.count >= 7 ? kMondayOffset : 0)) / step.count);
        case Unit::Months: return std::floor((date.GetYear() * 12.0 + date.GetMonth() - 1) / step.count);
        default: return std::floor(date.GetYear() / step.count);
    }
}

std::u32string Formatted(const COleDateTime& date, const char* format) {
    return Characters(date.Format(format));
}

}  // namespace

double EvenDays(double date) {
    return IsMissing(date) ? kMissing : EvenDays(COleDateTime(date));
}

void WidenDates(Range& range) {
    if (range.IsEmpty()) range = {0, 1};
    if (range.high - range.low < kSecond) range = {range.low - 0.5, range.high + 0.5};
}

std::vector<Tick> DateTicks(const Range& range, int most) {
    const Step step = StepFor(range, most);
    constexpr double kTolerance = 0.4 * kSecond;
    std::vector<Tick> ticks;
    std::u32string context;
    const double first = FirstNumber(step, range.low);
    for (int i = 0; i <= 2 * most + 2; ++i) {
        const double moment = Moment(step, first + i);
        if (!(moment >= range.low - kTolerance)) continue;
        if (moment > range.high + kTolerance) break;
        const COleDateTime date = DateAt(moment);
        const std::u32string within = Formatted(date, step.context);
        ticks.push_back({moment, Formatted(date, step.text), within == context ? std::u32string() : within});
        context = within;
    }
    return ticks;
}

CString DateText(double evenDays) {
    if (IsMissing(evenDays)) return {};
    const COleDateTime date = DateAt(evenDays);
    const bool isMidnight = date.GetHour() == 0 && date.GetMinute() == 0 && date.GetSecond() == 0;
    return date.Format(isMidnight ? "%Y-%m-%d" : "%Y-%m-%d %H:%M:%S");
}

}  // namespace qv::charts
