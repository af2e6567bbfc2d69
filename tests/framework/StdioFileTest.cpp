#include "qvcommon/framework/StdioFile.h"

#include <gtest/gtest.h>

#include "platform/File.h"
#include "tests/support/FileFailure.h"
#include "tests/support/SystemFaults.h"
#include "tests/support/TempFolder.h"

namespace {

constexpr UINT kNewFile = CFile::modeCreate | CFile::modeReadWrite;
const std::string kLineEnd(qv::platform::TextLineEnd());

std::vector<std::string> LinesOf(const char* path, UINT type) {
    CStdioFile file(path, CFile::modeRead | type);
    std::vector<std::string> lines;
    for (CString line; file.ReadString(line);) lines.push_back(line.AsStd());
    return lines;
}

std::string BytesOf(const char* path, UINT type, UINT step) {
    CStdioFile file(path, CFile::modeRead | type);
    std::string bytes, part(step, 0);
    for (UINT got; (got = file.Read(part.data(), step)) > 0;) bytes.append(part, 0, got);
    return bytes;
}

TEST(StdioFile, SplitsLinesByMode) {
    using Lines = std::vector<std::string>;
    const std::string zero("a\0b", 3), longLine(100'000, 'x');
    using Row = std::tuple<std::string, Lines, Lines>;
    const TempFolder folder;
    for (const auto& [bytes, text, binary] :
         {Row{"", {}, {}}, Row{"\n", {""}, {""}}, Row{"\r\n", {""}, {"\r"}}, Row{"a", {"a"}, {"a"}},
          Row{"a\r", {"a\r"}, {"a\r"}}, Row{"a\rb\n\nc", {"a\rb", "", "c"}, {"a\rb", "", "c"}},
          Row{"a\r\r\nb\032c\r\n", {"a\r", "b\032c"}, {"a\r\r", "b\032c\r"}},
          Row{zero + "\n" + zero, {zero, zero}, {zero, zero}},
          Row{longLine + "\r\n" + longLine, {longLine, longLine}, {longLine + "\r", longLine}}}) {
        folder.Write("lines", bytes);
        EXPECT_EQ(LinesOf(folder / "lines", CFile::typeText), text);
        EXPECT_EQ(LinesOf(folder / "lines", CFile::typeBinary), binary);
    }
}

// The end of the buffer splits the pair of carriage return and line feed at every offset around it.
TEST(StdioFile, TranslatesCrLfAcrossBufferBoundaries) {
    const TempFolder folder;
    for (const std::size_t before : {0, 1, 32766, 32767, 32768, 65535}) {
        const std::string lead(before, 'x');
        folder.Write("text", lead + "\r\ny\rz\r\r\n\r");
        for (const UINT step : {1u, 2u, 7u, 40'000u}) {
            EXPECT_EQ(BytesOf(folder / "text", CFile::typeText, step), lead + "\ny\rz\r\n\r") << before << " " << step;
            EXPECT_EQ(BytesOf(folder / "text", CFile::typeBinary, step), folder.Read("text"));
        }
    }
}

TEST(StdioFile, TranslatesLineEndsOnWrite) {
    const TempFolder folder;
    const std::string text = "a\nb\r\n" + std::string(70'000, 'x') + "\n\n";
    const std::string translated = "a" + kLineEnd + "b\r" + kLineEnd + std::string(70'000, 'x') + kLineEnd + kLineEnd;
    for (const UINT type : {0u, UINT{CFile::typeText}, UINT{CFile::typeBinary}}) {
        CStdioFile file(folder / "out", kNewFile | type);
        file.WriteString(text);
        file.Write(text.data(), 5);
        const std::string& expected = type == CFile::typeBinary ? text : translated;
        EXPECT_EQ(file.GetPosition(), file.GetLength());
        file.Close();
        EXPECT_EQ(folder.Read("out"), expected + expected.substr(0, expected.find('x'))) << type;
    }
}

TEST(StdioFile, ReadsAndWritesInTurn) {
    const TempFolder folder;
    folder.Write("both", "one\ntwo\nthree\n");
    CStdioFile file(folder / "both", CFile::modeReadWrite | CFile::typeBinary);
    CString line;
    EXPECT_TRUE(file.ReadString(line));
    EXPECT_EQ(file.GetPosition(), 4u);
    file.WriteString("TWO");
    EXPECT_EQ(file.GetPosition(), 7u);
    EXPECT_TRUE(file.ReadString(line));
    EXPECT_EQ(line, "");
    EXPECT_EQ(file.Seek(-2, CFile::current), 6u);
    EXPECT_TRUE(file.ReadString(line));
    EXPECT_EQ(line, "O");
    file.Seek(0, CFile::end);
    file.WriteString("four");
    EXPECT_EQ(file.GetLength(), 18u);
    file.SetLength(5);
    file.WriteString("!");
    file.Close();
    EXPECT_EQ(folder.Read("both"), "one\nT!");
}

TEST(StdioFile, ReportsWriteAndCloseFailures) {
    using qv::platform::CallKind;
    const TempFolder folder;
    for (const CallKind failing : {CallKind::Write, CallKind::Close}) {
        CStdioFile file(folder / "full", kNewFile);
        file.WriteString("text");
        const SystemFaults faults(SystemFaults::Always(failing, qv::platform::FileCause::DiskFull));
        EXPECT_EQ(FileFailureOf([&] { file.Close(); }), FileFailure(CFileException::diskFull, folder / "full"));
        EXPECT_FALSE(file.IsOpen());
    }
    CStdioFile file(folder / "full", kNewFile);
    {
        const SystemFaults faults(
            SystemFaults::Always(qv::platform::CallKind::Write, qv::platform::FileCause::DiskFull));
        file.WriteString("lost");
        EXPECT_TRUE(Raised<CFileException>([&] { file.Flush(); }));
        EXPECT_TRUE(Raised<CFileException>([&] { file.WriteString(std::string(100'000, 'x')); }));
        file.WriteString("open");
        EXPECT_FALSE(file.Open(folder / "full", kNewFile));
    }
    EXPECT_TRUE(file.Open(folder / "full", kNewFile));
    file.WriteString("dropped");
    EXPECT_TRUE(file.CloseAndRemove());
    EXPECT_TRUE(file.Open(folder / "full", kNewFile));
    file.WriteString("kept");
    file.Close();
    EXPECT_EQ(folder.Read("full"), "kept");
}

}  // namespace
