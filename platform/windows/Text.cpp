#include "platform/Text.h"

#include <windows.h>

#include <cctype>
#include <cstring>

#include "platform/Ascii.h"
#include "platform/Utf8.h"

namespace qv::platform {
namespace {

wchar_t* Wide(char16_t* text) {
    return reinterpret_cast<wchar_t*>(text);
}
const wchar_t* Wide(const char16_t* text) {
    return reinterpret_cast<const wchar_t*>(text);
}

// Stray bytes get numbers beyond those of all characters.
constexpr char32_t kStrayByte = 0x110000;

// One code point in the other case, by the user's locale.
char32_t MapCodePoint(char32_t code, Case which) {
    std::string utf8;
    AppendUtf8(utf8, code);
    std::u16string wide = Utf8ToWide(utf8), mapped(wide.size(), u'\0');
    const int size = static_cast<int>(wide.size());
    const DWORD mapping = which == Case::Upper ? LCMAP_UPPERCASE : LCMAP_LOWERCASE;
    if (!::LCMapStringW(LOCALE_USER_DEFAULT, mapping, Wide(wide.data()), size, Wide(mapped.data()), size)) return code;
    const std::string back = WideToUtf8(mapped);
    return DecodeUtf8(back, 0).code;
}

void MapBuffer(char* text, std::size_t size, Case which) {
    (which == Case::Upper ? ::CharUpperBuffA : ::CharLowerBuffA)(text, static_cast<DWORD>(size));
}

std::string MapUtf8Text(std::string_view text, Case which) {
    const ByteCase bytes = CaseOfBytes(which);
    return MapUtf8(text, [&](char32_t code) {
        return code < 0x80 && bytes.complete ? bytes.map[code] : MapCodePoint(code, which);
    });
}

std::string MapText(std::string_view text, Case which) {
    const CodePage page = CurrentCodePage();
    if (page == CodePage::Utf8) return MapUtf8Text(text, which);
    std::string out(text);
    if (page == CodePage::DoubleByte) {
        MapBuffer(out.data(), out.size(), which);
        return out;
    }
    const ByteCase bytes = CaseOfBytes(which);
    for (char& c : out) c = static_cast<char>(bytes.map[static_cast<unsigned char>(c)]);
    return out;
}

char Mapped(char c, Case which) {
    MapBuffer(&c, 1, which);
    return c;
}

// A letter whose other case the code page does not hold becomes some other character; it stays as it is instead.
char MappedIfReversible(char c, Case which) {
    const Case other = which == Case::Upper ? Case::Lower : Case::Upper;
    const char mapped = Mapped(c, which);
    return Mapped(mapped, other) == Mapped(c, other) ? mapped : c;
}

ByteCase MakeByteCase(Case which) {
    ByteCase result{.map = {}, .complete = true};
    const int count = CurrentCodePage() == CodePage::SingleByte ? 256 : 128;
    for (int byte = 0; byte < 256; ++byte) {
        const char c = static_cast<char>(byte);
        const char mapped = byte < count ? MappedIfReversible(c, which) : c;
        result.map[static_cast<unsigned char>(byte)] = static_cast<unsigned char>(mapped);
    }
    return result;
}

bool TestWide(std::string_view character, WORD mask) {
    const std::u16string wide = ToWide(character);
    WORD type = 0;
    return !wide.empty() && ::GetStringTypeW(CT_CTYPE1, Wide(wide.data()), 1, &type) && (type & mask);
}

}  // namespace

CodePage CurrentCodePage() {
    static const CodePage page = [] {
        if (::GetACP() == CP_UTF8) return CodePage::Utf8;
        CPINFO info{};
        return ::GetCPInfo(CP_ACP, &info) && info.MaxCharSize > 1 ? CodePage::DoubleByte : CodePage::SingleByte;
    }();
    return page;
}

std::size_t CharacterLength(std::string_view text, std::size_t position, CodePage page) {
    if (page == CodePage::SingleByte) return 1;
    if (page == CodePage::Utf8) return DecodeUtf8(text, position).length;
    return ::IsDBCSLeadByte(static_cast<BYTE>(text[position])) && position + 1 < text.size() ? 2 : 1;
}

std::string ToUpper(std::string_view text) {
    return MapText(text, Case::Upper);
}

std::string ToLower(std::string_view text) {
    return MapText(text, Case::Lower);
}

ByteCase CaseOfBytes(Case which) {
    static const ByteCase lower = MakeByteCase(Case::Lower), upper = MakeByteCase(Case::Upper);
    return which == Case::Upper ? upper : lower;
}

CasedCharacter ReadCased(std::string_view text, std::size_t position, CodePage page, Case which) {
    const auto byte = static_cast<unsigned char>(text[position]);
    if (page == CodePage::Utf8) {
        const Utf8Character c = DecodeUtf8(text, position);
        return {c.wellFormed ? MapCodePoint(c.code, which) : kStrayByte + byte, c.length};
    }
    const std::size_t length = CharacterLength(text, position, page);
    if (length == 1) return {CaseOfBytes(which).map[byte], 1};
    char pair[2] = {text[position], text[position + 1]};
    MapBuffer(pair, 2, which);
    return {static_cast<char32_t>(static_cast<unsigned char>(pair[0]) << 8 | static_cast<unsigned char>(pair[1])), 2};
}

bool IsLetter(std::string_view character) {
    if (character.size() == 1 && ascii::IsAscii(character[0])) return ascii::IsLetter(character[0]);
    return TestWide(character, C1_ALPHA);
}

bool IsSpace(std::string_view character) {
    if (character.empty()) return false;
    const auto byte = static_cast<unsigned char>(character[0]);
    if (byte < 0x80) return ascii::IsSpace(character[0]);
    if (character.size() > 1) return TestWide(character, C1_SPACE);
    return CurrentCodePage() == CodePage::SingleByte && std::isspace(byte);
}

std::u16string ToWide(std::string_view text) {
    if (CurrentCodePage() == CodePage::Utf8) return Utf8ToWide(text);
    const int size = static_cast<int>(text.size());
    std::u16string out(text.size(), u'\0');
    const int length = size ? ::MultiByteToWideChar(CP_ACP, 0, text.data(), size, Wide(out.data()), size) : 0;
    out.resize(static_cast<std::size_t>(length));
    return out;
}

std::string FromWide(std::u16string_view text) {
    if (CurrentCodePage() == CodePage::Utf8) return WideToUtf8(text);
    const int size = static_cast<int>(text.size());
    if (size == 0) return {};
    const int needed = ::WideCharToMultiByte(CP_ACP, 0, Wide(text.data()), size, nullptr, 0, nullptr, nullptr);
    std::string out(static_cast<std::size_t>(needed), '\0');
    ::WideCharToMultiByte(CP_ACP, 0, Wide(text.data()), size, out.data(), needed, "?", nullptr);
    return out;
}

}  // namespace qv::platform
