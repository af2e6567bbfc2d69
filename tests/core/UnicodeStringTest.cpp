#include "qvcommon/UnicodeString.h"

#include <gtest/gtest.h>

#include "tests/support/ScopedCodePage.h"

namespace {

TEST(UnicodeString, HoldsATextInBothForms) {
    const WesternCodePage western;
    if (!western) GTEST_SKIP() << "no code page 1252";
    const struct {
        CUnicodeString text;
        const char* bytes;
        std::u16string_view wide;
        bool exact;
    } cases[] = {{{}, "", u"", true},
                 {static_cast<const char16_t*>(nullptr), "", u"", true},
                 {"\xE9\x80", "\xE9\x80", u"\u00E9\u20AC", true},
                 {u"\u00E9\u20AC", "\xE9\x80", u"\u00E9\u20AC", true},
                 {u"a\u0416", "a?", u"a\u0416", false},
                 {u"\xD800z", "?z", u"\xD800z", false}};
    for (const auto& c : cases) {
        const CUnicodeString copy = c.text;
        EXPECT_EQ(copy.IsExact(), c.exact) << c.bytes;
        EXPECT_EQ(copy.GetBytes(), c.bytes);
        EXPECT_EQ(copy.GetWide(), c.wide) << c.bytes;
        EXPECT_EQ(copy.IsEmpty(), c.wide.empty());
        EXPECT_TRUE(copy == c.text);
    }
    EXPECT_FALSE(CUnicodeString("a") == CUnicodeString(u"b"));
}

}  // namespace
