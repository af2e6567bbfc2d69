#include "platform/Text.h"

#include <cctype>
#include <cstring>

#include "platform/Ascii.h"
#include "platform/Utf8.h"
#include "platform/posix/text/TextRules.h"

namespace qv::platform {
namespace {

// Stray bytes have numbers above those of all characters.
constexpr char32_t kStrayByte = 0x110000;

template <class Map>
constexpr ByteCase MakeByteCase(int first, int last, Map map) {
    ByteCase result{.map = {}, .complete = true};
    for (int byte = 0; byte < 256; ++byte) {
        const auto old = static_cast<unsigned char>(byte);
        result.map[old] = byte >= first && byte < last ? map(old) : old;
    }
    return result;
}

constexpr unsigned char AsciiCase(unsigned char byte, Case which) {
    const char c = static_cast<char>(byte);
    return static_cast<unsigned char>(which == Case::Upper ? ascii::ToUpper(c) : ascii::ToLower(c));
}

// Only the letter I has language-specific rules, which a byte table cannot represent.
ByteCase CaseOfAscii(Case which, const CharacterRules& rules) {
    static constexpr ByteCase lower =
        MakeByteCase(0, 128, [](unsigned char byte) { return AsciiCase(byte, Case::Lower); });
    static constexpr ByteCase upper =
        MakeByteCase(0, 128, [](unsigned char byte) { return AsciiCase(byte, Case::Upper); });
    ByteCase result = which == Case::Upper ? upper : lower;
    result.complete =
        rules.AreNeutral() || (rules.Cased('i', Case::Upper) == 'I' && rules.Cased('I', Case::Lower) == 'i');
    return result;
}

// A letter whose other case is not in the set is unchanged.
unsigned char CaseInSet(unsigned char byte, Case which, const CodeSet& set, const CharacterRules& rules) {
    const char c = static_cast<char>(byte);
    std::string cased;
    const bool held = set.Append(cased, rules.Cased(set.Read({&c, 1}, 0).code, which));
    return held ? static_cast<unsigned char>(cased[0]) : byte;
}

ByteCase CaseBySet(Case which, const CodeSet& set, const CharacterRules& rules) {
    return MakeByteCase(0, 256, [&](unsigned char byte) { return CaseInSet(byte, which, set, rules); });
}

// Unicode's rules do not change, so each thread caches their result for the last set.
const ByteCase& NeutralCase(Case which, const CodeSet& set, const CharacterRules& rules) {
    thread_local const CodeSet* known = nullptr;
    thread_local ByteCase lower, upper;
    if (known != &set) {
        lower = CaseBySet(Case::Lower, set, rules);
        upper = CaseBySet(Case::Upper, set, rules);
        known = &set;
    }
    return which == Case::Upper ? upper : lower;
}

ByteCase CaseOfSingleBytes(Case which, const CodeSet& set, const CharacterRules& rules) {
    if (rules.AreNeutral()) return NeutralCase(which, set, rules);
    if (&set != LocaleCodeSet()) return CaseBySet(which, set, rules);
    return MakeByteCase(0, 256, [which](unsigned char byte) {
        return static_cast<unsigned char>(which == Case::Upper ? std::toupper(byte) : std::tolower(byte));
    });
}

ByteCase CaseOfBytes(Case which, const CodeSet& set, const CharacterRules& rules) {
    return set.Page() == CodePage::SingleByte ? CaseOfSingleBytes(which, set, rules) : CaseOfAscii(which, rules);
}

void AppendMapped(std::string& out, std::string_view text, const ByteCase& bytes) {
    const std::size_t start = out.size();
    out.append(text);
    for (std::size_t i = start; i < out.size(); ++i)
        out[i] = static_cast<char>(bytes.map[static_cast<unsigned char>(out[i])]);
}

std::size_t AsciiEnd(std::string_view text, std::size_t position) {
    constexpr std::uint64_t kHighBits = 0x8080808080808080;
    for (std::uint64_t block; text.size() - position >= sizeof block; position += sizeof block) {
        std::memcpy(&block, text.data() + position, sizeof block);
        if (block & kHighBits) break;
    }
    while (position < text.size() && ascii::IsAscii(text[position])) ++position;
    return position;
}

// Whether the text is one ASCII character whose case is the same in every language.
bool IsPlainLetter(std::string_view text) {
    return text.size() == 1 && ascii::IsAscii(text[0]) && text[0] != 'i' && text[0] != 'I';
}

// Changes the case of texts with multibyte characters.
class CaseMapper {
public:
    CaseMapper(Case which, const CodeSet& set)
        : m_which(which), m_set(set), m_rules(CharacterRules::Current()), m_bytes(CaseOfBytes(which, set, m_rules)) {}

