#include <array>
#include <utility>

#include "framework/DateCursor.h"
#include "framework/DateFields.h"
#include "platform/Clock.h"
#include "platform/Text.h"

namespace qv {
namespace {

using platform::CalendarTime;
using platform::DateOrder;
using platform::DateWord;
using Kind = platform::DateWordKind;

constexpr CalendarTime kNoDate{.year = 1899, .month = 12, .day = 30};

int ThisYear() {
    const std::int64_t now = platform::SecondsNow();
    return platform::ToLocal(now).value_or(platform::FromSeconds(now)).year;
}

const std::vector<DateWord>& EnglishWords() {
    static const std::vector<DateWord> words = [] {
        constexpr std::array months{"january", "february", "march",     "april",   "may",      "june",
                                    "july",    "august",   "september", "october", "november", "december"};
        constexpr std::array weekdays{"monday", "tuesday", "wednesday", "thursday", "friday", "saturday", "sunday"};
        std::vector<DateWord> all{{"am", Kind::Am}, {"pm", Kind::Pm}, {"utc", Kind::Zone}, {"gmt", Kind::Zone}};
        const auto add = [&all](const std::string& name, Kind kind, int month) {
            all.push_back({name, kind, month});
            all.push_back({name.substr(0, 3), kind, month});
        };
        for (std::size_t i = 0; i < months.size(); ++i) add(months[i], Kind::Month, static_cast<int>(i) + 1);
        for (const char* const weekday : weekdays) add(weekday, Kind::Weekday, 0);
        return all;
    }();
    return words;
}

// "Z", "+02", "+02:00" or "+0200".
bool TakeIsoZone(DateCursor& cursor) {
    if (cursor.Take('z')) return true;
    if (!cursor.Take('+') && !cursor.Take('-')) return true;
    int hours = 0, minutes = 0;
    if (!cursor.TakeDigits(2, hours)) return false;
    const bool colon = cursor.Take(':');
    if ((colon || IsDigit(cursor.Next())) && !cursor.TakeDigits(2, minutes)) return false;
    return hours < 24 && minutes < 60;
}

bool TakeIsoTime(DateCursor& cursor, CalendarTime& time) {
    if (!cursor.TakeDigits(2, time.hour)) return false;
    const bool colons = cursor.Take(':');
    if (!cursor.TakeDigits(2, time.minute)) return false;
    if (colons ? cursor.Take(':') : IsDigit(cursor.Next())) {
        if (!cursor.TakeDigits(2, time.second)) return false;
        if (cursor.Take('.') || cursor.Take(',')) {
            if (!IsDigit(cursor.Next())) return false;
            while (IsDigit(cursor.Next())) cursor.Skip(1);
        }
    }
    return TakeIsoZone(cursor);
}

std::optional<double> ReadIsoDate(std::string_view lower) {
    DateCursor cursor(lower);
    CalendarTime time;
    if (!cursor.TakeDigits(4, time.year)) return std::nullopt;
    const bool dashes = cursor.Take('-');
    if (!cursor.TakeDigits(2, time.month) || cursor.Take('-') != dashes || !cursor.TakeDigits(2, time.day))
        return std::nullopt;
    if (!cursor.AtEnd() && !((cursor.Take('t') || cursor.Take(' ')) && TakeIsoTime(cursor, time))) return std::nullopt;
    return cursor.AtEnd() ? DateOf(time) : std::nullopt;
}

// Parses the other forms: splits the text into numbers and words, and then interprets them.
class DateReader {
public:
    DateReader(std::string_view lower, const std::vector<DateWord>& words, DateOrder order, bool dottedTimes)
        : m_cursor(lower), m_words(words), m_order(order), m_dottedTimes(dottedTimes) {}

    std::optional<double> Read() {
        for (m_cursor.SkipBlanks(); !m_cursor.AtEnd(); m_cursor.SkipBlanks())
            if (!ReadToken()) return std::nullopt;
        if (m_separator && m_separator != '.') return std::nullopt;
        if (!ApplyHalf()) return std::nullopt;
        return m_month ? WithMonthName() : WithNumbers();
    }

private:
    bool ReadToken() {
        if (const DateWord* const word = m_cursor.TakeWord(m_words)) {
            m_separator.reset();
            return UseWord(*word);
        }
        if (!IsDigit(m_cursor.Next())) return UseSeparator();
        m_separator.reset();
        DateNumber number;
        return m_cursor.TakeNumber(number) && UseNumber(number);
    }

