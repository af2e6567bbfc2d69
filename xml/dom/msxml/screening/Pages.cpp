#include "xml/dom/msxml/screening/Pages.h"

#include <windows.h>

#include <algorithm>

#include "platform/Ascii.h"
#include "platform/Utf8.h"

namespace qv::dom {
namespace {

constexpr unsigned kAscii = 20127, kEucJp = 20932;

enum class CharacterSet { Ascii, Roman, Kanji };

std::optional<CharacterSet> ReadEscape(std::string_view escape) {
    if (escape == "\x1B(B") return CharacterSet::Ascii;
    if (escape == "\x1B(J") return CharacterSet::Roman;
    if (escape == "\x1B$B" || escape == "\x1B$@") return CharacterSet::Kanji;
    return std::nullopt;
}

// ASCII except for two characters.
std::string FromRoman(std::string_view text) {
    std::string out;
    for (const char c : text) c == '\\' ? out += "\xC2\xA5" : c == '~' ? out += "\xE2\x80\xBE" : out += c;
    return out;
}

std::optional<std::string> FromKanji(std::string_view text) {
    std::string high(text);
    for (char& c : high)
        if (c > ' ') c = static_cast<char>(c | 0x80);
    return FromPage(high, kEucJp);
}

std::optional<std::string> FromSet(std::string_view text, CharacterSet set) {
    switch (set) {
        case CharacterSet::Roman: return FromRoman(text);
        case CharacterSet::Kanji: return FromKanji(text);
        default: return std::string(text);
    }
}

}  // namespace

std::optional<std::string> FromPage(std::string_view bytes, unsigned page) {
    // These are seven-bit encodings, but the system's conversions accept other bytes.
    if ((page == kAscii || page == CP_UTF7) && !ascii::IsAscii(bytes)) return std::nullopt;
    const int size = static_cast<int>(bytes.size());
    std::u16string text(bytes.size(), u'\0');
    auto* const buffer = reinterpret_cast<wchar_t*>(text.data());
    int length = ::MultiByteToWideChar(page, MB_ERR_INVALID_CHARS, bytes.data(), size, buffer, size);
    // Stateful encodings accept no flags.
    if (length == 0 && ::GetLastError() == ERROR_INVALID_FLAGS)
        length = ::MultiByteToWideChar(page, 0, bytes.data(), size, buffer, size);
    if (length == 0 && size > 0) return std::nullopt;
    text.resize(static_cast<std::size_t>(length));
    return platform::WideToUtf8(text);
}

std::optional<std::string> FromIso2022Jp(std::string_view bytes) {
    if (!ascii::IsAscii(bytes)) return std::nullopt;
    constexpr std::size_t escapeLength = 3;
    std::string out;
    for (CharacterSet set = CharacterSet::Ascii;;) {
        const std::size_t end = std::min(bytes.find('\x1B'), bytes.size());
        const std::optional<std::string> part = FromSet(bytes.substr(0, end), set);
        if (!part) return std::nullopt;
        out += *part;
        if (end == bytes.size()) return out;
        const std::optional<CharacterSet> next = ReadEscape(bytes.substr(end, escapeLength));
        if (!next) return std::nullopt;
        set = *next;
        bytes.remove_prefix(end + escapeLength);
    }
}

}  // namespace qv::dom
