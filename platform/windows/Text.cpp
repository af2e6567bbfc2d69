#include "platform/Text.h"

#include <windows.h>
// windows.h must come first.
#include <mbctype.h>

#include <optional>

#include "platform/Ascii.h"
#include "platform/Utf8.h"
#include "platform/windows/names/WidePath.h"

namespace qv::platform {
namespace {

wchar_t* Wide(char16_t* text) {
    return reinterpret_cast<wchar_t*>(text);
}
const wchar_t* Wide(const char16_t* text) {
    return reinterpret_cast<const wchar_t*>(text);
}

// Stray bytes have numbers above those of all characters.
constexpr char32_t kStrayByte = 0x110000;

CodePage AskPageOf(UINT number) {
    if (number == CP_UTF8) return CodePage::Utf8;
    CPINFO info{};
    return ::GetCPInfo(number, &info) && info.MaxCharSize > 1 ? CodePage::DoubleByte : CodePage::SingleByte;
}

UINT SystemCodePage() {
    static const UINT number = ::GetACP();
    return number;
}

CodePage PageOf(UINT number) {
    static const CodePage system = AskPageOf(SystemCodePage());
    return number == SystemCodePage() ? system : AskPageOf(number);
}

// The run time reports only multibyte pages. 0 means the system's own, or, if that is a multibyte page, a selected
// single-byte one that it does not report.
UINT CodePageNumber() {
    constexpr UINT kWestern = 1252;
    const int chosen = ::_getmbcp();
    if (chosen > 0) return static_cast<UINT>(chosen);
    return PageOf(SystemCodePage()) == CodePage::DoubleByte ? kWestern : SystemCodePage();
}

std::u16string ToWideOf(std::string_view text, UINT page, DWORD flags = 0) {
    if (page == CP_UTF8) return Utf8ToWide(text);
    const int size = static_cast<int>(text.size());
    std::u16string out(text.size(), u'\0');
    const int length = size ? ::MultiByteToWideChar(page, flags, text.data(), size, Wide(out.data()), size) : 0;
    out.resize(static_cast<std::size_t>(length));
    return out;
}

// Never uses best-fit characters, which only resemble the original.
std::string FromWideOf(std::u16string_view text, UINT page, BOOL* lacking) {
    if (page == CP_UTF8) return WideToUtf8(text);
    const int size = static_cast<int>(text.size());
    if (size == 0) return {};
    constexpr DWORD flags = WC_NO_BEST_FIT_CHARS;
    const int needed = ::WideCharToMultiByte(page, flags, Wide(text.data()), size, nullptr, 0, nullptr, nullptr);
    std::string out(static_cast<std::size_t>(needed), '\0');
    ::WideCharToMultiByte(page, flags, Wide(text.data()), size, out.data(), needed, "?", lacking);
    return out;
}

// Uses the user's locale.
std::u16string MapWide(std::u16string_view wide, Case which) {
    std::u16string mapped(wide.size(), u'\0');
    const int size = static_cast<int>(wide.size());
    const DWORD mapping = which == Case::Upper ? LCMAP_UPPERCASE : LCMAP_LOWERCASE;
    if (!::LCMapStringW(LOCALE_USER_DEFAULT, mapping, Wide(wide.data()), size, Wide(mapped.data()), size))
        return std::u16string(wide);
    return mapped;
}

char32_t MapCodePoint(char32_t code, Case which) {
    std::string utf8;
    AppendUtf8(utf8, code);
    const std::string back = WideToUtf8(MapWide(Utf8ToWide(utf8), which));
    return DecodeUtf8(back, 0).code;
}

// A character whose other case is not in the code page is unchanged.
std::string MapCharacter(std::string_view character, Case which, UINT page) {
    BOOL lacking = 0;
    std::string mapped = FromWideOf(MapWide(ToWideOf(character, page), which), page, &lacking);
    return lacking || mapped.empty() ? std::string(character) : mapped;
}

ByteCase MakeByteCase(Case which, UINT page) {
    ByteCase result{.map = {}, .complete = true};
    const int count = PageOf(page) == CodePage::SingleByte ? 256 : 128;
    for (int byte = 0; byte < 256; ++byte) {
        const char c = static_cast<char>(byte);
        const char mapped = byte < count ? MapCharacter({&c, 1}, which, page)[0] : c;
        result.map[static_cast<unsigned char>(byte)] = static_cast<unsigned char>(mapped);
    }
    return result;
}

// The user's locale does not change, so each thread caches the case table of the last page.
const ByteCase& CaseOfBytes(Case which, UINT page) {
    struct Known {
        UINT page;
        ByteCase lower, upper;
    };
    thread_local std::optional<Known> known;
    if (!known || known->page != page)
        known = Known{page, MakeByteCase(Case::Lower, page), MakeByteCase(Case::Upper, page)};
    return which == Case::Upper ? known->upper : known->lower;
}

std::string MapUtf8Text(std::string_view text, Case which) {
    const ByteCase& bytes = CaseOfBytes(which, CP_UTF8);
    return MapUtf8(text, [&](char32_t code) {
        return code < 0x80 && bytes.complete ? bytes.map[code] : MapCodePoint(code, which);
    });
}

std::string MapText(std::string_view text, Case which) {
    const UINT number = CodePageNumber();
    const CodePage page = PageOf(number);
    if (page == CodePage::Utf8) return MapUtf8Text(text, which);
    const ByteCase& bytes = CaseOfBytes(which, number);
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0, length; i < text.size(); i += length) {
        length = CharacterLength(text, i, page);
        if (length == 1)
            out += static_cast<char>(bytes.map[static_cast<unsigned char>(text[i])]);
        else
            out += MapCharacter(text.substr(i, length), which, number);
    }
    return out;
}

// Lead bytes alone do not make a character of two bytes. Does not change the last error.
bool IsPair(std::string_view bytes, UINT page) {
    if (bytes.size() < 2 || !::IsDBCSLeadByteEx(page, static_cast<BYTE>(bytes[0]))) return false;
    const DWORD errorBefore = ::GetLastError();
    wchar_t wide[2];
    const bool valid = ::MultiByteToWideChar(page, MB_ERR_INVALID_CHARS, bytes.data(), 2, wide, 2) > 0;
    ::SetLastError(errorBefore);
    return valid;
}

bool TestWide(std::string_view character, WORD mask) {
    const std::u16string wide = ToWide(character);
    WORD type = 0;
    return !wide.empty() && ::GetStringTypeW(CT_CTYPE1, Wide(wide.data()), 1, &type) && (type & mask);
}

}  // namespace

