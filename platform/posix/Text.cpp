#include "platform/Text.h"

#include <langinfo.h>

#include <cctype>
#include <cstring>
#include <cwchar>
#include <cwctype>

#include "platform/Ascii.h"
#include "platform/Utf8.h"
#include "platform/posix/text/Windows1252.h"

namespace qv::platform {
namespace {

bool IsPlainC() {
    return !std::strcmp(::nl_langinfo(CODESET), "ANSI_X3.4-1968");
}

// Stray bytes get numbers beyond those of all characters.
constexpr char32_t kStrayByte = 0x110000;

struct WideCharacter {
    wchar_t code;
    std::size_t length;
    bool wellFormed;
};

WideCharacter ReadLocaleCharacter(std::string_view text, std::size_t position) {
    std::mbstate_t state{};
    wchar_t code = 0;
    const std::size_t length = std::mbrtowc(&code, text.data() + position, text.size() - position, &state);
    if (length == static_cast<std::size_t>(-1) || length == static_cast<std::size_t>(-2))
        return {static_cast<unsigned char>(text[position]), 1, false};
    return {code, length ? length : 1, true};
}

WideCharacter ReadCharacter(std::string_view text, std::size_t position, CodePage page) {
    if (page != CodePage::Utf8) return ReadLocaleCharacter(text, position);
    const Utf8Character c = DecodeUtf8(text, position);
    return {static_cast<wchar_t>(c.code), c.length, c.wellFormed};
}

void AppendLocaleCharacter(std::string& out, wchar_t code) {
    char bytes[64];
    std::mbstate_t state{};
    const std::size_t length = std::wcrtomb(bytes, code, &state);
    if (length == static_cast<std::size_t>(-1))
        out += '?';
    else
        out.append(bytes, length);
}

wchar_t WideCase(wchar_t code, Case which) {
    const std::wint_t wide{static_cast<char32_t>(code)};
    return static_cast<wchar_t>(which == Case::Upper ? std::towupper(wide) : std::towlower(wide));
}

unsigned char LocaleCase(unsigned char byte, Case which) {
    return static_cast<unsigned char>(which == Case::Upper ? std::toupper(byte) : std::tolower(byte));
}

template <class Map>
constexpr ByteCase MakeByteCase(int count, Map map) {
    ByteCase result{.map = {}, .complete = true};
    for (int byte = 0; byte < 256; ++byte) {
        const auto old = static_cast<unsigned char>(byte);
        result.map[old] = byte < count ? map(old) : old;
    }
    return result;
}

const ByteCase& CaseOfWindows1252(Case which) {
    static constexpr ByteCase lower = MakeByteCase(256, LowerWindows1252), upper = MakeByteCase(256, UpperWindows1252);
    return which == Case::Upper ? upper : lower;
}

// Only the letter I has rules of its own in some languages; there the bytes do not tell the whole truth.
ByteCase CaseOfAscii(Case which) {
    constexpr auto toLower = [](unsigned char byte) {
        return static_cast<unsigned char>(ascii::ToLower(static_cast<char>(byte)));
    };
    constexpr auto toUpper = [](unsigned char byte) {
        return static_cast<unsigned char>(ascii::ToUpper(static_cast<char>(byte)));
    };
    static constexpr ByteCase lower = MakeByteCase(128, toLower), upper = MakeByteCase(128, toUpper);
    ByteCase result = which == Case::Upper ? upper : lower;
    result.complete = WideCase(L'i', Case::Upper) == L'I' && WideCase(L'I', Case::Lower) == L'i';
    return result;
}

void AppendCased(std::string& out, std::string_view text, std::size_t& position, CodePage page, Case which) {
    const WideCharacter c = ReadCharacter(text, position, page);
    if (!c.wellFormed)
        out += text[position];
    else if (page == CodePage::Utf8)
        AppendUtf8(out, static_cast<char32_t>(WideCase(c.code, which)));
    else
        AppendLocaleCharacter(out, WideCase(c.code, which));
    position += c.length;
}

std::size_t AsciiEnd(std::string_view text, std::size_t position) {
    while (position < text.size() && ascii::IsAscii(text[position])) ++position;
    return position;
}

void AppendMapped(std::string& out, std::string_view text, const ByteCase& bytes) {
    const std::size_t start = out.size();
    out.append(text);
    for (std::size_t i = start; i < out.size(); ++i)
        out[i] = static_cast<char>(bytes.map[static_cast<unsigned char>(out[i])]);
}

std::string MapText(std::string_view text, Case which) {
    const CodePage page = CurrentCodePage();
    const ByteCase bytes = CaseOfBytes(which);
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        std::size_t end = i;
        if (page == CodePage::SingleByte)
            end = text.size();
        else if (bytes.complete)
            end = AsciiEnd(text, i);
        AppendMapped(out, text.substr(i, end - i), bytes);
        i = end;
        if (i < text.size()) AppendCased(out, text, i, page, which);
    }
    return out;
}

bool TestWide(std::string_view character, CodePage page, int (*test)(std::wint_t)) {
    const WideCharacter c = ReadCharacter(character, 0, page);
    return c.wellFormed && test(static_cast<std::wint_t>(c.code)) != 0;
}

}  // namespace

