#include "core/CollationGuess.h"

#include <algorithm>
#include <vector>

#include "platform/Ascii.h"
#include "platform/Utf8.h"

namespace qv {
namespace {

using platform::CodePage;

constexpr std::uint8_t kIgnored = 0, kUnranked = 255;

std::string Character(std::size_t code, CodePage page) {
    if (page != CodePage::Utf8) return {static_cast<char>(code)};
    std::string text;
    platform::AppendUtf8(text, static_cast<char32_t>(code));
    return text;
}

// Returns the primary level of a collation key, before accents and case: levels are separated by bytes of value 1.
std::string FirstLevel(const std::string& character) {
    std::string key;
    platform::AppendCollationKey(character, key);
    return key.substr(0, key.find('\1'));
}

}  // namespace

CollationGuess::CollationGuess() : m_page(platform::CurrentCodePage()) {
    const std::size_t count = m_page == CodePage::Utf8 ? kCharacters : 256;
    std::vector<std::pair<std::string, std::size_t>> levels;
    for (std::size_t code = 1; code < count; ++code) levels.emplace_back(FirstLevel(Character(code, m_page)), code);
    std::sort(levels.begin(), levels.end());
    std::uint8_t rank = kIgnored;
    for (const auto* before = &levels[0]; const auto& level : levels) {
        if (level.first != before->first || (rank == kIgnored && !level.first.empty()))
            rank = std::min<std::uint8_t>(rank + 1, kUnranked - 1);
        m_ranks[level.second] = rank;
        before = &level;
    }
}

void CollationGuess::Append(std::string_view text, std::string& ranks) const {
    const std::size_t before = ranks.size();
    ranks.resize(before + text.size());
    char* at = ranks.data() + before;
    for (std::size_t i = 0; i < text.size();) {
        const bool plain = ascii::IsAscii(text[i]);
        const std::size_t length = plain ? 1 : platform::CharacterLength(text, i, m_page);
        const std::uint8_t rank = RankAt(text, i, length);
        *at = static_cast<char>(rank);
        at += rank != kIgnored;
        i += length;
    }
    ranks.resize(static_cast<std::size_t>(at - ranks.data()));
}

std::uint8_t CollationGuess::RankAt(std::string_view text, std::size_t position, std::size_t length) const {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[position + i]); };
    if (length == 1) return m_ranks[byte(0)];
    const std::size_t code = length == 2 ? (byte(0) & 0x1FU) << 6 | (byte(1) & 0x3FU) : kCharacters;
    return m_page == CodePage::Utf8 && code < kCharacters ? m_ranks[code] : kUnranked;
}

}  // namespace qv