CodePage CurrentCodePage() {
    return PageOf(CodePageNumber());
}

std::size_t CharacterLength(std::string_view text, std::size_t position, CodePage page) {
    if (page == CodePage::SingleByte || ascii::IsAscii(text[position])) return 1;
    if (page == CodePage::Utf8) return DecodeUtf8(text, position).length;
    return IsPair(text.substr(position), CodePageNumber()) ? 2 : 1;
}

std::string ToUpper(std::string_view text) {
    return MapText(text, Case::Upper);
}

std::string ToLower(std::string_view text) {
    return MapText(text, Case::Lower);
}

ByteCase CaseOfBytes(Case which) {
    return CaseOfBytes(which, CodePageNumber());
}

CasedCharacter ReadCased(std::string_view text, std::size_t position, CodePage page, Case which) {
    const auto byte = static_cast<unsigned char>(text[position]);
    if (page == CodePage::Utf8) {
        const Utf8Character c = DecodeUtf8(text, position);
        return {c.wellFormed ? MapCodePoint(c.code, which) : kStrayByte + byte, c.length};
    }
    const UINT number = CodePageNumber();
    const std::size_t length = CharacterLength(text, position, page);
    if (length == 1) return {CaseOfBytes(which, number).map[byte], 1};
    char32_t code = 0;
    for (const char c : MapCharacter(text.substr(position, length), which, number))
        code = code << 8 | static_cast<unsigned char>(c);
    return {code, length};
}

bool IsLetter(std::string_view character) {
    if (character.size() == 1 && ascii::IsAscii(character[0])) return ascii::IsLetter(character[0]);
    return TestWide(character, C1_ALPHA);
}

bool IsSpace(std::string_view character) {
    constexpr std::u16string_view noBreakSpace = u"\u00A0";
    if (character.empty()) return false;
    if (ascii::IsAscii(character[0])) return ascii::IsSpace(character[0]);
    return ToWide(character) != noBreakSpace && TestWide(character, C1_SPACE);
}

// The run time decodes texts in its locale's code page, which is the process's unless the program selects another one.
bool CollatesInCodePage() {
    return true;
}

std::string ForCollation(std::string_view text) {
    return std::string(text);
}

std::u16string ToWide(std::string_view text) {
    return ToWideOf(text, CodePageNumber());
}

std::string FromWide(std::u16string_view text) {
    return FromWideOf(text, CodePageNumber(), nullptr);
}

std::optional<std::wstring> ToSystemExactly(std::string_view text) {
    const UINT page = CodePageNumber();
    const std::u16string wide = ToWideOf(text, page, MB_ERR_INVALID_CHARS);
    const bool wellFormed = page == CP_UTF8 ? WideToUtf8(wide) == text : wide.empty() == text.empty();
    return wellFormed ? std::optional<std::wstring>({wide.begin(), wide.end()}) : std::nullopt;
}

}  // namespace qv::platform
