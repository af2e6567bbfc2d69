#pragma once

/// @file Escaping as it is defined: whole-text replacements, one after the other. Slow and plain, to compare with.

#include "platform/Text.h"
#include "qvcommon/framework/String.h"

namespace qv::test {

inline void ReplaceNoBreakSpaces(CString& text) {
    if (platform::CurrentCodePage() != platform::CodePage::Utf8) {
        text.Replace("\xA0", "&nbsp;");
        return;
    }
    CString out;
    const std::string_view bytes = text;
    for (std::size_t i = 0; i < bytes.size();) {
        const auto c = bytes.substr(i, platform::CharacterLength(bytes, i, platform::CodePage::Utf8));
        out += c == "\xA0" || c == "\xC2\xA0" ? "&nbsp;" : c;
        i += c.size();
    }
    text = out;
}

inline void ReplaceBrackets(CString& text) {
    text.Replace("&", "&amp;");
    text.Replace("<", "&lt;");
    text.Replace(">", "&gt;");
}

inline CString ChainClean(CString text) {
    ReplaceBrackets(text);
    text.Replace("\n", "");
    text.Replace("\r", "<br>");
    text.Replace("\"", "&quot;");
    ReplaceNoBreakSpaces(text);
    return text;
}

inline CString ChainCleanFloatOver(CString text) {
    ReplaceBrackets(text);
    text.Replace("\"", "&quot;");
    ReplaceNoBreakSpaces(text);
    return text;
}

inline CString ChainCleanScriptParameter(CString text, int inAttributeOnly) {
    if (inAttributeOnly) text.Replace("\"", "&quot;");
    text.Replace("\\", "\\\\");
    text.Replace("'", "\\'");
    if (!inAttributeOnly) {
        text = ChainCleanFloatOver(text);
        text.Replace("&", "&amp;");
    }
    text.Replace("\n", "");
    if (!inAttributeOnly) text.Replace("\r", "<br>");
    return text;
}

inline CString ChainDirty(CString text) {
    text.Replace("&nbsp;", platform::CurrentCodePage() == platform::CodePage::Utf8 ? "\xC2\xA0" : "\xA0");
    text.Replace("&quot;", "\"");
    text.Replace("<br>", "\r");
    text.Replace("&gt;", ">");
    text.Replace("&lt;", "<");
    text.Replace("&amp;", "&");
    return text;
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
    text.Replace('\n', ' ');
    text.Replace('\r', ' ');
    text.Replace("<BR>", "\n");
    text.Replace("<P>", "\n");
    text.Replace("<LI>", "\n* ");
    while (text.Replace("  ", " ")) continue;
    while (text.Replace("\n ", "\n")) continue;
    text.Replace("&nbsp;", " ");
    text.Replace("&quot;", "\"");
    text.Replace("&gt;", ">");
    text.Replace("&lt;", "<");
    text.Replace("&amp;", "&");
    text.TrimLeft();
    text.TrimRight();
    text.Replace("\n", "\r\n");
    return text;
}

}  // namespace qv::test
