#include <gtest/gtest.h>

#include "tests/support/Tool.h"

namespace {

ToolAnswer RunText(const CStringArray& filter, std::string_view input) {
    CStringArray arguments{"text"};
    arguments.Append(filter);
    return RunTool(arguments, input);
}

TEST(TextCommand, FiltersBytes) {
    struct Row {
        CStringArray filter;
        const char *input, *output;
    };
    for (const Row& row :
         {Row{{"escape"}, "a<\r\n", "a&lt;<br>"}, Row{{"unescape"}, "a&lt;<br>", "a<\r"},
          Row{{"plain"}, "<p>a<br>b", "a\r\nb"}, Row{{"xml-escape"}, "a<\"\n", "a&lt;\"\n"},
          Row{{"xml-unescape"}, "&amp;lt;\n", "&lt;\r\n"}, Row{{"strip-tags"}, "a<b>c\r\n", "a c\r\n"},
          Row{{"url-escape"}, "a b\r\n\x1A&", "a+b%0d%0a%1a%26"},
          Row{{"url-unescape"}, "a+b%0d%0a%1a%26\n", "a b\r\n\x1A&\n"}, Row{{"title-case"}, "the END", "The End"},
          Row{{"wrap", "5"}, "ab cd ef", "ab\r\ncd ef"}, Row{{"csv-split"}, "x,\"y,\"\"z\"\r\n", "x\ny,\"z\n"},
          Row{{"csv-join"}, "x\r\ny,z\n\n", "x,\"y,z\","}, Row{{"sort"}, "b\na\r\nc", "a\nb\nc\n"},
          Row{{"sort", "--descending"}, "b\na\n", "b\na\n"}, Row{{"sort"}, "", ""}}) {
        const ToolAnswer answer = RunText(row.filter, row.input);
        EXPECT_EQ(answer.output, row.output) << row.filter[0].AsStd();
        EXPECT_EQ(answer.status, 0);
    }
    const std::string zero("a\0b", 3);
    EXPECT_EQ(RunText({"strip-tags"}, zero).output, zero);
}

}  // namespace
