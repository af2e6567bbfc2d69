#include "qvcommon/framework/String.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <sstream>

#include "qvcommon/StringHelper.h"
#include "qvcommon/framework/DateTime.h"
#include "tests/support/Raised.h"
#include "tests/support/ScopedCodePage.h"
#include "tests/support/ScopedLocale.h"

using namespace std::string_view_literals;

namespace {

#define COMPILES(expression) std::is_invocable_v<decltype([](auto&& s) -> decltype(void(expression)) {}), CString&>

// What C++ would make of a text by accident.
static_assert(COMPILES(s + 'x') && COMPILES(s = 'x') && COMPILES(CStringHelper::CountOf(s, 'x')));
static_assert(!COMPILES(s ? 1 : 0) && !COMPILES(!s) && !COMPILES(s += 5) && !COMPILES(s + 1) && !COMPILES(1 + s));
static_assert(!COMPILES(s = 5) && !COMPILES(s[0] = 'x'));
static_assert(!COMPILES(CStringHelper::CountOf(s, 0)));
static_assert(!std::is_convertible_v<CString, bool> && !std::is_convertible_v<CString, int>);
static_assert(!std::is_constructible_v<CString, int> && !std::is_constructible_v<COleDateTime, int>);

TEST(String, InteroperatesWithStandardStrings) {
    const CString ours("a\0b"sv);
    const std::string theirs = ours;
    std::string built(ours), assigned, added = "<";
    assigned = ours;
    added += ours;
    added.append(ours);
    for (const std::string& same : {theirs, built, assigned}) EXPECT_EQ(same, "a\0b"sv);
    EXPECT_EQ(added, "<a\0ba\0b"sv);
    EXPECT_TRUE(ours == theirs && theirs == ours && ours == "a\0b"sv && "a\0b"sv == ours && ours != "a");
    EXPECT_TRUE(ours < std::string("b") && std::string("a") < ours && ours <= theirs && std::less<>()(ours, "b"sv));
    EXPECT_EQ(std::string("x") + ours + std::string("y") + "z"sv, "xa\0byz"sv);
    EXPECT_EQ("x"sv + ours + 'y' + "z" + theirs + ours, "xa\0byza\0ba\0b"sv);
    CString back = theirs;
    back = std::string("c");
    back += theirs;
    EXPECT_EQ(back, "ca\0b"sv);
    EXPECT_EQ((std::ostringstream() << ours).str(), theirs);
    EXPECT_EQ(std::string(ours.begin(), ours.end()), theirs);
    EXPECT_TRUE((std::map<std::string, int>{{theirs, 1}}).contains(ours));
    const char* const text = ours;
    const void* const bytes = ours;
    EXPECT_EQ(text, bytes);
    const char* const none = nullptr;
    EXPECT_EQ(CString(none) + none, "");
}

// Prepared texts make the search change its ways in the middle.
TEST(String, FindMatchesStandardSearch) {
    std::mt19937 random(11);
    for (int i = 0; i < 400; ++i) {
        std::string text, find(random() % 200, 'a');
        while (text.size() < 6000) text += std::string(random() % 300, 'a') + (random() % 3 ? "b" : "ab");
        find += random() % 2 ? "b" : "";
        if (random() % 4 == 0) find.insert(find.size() / 2, "b");
        CString ours = text;
        std::string expected;
        int count = 0;
        for (std::size_t from = 0, hit; !find.empty(); from = hit + find.size(), ++count) {
            hit = std::min(text.find(find, from), text.size());
            expected += text.substr(from, hit - from) + (hit < text.size() ? "<>" : "");
            if (hit == text.size()) break;
        }
        const std::size_t start = random() % text.size(), hit = text.find(find, start);
        ASSERT_EQ(ours.Find(find, static_cast<int>(start)), hit == text.npos ? -1 : static_cast<int>(hit));
        if (find.empty()) continue;
        ASSERT_EQ(CStringHelper::CountOf(text, find), count);
        ASSERT_EQ(ours.Replace(find, "<>"), count);
        ASSERT_EQ(ours, expected);
    }
}

// In code page 54936 a character may have four bytes, of which two are no character.
TEST(String, DoesNotFindHalfOfFourByteCharacter) {
    const ScopedCodePage chinese(54936);
    if (!chinese) GTEST_SKIP() << "no such code page here";
    const CString text = "\xD6\xD0\x95\x32\x82\x36\xCE\xC4\x95\x32\x82\x36";
    EXPECT_EQ(text.Find("\x95\x32"), -1);
    EXPECT_EQ(text.Find("\x82\x36"), -1);
    EXPECT_EQ(text.Find("\x95\x32\x82\x36"), 2);
    EXPECT_EQ(text.Find("\xCE\xC4\x95\x32\x82\x36"), 6);
}

// In code page 932 the letters 95 5C and 83 5C end with a backslash's byte, and 81 may be both halves of a character.
TEST(String, DoesNotMatchHalfOfCharacter) {
    const ScopedCodePage japanese(932);
    if (!japanese || qv::platform::CurrentCodePage() != qv::platform::CodePage::DoubleByte)
        GTEST_SKIP() << "no such code page here";
    using H = CStringHelper;
    const CString path = "\x95\x5C\\\x83\x5Cx";
    EXPECT_EQ(path.Find("\\"), 2);
    EXPECT_EQ(path.Find('\\', 3), -1);
    EXPECT_EQ(path.ReverseFind('\\'), 2);
    EXPECT_EQ(path.FindOneOf("/\\"), 2);
    EXPECT_EQ(H::CountOf(path, '\\') * 10 + H::CountOf(path, "\\"), 11);
    CString before = path, after = path, replaced = path, all = path, removed = path;
    EXPECT_EQ(H::StripBefore(before, "\\"), 1);
    EXPECT_EQ(H::StripAfter(after, "\\"), 1);
    EXPECT_EQ(replaced.Replace('\\', '/'), 1);
    EXPECT_EQ(removed.Remove('\\'), 1);
    H::ReplaceAll(all, "\\", "//");
    EXPECT_EQ(before, "\x95\x5C");
    EXPECT_EQ(after, "\x83\x5Cx");
    EXPECT_EQ(replaced, "\x95\x5C/\x83\x5Cx");
    EXPECT_EQ(removed, "\x95\x5C\x83\x5Cx");
    EXPECT_EQ(all, "\x95\x5C//\x83\x5Cx");
    EXPECT_EQ(H::SplitString(path, "\\"), (CStringArray{"\x95\x5C", "\x83\x5Cx"}));
    EXPECT_EQ(H::FindWholeWord("\x83\x5C x", "\\"), 0);
    EXPECT_EQ(H::RemoveAfter(path, "\\"), "\x95\x5C");
    EXPECT_EQ(CString("\x81\x81\x81").Find("\x81"), 2);  // the lead byte alone, at the end
    EXPECT_EQ(CString("\x81\x81\x81\x81").Find("\x81\x81\x81"), -1);
    EXPECT_EQ(CString(std::string(9000, '\x81')).Find(std::string(1001, '\x81')), -1);
    // Two bytes that are not one character: with a byte that never is a trail byte, and with one that is.
    EXPECT_EQ(H::SplitCharsString("\x81\nx\x85\\b", "\\\n"), (CStringArray{"\x81", "x\x85", "b"}));
}

TEST(String, CollatesZeroBytes) {
    for (const char* const name : {"C", "en_US.UTF-8"}) {
        const ScopedLocale locale(name);
        const CString ordered[] = {"", "\0"sv, "\0a"sv, "a", "a\0"sv, "a\0b"sv, "ab"};
        for (std::size_t i = 0; i < std::size(ordered); ++i)
            for (std::size_t j = 0; j < std::size(ordered); ++j)
                EXPECT_EQ(ordered[i].Collate(ordered[j]) <=> 0, i <=> j) << name << i << j;
    }
}

}  // namespace