    // One separator between two parts, or a comma after a dot.
    bool UseSeparator() {
        constexpr std::string_view separators = "/-.,";
        const char c = m_cursor.Next();
        if (!m_begun || separators.find(c) == separators.npos) return false;
        if (m_separator && !(m_separator == '.' && c == ',')) return false;
        m_separator = c;
        m_lastWasNumber = m_lastWasNumber && c == '.';
        return m_cursor.Skip(1);
    }

    bool UseWord(const DateWord& word) {
        const bool begun = std::exchange(m_begun, true);
        const bool afterNumber = std::exchange(m_lastWasNumber, false);
        switch (word.kind) {
            case Kind::Month: return UseMonth(word);
            case Kind::Weekday: return !std::exchange(m_hasWeekday, true);
            case Kind::Am:
            case Kind::Pm: return UseHalf(word, afterNumber);
            case Kind::Zone:
            case Kind::TimeSeparator: return m_hasTime;
            case Kind::Separator: return begun;
        }
        return false;
    }

    // Some locales abbreviate a month and a day of the week to the same text: then another month in the text takes
    // precedence.
    bool UseMonth(const DateWord& word) {
        if (m_month && IsWeekdayToo(word)) return !std::exchange(m_hasWeekday, true);
        if (m_month && (!IsWeekdayToo(*m_month) || std::exchange(m_hasWeekday, true))) return false;
        m_month = &word;
        return true;
    }

    bool IsWeekdayToo(const DateWord& month) const {
        for (const DateWord& word : m_words)
            if (word.kind == Kind::Weekday && word.text == month.text) return true;
        return false;
    }

    // "2 PM": the preceding number was the hour, not part of the date.
    bool UseHalf(const DateWord& word, bool afterNumber) {
        if (m_half) return false;
        m_half = &word;
        if (m_hasTime || !afterNumber) return true;
        const DateNumber hour = m_numbers[--m_count];
        m_hasTime = true;
        m_time.hour = hour.value;
        return hour.digits <= 2;
    }

    bool UseNumber(const DateNumber& number) {
        m_begun = true;
        if (const auto separator = TakeTimeSeparator()) return ReadTime(number, *separator);
        if (m_count == m_numbers.size()) return false;
        m_numbers[m_count++] = number;
        m_lastWasNumber = true;
        return true;
    }

    bool DateIsComplete() const { return m_count == 3 || (m_month && m_count == 2); }

    // A word is one of the locale's.
    enum class TimeSeparator { Colon, Point, Word };

    // Returns nullopt if no time continues here.
    std::optional<TimeSeparator> TakeTimeSeparator() {
        if (m_cursor.Take(':')) return TimeSeparator::Colon;
        if (m_dottedTimes && DateIsComplete() && m_cursor.Take('.')) return TimeSeparator::Point;
        DateCursor ahead = m_cursor;
        const DateWord* const word = ahead.TakeWord(m_words);
        if (!word || word->kind != Kind::TimeSeparator) return std::nullopt;
        m_cursor = ahead;
        return TimeSeparator::Word;
    }

    bool ReadTime(const DateNumber& hour, TimeSeparator separator) {
        DateNumber minute, second;
        if (std::exchange(m_hasTime, true) || !m_cursor.TakeNumber(minute)) return false;
        if (const auto next = TakeTimeSeparator()) {
            const bool isWord = next == TimeSeparator::Word;
            const bool isUnit = isWord && !IsDigit(m_cursor.Next());  // a word after the minutes, without seconds
            if (!isUnit && !isWord && next != separator) return false;
            if (!isUnit && !m_cursor.TakeNumber(second)) return false;
        }
        m_time.hour = hour.value;
        m_time.minute = minute.value;
        m_time.second = second.value;
        return hour.digits <= 2 && minute.digits <= 2 && second.digits <= 2;
    }

