#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "qvcommon/StringHelper.h"
#include "tests/support/ScopedLocale.h"
#include "tests/support/TextOracles.h"
#include "tests/support/Utf8Locale.h"

namespace {

using H = CStringHelper;

CString Unescaped(CString text) {
    H::Unescape(text);
    return text;
}

TEST(StringHelperUrl, EscapeRoundtripsAllBytePairs) {
    const std::string safe = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789!'()*-./:_~+%";
    for (int i = 0; i < 0x10000; ++i) {
        const char pair[] = {static_cast<char>(i >> 8), static_cast<char>(i)};
        const CString escaped = H::Escape(std::string_view(pair, 2));
        ASSERT_EQ(escaped.AsStd().find_first_not_of(safe), std::string::npos) << i;
        ASSERT_EQ(Unescaped(escaped), std::string_view(pair, 2)) << i;
    }
}

TEST(StringHelperUrl, EscapeAndUnescapeExamples) {
    EXPECT_EQ(H::Escape("a,b & c\xE9"), "a%2cb+%26+c%e9");
    EXPECT_EQ(H::EscapePath("a b/c#1+%\xE9-._~"), "a%20b/c%231%2B%25%E9-._~");
    EXPECT_EQ(H::IsUnsafeUrlChar('\0'), 1);
    int safe = 0;
    for (int c = 0; c < 256; ++c) safe += !H::IsUnsafeUrlChar(static_cast<char>(c));
    EXPECT_EQ(safe, 62 + 11);
    using Row = std::tuple<const char*, const char*>;
    for (const auto& [escaped, text] : {Row{"a+%2C%2c", "a ,,"}, Row{"%", "?"}, Row{"%4", "?"}, Row{"a%", "a?"},
                                        Row{"%zz", "?z"}, Row{"%4z1", "?1"}, Row{"%%41", "?41"}, Row{"%4%41", "?41"}})
        EXPECT_EQ(Unescaped(escaped), text) << escaped;
}

TEST(StringHelperUrl, MalformedEscapesDropWholeCharacters) {
    const Utf8Locale utf8;
    if (!utf8) GTEST_SKIP() << "texts are not UTF-8 here";
    EXPECT_EQ(Unescaped("%\u00E9x%4\u00E9y"), "?x?y");
}

TEST(StringHelperUrl, UnescapeMatchesReference) {
    std::mt19937 random(5);
    for (int round = 0; round < 30000; ++round) {
        std::string text;
        for (unsigned count = random() % 24; count > 0; --count) text += "%%%2345xeA+"[random() % 11];
        ASSERT_EQ(H::UnEscapeUrl(text).AsStd(), oracle::UnEscapeUrl(text)) << text;
    }
}

TEST(StringHelperUrl, ParsesParameters) {
    CStringArray names{"old"}, values{"old"};
    H::ParseRawHttpParams("a=1+2&&=x&flag&b=c=d%26&e=", names, values);
    EXPECT_EQ(names, (CStringArray{"old", "a", "", "b", "e"}));
    EXPECT_EQ(values, (CStringArray{"old", "1 2", "x", "c=d&", ""}));
}

TEST(StringHelperUrl, RemovesTheFileProtocol) {
    EXPECT_EQ(H::RemoveFileProtocol("file:///C:/a%20b.htm#x", 1, 1), "C:\\a b.htm#x");
    for (const char* const name : {"C", "tr_TR.UTF-8"}) {
        const ScopedLocale locale(name);
        EXPECT_EQ(H::RemoveFileProtocol("FILE:C:/a%20b", 0, 0), "C:/a%20b") << name;
    }
    EXPECT_EQ(H::RemoveFileProtocol("//no-such-server/x", 0, 1), "\\\\no-such-server\\x");

    const std::string name = "qv_url_test.tmp";
    std::ofstream(name) << "x";
    EXPECT_EQ(H::RemoveFileProtocol("file:///" + name + "#part", 0, 0), (name + "#part").c_str());
    // An absolute path without its drive needs the backslash before it.
    const std::filesystem::path full = std::filesystem::absolute(name);
    const std::string tail = full.relative_path().generic_string();
    CString want = "\\" + tail;
    want.Replace('/', '\\');
    EXPECT_EQ(H::RemoveFileProtocol("file:///" + tail + "#part", 0, 1), want + "#part");
    std::filesystem::remove(name);
}

}  // namespace
