#include <gtest/gtest.h>

#include "qvcommon/HtmlWriter.h"
#include "tests/support/ReplacementChain.h"
#include "tests/support/ScopedCodePage.h"

namespace {

using namespace qv::test;

// Every rule against its definition, in the code pages that the system can be set to.
class HtmlEscape : public testing::TestWithParam<int> {
protected:
    void ExpectSame(const CString& text) const {
        EXPECT_EQ(CHtmlWriter::Clean(text), ChainClean(text)) << testing::PrintToString(text.AsStd());
        EXPECT_EQ(CHtmlWriter::CleanFloatOver(text), ChainCleanFloatOver(text)) << testing::PrintToString(text.AsStd());
        for (const int flag : {0, 1})
            EXPECT_EQ(CHtmlWriter::CleanScriptParameter(text, flag), ChainCleanScriptParameter(text, flag))
                << testing::PrintToString(text.AsStd());
        EXPECT_EQ(CHtmlWriter::Dirty(text), ChainDirty(text)) << testing::PrintToString(text.AsStd());
        EXPECT_EQ(CHtmlWriter::HtmlToPlainText(text), ChainPlainText(text)) << testing::PrintToString(text.AsStd());
    }

    ScopedCodePage m_page{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(CodePages, HtmlEscape, testing::Values(1252, 65001, 936));

TEST_P(HtmlEscape, MatchesSequentialReplacement) {
    const std::string_view pieces[] = {
        "&",    "<", ">", "\"",    "'",     "\\",   "\n", "\r", " ",   "\t",  "\xA0", "\xC2", "\xC3",  "\xE2\x80",
        "\x80", "a", "b", "nbsp;", "quot;", "amp;", "am", "p;", "lt;", "gt;", "<br>", "<P>",  "li x>", "BR />"};
    for (const std::string_view a : pieces)
        for (const std::string_view b : pieces) {
            ExpectSame(CString(a) + b);
            for (const std::string_view c : pieces) {
                ExpectSame(CString(a) + b + c);
                ExpectSame("0123456789abcd" + CString(a) + b + "fedcba" + c);
            }
        }
}

TEST_P(HtmlEscape, FindsSpecialsAtEveryOffset) {
    for (const std::string_view special :
         {"<", "\"", "\xA0", "\xC3\xA0", "\xC2\xA0", "\xE2\x80\xA0", "\xC2\n\xA0", "\n"})
        for (const int far : {0, 1000, 2020})
            for (int before = far; before < far + 40; ++before) {
                const CString text = CString('x', before) + special + CString('\xE9', 20) + special;
                EXPECT_EQ(CHtmlWriter::Clean(text), ChainClean(text)) << before << testing::PrintToString(text.AsStd());
            }
}

TEST_P(HtmlEscape, DirtyUndoesClean) {
    for (int i = 0; i < 0x10000; ++i) {
        const char pair[] = {static_cast<char>(i >> 8), static_cast<char>(i)};
        // The documented losses: line feeds, and in UTF-8 the byte 0xA0 alone, which comes back as the character.
        CString expected(pair, 2);
        expected.Remove('\n');
        ReplaceNoBreakSpaces(expected);
        expected.Replace("&nbsp;", ChainDirty("&nbsp;"));
        EXPECT_EQ(CHtmlWriter::Dirty(CHtmlWriter::Clean(std::string_view(pair, 2))), expected) << i;
    }
}

TEST(HtmlEscapeExamples, ExactOutput) {
    EXPECT_EQ(CHtmlWriter::Clean("\"&\""), "&quot;&amp;&quot;");
    EXPECT_EQ(CHtmlWriter::Clean("a\r\nb"), "a<br>b");
    EXPECT_EQ(CHtmlWriter::CleanFloatOver("a\r\n<"), "a\r\n&lt;");
    EXPECT_EQ(CHtmlWriter::CleanScriptParameter("a<b", 0), "a&amp;lt;b");
    EXPECT_EQ(CHtmlWriter::CleanScriptParameter("it's \"\\\"\r\n<&", 1), "it\\'s &quot;\\\\&quot;\r<&");
    EXPECT_EQ(CHtmlWriter::Dirty("&amp;lt;&LT;<BR><br>"), "&lt;&LT;<BR>\r");
    EXPECT_EQ(CHtmlWriter::HtmlToPlainText("<p class=x>One</p><ul><li>Two</ul>a<br/>b< BR >"), "One \r\n* Two a b");
    EXPECT_EQ(CHtmlWriter::Clean(std::string_view("\0<\0", 3)), std::string_view("\0&lt;\0", 6));
}

// In code page 932 the bytes 83 5C are one letter and 85 5C are not; B1 is a letter by itself.
TEST(HtmlEscapeExamples, NoLeadByteTakesBackslash) {
    const ScopedCodePage japanese(932);
    if (!IsDoubleByte()) GTEST_SKIP() << "no such code page here";
    for (const int flag : {0, 1})
        EXPECT_EQ(CHtmlWriter::CleanScriptParameter("\x81');\x81\n\\ \x85\\ \x83\\' \xB1'", flag),
                  "?\\');?\\\\ ?\\\\ \x83\\\\' \xB1\\'");
}

// The code page, in which these bytes are other characters, must not matter.
TEST_P(HtmlEscape, PreservesUtf8) {
    constexpr const char* letters = "\xC3\xA0\xC2\xA0\xE2\x80\xA6\xF0\x9F\x98\xA0\xA0\xC3";
    for (const CString text : {letters, "\xE2\x80", "plain"}) {
        EXPECT_EQ(CHtmlWriter::CleanUtf8("<" + text + "\r\n\"&>"), "&lt;" + text + "<br>&quot;&amp;&gt;");
        EXPECT_EQ(CHtmlWriter::CleanFloatOverUtf8("<" + text + "\r\n'&>"), "&lt;" + text + "\r\n'&amp;&gt;");
        EXPECT_EQ(CHtmlWriter::CleanScriptUtf8("it's</" + text + ">\n\"\\"),
                  "it\\x27s\\x3C\\x2F" + text + "\\x3E\\x0A\\x22\\x5C");
    }
    EXPECT_EQ(CHtmlWriter::CleanScriptUtf8("a\xE2\x80\xA8\xE2\x80\xA9-_. 1"), "a\\u2028\\u2029-_. 1");
}

}  // namespace