    std::string Map(std::string_view text) const {
        std::string out;
        out.reserve(text.size());
        for (std::size_t i = 0; i < text.size();) {
            const std::size_t end = m_set.Page() == CodePage::SingleByte ? text.size()
                                    : m_bytes.complete                   ? AsciiEnd(text, i)
                                                                         : i;
            AppendMapped(out, text.substr(i, end - i), m_bytes);
            i = end;
            if (i < text.size()) AppendCharacter(out, text, i);
        }
        return out;
    }

private:
    void AppendCharacter(std::string& out, std::string_view text, std::size_t& position) const {
        const CodeSet::Character c = m_set.Read(text, position);
        if (!c.wellFormed || !m_set.Append(out, m_rules.Cased(c.code, m_which))) out += text.substr(position, c.length);
        position += c.length;
    }

    Case m_which;
    const CodeSet& m_set;
    CharacterRules m_rules;
    ByteCase m_bytes;
};

}  // namespace

CodePage CurrentCodePage() {
    return CurrentCodeSet().Page();
}

std::size_t CharacterLength(std::string_view text, std::size_t position, CodePage page) {
    if (page == CodePage::SingleByte || ascii::IsAscii(text[position])) return 1;
    return page == CodePage::Utf8 ? DecodeUtf8(text, position).length : CurrentCodeSet().Read(text, position).length;
}

std::string ToUpper(std::string_view text) {
    if (IsPlainLetter(text)) return {ascii::ToUpper(text[0])};
    return CaseMapper(Case::Upper, CurrentCodeSet()).Map(text);
}

std::string ToLower(std::string_view text) {
    if (IsPlainLetter(text)) return {ascii::ToLower(text[0])};
    return CaseMapper(Case::Lower, CurrentCodeSet()).Map(text);
}

ByteCase CaseOfBytes(Case which) {
    return CaseOfBytes(which, CurrentCodeSet(), CharacterRules::Current());
}

CasedCharacter ReadCased(std::string_view text, std::size_t position, CodePage page, Case which) {
    const auto byte = static_cast<unsigned char>(text[position]);
    const CodeSet& set = page == CodePage::Utf8 ? CodeSet::Utf8() : CurrentCodeSet();
    const CharacterRules rules = CharacterRules::Current();
    if (page == CodePage::SingleByte) return {CaseInSet(byte, which, set, rules), 1};
    const CodeSet::Character c = set.Read(text, position);
    if (!c.wellFormed) return {kStrayByte + byte, 1};
    return {rules.Cased(c.code, which), c.length};
}

bool IsLetter(std::string_view character) {
    if (character.empty()) return false;
    if (ascii::IsAscii(character[0])) return ascii::IsLetter(character[0]);
    const CodeSet::Character c = CurrentCodeSet().Read(character, 0);
    return c.wellFormed && CharacterRules::Current().IsLetter(c.code);
}

bool IsSpace(std::string_view character) {
    if (character.empty()) return false;
    if (ascii::IsAscii(character[0])) return ascii::IsSpace(character[0]);
    const CodeSet::Character c = CurrentCodeSet().Read(character, 0);
    return c.wellFormed && CharacterRules::Current().IsSpace(c.code);
}

bool CollatesInCodePage() {
    const CodeSet* const locale = LocaleCodeSet();
    return !locale || locale == &CurrentCodeSet();
}

std::string ForCollation(std::string_view text) {
    return ToLocale(text);
}

std::u16string ToWide(std::string_view text) {
    const CodeSet& set = CurrentCodeSet();
    if (set.Page() == CodePage::Utf8) return Utf8ToWide(text);
    std::string utf8;
    utf8.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const CodeSet::Character c = set.Read(text, i);
        AppendUtf8(utf8, c.wellFormed ? c.code : U'?');
        i += c.length;
    }
    return Utf8ToWide(utf8);
}

std::string FromWide(std::u16string_view text) {
    const CodeSet& set = CurrentCodeSet();
    std::string utf8 = WideToUtf8(text);
    if (set.Page() == CodePage::Utf8) return utf8;
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < utf8.size();) {
        const Utf8Character c = DecodeUtf8(utf8, i);
        if (!set.Append(out, c.code)) out += '?';
        i += c.length;
    }
    return out;
}

}  // namespace qv::platform
