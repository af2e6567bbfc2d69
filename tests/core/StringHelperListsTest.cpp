#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "qvcommon/StringHelper.h"
#include "tests/support/Raised.h"
#include "tests/support/Tool.h"
#include "tests/support/Utf8Locale.h"

using namespace std::string_view_literals;

namespace {

using H = CStringHelper;

TEST(StringLists, SplitAtString) {
    EXPECT_EQ(H::SplitString("a,,b", ","), (CStringArray{"a", "b"}));
    EXPECT_EQ(H::SplitString("", ","), CStringArray{});
    EXPECT_EQ(H::SplitString("aXbxc", "x"), (CStringArray{"aXb", "c"}));
    EXPECT_EQ(H::SplitString("a b", ""), CStringArray{"a b"});
    EXPECT_EQ(H::SplitString("", ",", 1), CStringArray{""});
    EXPECT_EQ(H::SplitString(",", ",", 1), (CStringArray{"", ""}));
    EXPECT_EQ(H::SplitString("a--b---c-", "--", 1), (CStringArray{"a", "b", "-c-"}));
    EXPECT_EQ(H::SplitString("a\0b\0"sv, "\0"sv, 1), (CStringArray{"a", "b", ""}));
}

TEST(StringLists, SplitAppendsAndAllowsAliasing) {
    CStringArray pieces{"1;2"};
    H::SplitString(pieces[0], ";", pieces, 0);
    H::SplitCharsString(pieces[0], "2;", pieces);
    EXPECT_EQ(pieces, (CStringArray{"1;2", "1", "2", "1"}));
    H::StringToStringArray(pieces[0] + ",x", pieces);
    H::CsvToArray(pieces[0], pieces);
    EXPECT_EQ(pieces, CStringArray{"1;2"});
    CStringArray names{"a=1&b=2"}, values, multi{"x\0y\0"sv};
    H::ParseRawHttpParams(names[0], names, values);
    EXPECT_EQ(names, (CStringArray{"a=1&b=2", "a", "b"}));
    H::FromMultiSz(multi[0], multi);
    EXPECT_EQ(multi, (CStringArray{"x\0y\0"sv, "x", "y"}));
}

TEST(StringLists, SplitAtCharacters) {
    EXPECT_EQ(H::SplitCharsString(" a; b,\t;c,", ",;"), (CStringArray{"a", "b", "c"}));
    EXPECT_EQ(H::SplitCharsString(" a b ", ""), CStringArray{"a b"});
    EXPECT_EQ(H::SplitCharsString("", ","), CStringArray{});
    const Utf8Locale utf8;
    if (!utf8) GTEST_SKIP() << "texts are not UTF-8 here";
    // U+00E9 and U+00E8 begin with the same byte.
    EXPECT_EQ(H::SplitCharsString("a\xC3\xA8|b\xC3\xA9\x63", "\xC3\xA9|"), (CStringArray{"a\xC3\xA8", "b", "c"}));
    EXPECT_EQ(H::SplitCharsString("a\xA9z\xC3\xA9", "\xA9"), (CStringArray{"a", "z\xC3\xA9"}));
}

TEST(StringLists, Join) {
    using Row = std::tuple<int, int, const char*>;
    const CStringArray texts{"", "a", "", "b", ""};
    for (const auto& [lastIndex, keepEmpty, joined] :
         {Row{-1, 0, "a+b"}, Row{-1, 1, "+a++b+"}, Row{1, 0, "a"}, Row{2, 1, "+a+"}, Row{0, 1, ""},
          Row{99, 1, "+a++b+"}, Row{-2, 1, ""}, Row{-99, 1, ""}}) {
        CString out = "<";
        H::MakeString(texts, "+", out, lastIndex, keepEmpty);
        EXPECT_EQ(out, CString("<") + joined);
        EXPECT_EQ(H::MakeString(texts, "+", lastIndex, keepEmpty), joined);
    }
}

TEST(StringLists, HumanReadableList) {
    EXPECT_EQ(H::MakeList({}, 1, ", "), "");
    EXPECT_EQ(H::MakeList({"a"}, 1, ", "), "a");
    EXPECT_EQ(H::MakeList({"a", "b"}, 1, ", "), "a and b");
    EXPECT_EQ(H::MakeList({"a", "b", "c"}, 1, ", "), "a, b and c");
    EXPECT_EQ(H::MakeList({"a", "", "c"}, 0, ", "), "a, , c");
}

TEST(StringLists, ArrayStringRoundtrip) {
    EXPECT_EQ(H::StringArrayToString({"1,2", "x"}), "1\\0x2C2,x");
    CStringArray texts{"left over"};
    H::StringToStringArray("1\\0x2C2,,x", texts);
    EXPECT_EQ(texts, (CStringArray{"1,2", "x"}));
}

TEST(StringLists, ReadCsv) {
    EXPECT_EQ(H::CsvToArray("x,\"y,z\",\"q\"\"r\""), (CStringArray{"x", "y,z", "q\"r"}));
    EXPECT_EQ(H::CsvToArray(" a , b\r\n"), (CStringArray{" a ", " b\r\n"}));
    EXPECT_EQ(H::CsvToArray("a\"b,\"c,d"), (CStringArray{"ab,c", "d"}));
    EXPECT_EQ(H::CsvToArray("\"a\"b\"\"\"\"c,"), (CStringArray{"ab\"c", ""}));
    EXPECT_EQ(H::CsvToArray("\"open,\"\""), CStringArray{"open,\""});
    for (const char* const empty : {"", "\""}) EXPECT_EQ(H::CsvToArray(empty), CStringArray{""});
}

TEST(StringLists, CsvRoundtrip) {
    constexpr std::string_view bytes = "a,\" \n";
    std::vector<CString> fields{""};
    for (std::size_t i = 0; i < 1 + 5 + 25; ++i)
        for (char c : bytes) fields.push_back(fields[i] + c);
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const CStringArray array{fields[i], fields[fields.size() - 1 - i], fields[i]};
        EXPECT_EQ(H::CsvToArray(H::ArrayToCsv(array)), array);
    }
    EXPECT_EQ(H::ArrayToCsv(H::CsvToArray("x,\"y,z\",\"q\"\"r\"")), "x,\"y,z\",\"q\"\"r\"");
    EXPECT_EQ(H::ArrayToCsv({}), "");
}

