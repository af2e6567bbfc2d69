#include "platform/Wildcard.h"

#include <algorithm>
#include <vector>

#include "platform/Text.h"

namespace qv::platform {
namespace {

// Represent wildcards among the characters, as numbers above all of them.
constexpr char32_t kAnyText = 0x200000, kAnyTextBeforePoint = 0x200001, kAnyCharacter = 0x200002, kPoint = 0x200003;

std::u32string UpperCase(std::string_view text) {
    const CodePage page = CurrentCodePage();
    std::u32string upper;
    for (std::size_t i = 0; i < text.size();) {
        const CasedCharacter c = ReadCased(text, i, page, Case::Upper);
        upper += c.code;
        i += c.length;
    }
    return upper;
}

bool IsWild(char32_t c) {
    return c == U'*' || c == U'?';
}

std::u32string Compiled(std::u32string_view mask) {
    std::u32string out;
    for (std::size_t i = 0; i < mask.size(); ++i) {
        const bool last = i + 1 == mask.size(), afterStar = i > 0 && mask[i - 1] == U'*';
        if (mask[i] == U'?')
            out += kAnyCharacter;
        else if (mask[i] == U'*')
            out += i + 2 == mask.size() && mask[i + 1] == U'.' ? kAnyTextBeforePoint : kAnyText;
        else if (mask[i] == U'.' && (last ? afterStar : IsWild(mask[i + 1])))
            out += kPoint;
        else
            out += mask[i];
    }
    return out;
}

/// The prefixes of the name that the mask matches so far: `from[i]` is whether it can match i characters.
using Reached = std::vector<char>;

Reached AfterText(const Reached& from, std::size_t end) {
    Reached to(from.size(), 0);
    bool open = false;
    for (std::size_t i = 0; i < from.size(); ++i) {
        open = open || from[i];
        to[i] = open && i <= end;
    }
    return to;
}

Reached AfterCharacter(const Reached& from, std::u32string_view name, char32_t wanted) {
    Reached to(from.size(), 0);
    for (std::size_t i = 0; i < from.size(); ++i) {
        if (!from[i]) continue;
        const bool atEnd = i == name.size();
        const bool none = atEnd || name[i] == U'.';
        if (wanted == kAnyCharacter ? !none : !atEnd && name[i] == (wanted == kPoint ? U'.' : wanted)) to[i + 1] = 1;
        if ((wanted == kAnyCharacter && none) || (wanted == kPoint && atEnd)) to[i] = 1;
    }
    return to;
}

}  // namespace

Wildcard::Wildcard(std::string_view mask) : m_mask(Compiled(UpperCase(mask))), m_all(mask == "*" || mask == "*.*") {}

bool Wildcard::Matches(std::string_view text) const {
    if (m_all) return true;
    const std::u32string name = UpperCase(text);
    const std::size_t point = std::min(name.rfind(U'.'), name.size());
    Reached reached(name.size() + 1, 0);
    reached[0] = 1;
    for (const char32_t c : m_mask) {
        if (c == kAnyText || c == kAnyTextBeforePoint)
            reached = AfterText(reached, c == kAnyText ? name.size() : point);
        else
            reached = AfterCharacter(reached, name, c);
    }
    return reached[name.size()] != 0;
}

}  // namespace qv::platform
