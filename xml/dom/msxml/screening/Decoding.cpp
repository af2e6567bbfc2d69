#include "xml/dom/msxml/screening/Decoding.h"

#include <windows.h>

#include <array>
#include <charconv>

#include "platform/Ascii.h"
#include "platform/Utf8.h"
#include "xml/dom/msxml/screening/Pages.h"

namespace qv::dom {
namespace {

struct Encoding {
    std::string_view name;
    UINT codePage;
};

constexpr UINT kUtf16 = 1200, kUtf16Big = 1201, kIso2022Jp = 50220;

constexpr std::array<Encoding, 23> kEncodings = {
    {{"utf-8", CP_UTF8},     {"utf8", CP_UTF8},      {"utf-7", CP_UTF7},
     {"us-ascii", 20127},    {"ascii", 20127},       {"iso-2022-jp", kIso2022Jp},
     {"iso-2022-kr", 50225}, {"shift_jis", 932},     {"shift-jis", 932},
     {"sjis", 932},          {"windows-31j", 932},   {"euc-jp", 20932},
     {"gb2312", 936},        {"gbk", 936},           {"gb18030", 54936},
     {"big5", 950},          {"euc-kr", 949},        {"ks_c_5601-1987", 949},
     {"koi8-r", 20866},      {"koi8-u", 21866},      {"macintosh", 10000},
     {"utf-16", kUtf16},     {"utf-16be", kUtf16Big}}};

// "iso-8859-1" and "windows-1252" contain their numbers.
UINT NumberedPage(std::string_view name, std::string_view prefix, UINT base) {
    UINT number = 0;
    if (!name.starts_with(prefix)) return 0;
    const std::string_view digits = name.substr(prefix.size());
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return error == std::errc() && end == digits.data() + digits.size() ? base + number : 0;
}

UINT CodePageOf(std::string_view encoding) {
    const std::string name = ascii::ToLower(encoding);
    for (const Encoding& known : kEncodings)
        if (known.name == name) return known.codePage;
    if (const UINT page = NumberedPage(name, "iso-8859-", 28590)) return page;
    if (const UINT page = NumberedPage(name, "windows-", 0)) return page;
    return NumberedPage(name, "cp", 0);
}

std::optional<std::string> FromUtf16(std::string_view bytes, bool big) {
    if (bytes.size() % 2) return std::nullopt;
    std::u16string text(bytes.size() / 2, u'\0');
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto first = static_cast<unsigned char>(bytes[2 * i]),
                   second = static_cast<unsigned char>(bytes[2 * i + 1]);
        text[i] = static_cast<char16_t>(big ? first << 8 | second : second << 8 | first);
    }
    return platform::WideToUtf8(text);
}

bool IsUtf8(std::string_view bytes) {
    for (std::size_t i = 0; i < bytes.size();) {
        const platform::Utf8Character c = platform::DecodeUtf8(bytes, i);
        if (!ascii::IsAscii(bytes[i]) && !c.wellFormed) return false;
        i += c.length;
    }
    return true;
}

}  // namespace

std::string_view DeclaredEncoding(std::string_view text) {
    if (!text.starts_with("<?xml")) return {};
    const std::string_view declaration = text.substr(0, text.find("?>"));
    const std::size_t name = declaration.find("encoding");
    const std::size_t quote = declaration.find_first_of("\"'", name);
    if (name == text.npos || quote == text.npos) return {};
    const std::size_t end = declaration.find(declaration[quote], quote + 1);
    return end == text.npos ? std::string_view() : declaration.substr(quote + 1, end - quote - 1);
}

std::optional<std::string> Decode(std::string_view bytes) {
    using namespace std::string_view_literals;
    if (bytes.starts_with("\xFF\xFE")) return FromUtf16(bytes.substr(2), false);
    if (bytes.starts_with("\xFE\xFF")) return FromUtf16(bytes.substr(2), true);
    if (bytes.starts_with("<\0?\0"sv)) return FromUtf16(bytes, false);
    if (bytes.starts_with("\0<\0?"sv)) return FromUtf16(bytes, true);
    const bool marked = bytes.starts_with("\xEF\xBB\xBF");
    if (marked) bytes.remove_prefix(3);
    const std::string_view declared = DeclaredEncoding(bytes);
    const UINT page = marked || declared.empty() ? CP_UTF8 : CodePageOf(declared);
    if (page == 0 || page == kUtf16 || page == kUtf16Big) return std::nullopt;
    if (page == CP_UTF8) return IsUtf8(bytes) ? std::optional<std::string>(bytes) : std::nullopt;
    return page == kIso2022Jp ? FromIso2022Jp(bytes) : FromPage(bytes, page);
}

}  // namespace qv::dom
