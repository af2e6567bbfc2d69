#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>

#include "qvcommon/StringHelper.h"
#include "tests/support/Raised.h"
#include "tests/support/ScopedLocale.h"

using namespace std::string_view_literals;

namespace {

CStringArray Split(std::string_view text, std::string_view separator, int keepEmpty) {
    CStringArray pieces;
    CStringHelper::SplitString(text, separator, pieces, keepEmpty);
    return pieces;
}

CStringArray Fields(std::string_view text) {
    CStringArray fields{"left over"};
    CStringHelper::CsvToArray(text, fields);
    return fields;
}

TEST(StringLists, SplitAtAText) {
    EXPECT_EQ(Split("a,,b", ",", 0), (CStringArray{"a", "b"}));
    EXPECT_EQ(Split("a,,b", ",", 1), (CStringArray{"a", "", "b"}));
    EXPECT_EQ(Split("", ",", 0), CStringArray{});
    EXPECT_EQ(Split("", ",", 1), CStringArray{""});
    EXPECT_EQ(Split(",", ",", 1), (CStringArray{"", ""}));
    EXPECT_EQ(Split("a--b---c-", "--", 1), (CStringArray{"a", "b", "-c-"}));
    EXPECT_EQ(Split("aXbxc", "x", 0), (CStringArray{"aXb", "c"}));
    EXPECT_EQ(Split("a b", "", 0), CStringArray{"a b"});
    EXPECT_EQ(Split("a\0b\0"sv, "\0"sv, 1), (CStringArray{"a", "b", ""}));
}

TEST(StringLists, SplitAppendsAndMayReadItsOwnArray) {
    CStringArray pieces{"1;2"};
    CStringHelper::SplitString(pieces[0], ";", pieces, 0);
    CStringHelper::SplitCharsString(pieces[0], "2;", pieces);
    EXPECT_EQ(pieces, (CStringArray{"1;2", "1", "2", "1"}));
    CStringHelper::StringToStringArray(pieces[0] + ",x", pieces);
    CStringHelper::CsvToArray(pieces[0], pieces);
    EXPECT_EQ(pieces, CStringArray{"1;2"});
}

TEST(StringLists, SplitAtCharactersTearsNone) {
    const auto split = [](std::string_view text, std::string_view separators) {
        CStringArray pieces;
        CStringHelper::SplitCharsString(text, separators, pieces);
        return pieces;
    };
    EXPECT_EQ(split(" a; b,\t;c,", ",;"), (CStringArray{"a", "b", "c"}));
    EXPECT_EQ(split(" a b ", ""), CStringArray{"a b"});
    EXPECT_EQ(split("", ","), CStringArray{});
    const ScopedLocale utf8("en_US.UTF-8");
    if (!utf8) GTEST_SKIP() << "no UTF-8 locale";
    // U+00E9 and U+00E8 begin with the same byte.
    EXPECT_EQ(split("a\xC3\xA8|b\xC3\xA9\x63", "\xC3\xA9|"), (CStringArray{"a\xC3\xA8", "b", "c"}));
    EXPECT_EQ(split("a\xA9z\xC3\xA9", "\xA9"), (CStringArray{"a", "z\xC3\xA9"}));
}

TEST(StringLists, Join) {
    struct Row {
        int lastIndex, keepEmpty;
        const char* joined;
    };
    const CStringArray texts{"", "a", "", "b", ""};
    for (const Row& row : {Row{-1, 0, "a+b"}, Row{-1, 1, "+a++b+"}, Row{1, 0, "a"}, Row{2, 1, "+a+"}, Row{0, 1, ""},
                           Row{99, 1, "+a++b+"}, Row{-2, 1, ""}, Row{-99, 1, ""}}) {
        CString out = "<";
        CStringHelper::MakeString(texts, "+", out, row.lastIndex, row.keepEmpty);
        EXPECT_EQ(out, CString("<") + row.joined);
        EXPECT_EQ(CStringHelper::MakeString(texts, "+", row.lastIndex, row.keepEmpty), row.joined);
    }
}

TEST(StringLists, ListForReaders) {
    EXPECT_EQ(CStringHelper::MakeList({}, 1, ", "), "");
    EXPECT_EQ(CStringHelper::MakeList({"a"}, 1, ", "), "a");
    EXPECT_EQ(CStringHelper::MakeList({"a", "b"}, 1, ", "), "a and b");
    EXPECT_EQ(CStringHelper::MakeList({"a", "b", "c"}, 1, ", "), "a, b and c");
    EXPECT_EQ(CStringHelper::MakeList({"a", "", "c"}, 0, ", "), "a, , c");
}

TEST(StringLists, ArrayAsText) {
    EXPECT_EQ(CStringHelper::StringArrayToString({"1,2", "x"}), "1\\0x2C2,x");
    CStringArray texts{"left over"};
    CStringHelper::StringToStringArray("1\\0x2C2,,x", texts);
    EXPECT_EQ(texts, (CStringArray{"1,2", "x"}));
}

TEST(StringLists, ReadCsv) {
    EXPECT_EQ(Fields("x,\"y,z\",\"q\"\"r\""), (CStringArray{"x", "y,z", "q\"r"}));
    EXPECT_EQ(Fields(""), CStringArray{""});
    EXPECT_EQ(Fields(","), (CStringArray{"", ""}));
    EXPECT_EQ(Fields(" a , b\r\n"), (CStringArray{" a ", " b\r\n"}));
    EXPECT_EQ(Fields("a\"b,\"c,d"), (CStringArray{"ab,c", "d"}));
    EXPECT_EQ(Fields("\"a\"b\"\"\"\"c,"), (CStringArray{"ab\"c", ""}));
    EXPECT_EQ(Fields("\"open,\"\""), CStringArray{"open,\""});
    EXPECT_EQ(Fields("\""), CStringArray{""});
}

TEST(StringLists, CsvComesBack) {
    constexpr std::string_view bytes = "a,\" \n";
    std::vector<CString> fields{""};
    for (std::size_t i = 0; i < 1 + 5 + 25; ++i)
        for (char c : bytes) fields.push_back(fields[i] + c);
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const CStringArray array{fields[i], fields[fields.size() - 1 - i], fields[i]};
        EXPECT_EQ(Fields(CStringHelper::ArrayToCsv(array)), array);
    }
    EXPECT_EQ(CStringHelper::ArrayToCsv(Fields("x,\"y,z\",\"q\"\"r\"")), "x,\"y,z\",\"q\"\"r\"");
    EXPECT_EQ(CStringHelper::ArrayToCsv({}), "");
}