TEST(StringLists, CsvIsReadByPython) {
    const CStringArray fields{"plain", "a,b", "say \"x\"", "", "\"", " blank ", ",\",", "it's"};
    const CString program = "import csv,sys; print('|'.join(next(csv.reader(sys.stdin, strict=True))))";
    ToolAnswer answer;
    if (Raised<CException>([&] { answer = RunProgram("python3", {"-c", program}, H::ArrayToCsv(fields)); }))
        GTEST_SKIP() << "no python3";
    EXPECT_EQ(CString(answer.output), H::MakeString(fields, "|", -1, 1) + '\n');
}

TEST(StringLists, MultiSzStaysInItsBuffer) {
    const CStringArray texts{"one", "x", "three"};
    const unsigned long needed = H::CalculateMultiSzBufferSize(texts);
    EXPECT_EQ(needed, 13u);
    using Row = std::tuple<unsigned long, CStringArray>;
    for (const auto& [size, expected] : {Row{0, {}}, Row{2, {}}, Row{3, {"o"}}, Row{5, {"one"}}, Row{6, {"one"}},
                                         Row{7, {"one", "x"}}, Row{8, {"one", "x"}}, Row{9, {"one", "x", "t"}},
                                         Row{12, {"one", "x", "thre"}}, Row{needed, texts}, Row{needed + 5, texts}}) {
        std::string buffer(needed + 6, '#');
        H::ToMultiSz(texts, buffer.data(), size);
        const std::size_t end = std::min<std::size_t>(size, needed);
        EXPECT_EQ(buffer.find_first_not_of('#', end), buffer.npos) << size;
        if (size < 3) {
            EXPECT_EQ(buffer.substr(0, size), std::string(size, '\0'));
            continue;
        }
        CStringArray read;
        H::FromMultiSz(buffer.data(), read);
        EXPECT_EQ(read, expected) << size;
    }
}

TEST(StringLists, MultiSzOfEmptyStrings) {
    std::string buffer(8, '#');
    H::ToMultiSz({"a", ""}, buffer.data(), H::CalculateMultiSzBufferSize({"a", ""}));
    EXPECT_EQ(buffer, "a\0\0\0####"sv);
    H::ToMultiSz({}, buffer.data(), 3);
    EXPECT_EQ(buffer[0], '\0');
    CStringArray read;
    H::FromMultiSz(nullptr, read);
    EXPECT_TRUE(read.IsEmpty());
}

TEST(StringLists, Munge) {
    CStringArray a{"k", "", "n\nm"}, b{"v", "w\nx", "", "unused"}, munged{"left over"};
    H::MungeStringArrays(a, b, munged);
    EXPECT_EQ(munged, (CStringArray{"k\nv", "\nw\nx", "n\nm\n"}));
    munged.Add("alone");
    H::UnmungeStringArrays(munged, munged, b);
    EXPECT_EQ(munged, (CStringArray{"k", "", "n", "alone"}));
    EXPECT_EQ(b, (CStringArray{"v", "w\nx", "m\n", ""}));
    EXPECT_TRUE(Raised<CInvalidArgException>([&] { H::MungeStringArrays(b, {}, munged); }));
    EXPECT_EQ(munged.GetSize(), 4);
}

