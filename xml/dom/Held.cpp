#include "xml/dom/Held.h"

#include <algorithm>
#include <array>

#include "platform/Utf8.h"
#include "xml/dom/Characters.h"

namespace qv::dom {
namespace {

struct Range {
    char32_t first, last;
};

constexpr std::array<Range, 12> kNameStarts = {{{0xC0, 0xD6},
                                                {0xD8, 0xF6},
                                                {0xF8, 0x2FF},
                                                {0x370, 0x37D},
                                                {0x37F, 0x1FFF},
                                                {0x200C, 0x200D},
                                                {0x2070, 0x218F},
                                                {0x2C00, 0x2FEF},
                                                {0x3001, 0xD7FF},
                                                {0xF900, 0xFDCF},
                                                {0xFDF0, 0xFFFD},
                                                {0x10000, 0xEFFFF}}};
constexpr std::array<Range, 3> kOnlyInside = {{{0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}}};

template <std::size_t N>
bool IsIn(const std::array<Range, N>& ranges, char32_t code) {
    return std::any_of(ranges.begin(), ranges.end(),
                       [code](const Range& range) { return code >= range.first && code <= range.last; });
}

bool IsNamePart(std::string_view part) {
    for (std::size_t i = 0; i < part.size();) {
        const platform::Utf8Character c = platform::DecodeUtf8(part, i);
        const bool ascii = ascii::IsAscii(part[i]);
        const bool starts = ascii ? StartsName(part[i]) : c.wellFormed && IsIn(kNameStarts, c.code);
        const bool fits =
            starts || (i > 0 && (ascii ? ContinuesName(part[i]) : c.wellFormed && IsIn(kOnlyInside, c.code)));
        if (!fits) return false;
        i += c.length;
    }
    return !part.empty();
}

bool HoldsCharacters(std::string_view text) {
    for (std::size_t i = 0; i < text.size();) {
        if (ascii::IsAscii(text[i])) {
            if (static_cast<unsigned char>(text[i]) < 0x20 && !IsSpace(text[i])) return false;
            ++i;
            continue;
        }
        const platform::Utf8Character c = platform::DecodeUtf8(text, i);
        if (!c.wellFormed || c.code == 0xFFFE || c.code == 0xFFFF) return false;
        i += c.length;
    }
    return true;
}

bool Holds(std::string_view text, std::string_view part) {
    return text.find(part) != text.npos;
}

bool EndsNowhere(MSXML2::DOMNodeType type, std::string_view text) {
    switch (type) {
        case MSXML2::NODE_COMMENT: return !Holds(text, "--") && !text.ends_with('-') && !Holds(text, "\r");
        case MSXML2::NODE_CDATA_SECTION: return !Holds(text, "]]>") && !Holds(text, "\r");
        case MSXML2::NODE_PROCESSING_INSTRUCTION: return !Holds(text, "?>") && !Holds(text, "\r");
        default: return true;
    }
}

}  // namespace

MSXML2::IXMLDOMParseError TooLong() {
    return {_com_error::kOutOfMemory, "The text is too long", 0, 0};
}

bool IsName(std::string_view name) {
    if (name.size() > kLongestName) return false;
    const std::size_t colon = name.find(':');
    if (colon != name.npos && !IsNamePart(name.substr(0, colon))) return false;
    return IsNamePart(LocalPartOf(name));
}

bool CanHold(MSXML2::DOMNodeType type, std::string_view text) {
    return text.size() <= kLongestText && HoldsCharacters(text) && EndsNowhere(type, text);
}

bool CanDeclare(std::string_view prefix, std::string_view uri) {
    const bool reserved = uri == "http://www.w3.org/XML/1998/namespace" || uri == "http://www.w3.org/2000/xmlns/";
    return prefix != "xml" && prefix != "xmlns" && !reserved && (prefix.empty() || !uri.empty());
}

bool CanDefault(std::string_view name, std::string_view value) {
    return IsName(name) && (!IsDeclaration(name) || CanDeclare(DeclaredPrefix(name), value));
}

}  // namespace qv::dom