TEST(StringLists, CsvIsReadByOthers) {
    if (std::system("python3 -c \"import csv\"")) GTEST_SKIP() << "no Python with its csv module";
    const auto path = std::filesystem::temp_directory_path() / ("qv-csv-" + std::to_string(std::random_device()()));
    const CStringArray fields{"plain", "a,b", "say \"x\"", "", "\"", " blank ", ",\",", "it's"};
    std::ofstream(path, std::ios::binary) << CStringHelper::ArrayToCsv(fields).AsStd();
    const std::string program =
        "import csv,sys; r=list(csv.reader(open(sys.argv[1], newline=''), strict=True));"
        "sys.exit(r != [['plain','a,b','say \\\"x\\\"','','\\\"',' blank ',',\\\",','it\\'s']])";
    EXPECT_EQ(std::system(("python3 -c \"" + program + "\" \"" + path.string() + "\"").c_str()), 0);
    std::filesystem::remove(path);
}

TEST(StringLists, MultiSzStaysInItsBuffer) {
    const CStringArray texts{"one", "x", "three"};
    const unsigned long needed = CStringHelper::CalculateMultiSzBufferSize(texts);
    EXPECT_EQ(needed, 13u);
    struct Row {
        unsigned long size;
        CStringArray read;
    };
    for (const Row& row : {Row{0, {}}, Row{2, {}}, Row{3, {"o"}}, Row{5, {"one"}}, Row{6, {"one"}},
                           Row{7, {"one", "x"}}, Row{8, {"one", "x"}}, Row{9, {"one", "x", "t"}},
                           Row{12, {"one", "x", "thre"}}, Row{needed, texts}, Row{needed + 5, texts}}) {
        std::string buffer(needed + 6, '#');
        CStringHelper::ToMultiSz(texts, buffer.data(), row.size);
        const std::size_t end = std::min<std::size_t>(row.size, needed);
        EXPECT_EQ(buffer.find_first_not_of('#', end), buffer.npos) << row.size;
        if (row.size < 3) {
            EXPECT_EQ(buffer.substr(0, row.size), std::string(row.size, '\0'));
            continue;
        }
        CStringArray read;
        CStringHelper::FromMultiSz(buffer.data(), read);
        EXPECT_EQ(read, row.read) << row.size;
    }
}

TEST(StringLists, MultiSzOfEmptyTexts) {
    std::string buffer(8, '#');
    CStringHelper::ToMultiSz({"a", ""}, buffer.data(), CStringHelper::CalculateMultiSzBufferSize({"a", ""}));
    EXPECT_EQ(buffer, "a\0\0\0####"sv);
    CStringHelper::ToMultiSz({}, buffer.data(), 3);
    EXPECT_EQ(buffer[0], '\0');
    CStringArray read;
    CStringHelper::FromMultiSz(nullptr, read);
    EXPECT_TRUE(read.IsEmpty());
}

