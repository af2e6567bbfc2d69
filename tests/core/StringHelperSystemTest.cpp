#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <limits>
#include <regex>
#include <set>

#include "platform/Error.h"
#include "platform/Text.h"
#include "qvcommon/StringHelper.h"
#include "tests/support/ScopedLocale.h"

using namespace std::string_view_literals;

namespace {

constexpr bool kWindows = std::filesystem::path::preferred_separator == '\\';
constexpr unsigned kPlainText = 1;

TEST(StringSystem, ErrorMessages) {
    constexpr unsigned long kNoSuchFile = 2;
    EXPECT_EQ(CStringHelper::GetErrorMessage(kNoSuchFile), qv::platform::ErrorMessage(kNoSuchFile).c_str());
    EXPECT_GT(CStringHelper::GetErrorMessage(kNoSuchFile).GetLength(), 5);
    EXPECT_EQ(CStringHelper::GetErrorMessage(0x1FFFFFFF), "");
    qv::platform::SetLastError(kNoSuchFile);
    EXPECT_EQ(CStringHelper::GetLastErrorString(), CStringHelper::GetErrorMessage(kNoSuchFile));
}

TEST(StringSystem, Guids) {
    const std::regex version4("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}");
    std::set<std::string> seen;
    for (int i = 0; i < 100; ++i) {
        const std::string guid = CStringHelper::GetNewGuid(0).AsStd();
        EXPECT_TRUE(std::regex_match(guid, version4)) << guid;
        EXPECT_TRUE(seen.insert(guid).second);
    }
    const std::string braced = CStringHelper::GetNewGuid(1).AsStd();
    EXPECT_TRUE(braced.size() == 38 && braced.front() == '{' && braced.back() == '}') << braced;
}

TEST(StringSystem, LocaleSetsCurrencyAndListSeparator) {
    if (kWindows) GTEST_SKIP() << "the user's settings decide, not the C locale";
    using Row = std::tuple<const char*, const char*, const char*, const char*>;
    for (const auto& [name, symbol, amount, separator] :
         {Row{"C", "$", "-1234.50", ","}, Row{"en_US.UTF-8", "$", "-$1,234.50", ","},
          Row{"de_DE.UTF-8", "\xE2\x82\xAC", "-1.234,50 \xE2\x82\xAC", ";"}}) {
        const ScopedLocale locale(name);
        if (!locale) continue;
        EXPECT_EQ(CStringHelper::GetLocalCurrency(), symbol);
        EXPECT_EQ(CStringHelper::InternationalizeCurrency(-1234.5), amount);
        EXPECT_EQ(CStringHelper::GetLocaleListSeperator(), separator);
    }
}

TEST(StringSystem, CurrencyOutOfRangeIsEmpty) {
    EXPECT_NE(CStringHelper::InternationalizeCurrency(1234.0).Find("234"), -1);
    EXPECT_EQ(CStringHelper::InternationalizeCurrency(1e300), "");
    EXPECT_EQ(CStringHelper::InternationalizeCurrency(std::numeric_limits<double>::infinity()), "");
    EXPECT_FALSE(CStringHelper::GetLocalCurrency().IsEmpty());
    EXPECT_FALSE(CStringHelper::GetLocaleListSeperator().IsEmpty());
}

// The program of this suite has the resource tests/core/Version.rc on Windows.
TEST(StringSystem, VersionResource) {
    constexpr auto file = "qvcommon_tests.exe";
    EXPECT_EQ(CStringHelper::GetLanguageCodepage(file), kWindows ? 0x040904E4 : 0u);
    EXPECT_EQ(CStringHelper::GetFileVersionAsString(file), kWindows ? "1.2.3.65535" : "");
    EXPECT_EQ(CStringHelper::GetVersionString(file), kWindows ? "1.2 (third)" : "");
    EXPECT_EQ(CStringHelper::GetVersionInfo(file, "CompanyName"),
              kWindows ? CString(qv::platform::FromWide(u"Tests \u00A9")) : "");
    EXPECT_EQ(CStringHelper::GetVersionInfo(file, "Absent"), "");
    EXPECT_EQ(CStringHelper::GetLanguageCodepage("no such file"), 0u);
    EXPECT_EQ(CStringHelper::GetFileVersionAsString("no such file"), "");
}

TEST(StringSystem, Clipboard) {
    CStringHelper::SetClipboard(nullptr, "one\ttwo\0cut"sv, kPlainText);
    EXPECT_EQ(CStringHelper::GetClipboard(nullptr, kPlainText), kWindows ? "one\ttwo" : "");
    EXPECT_EQ(CStringHelper::GetClipboardAsVbScript(nullptr, "s", 0),
              kWindows ? "s = s + \"one\" + chr(9) + \"two\" + chr(10)\n" : "");
    constexpr unsigned kOwnFormat = 0x0201;
    CStringHelper::SetClipboard(nullptr, "", kOwnFormat);
    EXPECT_EQ(CStringHelper::GetClipboard(nullptr, kPlainText), "");
    EXPECT_EQ(CStringHelper::GetClipboardAsVbScript(nullptr, "s", 0), "");
}

TEST(StringSystem, TextAsScript) {
    using Row = std::tuple<const char*, const char*, int, const char*>;
    for (const auto& [text, variable, escapePercent, script] :
         {Row{"a", "s", 0, "s = s + \"a\" + chr(10)\n"}, Row{"", "s", 0, "s = s + chr(10)\n"},
          Row{"", "", 0, " + chr(10) + "},
          Row{"a\r\n\nb\rc", "", 0, "\"a\" + chr(10) +  + chr(10) + \"b\" + chr(10) + \"c\" + chr(10) + "},
          Row{"\n\r", "s", 0, "s = s + chr(10)\ns = s + chr(10)\ns = s + chr(10)\n"},
          Row{"\ta\t\tb\t", "", 0, "chr(9) + \"a\" + chr(9) + chr(9) + \"b\" + chr(9) + chr(10) + "},
          Row{"say \"x\" + ", "s", 0, "s = s + \"say \"\"x\"\" + \" + chr(10)\n"},
          Row{"5%", "s", 1, "s = s + \"5\\%\" + chr(10)\n"}, Row{"5%", "s", 0, "s = s + \"5%\" + chr(10)\n"}})
        EXPECT_EQ(CStringHelper::TextAsVbScript(text, variable, escapePercent), script);
}

TEST(StringSystem, SimpleEncryptRoundtrip) {
    std::string bytes;
    for (int i = 0; i < 256; ++i) bytes += static_cast<char>(i);
    for (const std::string& key : {std::string(), std::string("k"), bytes, std::string(1, '\0')})
        for (const std::string& text : {std::string(), std::string("x"), bytes, std::string(50, 'a')}) {
            const CString coded = CStringHelper::SimpleEncrypt(text, key);
            EXPECT_EQ(coded.GetLength(), static_cast<int>(2 * text.size() + 2));
            EXPECT_EQ(coded.AsStd().find_first_not_of("0123456789ABCDEF"), std::string::npos);
            EXPECT_EQ(CStringHelper::SimpleDecrypt(coded, key).AsStd(), text);
        }
    std::set<std::string> codings;
    for (int i = 0; i < 64; ++i) codings.insert(CStringHelper::SimpleEncrypt("the same", "key").AsStd());
    EXPECT_GT(codings.size(), 10u);
    EXPECT_NE(CStringHelper::SimpleDecrypt(CStringHelper::SimpleEncrypt("the same", "key"), "kez"), "the same");
    EXPECT_EQ(CStringHelper::SimpleDecrypt("2A8EA7EDF3", "key"), CStringHelper::SimpleDecrypt("2a8ea7edf3", "key"));
}

TEST(StringSystem, MalformedCiphertextIsEmpty) {
    for (const char* coded : {"", "0", "00", "000", "0g11", "00 1", "001", "0x11", "00-1"})
        EXPECT_EQ(CStringHelper::SimpleDecrypt(coded, "key"), "") << coded;
}

}  // namespace
