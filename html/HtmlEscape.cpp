#include "framework/CharacterSet.h"
#include "html/Entities.h"
#include "html/Escaper.h"
#include "platform/Hex.h"
#include "platform/Text.h"
#include "qvcommon/HtmlWriter.h"

namespace {

using qv::ByteSet;
using qv::ascii::IsAscii;
using qv::platform::CodePage;

// The bytes that each rule replaces, and their replacements. Each rule gives the result of successive replacements; no
// replacement creates a byte that a later one would match, unless the rule says so.

struct TextRule {
    using Specials = ByteSet<'&', '<', '>', '\n', '\r', '"', 0xA0>;
    static constexpr bool kDropsLineFeeds = true;

    static constexpr std::string_view Replacement(char c) {
        switch (c) {
            case '&': return "&amp;";
            case '<': return "&lt;";
            case '>': return "&gt;";
            case '\n': return "";
            case '\r': return "<br>";
            case '"': return "&quot;";
            default: return "&nbsp;";
        }
    }
};

struct AttributeRule {
    using Specials = ByteSet<'&', '<', '>', '"', 0xA0>;
    static constexpr bool kDropsLineFeeds = false;
    static constexpr std::string_view Replacement(char c) { return TextRule::Replacement(c); }
};

// The string in the attribute is itself HTML.
struct NestedScriptRule {
    using Specials = ByteSet<'\\', '\'', '&', '<', '>', '"', 0xA0, '\n', '\r'>;
    // Line feeds are removed after the non-breaking spaces were found, so they separate bytes.
    static constexpr bool kDropsLineFeeds = false;

    static constexpr std::string_view Replacement(char c) {
        switch (c) {
            case '\\': return "\\\\";
            case '\'': return "\\'";
            case '&': return "&amp;amp;";
            case '<': return "&amp;lt;";
            case '>': return "&amp;gt;";
            case '"': return "&amp;quot;";
            case '\n': return "";
            case '\r': return "<br>";
            default: return "&amp;nbsp;";
        }
    }
};

struct PlainScriptRule {
    using Specials = ByteSet<'"', '\\', '\'', '\n'>;
    static constexpr bool kDropsLineFeeds = false;

    static constexpr std::string_view Replacement(char c) {
        switch (c) {
            case '\\': return "\\\\";
            case '\'': return "\\'";
            case '\n': return "";
            default: return "&quot;";
        }
    }
};

struct Utf8TextRule {
    using Specials = ByteSet<'&', '<', '>', '\n', '\r', '"'>;
    static constexpr bool kDropsLineFeeds = false;  // bytes joined around one are not examined
    static constexpr std::string_view Replacement(char c) { return TextRule::Replacement(c); }
};

struct Utf8AttributeRule {
    using Specials = ByteSet<'&', '<', '>', '"'>;
    static constexpr bool kDropsLineFeeds = false;
    static constexpr std::string_view Replacement(char c) { return TextRule::Replacement(c); }
};

template <class Rule>
CString Escape(std::string_view text) {
    return qv::html::Escaper<Rule>(text).Escape();
}

// Whether the byte is a character by itself.
bool IsCharacter(std::string_view byte) {
    return IsAscii(byte[0]) || qv::platform::FromWide(qv::platform::ToWide(byte)) == byte;
}

// A browser may read a lead byte without a trail byte, and the backslash of the escape after it, as one character.
template <class Rule>
CString EscapeScript(std::string_view text) {
    if (qv::platform::CurrentCodePage() != CodePage::DoubleByte) return Escape<Rule>(text);
    std::string whole;
    whole.reserve(text.size());
    qv::ForEachCharacter(text, [&whole](std::string_view c) {
        const bool kept = c.size() > 1 || Rule::Specials::Has(c[0]) || IsCharacter(c);
        whole += kept ? c : "?";
    });
    return Escape<Rule>(whole);
}

bool IsPlainInScripts(char c) {
    return qv::ascii::IsLetterOrDigit(c) || !IsAscii(c) || std::string_view(" -._").find(c) != std::string_view::npos;
}

// Whether the byte forms a character with some byte after it.
bool IsLeadByte(char byte, CodePage page) {
    for (int trail = 0x30; trail < 0x100; ++trail) {
        const char pair[] = {byte, static_cast<char>(trail)};
        if (qv::platform::CharacterLength({pair, 2}, 0, page) == 2) return true;
    }
    return false;
}

// The mark itself where the byte would swallow the one after it.
std::string_view NoBreakSpaceInCodePage() {
    const CodePage page = qv::platform::CurrentCodePage();
    if (page == CodePage::Utf8) return qv::html::kNoBreakSpaceUtf8;
    const bool leads = page == CodePage::DoubleByte && IsLeadByte(qv::html::kNoBreakSpace, page);
    return leads ? "&nbsp;" : qv::html::kNoBreakSpaceUtf8.substr(1);
}

}  // namespace

CString CHtmlWriter::Clean(std::string_view text) {
    return Escape<TextRule>(text);
}

CString CHtmlWriter::CleanFloatOver(std::string_view text) {
    return Escape<AttributeRule>(text);
}

CString CHtmlWriter::CleanScriptParameter(std::string_view text, int inAttributeOnly) {
    return inAttributeOnly ? EscapeScript<PlainScriptRule>(text) : EscapeScript<NestedScriptRule>(text);
}

CString CHtmlWriter::Dirty(std::string_view text) {
    const std::string_view noBreakSpace = NoBreakSpaceInCodePage();
    const qv::html::Entity entities[] = {
        {"&nbsp;", noBreakSpace}, {"&quot;", "\""}, {"<br>", "\r"}, {"&gt;", ">"}, {"&lt;", "<"}, {"&amp;", "&"}};
    return qv::html::DecodeEntities(text, entities);
}

CString CHtmlWriter::CleanUtf8(std::string_view text) {
    return Escape<Utf8TextRule>(text);
}

CString CHtmlWriter::CleanFloatOverUtf8(std::string_view text) {
    return Escape<Utf8AttributeRule>(text);
}

CString CHtmlWriter::CleanScriptUtf8(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (; !text.empty(); text.remove_prefix(1)) {
        if (text.starts_with("\xE2\x80\xA8") || text.starts_with("\xE2\x80\xA9")) {
            out += text[2] == '\xA8' ? "\\u2028" : "\\u2029";
            text.remove_prefix(2);
        } else if (IsPlainInScripts(text[0])) {
            out += text[0];
        } else {
            qv::AppendHex(out += "\\x", text[0]);
        }
    }
    return out;
}
