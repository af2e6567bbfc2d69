#include "qvcommon/UnicodeString.h"

#include <gtest/gtest.h>

#include "tests/support/ScopedCodePage.h"

namespace {

TEST(UnicodeString, HoldsBytesAndWideString) {
    const WesternCodePage western;
    if (!western) GTEST_SKIP() << "no code page 1252";
    using Row = std::tuple<CUnicodeString, const char*, std::u16string_view, bool>;
    for (const auto& [text, bytes, wide, exact] :
         {Row{{}, "", u"", true}, Row{static_cast<const char16_t*>(nullptr), "", u"", true},
          Row{"\xE9\x80", "\xE9\x80", u"\u00E9\u20AC", true}, Row{u"\u00E9\u20AC", "\xE9\x80", u"\u00E9\u20AC", true},
          Row{u"a\u0416", "a?", u"a\u0416", false}, Row{u"\xD800z", "?z", u"\xD800z", false}}) {
        const CUnicodeString copy = text;
        EXPECT_EQ(copy.IsExact(), exact) << bytes;
        EXPECT_EQ(copy.GetBytes(), bytes);
        EXPECT_EQ(copy.GetWide(), wide) << bytes;
        EXPECT_EQ(copy.IsEmpty(), wide.empty());
        EXPECT_TRUE(copy == text);
    }
    EXPECT_FALSE(CUnicodeString("a") == CUnicodeString(u"b"));
}

}  // namespace