TEST(StringLists, PrependAndCopy) {
    CStringArray texts{"a", "b"};
    H::PrependString(texts, texts[0]);
    EXPECT_EQ(texts, (CStringArray{"aa", "ab"}));
    CMapStringToString source, target;
    source["k"] = "new";
    target["k"] = target["other"] = "old";
    H::CopyStringMap(source, target);
    EXPECT_EQ(target["k"] + target["other"], "newold");
}

// The plain rules, in quadratic time.
bool Same(const CString& a, const CString& b, bool noCase) {
    return a == b || (noCase && a.CompareNoCase(b) == 0);
}

class StringDuplicates : public testing::TestWithParam<bool> {
protected:
    // Few distinct texts, of all lengths around the hash's block size, some of them longer than a string holds itself.
    CStringArray SomeTexts(int count) {
        CStringArray texts;
        while (texts.GetSize() < count) {
            std::string text(m_random() % 2 ? m_random() % 20 : 40, 'a');
            for (char& c : text) c = m_random() % 16 ? 'a' : "\0Aq"[m_random() % 3];
            texts.Add(text.substr(0, m_random() % 3 ? 2 : text.npos));
        }
        return texts;
    }

    std::mt19937 m_random{7};
    bool m_noCase = GetParam();
};

INSTANTIATE_TEST_SUITE_P(Case, StringDuplicates, testing::Bool());

TEST_P(StringDuplicates, KeepsFirstOccurrences) {
    const CStringArray a = SomeTexts(400), b = SomeTexts(400);
    CStringArray texts = a, pairsA = a, pairsB = b, expected, expectedA, expectedB;
    for (int i = 0; i < a.GetSize(); ++i) {
        bool seen = false, pairSeen = false;
        for (int j = 0; j < i; ++j) {
            const bool same = Same(a[i], a[j], m_noCase);
            seen |= same;
            pairSeen |= same && Same(b[i], b[j], m_noCase);
        }
        if (!seen) expected.Add(a[i]);
        if (!pairSeen) {
            expectedA.Add(a[i]);
            expectedB.Add(b[i]);
        }
    }
    H::RemoveDuplicates(texts, m_noCase);
    EXPECT_EQ(texts, expected);
    H::RemoveDuplicates(pairsA, pairsB, m_noCase);
    EXPECT_EQ(pairsA, expectedA);
    EXPECT_EQ(pairsB, expectedB);
}

TEST_P(StringDuplicates, RemovesUnwantedInstances) {
    const CStringArray all = SomeTexts(300);
    CStringArray one = all, some = all, expectedOne = all, expectedSome = all, unwanted{"aa", "", "Aa", "absent", "aa"};
    std::erase_if(expectedOne.AsStd(), [&](const CString& text) { return Same(text, "AA", m_noCase); });
    std::erase_if(expectedSome.AsStd(), [&](const CString& text) {
        return std::any_of(unwanted.begin(), unwanted.end(), [&](auto& u) { return Same(text, u, m_noCase); });
    });
    EXPECT_EQ(H::RemoveInstancesOf(one, "AA", !m_noCase), all.GetSize() - expectedOne.GetSize());
    EXPECT_EQ(one, expectedOne);
    EXPECT_EQ(H::RemoveInstancesOf(some, unwanted, !m_noCase), all.GetSize() - expectedSome.GetSize());
    EXPECT_EQ(some, expectedSome);
    EXPECT_EQ(H::RemoveInstancesOf(some, some, !m_noCase), expectedSome.GetSize());
    EXPECT_TRUE(some.IsEmpty());
}

TEST(StringLists, RemoveDuplicatesAndCollateValues) {
    CDWordArray words{5, 0, 5, 0xFFFFFFFF, 0, 7};
    H::RemoveDuplicates(words);
    EXPECT_EQ(words, (CDWordArray{5, 0, 0xFFFFFFFF, 7}));
    CStringArray names{"b", "a", "b", "B", "a", "b"};
    CDoubleArray values{1, 2, 4, 8, 16, 32, 64};
    H::CollateValues(names, values);
    EXPECT_EQ(names, (CStringArray{"b", "a", "B"}));
    EXPECT_EQ(values, (CDoubleArray{37, 18, 8}));
}

TEST(StringLists, RejectsShortCompanions) {
    CStringArray names{"a", "a"}, few{"x"};
    CDoubleArray values{1};
    EXPECT_TRUE(Raised<CInvalidArgException>([&] { H::CollateValues(names, values); }));
    EXPECT_TRUE(Raised<CInvalidArgException>([&] { H::RemoveDuplicates(names, few, 0); }));
    EXPECT_EQ(names, (CStringArray{"a", "a"}));
    EXPECT_EQ(values, CDoubleArray{1});
}

}  // namespace
