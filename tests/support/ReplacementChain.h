#pragma once

/// @file Escaping as it is defined: whole-text replacements, one after the other. Slow and plain, to compare with.

#include "framework/CharacterSet.h"
#include "qvcommon/framework/String.h"

namespace qv::test {

inline bool IsDoubleByte() {
    return platform::CurrentCodePage() == platform::CodePage::DoubleByte;
}

inline void ReplaceNoBreakSpaces(CString& text) {
    const std::string_view space = platform::CurrentCodePage() == platform::CodePage::Utf8 ? "\xC2\xA0" : "\xA0";
    CString out;
    ForEachCharacter(text, [&](std::string_view c) { out += c == "\xA0" || c == space ? "&nbsp;" : c; });
    text = out;
}

/// A text and what replaces it.
using Step = std::pair<const char*, const char*>;

inline CString Chain(CString text, std::initializer_list<Step> steps) {
    for (const auto& [find, replacement] : steps) text.Replace(find, replacement);
    return text;
}

inline CString ChainCleanFloatOver(CString text) {
    text = Chain(text, {{"&", "&amp;"}, {"<", "&lt;"}, {">", "&gt;"}, {"\"", "&quot;"}});
    ReplaceNoBreakSpaces(text);
    return text;
}

inline CString ChainClean(CString text) {
    return Chain(ChainCleanFloatOver(Chain(text, {{"\n", ""}})), {{"\r", "<br>"}});
}

inline CString ChainScriptSteps(CString text, int inAttributeOnly) {
    constexpr Step kSlash{"\\", "\\\\"}, kQuote{"'", "\\'"};
    if (inAttributeOnly) return Chain(text, {{"\"", "&quot;"}, kSlash, kQuote, {"\n", ""}});
    text = ChainCleanFloatOver(Chain(text, {kSlash, kQuote}));
    return Chain(text, {{"&", "&amp;"}, {"\n", ""}, {"\r", "<br>"}});
}

/// In a double-byte page, bytes that are not characters are replaced first, other than non-breaking spaces.
inline CString ChainCleanScriptParameter(const CString& text, int inAttributeOnly) {
    if (!IsDoubleByte()) return ChainScriptSteps(text, inAttributeOnly);
    CString out;
    ForEachCharacter(text, [&](std::string_view c) {
        const bool kept = platform::FromWide(platform::ToWide(c)) == c || (c == "\xA0" && !inAttributeOnly);
        out += ChainScriptSteps(kept ? c : "?", inAttributeOnly);
    });
    return out;
}

inline CString ChainDirty(CString text) {
    // 0xA0 is a lead byte in the double-byte page of the tests.
    if (!IsDoubleByte())
        text.Replace("&nbsp;", platform::CurrentCodePage() == platform::CodePage::Utf8 ? "\xC2\xA0" : "\xA0");
    return Chain(text, {{"&quot;", "\""}, {"<br>", "\r"}, {"&gt;", ">"}, {"&lt;", "<"}, {"&amp;", "&"}});
}

/// HtmlToPlainText by its steps.
inline CString ChainPlainText(std::string_view html) {
    CString text;
    std::size_t from = 0, begin;
    while ((begin = html.find('<', from)) != html.npos) {
        text += html.substr(from, begin - from);
        from = begin + 1;
        const std::size_t end = html.find('>', from);
        if (end == html.npos) break;
        CString tag(html.substr(from, end - from));
        tag = tag.Left(tag.Find(' ') < 0 ? tag.GetLength() : tag.Find(' '));
        for (char& c : tag.AsStd()) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
        const bool kept = tag == "P" || tag == "LI" || tag == "BR";
        text += kept ? "<" + tag + ">" : CString(" ");
        from = end + 1;
    }
    text += html.substr(std::min(from, html.size()));
    text = Chain(text, {{"\n", " "}, {"\r", " "}, {"<BR>", "\n"}, {"<P>", "\n"}, {"<LI>", "\n* "}});
    while (text.Replace("  ", " ")) continue;
    while (text.Replace("\n ", "\n")) continue;
    text = Chain(text, {{"&nbsp;", " "}, {"&quot;", "\""}, {"&gt;", ">"}, {"&lt;", "<"}, {"&amp;", "&"}});
    text.TrimLeft();
    text.TrimRight();
    text.Replace("\n", "\r\n");
    return text;
}

}  // namespace qv::test
