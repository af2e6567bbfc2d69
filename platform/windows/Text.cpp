#include "platform/Text.h"

#include <windows.h>

#include <cctype>
#include <cstring>

#include "platform/Utf8.h"

namespace qv::platform {
namespace {

wchar_t* Wide(char16_t* text) {
    return reinterpret_cast<wchar_t*>(text);
}
const wchar_t* Wide(const char16_t* text) {
    return reinterpret_cast<const wchar_t*>(text);
}

// One code point in the other case, by the user's locale.
char32_t MapCodePoint(char32_t code, DWORD mapping) {
    std::string utf8;
    AppendUtf8(utf8, code);
    std::u16string wide = Utf8ToWide(utf8), mapped(wide.size(), u'\0');
    const int size = static_cast<int>(wide.size());
    if (!::LCMapStringW(LOCALE_USER_DEFAULT, mapping, Wide(wide.data()), size, Wide(mapped.data()), size)) return code;
    const std::string back = WideToUtf8(mapped);
    return DecodeUtf8(back, 0).code;
}

std::string MapText(std::string_view text, DWORD mapping, DWORD(WINAPI* mapBuffer)(LPSTR, DWORD)) {
    if (CurrentCodePage() == CodePage::Utf8)
        return MapUtf8(text, [&](char32_t code) { return MapCodePoint(code, mapping); });
    std::string out(text);
    mapBuffer(out.data(), static_cast<DWORD>(out.size()));
    return out;
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
    return MapText(text, LCMAP_UPPERCASE, ::CharUpperBuffA);
}

std::string ToLower(std::string_view text) {
    return MapText(text, LCMAP_LOWERCASE, ::CharLowerBuffA);
}

bool IsLetter(std::string_view character) {
    return TestWide(character, C1_ALPHA);
}

bool IsSpace(std::string_view character) {
    if (character.empty()) return false;
    if (character.size() > 1) return TestWide(character, C1_SPACE);
    const auto byte = static_cast<unsigned char>(character[0]);
    return (byte < 0x80 || CurrentCodePage() == CodePage::SingleByte) && std::isspace(byte);
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
