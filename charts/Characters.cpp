#include "charts/Characters.h"

#include <charconv>

#include "platform/Ascii.h"
#include "platform/Text.h"

namespace qv::charts {
namespace {

constexpr std::size_t kMostCharacters = 500;
constexpr std::size_t kBytesPerCharacter = 4;
constexpr char32_t kReplacement = 0xFFFD;

bool IsBetween(char32_t c, char32_t first, char32_t last) {
    return c >= first && c <= last;
}

bool IsDropped(char32_t c) {
    return c < 0x20 || IsBetween(c, 0x7F, 0x9F) || IsBetween(c, 0x200B, 0x200F) || IsBetween(c, 0x2028, 0x202E) ||
           IsBetween(c, 0x2060, 0x206F) || c == 0x061C || c == 0xFEFF || IsBetween(c, 0xE0000, 0xE0FFF);
}

bool IsNoCharacter(char32_t c) {
    return IsBetween(c, 0xD800, 0xDFFF) || (c & 0xFFFE) == 0xFFFE;
}

// Returns the character at `i` and advances `i` past it.
char32_t Next(std::u16string_view wide, std::size_t& i) {
    const char32_t c = wide[i++];
    if (!IsBetween(c, 0xD800, 0xDBFF) || i == wide.size() || !IsBetween(wide[i], 0xDC00, 0xDFFF)) return c;
    return 0x10000 + ((c - 0xD800) << 10) + (wide[i++] - 0xDC00u);
}

}  // namespace

bool IsCombining(char32_t c) {
    return IsBetween(c, 0x0300, 0x036F) || IsBetween(c, 0x1AB0, 0x1AFF) || IsBetween(c, 0x1DC0, 0x1DFF) ||
           IsBetween(c, 0x20D0, 0x20FF) || IsBetween(c, 0xFE00, 0xFE0F) || IsBetween(c, 0xFE20, 0xFE2F);
}

std::u32string Characters(std::string_view text) {
    const std::u16string wide = platform::ToWide(text.substr(0, (kMostCharacters + 1) * kBytesPerCharacter));
    std::u32string characters;
    for (std::size_t i = 0; i < wide.size() && characters.size() <= kMostCharacters;) {
        const char32_t c = Next(wide, i);
        if (c < 0x20 && ascii::IsSpace(static_cast<char>(c)))
            characters += U' ';
        else if (!IsDropped(c))
            characters += IsNoCharacter(c) ? kReplacement : c;
    }
    if (characters.size() > kMostCharacters) characters.back() = kEllipsis;
    return characters;
}

void AppendEscaped(std::string& out, std::u32string_view text) {
    for (const char32_t c : text) {
        if (c < 0x7F && c != U'&' && c != U'<' && c != U'>' && c != U'"' && c != U'\'') {
            out += static_cast<char>(c);
            continue;
        }
        char digits[12];
        char* const end = std::to_chars(digits, std::end(digits), static_cast<std::uint32_t>(c)).ptr;
        out.append("&#").append(digits, end).push_back(';');
    }
}

}  // namespace qv::charts
