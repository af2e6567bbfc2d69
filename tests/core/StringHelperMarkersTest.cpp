#include <gtest/gtest.h>

#include "qvcommon/StringHelper.h"

namespace {

using H = CStringHelper;

TEST(StringHelperMarkers, StripsAtTheFirstMarker) {
    struct Row {
        const char* marker;
        int found;
        const char *before, *after;
    };
    for (const Row& row : {Row{"::", 1, "a", "b::c"}, Row{"a", 1, "", "::b::c"}, Row{"c", 1, "a::b::", ""},
                           Row{"A", 0, "a::b::c", "a::b::c"}}) {
        CString before = "a::b::c", after = before, rest = before, head = "old";
        EXPECT_EQ(H::StripBefore(before, row.marker), row.found);
        EXPECT_EQ(H::StripAfter(after, row.marker), row.found);
        EXPECT_EQ(H::StripLeft(rest, row.marker, head), row.found);
        EXPECT_EQ(before, row.before);
        EXPECT_EQ(after, row.after);
        EXPECT_EQ(rest, row.after);
        EXPECT_EQ(head, row.found ? row.before : "old");
        std::string_view start = "a::b::c", end = start, viewed = start, first = "old";
        EXPECT_EQ(H::StripBefore(start, row.marker) + H::StripAfter(end, row.marker), 2 * row.found);
        EXPECT_EQ(H::StripLeft(viewed, row.marker, first), row.found);
        EXPECT_TRUE(start == before && end == after && viewed == rest && first == head) << row.marker;
    }
    CString text = "//\\/x/";
    H::StripFromLeft(text, "/\\");
    EXPECT_EQ(text, "x/");
    H::StripFromLeft(text, "");
    EXPECT_EQ(text, "x/");
    EXPECT_EQ(H::RemoveAfter("one END two", "end", 0), "one END two");
    EXPECT_EQ(H::RemoveAfter("one END two", "end", 1), "one ");
}

TEST(StringHelperMarkers, TakesWhatStandsBetween) {
    struct Row {
        int consumeStart, consumeEnd;
        const char *source, *result, *left;
    };
    for (const Row& row :
         {Row{0, 0, "a<1>b<2>", "1", "a<1>b<2>"}, Row{1, 0, "a<1>b<2>", "1", "1>b<2>"},
          Row{0, 1, "a<1>b<2>", "1", "b<2>"}, Row{1, 1, "a<1>b<2>", "1", "b<2>"}, Row{0, 1, "a>b<2", "2", "a>b<2"},
          Row{1, 1, "a>b<2", "2", "2"}, Row{1, 1, "a>b", "", "a>b"}}) {
        CString source = row.source;
        EXPECT_EQ(H::GetStringBetween(source, "<", ">", row.consumeStart, row.consumeEnd), row.result);
        EXPECT_EQ(source, row.left) << row.consumeStart << row.consumeEnd;
        std::string_view view = row.source;
        EXPECT_EQ(H::GetStringBetween(view, "<", ">", row.consumeStart, row.consumeEnd), row.result);
        EXPECT_EQ(view, row.left);
    }
}

TEST(StringHelperMarkers, RangesAndWords) {
    EXPECT_EQ(H::IsStringInRange("x<y>", "<", ">"), 1);
    EXPECT_EQ(H::IsStringInRange("x<y", "<", ">"), 1);
    EXPECT_EQ(H::IsStringInRange(">x<y>", "<", ">"), 0);
    EXPECT_EQ(H::IsStringInRange("x>", "<", ">"), 0);
    EXPECT_EQ(H::IsStringInRange("<>", "<", "<"), 0);
    struct Row {
        const char* text;
        int found;
    };
    for (const Row& row : {Row{"concat ", 1}, Row{"cat", 1}, Row{"a cat", 1}, Row{"cats", 0}, Row{"cats cat", 0},
                           Row{"cats cat x", 1}, Row{"", 0}})
        EXPECT_EQ(H::FindWholeWord(row.text, "cat"), row.found) << row.text;
}

}  // namespace
