#include "platform/Text.h"

#include <gtest/gtest.h>

#include "platform/Utf8.h"
#include "qvcommon/StringHelper.h"
#include "qvcommon/framework/DateTime.h"
#include "qvcommon/framework/Utf8.h"
#include "tests/support/ScopedCodePage.h"
#include "tests/support/ScopedLocale.h"
#include "tests/support/Utf8Locale.h"

namespace {

using namespace qv::platform;

// Whether the system has its own code page. Its C runtime does not distinguish the single-byte ones.
bool HasSystemCodePage() {
    return HasDriveLetters();
}

// The search without regard to case compares bytes first and has a fixed list of characters that become ASCII letters.
TEST(Text, OnlyTwoNonAsciiCharactersUpperToAscii) {
    const Utf8Locale utf8;
    if (!utf8) GTEST_SKIP() << "texts are not UTF-8 here";
    std::string found;
    for (char32_t code = 0x80; code < 0x20000; ++code) {
        if (code >= 0xD800 && code < 0xE000) continue;
        std::string character;
        AppendUtf8(character, code);
        const std::string upper = ToUpper(character);
        if (upper.size() == 1) found += character + '=' + upper + ' ';
    }
    EXPECT_EQ(found, "\u0131=I \u017F=S ");
}

TEST(Text, TrimsWhiteSpace) {
    struct Row {
        const char *text, *left, *right;
    };
    for (const Row& row : {Row{" \t\r\n\v\fa b ", "a b ", " \t\r\n\v\fa b"}, Row{"  ", "", ""},
                           Row{"\xA0x\xA0", "\xA0x\xA0", "\xA0x\xA0"}}) {
        CString left(row.text), right(row.text);
        left.TrimLeft();
        right.TrimRight();
        EXPECT_EQ(left, row.left);
        EXPECT_EQ(right, row.right);
    }
}

TEST(Text, TrimsWholeCharacters) {
    const Utf8Locale utf8;
    if (!utf8) GTEST_SKIP() << "texts are not UTF-8 here";
    // Em spaces go; no-break spaces, an "à" that ends with the byte A0, and stray bytes stay.
    EXPECT_EQ(CStringHelper::TrimString("\u2003 x\u2003"), "x");
    for (const char* kept : {"\u00A0x\u00A0", "\u00E0", "x\xA0", "x\xE2\x80", "\xF0\x9F\x98\x80"})
        EXPECT_EQ(CStringHelper::TrimString(std::string(" ") + kept + " "), kept);
}

TEST(Text, TurkishLocaleUsesDottedI) {
    const ScopedLocale turkish("tr_TR.UTF-8");
    if (!turkish) GTEST_SKIP() << "no Turkish locale here";
    EXPECT_EQ(ToUpper("mini"), "M\u0130N\u0130");
    EXPECT_EQ(CStringHelper::FindNoCase("MINI", "mini"), -1);
    EXPECT_EQ(CStringHelper::FindNoCase("xM\u0130N\u0130", "mini"), 1);
}

// These need no locale: the page alone defines the characters, and Unicode their case.
TEST(Text, FollowsTheChosenCodePage) {
    const struct {
        int page;
        const char *text, *upper;
        std::u16string_view wide;
    } rows[] = {{1252, "a\xE4\xFF\x80\x8D", "A\xC4\x9F\x80\x8D", u"a\u00E4\u00FF\u20AC\u008D"},
                {1252, "\x9C\xF7\xDF\xB5", "\x8C\xF7\xDF\xB5", u"\u0153\u00F7\u00DF\u00B5"},
                {28591, "\xE9\xFF", "\xC9\xFF", u"\u00E9\u00FF"},
                {1251, "\xE6", "\xC6", u"\u0436"},
                {932, "a\x83\x84\xB1\\", "A\x83\x84\xB1\\", u"a\u30E4\uFF71\\"},
                {932, "\x84\x70x\x95\x5C", "\x84\x40X\x95\x5C", u"\u0430x\u8868"},
                {65001, "\u00E4\u0436", "\u00C4\u0416", u"\u00E4\u0436"}};
    for (const auto& row : rows) {
        const ScopedCodePage page(row.page);
        const bool multibyte = CurrentCodePage() != CodePage::SingleByte;
        if (!page || (HasSystemCodePage() && !multibyte && row.page != 1252)) continue;
        EXPECT_EQ(ToUpper(row.text), row.upper) << row.page;
        EXPECT_EQ(ToLower(row.upper), row.text) << row.page;
        EXPECT_EQ(ToWide(row.text), row.wide) << row.page;
        EXPECT_EQ(FromWide(row.wide), row.text) << row.page;
    }
    EXPECT_EQ(_setmbcp(4711), -1);
    EXPECT_TRUE(HasSystemCodePage() || _setmbcp(37) == -1);  // EBCDIC
    _setmbcp(_MB_CP_ANSI);
}

// The code page need not be the character set of the C library's locale.
TEST(Text, ConvertsToAndFromUtf8) {
    struct Row {
        int codePage;
        const char *text, *utf8, *back;
    };
    for (const Row& row : {Row{1252, "a\xE4\x80", "a\xC3\xA4\xE2\x82\xAC", "a\xE4\x80"},
                           Row{932, "\x83\x5C|", "\xE3\x82\xBD|", "\x83\x5C|"},
                           Row{65001, "\xE3\x82\xBD\xFF", "\xE3\x82\xBD\xFF", "\xE3\x82\xBD?"}}) {
        const ScopedCodePage page(row.codePage);
        if (!page) continue;
        EXPECT_EQ(QvToUtf8(row.text), row.utf8);
        EXPECT_EQ(QvFromUtf8(row.utf8), row.back);
    }
    const WesternCodePage western;
    if (!western) GTEST_SKIP() << "the system has no code page 1252";
    EXPECT_EQ(QvFromUtf8("\xE2\x88\x9E\xEF\xBC\xA1"), "??");  // infinity and a full-width A
}

TEST(Text, ConvertsLocaleStringsToCodePage) {
    const ScopedLocale german("de_DE.UTF-8");
    const WesternCodePage western;
    if (!german || !western || HasSystemCodePage()) GTEST_SKIP() << "the C library's texts need no conversion here";
    EXPECT_EQ(COleDateTime(2024, 3, 9, 0, 0, 0).Format("%B"), "M\xE4rz");
    COleDateTime read;
    EXPECT_TRUE(read.ParseDateTime("9. M\xC4RZ 2024"));
    EXPECT_EQ(CString("\xC4pfel").Collate("Bad") < 0, true);
}

}  // namespace
