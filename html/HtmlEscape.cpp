#include <optional>

#include "core/ByteScan.h"
#include "html/Entities.h"
#include "platform/Hex.h"
#include "platform/Text.h"
#include "qvcommon/HtmlWriter.h"

namespace {

using qv::ByteSet;
using qv::ascii::IsAscii;
using qv::platform::CodePage;

constexpr char kNoBreakSpace = '\xA0';
constexpr std::string_view kNoBreakSpaceUtf8 = "\xC2\xA0";

// Finds whole characters, from the front of the text to its back.
class Characters {
public:
    explicit Characters(std::string_view text) : m_text(text), m_page(qv::platform::CurrentCodePage()) {}

    // The character that the byte at `position` belongs to. Positions never go down from call to call.
    std::string_view At(std::size_t position) {
        if (m_page == CodePage::SingleByte) return m_text.substr(position, 1);
        // UTF-8 finds its characters again from anywhere; none is longer than four bytes.
        if (m_page == CodePage::Utf8 && position > m_next + 3) m_next = position - 3;
        while (m_next <= position) {
            m_start = m_next;
            m_next += qv::platform::CharacterLength(m_text, m_start, m_page);
        }
        return m_text.substr(m_start, m_next - m_start);
    }

private:
    std::string_view m_text;
    CodePage m_page;
    std::size_t m_start = 0;
    std::size_t m_next = 0;
};

// The bytes that every one of the rules below turns into something else, and what that is. Each rule states the outcome of
// its replacements done one after the other; no replacement makes a byte that a later one would find, unless the
// rule says it here.

struct TextRule {
    using Specials = ByteSet<'&', '<', '>', '\n', '\r', '"', 0xA0>;
    static constexpr bool kDropsLineFeeds = true;

    static std::string_view Replacement(char c) {
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
    static std::string_view Replacement(char c) { return TextRule::Replacement(c); }
};

// The string in the attribute is HTML in its turn.
struct NestedScriptRule {
    using Specials = ByteSet<'\\', '\'', '&', '<', '>', '"', 0xA0, '\n', '\r'>;
    // Line feeds go after the non-breaking spaces were found, so they keep bytes apart.
    static constexpr bool kDropsLineFeeds = false;

    static std::string_view Replacement(char c) {
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

    static std::string_view Replacement(char c) {
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
    static constexpr bool kDropsLineFeeds = false;  // what joins around one is not looked at
    static std::string_view Replacement(char c) { return TextRule::Replacement(c); }
};

struct Utf8AttributeRule {
    using Specials = ByteSet<'&', '<', '>', '"'>;
    static constexpr bool kDropsLineFeeds = false;
    static std::string_view Replacement(char c) { return TextRule::Replacement(c); }
};

// The only specials that can be a later byte of a longer character.
bool MayBeInsideCharacter(char c) {
    return c == kNoBreakSpace || c == '\\';
}

std::size_t EndOfLineFeeds(std::string_view text, std::size_t position) {
    return std::min(text.find_first_not_of('\n', position), text.size());
}

// True when dropping the line feeds at `position` may make one character of the bytes around them.
bool LineFeedsSplitBytes(std::string_view text, std::size_t position) {
    const std::size_t end = EndOfLineFeeds(text, position);
    return position > 0 && end < text.size() && !IsAscii(text[position - 1]) && !IsAscii(text[end]);
}

std::string WithoutLineFeeds(std::string_view text) {
    std::string out(text);
    std::erase(out, '\n');
    return out;
}

// What becomes of a special byte at `position`, given that everything before it stands in `out`.
template <class Rule>
void AppendSpecial(std::string& out, std::string_view text, std::size_t position,
                   std::optional<Characters>& characters) {
    const char c = text[position];
    if (MayBeInsideCharacter(c)) {
        if (!characters) characters.emplace(text);
        const std::string_view character = characters->At(position);
        if (c == kNoBreakSpace && character == kNoBreakSpaceUtf8) {
            out.pop_back();
        } else if (character.size() > 1) {
            out += c;
            return;
        }
    }
    out += Rule::Replacement(c);
}

// Copies what stands before the first special, in pieces: what was searched is still near the processor when it is copied.
template <class Specials>
std::string PlainStart(std::string_view text) {
    constexpr std::size_t piece = 4096;
    std::string out;
    out.reserve(text.size());
    for (std::size_t from = 0; from < text.size(); from += piece) {
        const std::string_view next = text.substr(from, piece);
        const std::size_t plain = Specials::Find(next, 0);
        out += next.substr(0, plain);
        if (plain < next.size()) break;
    }
    return out;
}

template <class Rule>
CString Escape(std::string_view text) {
    std::string out = PlainStart<typename Rule::Specials>(text);
    std::size_t from = out.size(), hit = from;
    if (hit == text.size()) return out;
    out.reserve(text.size() + text.size() / 8 + 16);
    std::optional<Characters> characters;
    for (; hit < text.size(); hit = Rule::Specials::Find(text, from)) {
        if (Rule::kDropsLineFeeds && text[hit] == '\n' && LineFeedsSplitBytes(text, hit))
            return Escape<Rule>(WithoutLineFeeds(text));
        out += text.substr(from, hit - from);
        from = hit + 1;
        AppendSpecial<Rule>(out, text, hit, characters);
    }
    out += text.substr(from);
    return out;
}

bool IsPlainInScripts(char c) {
    return qv::ascii::IsLetterOrDigit(c) || !IsAscii(c) || std::string_view(" -._").find(c) != std::string_view::npos;
}

std::string_view NoBreakSpaceInCodePage() {
    return qv::platform::CurrentCodePage() == CodePage::Utf8 ? kNoBreakSpaceUtf8 : kNoBreakSpaceUtf8.substr(1);
}

}  // namespace

CString CHtmlWriter::Clean(std::string_view text) {
    return Escape<TextRule>(text);
}

CString CHtmlWriter::CleanFloatOver(std::string_view text) {
    return Escape<AttributeRule>(text);
}

CString CHtmlWriter::CleanScriptParameter(std::string_view text, int inAttributeOnly) {
    return inAttributeOnly ? Escape<PlainScriptRule>(text) : Escape<NestedScriptRule>(text);
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
