#include <gtest/gtest.h>

#include <random>

#include "qvcommon/StringHelper.h"
#include "tests/support/ScopedCodePage.h"
#include "tests/support/TextOracles.h"
#include "tests/support/Utf8Locale.h"

namespace {

using H = CStringHelper;

CString Replaced(std::string_view text, std::string_view find, std::string_view replacement) {
    CString copy(text);
    H::ReplaceAll(copy, find, replacement);
    return copy;
}

CString ReplacedNoCase(std::string_view text, std::string_view find, std::string_view replacement) {
    CString copy(text);
    H::ReplaceNoCase(copy, find, replacement);
    return copy;
}

/// A text of up to `maximum` pieces, few enough for occurrences to be common.
std::string RandomText(std::mt19937& random, const std::vector<std::string>& pieces, std::size_t maximum) {
    std::string text;
    for (std::size_t count = random() % (maximum + 1); count > 0; --count) text += pieces[random() % pieces.size()];
    return text;
}

void CompareFinding(const std::string& text, const std::string& find, std::size_t start) {
    const auto found = oracle::FindNoCase(text, find, start);
    EXPECT_EQ(H::FindNoCase(text, find, static_cast<int>(start)), found ? static_cast<int>(found->position) : -1);
}

void CompareReplacing(const std::string& text, const std::string& find, const std::string& replacement) {
    const auto noCase = oracle::ReplaceNoCase(text, find, replacement);
    if (noCase && !oracle::FindNoCase(replacement, find, 1)) {
        EXPECT_EQ(ReplacedNoCase(text, find, replacement).AsStd(), *noCase);
    }
    if (replacement.find(find) != replacement.npos) return;
    if (const auto all = oracle::ReplaceAll(text, find, replacement)) {
        EXPECT_EQ(Replaced(text, find, replacement).AsStd(), *all);
    }
}

void CompareWithOracles(const std::vector<std::string>& pieces, int rounds) {
    std::mt19937 random(7);
    for (int round = 0; round < rounds; ++round) {
        const std::string text = RandomText(random, pieces, 14), find = RandomText(random, pieces, 4),
                          replacement = RandomText(random, pieces, 4);
        SCOPED_TRACE(text + " | " + find + " | " + replacement);
        CompareFinding(text, find, RandomText(random, pieces, 5).size());
        CompareFinding(text, find, 0);
        if (!find.empty()) CompareReplacing(text, find, replacement);
    }
}

TEST(StringHelperReplace, MatchesReferenceInSingleBytePages) {
    for (const int page : {1252, 28591}) {
        const ScopedCodePage scope(page);
        CompareWithOracles({"a", "b"}, 10000);
        CompareWithOracles({"a", "A", "b", "\xE9", "\xC9", "i", "S"}, 10000);
    }
}

TEST(StringHelperReplace, MatchesReferenceInUtf8) {
    const Utf8Locale utf8;
    if (!utf8) GTEST_SKIP() << "texts are not UTF-8 here";
    CompareWithOracles({"a", "A", "\u00E4", "\u00C4", "i", "\u0131", "S", "\u017F", "\u2C65", "\u023A"}, 40000);
}

TEST(StringHelperReplace, DoesNotSplitMultibyteCharacters) {
    const Utf8Locale utf8;
    if (!utf8) GTEST_SKIP() << "texts are not UTF-8 here";
    // Upper-casing shortens what precedes the occurrence, and the occurrence itself.
    EXPECT_EQ(H::FindNoCase("\u0131\u017F\u2C65 M\u0131\u017F\u017F x", "miss"), 8);
    EXPECT_EQ(H::FindNoCase("\xA9\u00E9", "\xA9", 1), -1);
    for (const char* const part : {"\xA0", "\xC3", "\xA0 ", " \xC3"}) {
        CString whole = "\u00E0 \u00E0";
        EXPECT_EQ(whole.Find(part) + H::CountOf(whole, part) + whole.Replace(part, " "), -1) << "of another character";
        EXPECT_EQ(H::SplitString(whole, part, 1).GetSize(), 1);
        EXPECT_EQ(whole.ReverseFind(part[0]) + H::CountOf(whole, part[0]), part[0] == ' ' ? 3 : -1);
    }
    CString stray = "\u00E0\xA0";
    EXPECT_EQ(stray.Find('\xA0') + stray.ReverseFind('\xA0') + stray.Replace('\xA0', '-') + stray.Remove('\xA0'), 5);
    EXPECT_EQ(stray, "\u00E0-");
    CString text = "M\u0131\u017F\u017F";
    H::ReplaceNoCase(text, "iS", "*");
    EXPECT_EQ(text, "M*\u017F");
    EXPECT_EQ(H::MakeMultiLine("a\u00E9\u20AC\u20ACb", 4), "a\u00E9\r\n\u20AC\r\n\u20ACb");
    EXPECT_EQ(H::MakeMultiLine("\u20AC\u20AC", 1), "\u20AC\r\n\u20AC");
}

TEST(StringHelperReplace, FindsAcrossBlockBoundaries) {
    std::mt19937 random(3);
    for (int round = 0; round < 300; ++round) {
        std::string text(random() % 9000, 'x');
        for (char& c : text) c = "stoneSTONE"[random() % 10];
        const std::string find = text.substr(random() % (text.size() + 1), 1 + random() % 40);
        if (find.empty()) continue;
        CString upper(text), wanted(find);
        upper.MakeUpper();
        wanted.MakeUpper();
        EXPECT_EQ(H::FindNoCase(text, find), upper.Find(wanted));
    }
}

TEST(StringHelperReplace, BoundaryArguments) {
    EXPECT_EQ(H::FindNoCase("abc", "", 4), -1);
    EXPECT_EQ(H::FindNoCase("abc", "c", -5), 2);
    EXPECT_EQ(Replaced("abc", "", "x"), "abc");
    EXPECT_EQ(Replaced("a&b", "&", "&amp;"), "a&amp;b");    // contains what is sought: one pass
    EXPECT_EQ(ReplacedNoCase("aA", "a", "(a)"), "(a)(a)");  // would never end: once each
    CString self = "aXbX";
    H::ReplaceAll(self, self.Mid(1, 1), self.Left(0));
    EXPECT_EQ(self, "ab");
}

TEST(StringHelperReplace, LongInputTakesLinearTime) {
    constexpr std::size_t size = 1 << 20;
    const std::string blanks(size, ' '), half(size / 2, 'a'), tail(size / 2, 'b');
    EXPECT_EQ(Replaced(blanks, "  ", " "), " ");
    EXPECT_EQ(Replaced(half + tail, "ab", ""), "");
    EXPECT_EQ(Replaced("a" + tail, "ab", "a"), "a");
    EXPECT_EQ(Replaced("aba" + half, "aba", "ab"), "ab");
    EXPECT_EQ(ReplacedNoCase(half, "A", "aa").GetLength(), static_cast<int>(size));
    EXPECT_EQ(H::FindNoCase(half, half.substr(0, size / 4) + "b"), -1);
    EXPECT_EQ(H::FindNoCase(half, std::string(size / 4, 's')), -1);  // U+017F is an S in upper case
    const Utf8Locale utf8;
    EXPECT_EQ(H::FindNoCase(half + "\xC5\xBF", "as"), utf8 ? static_cast<int>(half.size() - 1) : -1);
    const std::string prefix(size / 4, 'p');
    EXPECT_EQ(ReplacedNoCase(prefix + tail, prefix + "b", "y" + prefix).AsStd(), std::string(size / 2, 'y') + prefix);
    // The plain rule never ends here.
    EXPECT_GT(Replaced("aabb", "ab", "bbaa").GetLength(), 4);
    EXPECT_GT(Replaced(std::string(64, 'a') + 'b', "ab", "bba").GetLength(), 65);
}

TEST(StringHelperReplace, ReplacesBetweenMarkers) {
    using Row = std::tuple<const char*, const char*, const char*, const char*>;
    for (const auto& [text, start, end, result] :
         {Row{"a<1>b<2>c", "<", ">", "a<X>b<X>c"}, Row{"a<1", "<", ">", "a<1"}, Row{"><1>", "<", ">", "><X>"},
          Row{"a%b%c%d", "%", "%", "a%X%X%d"}, Row{"a<<1>", "<", ">", "a<X>"}, Row{"ab", "", "b", "ab"},
          Row{"<a<", "<", "", "<Xa<X"}, Row{"<!-->", "<!--", "-->", "<!-->"}})
        EXPECT_EQ(H::ReplaceBetween(text, start, end, "X"), result) << text;
}

TEST(StringHelperReplace, WrapsLines) {
    using Row = std::tuple<const char*, int, const char*>;
    for (const auto& [text, width, result] :
         {Row{"the quick brown", 10, "the quick\r\nbrown"}, Row{"abcdefgh", 3, "abc\r\ndef\r\ngh"},
          Row{" a\r\nbc def ghi ", 4, "a\r\nbc\r\ndef\r\nghi"}, Row{"ab cd", 5, "ab cd"},
          Row{"ab\n cdef", 3, "ab\r\n cd\r\nef"}, Row{"a\rb", 1, "a\r\n\r\r\nb"}, Row{"abc", 0, "a\r\nb\r\nc"},
          Row{"abc", 2147483647, "abc"}, Row{"", 5, ""}})
        EXPECT_EQ(H::MakeMultiLine(text, width), result) << text;
}

}  // namespace