    bool ApplyHalf() {
        if (!m_half) return true;
        if (!m_hasTime || m_time.hour < 1 || m_time.hour > 12) return false;
        m_time.hour = m_time.hour % 12 + (m_half->kind == Kind::Pm ? 12 : 0);
        return true;
    }

    std::optional<double> DateWith(int year, int month, const DateNumber& day) const {
        if (day.digits > 2) return std::nullopt;
        return DateOf({year, month, day.value, m_time.hour, m_time.minute, m_time.second});
    }
    std::optional<double> DateWith(int year, const DateNumber& month, const DateNumber& day) const {
        if (month.digits > 2) return std::nullopt;
        return DateWith(year, month.value, day);
    }

    std::optional<double> WithMonthName() const {
        const auto& [a, b, c, d] = m_numbers;
        constexpr DateNumber first{1, 1};
        const int month = m_month->month;
        if (m_count == 1 && a.MustBeYear()) return DateWith(a.AsYear(), month, first);
        if (m_count == 1) return DateWith(ThisYear(), month, a);
        if (m_count != 2) return std::nullopt;
        const bool yearFirst = a.MustBeYear() || a.value > 31;
        return yearFirst ? DateWith(a.AsYear(), month, b) : DateWith(b.AsYear(), month, a);
    }

    std::optional<double> WithNumbers() const {
        const auto& [a, b, c, d] = m_numbers;
        constexpr DateNumber first{1, 1};
        if (m_count == 3) return WithThreeNumbers();
        if (m_count == 2 && a.MustBeYear()) return DateWith(a.AsYear(), b, first);
        if (m_count == 2 && b.MustBeYear()) return DateWith(b.AsYear(), a, first);
        if (m_count == 2) {
            const auto dayFirst = DateWith(ThisYear(), b, a), monthFirst = DateWith(ThisYear(), a, b);
            if (m_order == DateOrder::DayMonthYear) return dayFirst ? dayFirst : monthFirst;
            return monthFirst ? monthFirst : dayFirst;
        }
        if (m_count != 0 || m_hasWeekday || !m_hasTime) return std::nullopt;
        CalendarTime time = m_time;
        time.year = kNoDate.year;
        time.month = kNoDate.month;
        time.day = kNoDate.day;
        return DateOf(time);
    }

    std::optional<double> WithThreeNumbers() const {
        const auto& [a, b, c, d] = m_numbers;
        for (const DateOrder order :
             {m_order, DateOrder::DayMonthYear, DateOrder::MonthDayYear, DateOrder::YearMonthDay}) {
            const auto date = order == DateOrder::DayMonthYear   ? DateWith(c.AsYear(), b, a)
                              : order == DateOrder::MonthDayYear ? DateWith(c.AsYear(), a, b)
                                                                 : DateWith(a.AsYear(), b, c);
            if (date) return date;
        }
        return std::nullopt;
    }

    DateCursor m_cursor;
    const std::vector<DateWord>& m_words;
    DateOrder m_order;
    bool m_dottedTimes;

    std::array<DateNumber, 4> m_numbers;  // of the date, and possibly an hour
    std::size_t m_count = 0;
    const DateWord* m_month = nullptr;
    const DateWord* m_half = nullptr;
    CalendarTime m_time;
    bool m_hasTime = false;
    bool m_hasWeekday = false;
    bool m_begun = false;
    bool m_lastWasNumber = false;
    std::optional<char> m_separator;  // just before
};

}  // namespace

// The cheap formats are tried first; the current locale's words are queried only if they fail.
std::optional<double> ReadDate(std::string_view text) {
    text = ascii::Trimmed(text, ascii::IsBlank);
    const std::string lower = ascii::ToLower(text);
    if (const auto date = ReadIsoDate(lower)) return date;
    const DateOrder order = platform::CurrentDateOrder();
    const bool dottedTimes = platform::CurrentTimesAreDotted();
    if (const auto date = DateReader(lower, EnglishWords(), order, dottedTimes).Read()) return date;
    std::vector<DateWord> words = platform::CurrentDateWords();
    if (words.empty()) return std::nullopt;
    words.insert(words.end(), EnglishWords().begin(), EnglishWords().end());
    return DateReader(platform::ToLower(text), words, order, dottedTimes).Read();
}

}  // namespace qv
