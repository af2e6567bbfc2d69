#include <charconv>
#include <iterator>
#include <utility>

#include "framework/DateFields.h"
#include "platform/DateText.h"
#include "qvcommon/framework/DateTime.h"

using qv::platform::CalendarTime;

namespace {

// Formats the conversions of a format, for one date.
class DateWriter {
public:
    explicit DateWriter(const CalendarTime& time)
        : m_time(time), m_weekday(qv::DayOfWeek(time)), m_yearDay(qv::DayOfYear(time)) {}

    void Write(std::string_view format) {
        for (std::size_t i = 0; i < format.size(); ++i) {
            if (format[i] != '%') {
                m_text += format[i];
                continue;
            }
            const std::size_t start = i++;
            if (i < format.size() && (format[i] == 'E' || format[i] == 'O')) ++i;
            if (i >= format.size() || !(WriteNumber(format[i]) || WriteCompound(format[i]) || WriteText(format[i])))
                m_text += format.substr(start, i - start + 1);
        }
    }

    std::string Text() && { return std::move(m_text); }

private:
    bool WriteNumber(char conversion) {
        switch (conversion) {
            case 'Y': return Number(1, m_time.year);
            case 'C': return Number(2, m_time.year / 100);
            case 'y': return Number(2, m_time.year % 100);
            case 'm': return Number(2, m_time.month);
            case 'd': return Number(2, m_time.day);
            case 'e': return Number(2, m_time.day, ' ');
            case 'H': return Number(2, m_time.hour);
            case 'I': return Number(2, (m_time.hour + 11) % 12 + 1);
            case 'M': return Number(2, m_time.minute);
            case 'S': return Number(2, m_time.second);
            case 'j': return Number(3, m_yearDay + 1);
            case 'u': return Number(1, DayFromMonday() + 1);
            case 'w': return Number(1, m_weekday);
            case 'U': return Number(2, (m_yearDay + 7 - m_weekday) / 7);
            case 'W': return Number(2, (m_yearDay + 7 - DayFromMonday()) / 7);
            case 'V': return Number(2, IsoDay() / 7 + 1);
            case 'G': return Number(1, IsoYear());
            case 'g': return Number(2, IsoYear() % 100);
            default: return false;
        }
    }

    bool WriteCompound(char conversion) {
        switch (conversion) {
            case 'D': Write("%m/%d/%y"); break;
            case 'F': Write("%Y-%m-%d"); break;
            case 'R': Write("%H:%M"); break;
            case 'T': Write("%H:%M:%S"); break;
            case 'r': Write("%I:%M:%S %p"); break;
            case 'h': Write("%b"); break;
            default: return false;
        }
        return true;
    }

    bool WriteText(char conversion) {
        switch (conversion) {
            case 'n': m_text += '\n'; break;
            case 't': m_text += '\t'; break;
            case '%': m_text += '%'; break;
            case 'z':
            case 'Z': break;
            case 'a':
            case 'A':
            case 'b':
            case 'B':
            case 'c':
            case 'p':
            case 'x':
            case 'X': m_text += qv::platform::FormatLocaleDate(conversion, m_time, m_weekday); break;
            default: return false;
        }
        return true;
    }

    bool Number(std::size_t width, int value, char fill = '0') {
        char digits[16];
        const auto length = static_cast<std::size_t>(std::to_chars(digits, std::end(digits), value).ptr - digits);
        if (length < width) m_text.append(width - length, fill);
        m_text.append(digits, length);
        return true;
    }

    int DayFromMonday() const { return (m_weekday + 6) % 7; }

    // ISO weeks belong to the year of their Thursday.
    CalendarTime Thursday() const {
        return qv::platform::FromSeconds(qv::platform::ToSeconds(m_time) + (3 - DayFromMonday()) * std::int64_t{86400});
    }
    int IsoDay() const { return qv::DayOfYear(Thursday()); }
    int IsoYear() const { return Thursday().year; }

    CalendarTime m_time;
    int m_weekday;
    int m_yearDay;
    std::string m_text;
};

}  // namespace

CString COleDateTime::Format(std::string_view format) const {
    if (m_status == null) return {};
    const std::optional<CalendarTime> fields = m_status == valid ? qv::FieldsOf(m_dt) : std::nullopt;
    if (!fields) return "Invalid DateTime";
    DateWriter writer(*fields);
    writer.Write(format);
    return std::move(writer).Text();
}