CodePage CurrentCodePage() {
    const char* const set = ::nl_langinfo(CODESET);
    if (!std::strcmp(set, "UTF-8")) return CodePage::Utf8;
    return MB_CUR_MAX == 1 ? CodePage::SingleByte : CodePage::DoubleByte;
}

std::size_t CharacterLength(std::string_view text, std::size_t position, CodePage page) {
    if (page == CodePage::SingleByte || ascii::IsAscii(text[position])) return 1;
    return page == CodePage::Utf8 ? DecodeUtf8(text, position).length : ReadLocaleCharacter(text, position).length;
}

std::string ToUpper(std::string_view text) {
    return MapText(text, Case::Upper);
}

std::string ToLower(std::string_view text) {
    return MapText(text, Case::Lower);
}

ByteCase CaseOfBytes(Case which) {
    if (CurrentCodePage() != CodePage::SingleByte) return CaseOfAscii(which);
    if (IsPlainC()) return CaseOfWindows1252(which);
    return MakeByteCase(256, [which](unsigned char byte) { return LocaleCase(byte, which); });
}

CasedCharacter ReadCased(std::string_view text, std::size_t position, CodePage page, Case which) {
    const auto byte = static_cast<unsigned char>(text[position]);
    if (page == CodePage::SingleByte) return {CaseOfBytes(which).map[byte], 1};
    const WideCharacter c = ReadCharacter(text, position, page);
    if (!c.wellFormed) return {kStrayByte + byte, 1};
    return {static_cast<char32_t>(WideCase(c.code, which)), c.length};
}

bool IsLetter(std::string_view character) {
    if (character.empty()) return false;
    const auto byte = static_cast<unsigned char>(character[0]);
    if (byte < 0x80) return ascii::IsLetter(character[0]);
    const CodePage page = CurrentCodePage();
    if (page != CodePage::SingleByte) return TestWide(character, page, ::iswalpha);
    return IsPlainC() ? IsLetterWindows1252(byte) : std::isalpha(byte) != 0;
}

bool IsSpace(std::string_view character) {
    if (character.empty()) return false;
    const auto byte = static_cast<unsigned char>(character[0]);
    if (byte < 0x80) return ascii::IsSpace(character[0]);
    const CodePage page = CurrentCodePage();
    return page == CodePage::SingleByte ? std::isspace(byte) != 0 : TestWide(character, page, ::iswspace);
}

std::u16string ToWide(std::string_view text) {
    const CodePage page = CurrentCodePage();
    if (page == CodePage::Utf8) return Utf8ToWide(text);
    std::u16string out;
    const bool plainC = IsPlainC();
    for (std::size_t i = 0; i < text.size();) {
        if (plainC) {
            out += FromWindows1252(static_cast<unsigned char>(text[i++]));
            continue;
        }
        const WideCharacter c = ReadLocaleCharacter(text, i);
        i += c.length;
        std::string utf8;
        AppendUtf8(utf8, c.wellFormed ? static_cast<char32_t>(c.code) : U'?');
        out += Utf8ToWide(utf8);
    }
    return out;
}

std::string FromWide(std::u16string_view text) {
    if (CurrentCodePage() == CodePage::Utf8) return WideToUtf8(text);
    std::string out;
    if (IsPlainC()) {
        for (const char16_t unit : text) {
            const int byte = ToWindows1252(unit);
            const bool low = unit >= 0xDC00 && unit < 0xE000;
            if (!low) out += byte < 0 ? '?' : static_cast<char>(byte);
        }
        return out;
    }
    const std::string utf8 = WideToUtf8(text);
    for (std::size_t i = 0; i < utf8.size();) {
        const Utf8Character c = DecodeUtf8(utf8, i);
        AppendLocaleCharacter(out, static_cast<wchar_t>(c.code));
        i += c.length;
    }
    return out;
}

}  // namespace qv::platform
