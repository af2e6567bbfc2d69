#include "qvcommon/framework/Process.h"

#include <gtest/gtest.h>

#include <iostream>

#include "platform/CommandLine.h"
#include "tests/support/Child.h"
#include "tests/support/FileFailure.h"

namespace {

QV_CHILD(ShowArguments) {
    for (const std::string& argument : arguments) std::cout << argument << "|\n";
    return static_cast<int>(arguments.size());
}

QV_CHILD(EchoLines) {
    for (std::string line; std::getline(std::cin, line);) std::cout << "<" << line << ">" << std::endl;
    return 7;
}

QV_CHILD(EndAtOnce) {
    return 0;
}

TEST(Process, PassesArgumentsUnchanged) {
    const CStringArray arguments = {"",      "plain", "two words", "tab\there",  "\"",   "a\"b\"c",
                                    "\\",    "end\\", "sp ace\\",  "sp ace\\\\", "\\\"", "a\\\\\"b c\\\\\\",
                                    "$HOME", "*",     "%PATH%",    "a'b",        "^&|<>"};
    CProcess child;
    StartChild(child, "ShowArguments", arguments);
    for (const CString& argument : arguments) EXPECT_EQ(LineFrom(child), argument.AsStd() + "|");
    EXPECT_EQ(child.Wait(), arguments.GetSize());
}

TEST(Process, QuotesArgumentsOnlyWhenNecessary) {
    using Row = std::tuple<const char*, const char*>;
    for (const auto& [argument, quoted] : {Row{"", "\"\""}, Row{"a\\b\\", "a\\b\\"}, Row{"a b\\", "\"a b\\\\\""},
                                           Row{"\"", "\"\\\"\""}, Row{"\\\\\"", "\"\\\\\\\\\\\"\""}}) {
        std::string line;
        qv::platform::AppendArgument(line, argument);
        EXPECT_EQ(line, quoted);
        qv::platform::AppendArgument(line, "x");
        EXPECT_EQ(line, std::string(quoted) + " x");
    }
}

TEST(Process, ExchangesLinesOverPipes) {
    CProcess child;
    StartChild(child, "EchoLines");
    for (const char* word : {"one", "two"}) {
        EXPECT_TRUE(child.WriteInput(std::string(word) + "\n"));
        EXPECT_EQ(LineFrom(child), "<" + std::string(word) + ">");
    }
    child.CloseInput();
    EXPECT_FALSE(child.WriteInput("late\n"));
    EXPECT_EQ(LineFrom(child), "");
    EXPECT_EQ(child.Wait(), 7);
    EXPECT_EQ(child.Wait(), -1);
}

TEST(Process, WriteToExitedProcessFails) {
    CProcess child;
    StartChild(child, "EndAtOnce");
    EXPECT_EQ(LineFrom(child), "");
    EXPECT_FALSE(child.WriteInput(std::string(1 << 20, 'x')));
    EXPECT_EQ(child.Wait(), 0);
}

TEST(Process, MissingProgramIsNamed) {
    EXPECT_EQ(FileFailureOf([] { CProcess().Start("no-such-program-here", {}); }),
              FileFailure(CFileException::fileNotFound, "no-such-program-here"));
}

}  // namespace
