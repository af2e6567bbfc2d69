#include "core/ByteScan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "core/TextSink.h"

using namespace std::string_view_literals;

namespace {

// Each way to find members: some compared one by one, chosen by their last four bits, compared because two end in the same
// ones, a single one.
using Few = qv::ByteSet<',', '"'>;
using Many = qv::ByteSet<'&', '<', '>', '\n', '\r', '"', 0xA0>;
using Alike = qv::ByteSet<'\\', '<', ',', 0, 0xFF>;
const qv::OneByte kOne('\0');

template <class Set>
void ExpectFound(const Set& set, std::string_view members, std::string_view text) {
    std::vector<std::size_t> expected, found;
    for (std::size_t i = 0; i < text.size(); ++i)
        if (members.find(text[i]) != members.npos) expected.push_back(i);
    qv::ForEachByte(set, text, [&](std::size_t position) { found.push_back(position); });
    ASSERT_EQ(found, expected) << text.size();
    ASSERT_EQ(qv::CountBytes(set, text), expected.size());
    if constexpr (!std::is_same_v<Set, qv::OneByte>) {
        ASSERT_EQ(qv::FindByte(set, text), expected.empty() ? text.size() : expected.front());
    }
}

void ExpectAllFound(std::string_view text) {
    ExpectFound(Few(), ",\"", text);
    ExpectFound(Many(), "&<>\n\r\"\xA0", text);
    ExpectFound(Alike(), "\\<,\0\xFF"sv, text);
    ExpectFound(kOne, "\0"sv, text);
}

// The bytes end where the memory does, so that the address sanitizer reports a read past it.
TEST(ByteScan, MatchesScalarLoop) {
    for (std::size_t shift = 0; shift < 16; ++shift)
        for (std::size_t size = 0; size <= 70; ++size) {
            const auto memory = std::make_unique<char[]>(shift + size);
            char* const text = memory.get() + shift;
            ExpectAllFound({text, size});
            for (std::size_t place = 0; place < size; ++place) {
                std::fill_n(text, size, 'l');  // ends in the same bits as members
                text[place] = "\",&\n\0\xA0\\\xFF"[place % 8];
                text[size - 1 - place / 2] = '<';
                ExpectAllFound({text, size});
            }
        }
}

TEST(ByteScan, MatchesScalarLoopOnLongInput) {
    std::string text;
    for (int i = 0; i < 5000; ++i) text += static_cast<char>(i * 37 + i / 256);
    for (const std::size_t size : {1023u, 1024u, 1025u, 2048u, 5000u})
        ExpectAllFound(std::string_view(text).substr(0, size));
    ExpectAllFound(std::string(3000, ','));
}

TEST(TextSink, AppendsPiecesOfAnySizeInOrder) {
    std::string out = "before", expected = out;
    qv::TextSink sink(out);
    char* at = sink.Begin();
    for (const std::size_t step : {1u, 61u, 700u})
        for (std::size_t size = 0; size < 90 * step; size += step) {
            std::string piece(size, 'x');
            for (std::size_t i = 0; i < size; ++i) piece[i] = static_cast<char>('a' + i * 7 % 26);
            at = sink.Append(sink.Append(at, piece), '|');
            expected += piece + '|';
        }
    EXPECT_EQ(sink.Flush(at), sink.Begin());
    EXPECT_EQ(out, expected);
}

}  // namespace
