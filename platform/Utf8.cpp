#include "platform/Utf8.h"

namespace qv::platform {
namespace {

// The length of a character that starts with this byte, and the bits of the byte that belong to its code. 0: not a
// start.
struct Lead {
    std::size_t length;
    char32_t bits;
};

Lead ReadLead(unsigned char byte) {
    if (byte < 0x80) return {1, byte};
    if (byte >= 0xC2 && byte <= 0xDF) return {2, byte & 0x1Fu};
    if (byte >= 0xE0 && byte <= 0xEF) return {3, byte & 0x0Fu};
    if (byte >= 0xF0 && byte <= 0xF4) return {4, byte & 0x07u};
    return {0, 0};
}

bool IsScalar(char32_t code) {
    return code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
}

bool IsShortest(char32_t code, std::size_t length) {
    return length < 3 || code >= (length == 3 ? 0x800u : 0x10000u);
}

}  // namespace

Utf8Character DecodeUtf8(std::string_view text, std::size_t position) {
    const auto byte = static_cast<unsigned char>(text[position]);
    const Lead lead = ReadLead(byte);
    const Utf8Character stray{.code = byte};
    if (lead.length == 0 || text.size() - position < lead.length) return stray;
    char32_t code = lead.bits;
    for (std::size_t i = 1; i < lead.length; ++i) {
        const auto next = static_cast<unsigned char>(text[position + i]);
        if ((next & 0xC0) != 0x80) return stray;
        code = code << 6 | (next & 0x3Fu);
    }
    if (!IsScalar(code) || !IsShortest(code, lead.length)) return stray;
    return {.code = code, .length = lead.length, .wellFormed = true};
}

void AppendUtf8(std::string& out, char32_t code) {
    const auto tail = [&](int shift) { out += static_cast<char>(0x80 | (code >> shift & 0x3F)); };
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0 | code >> 6), tail(0);
    } else if (code < 0x10000) {
        out += static_cast<char>(0xE0 | code >> 12), tail(6), tail(0);
    } else {
        out += static_cast<char>(0xF0 | code >> 18), tail(12), tail(6), tail(0);
    }
}

std::u16string Utf8ToWide(std::string_view text) {
    std::u16string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const Utf8Character c = DecodeUtf8(text, i);
        i += c.length;
        if (!c.wellFormed) {
            out += u'?';
        } else if (c.code < 0x10000) {
            out += static_cast<char16_t>(c.code);
        } else {
            out += static_cast<char16_t>(0xD7C0 + (c.code >> 10));
            out += static_cast<char16_t>(0xDC00 + (c.code & 0x3FF));
        }
    }
    return out;
}

std::string WideToUtf8(std::u16string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char32_t unit = text[i];
        const bool high = unit >= 0xD800 && unit < 0xDC00;
        if (high && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000) {
            AppendUtf8(out, 0x10000 + ((unit - 0xD800) << 10) + (text[++i] - 0xDC00u));
        } else {
            AppendUtf8(out, IsScalar(unit) ? unit : U'?');
        }
    }
    return out;
}

}  // namespace qv::platform
