#include <gtest/gtest.h>

#include <map>
#include <sstream>

#include "framework/DateFields.h"
#include "platform/Path.h"
#include "qvcommon/framework/DateTime.h"
#include "tests/support/ScopedLocale.h"

using namespace std::string_view_literals;

namespace {

// By the library's own rules, without the system's reader, which ParseDateTime asks first.
std::string Read(std::string_view text) {
    const std::optional<double> date = qv::ReadDate(text);
    return date ? COleDateTime(*date).Format("%Y-%m-%d %H:%M:%S").AsStd() : "";
}

TEST(DateTimeParse, ParsesSupportedFormats) {
    const std::string year = COleDateTime::GetCurrentTime().Format("%Y").AsStd();
    const std::map<std::string, std::vector<const char*>> dates{
        {"2004-05-05 14:03:07",
         {"05 May 2004 14:03:07", "May 05 2004, 14:03:07", "2004-05-05 14:03:07", "2004-05-05T14:03:07",
          "2004-05-05T14:03:07.999Z", "20040505T140307", "14:03:07 5 May 2004", "5., May 2004 14:03:07"}},
        {"2004-05-05 14:03:00", {"05 May 2004 14:03", "May 5, 2004 2:03 pm", "2004-05-05t14:03z"}},
        {"2004-05-05 23:03:07", {"2004-05-05T23:03:07+02:00", "2004-05-05T23:03:07-0930"}},
        {"2004-05-05 00:00:00", {"  5-MAY-04\t", "2004-05-05", "2004/05/05"}},
        {"2004-05-01 00:00:00", {"May 2004"}},
        {"1999-05-04 00:00:00", {"99 May 4", "4 May 99"}},
        {"2004-12-25 00:00:00", {"25/12/2004", "12/25/2004"}},
        {"2029-01-01 00:00:00", {"1-JAN-29"}},
        {"1930-01-01 00:00:00", {"1-JAN-30"}},
        {"1899-12-30 00:00:00", {"12:00:00 AM"}},
        {"1899-12-30 12:00:00", {"12:00 PM", "30 Dec 1899 12:00:00"}},
        {"1899-12-30 14:03:00", {"14:03"}},
        {"100-01-01 00:00:00", {"01 Jan 100 00:00:00"}},
        {"9999-12-31 23:59:59", {"31 Dec 9999 23:59:59"}},
        {year + "-05-05 00:00:00", {"5 May"}},
    };
    for (const auto& [date, texts] : dates)
        for (const char* const text : texts) EXPECT_EQ(Read(text), date) << text;
}

TEST(DateTimeParse, RejectsMalformedDates) {
    std::istringstream texts(
        "| |INVALID|INVALID DATE|Invalid DateTime|30 Feb 2004|29 Feb 1900|31/31/2004|2004-13-01|"
        "2004-05-05T|2004-05-05T14|2004-05-05T14:03:|2004-05-05T24:00:00|2004-05-05T14:03:07+25:00|"
        "2004-05-05T14:03:07.Z|05 May 2004 14:60:00|05 May 2004 24:00:00|05 May 2004 13:00 PM|05 May 2004 1:2:3:4|"
        "05 May 2004 14:03 15:04|05 May 10000|05 May June 2004|05 Mayor 2004|1 Jan 0050|1/2/3/4/5|"
        "-5/5/2004|5//5/2004|5./5/2004|Monday 14:03|14:|:14|PM|<date/>|99999999999999999999999999 May 2004|"
        "05 May 2004 \xFF");
    for (std::string text; std::getline(texts, text, '|');) EXPECT_EQ(Read(text), "") << text;
    EXPECT_EQ(Read("05 May 2004\0"sv), "");
    EXPECT_EQ(Read(std::string(1 << 20, ' ') + "x"), "");
    EXPECT_EQ(Read(std::string(1 << 20, '9')), "");
}

TEST(DateTimeParse, FormatAndParseRoundtrip) {
    for (double number = -657434; number <= 2958465; number += 211.3) {
        const COleDateTime date(number);
        for (const char* const format : {"%d %b %Y %H:%M:%S", "%B %d %Y, %H:%M:%S", "%Y-%m-%dT%H:%M:%S"}) {
            if (date.GetYear() < 1000 && format[1] == 'Y') continue;  // ISO's years have four digits
            COleDateTime read;
            ASSERT_TRUE(read.ParseDateTime(date.Format(format))) << date.Format(format);
            ASSERT_EQ(read.Format(format), date.Format(format));
        }
    }
}

TEST(DateTimeParse, FailureSetsInvalidStatus) {
    for (const std::string_view text : {"INVALID"sv, "05 May 2004\0"sv, ""sv}) {
        COleDateTime date(7.0);
        EXPECT_FALSE(date.ParseDateTime(text)) << text;
        EXPECT_EQ(date.GetStatus(), COleDateTime::invalid);
        EXPECT_EQ(date.m_dt, 7);
    }
}

// What the locale's own formats write is read again, and its order of day and month is kept.
TEST(DateTimeParse, FollowsTheLocale) {
    if (qv::platform::HasDriveLetters() && Read("1/2/2004") != "2004-01-02 00:00:00")
        GTEST_SKIP() << "the user's settings put the day before the month";
    using Locale = std::tuple<const char*, const char*>;
    int tried = 0;
    for (const auto& [name, fifthOfApril] :
         {Locale{"C", "04/05/2004"}, Locale{"en_US.UTF-8", "4/5/2004"}, Locale{"en_GB.UTF-8", "5/4/04"},
          Locale{"de_DE.UTF-8", "5.4.2004"}, Locale{"fr_FR.UTF-8", "5 AVRIL 2004"},
          Locale{"es_ES.UTF-8", "mar 5 abr 2004"}, Locale{"cs_CZ.UTF-8", "5. dubna 2004"},
          Locale{"fi_FI.UTF-8", "5. huhtikuuta 2004"}, Locale{"hu_HU.UTF-8", "2004. ápr. 5., hétfő"},
          Locale{"ja_JP.UTF-8", "2004年4月5日"}, Locale{"ru_RU.UTF-8", "5 АПРЕЛЯ 2004"},
          Locale{"sv_SE.UTF-8", "04-04-05"}}) {
        const ScopedLocale scope(name);
        if (!scope) continue;
        ++tried;
        EXPECT_EQ(Read(fifthOfApril), "2004-04-05 00:00:00") << name;
        for (double number = 36526.7; number < 36526 + 366; number += 5.31) {
            const COleDateTime date(number);
            const std::string full = date.Format("%Y-%m-%d %H:%M:%S").AsStd();
            for (const char* const format : {"%c", "%x %X", "%d %b %Y %H:%M:%S", "%d %B %Y %X"})
                EXPECT_EQ(Read(date.Format(format)), full) << name << ": " << date.Format(format);
            EXPECT_EQ(Read(date.Format("%x")), full.substr(0, 10) + " 00:00:00") << name;
        }
    }
    if (tried < 2) GTEST_SKIP() << "no locale but C is installed (checked: C)";
}

}  // namespace
