#include <gtest/gtest.h>

#include "qvcommon/StringHelper.h"
#include "tests/support/ScopedCodePage.h"
#include "tests/support/Utf8Locale.h"

namespace {

using H = CStringHelper;

TEST(StringHelperCase, SentencesAndTitles) {
    EXPECT_EQ(H::MakeSentenceCase("hELLO World"), "Hello world");
    EXPECT_EQ(H::MakeTitleCase("the QUICK  (brown) 12fox\tjumps o'er-it"), "The Quick  (Brown) 12Fox\tjumps O'er-it");
    EXPECT_EQ(H::MakeTitleCase(""), "");
    using Row = std::tuple<int, int, const char*>;
    for (const auto& [keepCapitals, keepRest, expected] :
         {Row{0, 0, "The Usa's McX-Files/Nasa\tEnd"}, Row{0, 1, "The USA's McX-Files/NASA\tEnd"},
          Row{1, 0, "The Usa's McX-Files/NASA\tEnd"}, Row{1, 1, "The USA's McX-Files/NASA\tEnd"}}) {
        const CString source = keepRest ? "the USA's mcX-files/NASA\tend" : "the USA's mc\x01X-files/NASA\tend";
        CString title = H::MakeTitleCase(source, keepCapitals, keepRest, "-/\x01");
        title.Remove('\x01');
        EXPECT_EQ(title, expected);
    }
}

TEST(StringHelperCase, LettersOfASingleByteCodePage) {
    const WesternCodePage western;
    if (!western) GTEST_SKIP() << "the code page is another one";
    EXPECT_EQ(H::MakeTitleCase("\xE9t\xC9 \xE0 l\xE0"), "\xC9t\xE9 \xC0 L\xE0");
    EXPECT_EQ(H::ValidateParameter("\xE9-\x80 9"), "\xE9___9");
}

TEST(StringHelperCase, DoesNotSplitMultibyteCharacters) {
    const Utf8Locale utf8;
    if (!utf8) GTEST_SKIP() << "texts are not UTF-8 here";
    EXPECT_EQ(H::MakeSentenceCase("\u00E9T\u00C9"), "\u00C9t\u00E9");
    EXPECT_EQ(H::MakeTitleCase("\u0436 \u20AC\u0436"), "\u0416 \u20AC\u0416");
    EXPECT_EQ(H::MakeTitleCase("a\u2013\u00E9\u2003\u00E9", 0, 0, "\u2013"), "A\u2013\u00C9\u2003\u00C9");
    EXPECT_EQ(H::ValidateParameter("\u00E9\u20AC\x80z"), "\u00E9__z");
    EXPECT_EQ(H::GetWordCount("na\u00EFve\u2014caf\u00E9"), 2);
    CString text = "\u00E9\u00E8\u00A9x";
    EXPECT_EQ(H::StripChars(text, "x\u00E9"), 2);  // all three begin with the byte C3 or end with A9
    H::StripFromLeft(text, "\u00A9\u00E9");
    EXPECT_EQ(text, "\u00E8\u00A9");
}

TEST(StringHelperCase, TrimsItemsAndRemovesBlanks) {
    CStringArray texts{" a ", "\t\r\n", "", "b\v"}, trimmed = texts;
    H::TrimItems(trimmed);
    EXPECT_EQ(trimmed, (CStringArray{"a", "", "", "b"}));
    H::RemoveBlanks(texts);
    EXPECT_EQ(texts, (CStringArray{" a ", "b\v"}));
}

TEST(StringHelperCase, Newlines) {
    EXPECT_EQ(H::GetEditFriendlyNewlines("a\r\nb\r\r\n\n\r"), "a\r\nb\r\n\r\n\r\n\r\n");
    EXPECT_EQ(H::PrintableNewlines("a\r\nb\r\r\n\n\r"), "a\r\n\nb\r\n\r\n\n\n\r\n");
    EXPECT_EQ(H::GetIndentedString("x", 2, 1), "\t\tx\n");
    EXPECT_EQ(H::GetIndentedString("x", -1, 0), "x");
}

TEST(StringHelperCase, CharactersAndWords) {
    CString text = "a-b--c.";
    EXPECT_EQ(H::StripChars(text, "-.-"), 4);
    EXPECT_EQ(text, "abc");
    EXPECT_EQ(H::ValidateParameter("a b_c-9"), "a_b_c_9");
    using Row = std::tuple<const char*, int>;
    for (const auto& [words, count] : {Row{"", 0}, Row{" -- ", 0}, Row{"one", 1}, Row{" it's  2 late ", 4}})
        EXPECT_EQ(H::GetWordCount(words), count) << words;
    EXPECT_EQ(H::AddString("a", "b", ", "), "a, b");
    EXPECT_EQ(H::AddString("", "b", ", "), "b");
    EXPECT_EQ(H::AddString("a", "", ", "), "a");
    EXPECT_EQ(H::Format("%s-%03d", CString("x"), 7), "x-007");
}

}  // namespace
