#include <gtest/gtest.h>

#include "qvcommon/StringHelper.h"

namespace {

using H = CStringHelper;

template <class Text>
void ExpectStripped(const char* marker, int found, const char* start, const char* rest) {
    Text before = "a::b::c", after = before, right = before, left = "old";
    EXPECT_EQ(H::StripBefore(before, marker), found);
    EXPECT_EQ(H::StripAfter(after, marker), found);
    EXPECT_EQ(H::StripLeft(right, marker, left), found);
    EXPECT_EQ(before, start);
    EXPECT_EQ(after, rest);
    EXPECT_EQ(right, rest);
    EXPECT_EQ(left, found ? start : "old");
}

TEST(StringHelperMarkers, StripsAtTheFirstMarker) {
    using Row = std::tuple<const char*, int, const char*, const char*>;
    for (const auto& [marker, found, start, rest] : {Row{"::", 1, "a", "b::c"}, Row{"a", 1, "", "::b::c"},
                                                     Row{"c", 1, "a::b::", ""}, Row{"A", 0, "a::b::c", "a::b::c"}}) {
        ExpectStripped<CString>(marker, found, start, rest);
        ExpectStripped<std::string_view>(marker, found, start, rest);
    }
    CString text = "//\\/x/";
    H::StripFromLeft(text, "/\\");
    EXPECT_EQ(text, "x/");
    H::StripFromLeft(text, "");
    EXPECT_EQ(text, "x/");
    EXPECT_EQ(H::RemoveAfter("one END two", "end", 0), "one END two");
    EXPECT_EQ(H::RemoveAfter("one END two", "end", 1), "one ");
}

TEST(StringHelperMarkers, ExtractsStringBetweenMarkers) {
    using Row = std::tuple<int, int, const char*, const char*, const char*>;
    for (const auto& [consumeStart, consumeEnd, text, result, left] :
         {Row{0, 0, "a<1>b<2>", "1", "a<1>b<2>"}, Row{1, 0, "a<1>b<2>", "1", "1>b<2>"},
          Row{0, 1, "a<1>b<2>", "1", "b<2>"}, Row{1, 1, "a<1>b<2>", "1", "b<2>"}, Row{0, 1, "a>b<2", "2", "a>b<2"},
          Row{1, 1, "a>b<2", "2", "2"}, Row{1, 1, "a>b", "", "a>b"}}) {
        CString source = text;
        EXPECT_EQ(H::GetStringBetween(source, "<", ">", consumeStart, consumeEnd), result);
        EXPECT_EQ(source, left) << consumeStart << consumeEnd;
        std::string_view view = text;
        EXPECT_EQ(H::GetStringBetween(view, "<", ">", consumeStart, consumeEnd), result);
        EXPECT_EQ(view, left);
    }
}

TEST(StringHelperMarkers, RangesAndWords) {
    EXPECT_EQ(H::IsStringInRange("x<y>", "<", ">"), 1);
    EXPECT_EQ(H::IsStringInRange("x<y", "<", ">"), 1);
    EXPECT_EQ(H::IsStringInRange(">x<y>", "<", ">"), 0);
    EXPECT_EQ(H::IsStringInRange("x>", "<", ">"), 0);
    EXPECT_EQ(H::IsStringInRange("<>", "<", "<"), 0);
    using Row = std::tuple<const char*, int>;
    for (const auto& [text, found] : {Row{"concat ", 1}, Row{"cat", 1}, Row{"a cat", 1}, Row{"cats", 0},
                                      Row{"cats cat", 0}, Row{"cats cat x", 1}, Row{"", 0}})
        EXPECT_EQ(H::FindWholeWord(text, "cat"), found) << text;
}

}  // namespace
