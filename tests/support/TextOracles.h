#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/Text.h"

/// The text operations word for word by their rules, at any cost: what the real ones are compared with.
namespace oracle {

struct Found {
    std::size_t position, length;
};

/// Tries every stretch of whole characters.
inline std::optional<Found> FindNoCase(std::string_view text, std::string_view find, std::size_t start) {
    using namespace qv::platform;
    const CodePage page = CurrentCodePage();
    const std::string wanted = ToUpper(find);
    const auto next = [&](std::size_t i) { return i + CharacterLength(text, i, page); };
    for (std::size_t i = start; i <= text.size(); i = i < text.size() ? next(i) : i + 1) {
        std::size_t end = i;
        for (std::string upper; upper.size() < wanted.size() && end < text.size(); end = next(end))
            upper += ToUpper(text.substr(end, next(end) - end));
        if (ToUpper(text.substr(i, end - i)) == wanted) return Found{i, end - i};
    }
    return {};
}

/// Returns nullopt when the replacements do not end.
inline std::optional<std::string> ReplaceNoCase(std::string text, std::string_view find, std::string_view replacement) {
    const std::size_t bound = 4 * text.size() + 8;
    std::size_t count = 0;
    for (auto hit = FindNoCase(text, find, 0); hit; hit = FindNoCase(text, find, hit->position + 1)) {
        if (++count > bound) return {};
        text.replace(hit->position, hit->length, replacement);
    }
    return text;
}

inline bool ReplaceOnce(std::string& text, std::string_view find, std::string_view replacement) {
    std::string out;
    std::size_t from = 0;
    for (std::size_t hit = text.find(find); hit != text.npos; hit = text.find(find, from)) {
        out.append(text, from, hit - from).append(replacement);
        from = hit + find.size();
    }
    out.append(text, from);
    const bool changed = from > 0;
    text = std::move(out);
    return changed;
}

inline std::optional<std::string> ReplaceAll(std::string text, std::string_view find, std::string_view replacement) {
    for (int pass = 0; ReplaceOnce(text, find, replacement); ++pass)
        if (pass == 64 || text.size() > 4096) return {};
    return text;
}

inline std::string UnEscapeUrl(std::string text) {
    const std::string_view digits = "0123456789abcdefABCDEF";
    for (std::size_t at = text.find('%'); at != text.npos; at = text.find('%', at)) {
        const std::string escape = text.substr(at, 3);
        const bool valid =
            escape.size() == 3 && digits.find(escape[1]) != digits.npos && digits.find(escape[2]) != digits.npos;
        if (valid)
            ReplaceOnce(text, escape, std::string(1, static_cast<char>(std::stoi(escape.substr(1), nullptr, 16))));
        else
            ++at;
    }
    return text;
}

}  // namespace oracle
