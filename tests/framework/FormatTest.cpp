#include <gtest/gtest.h>

#include <cstdio>

#include "qvcommon/framework/Collections.h"
#include "tests/support/Raised.h"

namespace {

template <class... A>
std::string Formatted(qv::FormatText<std::type_identity_t<A>...> format, const A&... values) {
    CString text;
    text.Format(format, values...);
    return text.AsStd();
}

TEST(Format, MatchesPrintf) {
    EXPECT_EQ(Formatted("%d|%5d|%-5d|%05d|%+d", 1, 2, 3, 4, 5), "1|    2|3    |00004|+5");
    EXPECT_EQ(Formatted("%x|%X|%#o|%08x", 255, 255, 8, -1), "ff|FF|010|ffffffff");
    EXPECT_EQ(Formatted("%s|%5s|%-5s|%.2s|%-4.1s|", "a", "b", "c", "defg", "hi"), "a|    b|c    |de|h   |");
    EXPECT_EQ(Formatted("%g|%.3f|%e|%10.2f", 0.1, 2.0, 1e10, -3.14159), "0.1|2.000|1.000000e+10|     -3.14");
    EXPECT_EQ(Formatted("100%%|%c%c", 'o', 'k'), "100%|ok");
    EXPECT_EQ(Formatted("%*d|%-*d|%.*f|%.*s", 4, 7, 4, 7, 1, 2.55, 2, "xyz"), "   7|7   |2.5|xy");
    EXPECT_EQ(Formatted("%.300f", 1.0).size(), 302u);
}

TEST(Format, IntegerSizeFollowsArgumentType) {
    const unsigned char byte = 0xFF;
    EXPECT_EQ(Formatted("%d %u %x", byte, byte, static_cast<signed char>(-1)), "-1 255 ff");
    EXPECT_EQ(Formatted("%d", 0xFFFFFFFFu), "-1");
    EXPECT_EQ(Formatted("%ld %I64d %lld %d", 1LL << 40, 1LL << 40, -5, -(1LL << 40)),
              "1099511627776 1099511627776 -5 -1099511627776");
}

TEST(Format, InsertsStringsByLength) {
    const CString zero("a\0b", 3);
    EXPECT_EQ(Formatted("<%s>", zero), std::string("<a\0b>", 5));
    EXPECT_EQ(Formatted("%s %s", CString("x"), std::string("y")), "x y");
    const char* const none = nullptr;
    EXPECT_EQ(Formatted("%s", none), "(null)");
    CString self("self");
    self.Format("%s and %s", self, self);
    EXPECT_EQ(self, "self and self");
}

TEST(Format, RunTimeFormatsAreCheckedBeforeUse) {
    const auto raises = [](const char* format) {
        return Raised<CInvalidArgException>([&] { Formatted(qv::RuntimeFormat{format}, 1.0); }) != nullptr;
    };
    EXPECT_EQ(Formatted(qv::RuntimeFormat{"%.1f KB"}, 1.25), "1.2 KB");
    for (const char* bad : {"%d", "%s", "%f %f", "", "%n", "%*f", "%", "%q", "%.", "%-"})
        EXPECT_TRUE(raises(bad)) << bad;
}

TEST(Collections, IndexOutOfRangeRaises) {
    CStringArray array{"a", "b"};
    for (const int index : {-1, 2, 1 << 30}) {
        EXPECT_TRUE(Raised<CInvalidArgException>([&] { array.GetAt(index); }));
        EXPECT_TRUE(Raised<CInvalidArgException>([&] { array.SetAt(index, "x"); }));
        EXPECT_TRUE(Raised<CInvalidArgException>([&] { array.RemoveAt(index); }));
    }
    EXPECT_TRUE(Raised<CInvalidArgException>([&] { array.InsertAt(3, "x"); }));
    for (const int count : {2, INT_MAX}) EXPECT_TRUE(Raised<CInvalidArgException>([&] { array.RemoveAt(1, count); }));
    array.InsertAt(2, "c");
    array.RemoveAt(0);
    EXPECT_EQ(array, (CStringArray{"b", "c"}));
    array.AsStd().shrink_to_fit();
    EXPECT_EQ(array.Append(array), 2);
    EXPECT_EQ(array, (CStringArray{"b", "c", "b", "c"}));
}

TEST(String, SubstringsClampToLength) {
    const CString text("abcdef");
    EXPECT_EQ(text.Mid(2), "cdef");
    EXPECT_EQ(text.Mid(-3, 2), "ab");
    EXPECT_EQ(text.Mid(9, 2), "");
    EXPECT_EQ(text.Left(99), text);
    EXPECT_EQ(text.Right(2), "ef");
    EXPECT_EQ(text.Right(-1), "");
    EXPECT_EQ(text.Find("cd", -5), 2);
    EXPECT_EQ(text.Find('c', 3), -1);
    EXPECT_EQ(text.Find("", 99), -1);
    EXPECT_TRUE(Raised<CInvalidArgException>([&] { text.GetAt(6); }));
}

TEST(String, ReplacesInOnePass) {
    CString text("aaa");
    EXPECT_EQ(text.Replace("a", "aa"), 3);
    EXPECT_EQ(text, "aaaaaa");
    EXPECT_EQ(text.Replace("aa", "a"), 3);
    EXPECT_EQ(text, "aaa");
    EXPECT_EQ(text.Replace("", "x"), 0);
    EXPECT_EQ(text.Replace('a', 'b'), 3);
    EXPECT_EQ(text.Insert(99, "c"), 4);
    EXPECT_EQ(text.Delete(0, 3), 1);
    EXPECT_EQ(text, "c");
}

}  // namespace
