#include <gtest/gtest.h>

#include "platform/Process.h"
#include "qvcommon/framework/Process.h"

namespace {

/// What the tool answers to these arguments and this standard input, byte for byte.
struct Answer {
    int status;
    std::string output;
};

Answer RunText(const CStringArray& filter, std::string_view input) {
    // The tool lies beside the test program.
    const std::string self = qv::platform::CurrentProgram();
    const std::string program = self.substr(0, self.find_last_of("/\\") + 1) + "qv";
    CStringArray arguments{"text"};
    arguments.Append(filter);
    CProcess process;
    process.Start(program.c_str(), arguments, CProcess::pipeInput | CProcess::pipeOutput);
    process.WriteInput(input);
    process.CloseInput();
    Answer answer{0, {}};
    char buffer[4096];
    while (const UINT count = process.Output().CFile::Read(buffer, sizeof buffer)) answer.output.append(buffer, count);
    answer.status = process.Wait();
    return answer;
}

TEST(TextCommand, FiltersBytes) {
    struct Row {
        CStringArray filter;
        const char *input, *output;
    };
    for (const Row& row :
         {Row{{"strip-tags"}, "a<b>c\r\n", "a c\r\n"}, Row{{"url-escape"}, "a b\r\n\x1A&", "a+b%0d%0a%1a%26"},
          Row{{"url-unescape"}, "a+b%0d%0a%1a%26\n", "a b\r\n\x1A&\n"}, Row{{"title-case"}, "the END", "The End"},
          Row{{"wrap", "5"}, "ab cd ef", "ab\r\ncd ef"}, Row{{"csv-split"}, "x,\"y,\"\"z\"\r\n", "x\ny,\"z\n"},
          Row{{"csv-join"}, "x\r\ny,z\n\n", "x,\"y,z\","}, Row{{"sort"}, "b\na\r\nc", "a\nb\nc\n"},
          Row{{"sort", "--descending"}, "b\na\n", "b\na\n"}, Row{{"sort"}, "", ""}}) {
        const Answer answer = RunText(row.filter, row.input);
        EXPECT_EQ(answer.output, row.output) << row.filter[0].AsStd();
        EXPECT_EQ(answer.status, 0);
    }
    const std::string zero("a\0b", 3);
    EXPECT_EQ(RunText({"strip-tags"}, zero).output, zero);
}

TEST(TextCommand, WrongUsageGives2) {
    for (const CStringArray& filter :
         {CStringArray{}, {"no-such"}, {"wrap"}, {"wrap", "0"}, {"wrap", "x"}, {"sort", "x"}})
        EXPECT_EQ(RunText(filter, "").status, 2);
    EXPECT_EQ(RunText({"wrap", "--help"}, "").status, 0);
    EXPECT_NE(RunText({"wrap", "--help"}, "").output.find("Example: qv text wrap"), std::string::npos);
}

}  // namespace
