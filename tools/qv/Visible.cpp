#include "tools/qv/Visible.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <string>

#include "qvcommon/FileUtils.h"
#include "qvcommon/framework/StandardStreams.h"
#include "qvcommon/framework/Utf8.h"
#include "tools/qv/Utf8Text.h"

namespace qv::tool {
namespace {

bool IsControl(char32_t code) {
    return code < 0x20 || (code >= 0x7F && code < 0xA0);
}

// Bidirectional marks, embeddings, overrides and isolates, and line and paragraph separators.
bool IsDirectionOrLine(char32_t code) {
    return code == 0x061C || code == 0x200E || code == 0x200F || (code >= 0x2028 && code <= 0x202E) ||
           (code >= 0x2066 && code <= 0x2069);
}

std::string Octal(char byte) {
    char text[8];
    std::snprintf(text, sizeof text, "\\%03o", static_cast<unsigned>(static_cast<unsigned char>(byte)));
    return text;
}

std::string CodePoint(char32_t code) {
    char text[16];
    std::snprintf(text, sizeof text, "\\u%04X", static_cast<unsigned>(code));
    return text;
}

std::string Escaped(std::string_view bytes) {
    if (bytes == "\n") return "\\n";
    if (bytes == "\r") return "\\r";
    if (bytes == "\t") return "\\t";
    std::string text;
    for (const char byte : bytes) text += Octal(byte);
    return text;
}

// In other code pages, the locale determines which bytes from 0x80 on are controls and which are parts of letters.
std::string VisibleBytes(std::string_view text) {
    std::string visible;
    for (const char c : text) {
        const bool isControl = std::iscntrl(static_cast<unsigned char>(c)) != 0;
        visible += isControl ? Escaped({&c, 1}) : std::string(1, c);
    }
    return visible;
}

template <class Special>
std::string VisibleUtf8(std::string_view text, Special special) {
    std::string visible;
    visible.reserve(text.size());
    while (!text.empty()) {
        const auto [code, length] = FirstCharacter(text);
        const std::string_view bytes = text.substr(0, length ? length : 1);
        if (length == 0 || IsControl(code))
            visible += Escaped(bytes);
        else if (special(code))
            visible += CodePoint(code);
        else
            visible += bytes;
        text.remove_prefix(bytes.size());
    }
    return visible;
}

// Whether texts and the terminal use UTF-8.
bool UsesUtf8() {
    constexpr std::string_view kEuro = "\xE2\x82\xAC";
    return QvToUtf8(kEuro) == kEuro;
}

}  // namespace

std::string VisibleOnTerminal(std::string_view text) {
    return UsesUtf8() ? VisibleUtf8(text, [](char32_t) { return false; }) : VisibleBytes(text);
}

std::string ForOutput(std::string_view text) {
    static const bool isTerminal = AfxIsOutputTerminal();
    return isTerminal ? VisibleOnTerminal(text) : std::string(text);
}

std::string VisibleOnPage(std::string_view utf8) {
    const std::size_t first = utf8.find_first_not_of(' ');
    if (first == 0 && utf8.back() != ' ') return VisibleUtf8(utf8, IsDirectionOrLine);
    const std::size_t begin = std::min(first, utf8.size()), end = utf8.find_last_not_of(' ') + 1;
    std::string visible;
    const auto addBlanks = [&](std::size_t count) {
        while (count-- > 0) visible += "\xE2\x90\xA3";
    };
    addBlanks(begin);
    if (end > begin) visible += VisibleUtf8(utf8.substr(begin, end - begin), IsDirectionOrLine);
    if (end > begin) addBlanks(utf8.size() - end);
    return visible;
}

std::string MessageOf(CException& error) {
    char text[512] = {};
    error.GetErrorMessage(text, sizeof text - 1);
    return text;
}

std::string Native(std::string_view path) {
    return std::move(CFileUtils::GetNativePath(std::string(path).c_str()).AsStd());
}

}  // namespace qv::tool
