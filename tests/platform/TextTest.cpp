#include "platform/Text.h"

#include <gtest/gtest.h>

#include "platform/Utf8.h"
#include "qvcommon/StringHelper.h"
#include "tests/support/ScopedLocale.h"
#include "tests/support/Utf8Locale.h"

namespace {

using namespace qv::platform;

// The search without regard to case looks at bytes first and knows by heart which other characters become ASCII letters.
TEST(Text, OnlyTwoLongCharactersBecomeAsciiInUpperCase) {
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

TEST(Text, WesternLettersHaveBothCases) {
    const ScopedLocale plain("C");
    if (CurrentCodePage() != CodePage::SingleByte) GTEST_SKIP() << "the code page is another one here";
    EXPECT_EQ(ToUpper("a\xE9\xFF\x9C\xF7\xDF\xB5"), "A\xC9\x9F\x8C\xF7\xDF\xB5");
    EXPECT_EQ(ToLower("A\xC9\x9F\x8C\xD7\xDF\xB5"), "a\xE9\xFF\x9C\xD7\xDF\xB5");
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

TEST(Text, ATurkishLocaleKeepsItsOwnLetterI) {
    const ScopedLocale turkish("tr_TR.UTF-8");
    if (!turkish) GTEST_SKIP() << "no Turkish locale here";
    EXPECT_EQ(ToUpper("mini"), "M\u0130N\u0130");
    EXPECT_EQ(CStringHelper::FindNoCase("MINI", "mini"), -1);
    EXPECT_EQ(CStringHelper::FindNoCase("xM\u0130N\u0130", "mini"), 1);
}

}  // namespace
