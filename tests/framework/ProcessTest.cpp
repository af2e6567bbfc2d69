#include "qvcommon/framework/Process.h"

#include <gtest/gtest.h>

#include <iostream>

#include "platform/CommandLine.h"
#include "platform/Path.h"
#include "qvcommon/FileUtils.h"
#include "tests/support/Child.h"
#include "tests/support/FileFailure.h"
#include "tests/support/TempFolder.h"

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
    using Row = std::tuple<const wchar_t*, const wchar_t*>;
    for (const auto& [argument, quoted] : {Row{L"", L"\"\""}, Row{L"a\\b\\", L"a\\b\\"}, Row{L"a b\\", L"\"a b\\\\\""},
                                           Row{L"\"", L"\"\\\"\""}, Row{L"\\\\\"", L"\"\\\\\\\\\\\"\""}}) {
        std::wstring line;
        qv::platform::AppendArgument(line, argument);
        EXPECT_EQ(line, quoted);
        qv::platform::AppendArgument(line, L"x");
        EXPECT_EQ(line, std::wstring(quoted) + L" x");
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

// The command interpreter would run a part of such arguments.
TEST(Process, BatchFilesTakeOnlyVerbatimArguments) {
    if (!qv::platform::HasDriveLetters()) GTEST_SKIP() << "no program is run by a command interpreter";
    const TempFolder folder;
    folder.Write("show (1).cmd", "@echo [%~1]\r\n");
    const CString program = CFileUtils::GetNativePath(folder / "show (1).cmd");
    CProcess child;
    child.Start(program, {"two (words), or=so;"}, CProcess::pipeOutput);
    EXPECT_EQ(LineFrom(child), "[two (words), or=so;]");
    for (const char* const argument : {"a&b", "%PATH%", "\"", "a b\" & c", "line\nbreak"})
        EXPECT_TRUE(Raised<CFileException>([&] { child.Start(program, {argument}); })) << argument;
}

TEST(Process, MissingProgramIsNamed) {
    EXPECT_EQ(FileFailureOf([] { CProcess().Start("no-such-program-here", {}); }),
              FileFailure(CFileException::fileNotFound, "no-such-program-here"));
}

}  // namespace
