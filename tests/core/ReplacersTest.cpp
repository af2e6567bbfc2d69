#include "qvcommon/Replacers.h"

#include <gtest/gtest.h>

namespace {

struct Markers {
    const char *start, *startReplace, *end, *endReplace;
};

CString Rewritten(const char* text, const Markers& markers, int caseSensitive = 0) {
    CEscapedStringReplacer replacer;
    replacer.SetStartFind(markers.start);
    replacer.SetStartReplace(markers.startReplace);
    replacer.SetEndFind(markers.end);
    replacer.SetEndReplace(markers.endReplace);
    replacer.SetCaseSentitive(caseSensitive);
    const CEscapedStringReplacer copy = replacer;
    CEscapedStringReplacer assigned;
    assigned = copy;
    return assigned.ReplaceEscapes(text);
}

TEST(Replacers, RewriteRegions) {
    using Row = std::tuple<const char*, Markers, const char*>;
    for (const auto& [text, markers, result] :
         {Row{"a[b]c[d]", {"[", "(", "]", ")"}, "a(b)c(d)"}, Row{"a[b", {"[", "(", "]", ")"}, "a(b"},
          Row{"a]b", {"[", "(", "]", ")"}, "a]b"}, Row{"a%b%c%d", {"%", "<", "%", ">"}, "a<b><c><d"},
          Row{"x<B>y</b>z", {"<b>", "*", "</B>", "*"}, "x*y*z"}, Row{"abc", {"", "(", "b", ")"}, "abc"},
          Row{"a[b[", {"[", "(", "", ")"}, "a()b()"},
          // The end marker starts with the start marker: the next search finds that again.
          Row{"%a%%b", {"%", "<", "%%", ">"}, "<a><%b"}})
        EXPECT_EQ(Rewritten(text, markers), result) << text;
    EXPECT_EQ(Rewritten("x<B>y</b>z<b>k</B>", {"<b>", "*", "</B>", "*"}, 1), "x<B>y</b>z*k*");
}

TEST(Replacers, StripTags) {
    CStripTag tags;
    EXPECT_EQ(tags.ReplaceEscapes("a<b>c"), "a c");
    EXPECT_EQ(tags.ReplaceEscapes("a<b"), "ab");
}

TEST(Replacers, CollectInnerStrings) {
    CStringArray texts{"x[1]y[2]z"};
    CGetEscapedStrings collector(texts);
    collector.SetStartFind("[");
    collector.SetEndFind("]");
    EXPECT_EQ(collector.ReplaceEscapes(texts[0]), "xyz");
    EXPECT_EQ(texts, (CStringArray{"x[1]y[2]z", "1", "2"}));
}

TEST(Replacers, MarkersMayChangeDuringTheWalk) {
    class Changing : public CEscapedStringReplacer {
        CString GetEscapedText(std::string_view inner) override {
            SetStartFind(std::string(100, '['));
            SetEndReplace("!");
            return inner;
        }
    } replacer;
    replacer.SetStartFind("[");
    replacer.SetEndFind("]");
    EXPECT_EQ(replacer.ReplaceEscapes("[1][2]"), "1!2!");
}

}  // namespace