TEST(StringLists, Munge) {
    CStringArray a{"k", "", "n\nm"}, b{"v", "w\nx", "", "unused"}, munged{"left over"};
    CStringHelper::MungeStringArrays(a, b, munged);
    EXPECT_EQ(munged, (CStringArray{"k\nv", "\nw\nx", "n\nm\n"}));
    munged.Add("alone");
    CStringHelper::UnmungeStringArrays(munged, munged, b);
    EXPECT_EQ(munged, (CStringArray{"k", "", "n", "alone"}));
    EXPECT_EQ(b, (CStringArray{"v", "w\nx", "m\n", ""}));
    EXPECT_TRUE(Raised<CInvalidArgException>([&] { CStringHelper::MungeStringArrays(b, {}, munged); }));
    EXPECT_EQ(munged.GetSize(), 4);
}

TEST(StringLists, PrependAndCopy) {
    CStringArray texts{"a", "b"};
    CStringHelper::PrependString(texts, texts[0]);
    EXPECT_EQ(texts, (CStringArray{"aa", "ab"}));
    CMapStringToString source, target;
    source["k"] = "new";
    target["k"] = "old";
    target["other"] = "stays";
    CStringHelper::CopyStringMap(source, target);
    EXPECT_EQ(target["k"], "new");
    EXPECT_EQ(target["other"], "stays");
    EXPECT_EQ(target.GetCount(), 2);
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

TEST_P(StringDuplicates, FirstOnesStay) {
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
    CStringHelper::RemoveDuplicates(texts, m_noCase);
    EXPECT_EQ(texts, expected);
    CStringHelper::RemoveDuplicates(pairsA, pairsB, m_noCase);
    EXPECT_EQ(pairsA, expectedA);
    EXPECT_EQ(pairsB, expectedB);
}

TEST_P(StringDuplicates, UnwantedOnesGo) {
    const CStringArray all = SomeTexts(300);
    CStringArray one = all, some = all, expectedOne = all, expectedSome = all, unwanted{"aa", "", "Aa", "absent", "aa"};
    std::erase_if(expectedOne.AsStd(), [&](const CString& text) { return Same(text, "AA", m_noCase); });
    std::erase_if(expectedSome.AsStd(), [&](const CString& text) {
        return std::any_of(unwanted.begin(), unwanted.end(), [&](auto& u) { return Same(text, u, m_noCase); });
    });
    EXPECT_EQ(CStringHelper::RemoveInstancesOf(one, "AA", !m_noCase), all.GetSize() - expectedOne.GetSize());
    EXPECT_EQ(one, expectedOne);
    EXPECT_EQ(CStringHelper::RemoveInstancesOf(some, unwanted, !m_noCase), all.GetSize() - expectedSome.GetSize());
    EXPECT_EQ(some, expectedSome);
    EXPECT_EQ(CStringHelper::RemoveInstancesOf(some, some, !m_noCase), expectedSome.GetSize());
    EXPECT_TRUE(some.IsEmpty());
}

TEST(StringLists, DuplicateNumbersAndSums) {
    CDWordArray words{5, 0, 5, 0xFFFFFFFF, 0, 7};
    CStringHelper::RemoveDuplicates(words);
    EXPECT_EQ(words, (CDWordArray{5, 0, 0xFFFFFFFF, 7}));
    CStringArray names{"b", "a", "b", "B", "a", "b"};
    CDoubleArray values{1, 2, 4, 8, 16, 32, 64};
    CStringHelper::CollateValues(names, values);
    EXPECT_EQ(names, (CStringArray{"b", "a", "B"}));
    EXPECT_EQ(values, (CDoubleArray{37, 18, 8}));
}

TEST(StringLists, ShortCompanionsChangeNothing) {
    CStringArray names{"a", "a"}, few{"x"};
    CDoubleArray values{1};
    EXPECT_TRUE(Raised<CInvalidArgException>([&] { CStringHelper::CollateValues(names, values); }));
    EXPECT_TRUE(Raised<CInvalidArgException>([&] { CStringHelper::RemoveDuplicates(names, few, 0); }));
    EXPECT_EQ(names, (CStringArray{"a", "a"}));
    EXPECT_EQ(values, CDoubleArray{1});
}

TEST(StringLists, NoCaseFollowsTheLocale) {
    const ScopedLocale utf8("de_DE.UTF-8");
    if (!utf8) GTEST_SKIP() << "no German UTF-8 locale";
    CStringArray texts{"\xC3\x84pfel", "\xC3\xA4PFEL", "\xC3\xB6"};
    CStringHelper::RemoveDuplicates(texts, 1);
    EXPECT_EQ(texts, (CStringArray{"\xC3\x84pfel", "\xC3\xB6"}));
}

}  // namespace
