#include <gtest/gtest.h>

#include <random>

#include "qvcommon/StringHelper.h"
#include "tests/support/Raised.h"
#include "tests/support/Utf8Locale.h"

namespace {

using H = CStringHelper;

TEST(StringHelperCompare, EqualsStartsWithAndEndsWith) {
    // Whether they are equal, the one starts and ends with the other: exactly, then regardless of case.
    using Row = std::tuple<const char*, const char*, const char*>;
    for (const auto& [whole, part, expected] :
         {Row{"", "", "111 111"}, Row{"abc", "", "011 011"}, Row{"abcab", "ab", "011 011"},
          Row{"ABcAB", "aB", "000 011"}, Row{"ab", "abc", "000 000"}, Row{"Ab", "aB", "000 111"},
          Row{"a[", "a{", "000 000"}})
        EXPECT_EQ(
            H::Format("%d%d%d %d%d%d", H::Equals(whole, part), H::StartsWith(whole, part), H::EndsWith(whole, part),
                      H::Equals(whole, part, 0), H::StartsWith(whole, part, 0), H::EndsWith(whole, part, 0)),
            expected)
            << whole << ' ' << part;
    CString text = "Key=value";
    EXPECT_EQ(H::StartsWith(text, "key=", text, 1), 0);
    EXPECT_EQ(text, "Key=value");
    EXPECT_EQ(H::StartsWith(text, "key=", text, 0), 1);
    EXPECT_EQ(text, "value");
    EXPECT_EQ(H::EqualIgnoreNewlineType("a\r\nb\r", "A\nb", 0), 1);
    EXPECT_EQ(H::EqualIgnoreNewlineType("a\r\nb", "A\nb", 1), 0);
}

TEST(StringHelperCompare, FoldsCaseOfMultibyteCharacters) {
    const Utf8Locale utf8;
    if (!utf8) GTEST_SKIP() << "texts are not UTF-8 here";
    EXPECT_EQ(H::Equals("Stra\u00DFe \u00C4\u0416", "STRA\u00DFE \u00E4\u0436", 0), 1);
    EXPECT_EQ(H::Equals("\u212Aelvin", "kelvin", 0), 1);  // of another length
    EXPECT_EQ(H::Equals("\u0131", "i", 0), 0);            // equal in upper case only
    EXPECT_EQ(CString("\u212A").CompareNoCase("K"), 0);
    EXPECT_EQ(H::EqualContents({"\u212A", "\u00C4"}, {"\u00E4", "k"}, 1), 1);
}

TEST(StringHelperCompare, FindsElements) {
    const CStringArray texts{"One", "two", "one", "One"};
    EXPECT_EQ(H::GetIndex(texts, "one", 0, -1), 2);
    EXPECT_EQ(H::GetIndex(texts, "one", 1, -1), 0);
    EXPECT_EQ(H::GetIndex(texts, "one", 1, 0), 2);
    EXPECT_EQ(H::GetIndex(texts, "One", 0, 3), -1);
    EXPECT_EQ(H::GetIndex(texts, "one", 1, 1 << 30), -1);
    EXPECT_EQ(H::Find(texts, "TWO", 0), 0);
    EXPECT_EQ(H::Find(texts, "TWO", 1), 1);
    EXPECT_EQ(H::GetCount(texts, "One"), 2);

    CUIntArray flags;
    flags.SetSize(4);
    H::SetInstanceOf(texts, {"One", "one", "TWO"}, flags);
    EXPECT_EQ(flags, (CUIntArray{1, 0, 1, 0}));
    flags.SetSize(1);
    EXPECT_TRUE(Raised<CInvalidArgException>([&] { H::SetInstanceOf(texts, {"two"}, flags); }));
}

TEST(StringHelperCompare, CompareContentsAppends) {
    CStringArray removed{"before"}, kept, added;
    H::CompareContents({"x", "b", "b", "c"}, {"b", "d", "b", "d"}, removed, kept, added);
    EXPECT_EQ(removed, (CStringArray{"before", "x", "c"}));
    EXPECT_EQ(kept, (CStringArray{"b", "b"}));
    EXPECT_EQ(added, (CStringArray{"d", "d"}));
}

CStringArray RandomTexts(std::mt19937& random) {
    CStringArray texts;
    for (unsigned count = random() % 12; count > 0; --count)
        texts.Add(CString("aAbB"[random() % 4], static_cast<int>(random() % 3)));
    return texts;
}

TEST(StringHelperCompare, CompareContentsMatchesReference) {
    std::mt19937 random(1);
    for (int round = 0; round < 2000; ++round) {
        const CStringArray oldTexts = RandomTexts(random), newTexts = RandomTexts(random);
        CUIntArray removed, keptOld, keptNew, added, wantRemoved, wantOld, wantNew, wantAdded;
        std::vector<bool> seen(newTexts.AsStd().size());
        for (int i = 0; i < oldTexts.GetSize(); ++i) {
            const int j = H::GetIndex(newTexts, oldTexts[i], 0, -1);
            (j < 0 ? wantRemoved : wantOld).Add(static_cast<UINT>(i));
            if (j >= 0) {
                wantNew.Add(static_cast<UINT>(j));
                seen[static_cast<std::size_t>(j)] = true;
            }
        }
        for (int j = 0; j < newTexts.GetSize(); ++j)
            if (!seen[static_cast<std::size_t>(j)] && !H::Find(oldTexts, newTexts[j], 0))
                wantAdded.Add(static_cast<UINT>(j));
        H::CompareContents(oldTexts, newTexts, removed, keptOld, keptNew, added);
        EXPECT_TRUE(removed == wantRemoved && keptOld == wantOld && keptNew == wantNew && added == wantAdded);

        for (const int noCase : {0, 1}) {
            bool equal = true, any = false;
            for (const CString& text : oldTexts) equal = equal && H::Find(newTexts, text, noCase);
            for (const CString& text : newTexts) equal = equal && H::Find(oldTexts, text, noCase);
            for (const CString& text : newTexts) any = any || H::Find(oldTexts, text, noCase);
            EXPECT_EQ(H::EqualContents(oldTexts, newTexts, noCase), equal);
            EXPECT_EQ(H::Find(oldTexts, newTexts, noCase), any);
        }
    }
}

TEST(StringHelperCompare, CountsAndCharacterClasses) {
    EXPECT_EQ(H::CountOf("aaaa", "aa"), 2);
    EXPECT_EQ(H::CountOf("aaaa", ""), 0);
    EXPECT_EQ(H::CountOf(std::string_view("a\0a\0", 4), '\0'), 2);
    EXPECT_EQ(H::IsLowerCase("a1-"), 1);
    EXPECT_EQ(H::IsLowerCase("aB"), 0);
    EXPECT_EQ(H::IsUpperCase("12"), 1);
    EXPECT_EQ(H::IsUpperCase("Ab"), 0);
    EXPECT_EQ(H::IsNumeric("0123456789"), 1);
    for (const char* text : {"", "-1", "1.0", " 1", "\xB2"}) EXPECT_EQ(H::IsNumeric(text), 0) << text;

    const CString guid = "{zzzzzzzz-zzzz-zzzz-zzzzzzzzzzzzzzzzz}";
    EXPECT_EQ(guid.GetLength(), 38);
    EXPECT_EQ(H::IsGuid(guid), 1);
    EXPECT_EQ(H::IsBracelessGuid(guid.Mid(1, 36)), 1);
    EXPECT_EQ(H::IsGuid(guid.Left(37)), 0);
    for (const int hyphen : {0, 9, 14, 19, 37}) {
        CString broken = guid;
        broken.SetAt(hyphen, 'x');
        EXPECT_EQ(H::IsGuid(broken), 0) << hyphen;
        EXPECT_EQ(H::IsBracelessGuid(broken.Mid(1, 36)), hyphen == 0 || hyphen == 37) << hyphen;
    }
}

}  // namespace
