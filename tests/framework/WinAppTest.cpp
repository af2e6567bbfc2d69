#include "qvcommon/framework/WinApp.h"

#include <gtest/gtest.h>

#include <random>

#include "platform/IniText.h"
#include "qvcommon/framework/Utf8.h"
#include "tests/support/ScopedProfile.h"

namespace {

using qv::platform::FindIniValue;
using qv::platform::WithIniValue;

TEST(IniText, ReadsFilesOfOtherPrograms) {
    constexpr std::string_view text =
        "\xEF\xBB\xBF; comment\r\nlost=1\n[ One ]\r\n a = x = y \r\n;a=2\n#a=3\nA=4\nquoted=\"  "
        "\\\"\\\\\\x0A\\q\"\nopen=\"\n"
        "=unnamed\n[two]\na=5\n[one]\nb=6\n%41%zz%=7\n[";
    using Row = std::tuple<const char*, const char*, const char*>;
    for (const auto& [section, entry, expected] :
         {Row{"ONE", "a", "x = y"}, Row{"one", "quoted", "  \"\\\n\\q"}, Row{"one", "open", "\""}, Row{"two", "A", "5"},
          Row{"one", "b", nullptr}, Row{"one", "", "unnamed"}, Row{"", "lost", nullptr}, Row{"three", "a", nullptr}}) {
        const auto value = FindIniValue(text, section, entry);
        EXPECT_EQ(value, expected ? std::optional<std::string>(expected) : std::nullopt) << entry;
    }
}

TEST(IniText, LeavesOtherLinesAlone) {
    using Row = std::tuple<const char*, const char*>;
    for (const auto& [before, after] :
         {Row{"", "[s]\ne=v\n"}, Row{"x", "x\n\n[s]\ne=v\n"}, Row{"[S]\r\nE = 1\r\nf=2", "[S]\r\ne=v\nf=2"},
          Row{"[s]\n\n[t]\ne=1\n", "[s]\ne=v\n\n[t]\ne=1\n"},
          Row{"[t]\n[s]\na=1\n; b\n\n\n", "[t]\n[s]\na=1\n; b\ne=v\n\n\n"}})
        EXPECT_EQ(WithIniValue(before, "s", "e", "v"), after) << before;
    EXPECT_EQ(qv::platform::WithoutIniSection("; a\n[s]\n; b\ne=1\n\n[t]\ne=2\n[S]\ne=3", "s"), "; a\n[t]\ne=2\n");
}

TEST(IniText, RoundtripsAllBytePairs) {
    std::string text;
    for (int i = 0; i < 65536; ++i) {
        const std::string pair{static_cast<char>(i >> 8), static_cast<char>(i)};
        text = WithIniValue("[other]\n", pair, pair, pair);
        ASSERT_EQ(FindIniValue(text, pair, pair), pair) << text;
        ASSERT_EQ(FindIniValue(WithIniValue(text, "other", "x", "\\"), pair, pair), pair) << text;
    }
}

TEST(WinApp, StoresStringsInProfile) {
    const TempFolder folder;
    const CString accents = QvFromUtf8("\xC3\xA9t\xC3\xA9 \\ \"x\"");
    for (const char* const company : {"", "QvCommon/Tests"}) {
        ScopedProfile app(folder.Native().string());
        if (*company) app.SetRegistryKey(company);
        EXPECT_EQ(AfxGetApp(), &app);
        const CString fresh = std::to_string(std::random_device()());
        EXPECT_EQ(app.GetProfileString("Section", fresh), "");
        EXPECT_EQ(app.GetProfileString("Section", fresh, "none"), "none");
        for (const CString& value : {CString("a,b=c;[d]"), CString(), accents, CString("last")}) {
            EXPECT_TRUE(app.WriteProfileString("Section", fresh, value));
            EXPECT_EQ(app.GetProfileString("SECTION", fresh, "none"), value);
        }
        EXPECT_TRUE(app.WriteProfileString("Section 2", fresh, "other"));
        EXPECT_EQ(app.GetProfileString("Section", fresh), "last");
        for (const char* const entry : {static_cast<const char*>(fresh), static_cast<const char*>(nullptr)}) {
            EXPECT_TRUE(app.WriteProfileString("Section", fresh, "again"));
            for (int again = 0; again < 2; ++again) EXPECT_TRUE(app.WriteProfileString("SECTION", entry, nullptr));
            EXPECT_EQ(app.GetProfileString("Section", fresh, "none"), "none");
        }
        EXPECT_EQ(app.GetProfileString("Section 2", fresh), "other");
        if (app.IsFile()) {
            EXPECT_TRUE(folder.Has(*company ? "QvCommon_Tests/QvCommonTests.ini" : "QvCommonTests.ini"));
        }
    }
    CWinApp* const before = AfxGetApp();
    auto first = std::make_unique<CWinApp>("a"), second = std::make_unique<CWinApp>("b");
    first.reset();
    second.reset();
    EXPECT_EQ(AfxGetApp(), before);
}

}  // namespace
