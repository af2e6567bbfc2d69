#include "xml/dom/msxml/screening/Screening.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>

#include "core/KeyedHash.h"
#include "platform/Ascii.h"
#include "platform/Utf8.h"
#include "xml/dom/Characters.h"
#include "xml/dom/Held.h"

namespace qv::dom {
namespace {

using MSXML2::IXMLDOMParseError;

IXMLDOMParseError ProblemAt(std::string_view text, std::size_t position, const char* reason) {
    const std::string_view before = text.substr(0, position);
    const auto line = std::count(before.begin(), before.end(), '\n') + 1;
    const std::size_t start = before.rfind('\n') + 1;  // npos + 1 is 0
    return {kRefused, reason, static_cast<long>(line), static_cast<long>(position - start + 1)};
}

// Returns the first byte that is not part of a character.
std::size_t FindBroken(std::string_view text) {
    for (std::size_t i = 0; i < text.size();) {
        const platform::Utf8Character c = platform::DecodeUtf8(text, i);
        if (!ascii::IsAscii(text[i]) && !c.wellFormed) return i;
        i += c.length;
    }
    return text.npos;
}

std::string_view NameOfTag(std::string_view content) {
    return content.substr(0, content.find_first_of(" \t\r\n/>"));
}

/// Reads the content of an attribute list, up to its end or the first mistake, which the DOM reports.
class AttributeList {
public:
    explicit AttributeList(std::string_view content) : m_rest(content) {}

    struct Default {
        std::string_view name, value;
    };

    /// Returns the next attribute with a default, or nullopt.
    std::optional<Default> NextDefault() {
        for (std::string_view name = Word(); !name.empty(); name = Word()) {
            if (const std::string_view type = Word(); type.empty() || type == "NOTATION") SkipChoices();
            const std::string_view rule = Word();
            if (rule.empty() || rule == "#FIXED") return Default{name, Quoted()};
        }
        return std::nullopt;
    }

    /// Returns the next characters before a space, a quote or a list of choices.
    std::string_view Word() {
        m_rest = ascii::TrimmedLeft(m_rest, IsSpace);
        return Take(std::min(m_rest.find_first_of(" \t\r\n\"'("), m_rest.size()));
    }

private:
    std::string_view Take(std::size_t size) {
        const std::string_view taken = m_rest.substr(0, size);
        m_rest.remove_prefix(size);
        return taken;
    }

    // Also skips what precedes the parenthesis.
    void SkipChoices() { Take(std::min(m_rest.find(')'), m_rest.size() - 1) + 1); }

    // The next character is a quote, unless the list is wrong.
    std::string_view Quoted() {
        m_rest = ascii::TrimmedLeft(m_rest, IsSpace);
        if (m_rest.empty()) return {};
        const char quote = Take(1)[0];
        const std::string_view text = Take(std::min(m_rest.find(quote), m_rest.size()));
        Take(std::min<std::size_t>(1, m_rest.size()));
        return text;
    }

    std::string_view m_rest;
};

// Moves from one piece of markup to the next.
class Scanner {
public:
    explicit Scanner(std::string_view text) : m_text(text) {}

    IXMLDOMParseError Run() {
        while ((m_at = m_text.find_first_of(m_inSubset ? "<%]" : "<&", m_at)) != m_text.npos) {
            const std::size_t start = m_at;
            if (const char* const reason = Markup()) return ProblemAt(m_text, start, reason);
        }
        return {};
    }

private:
    const char* Markup() {
        const std::string_view rest = m_text.substr(m_at);
        if (rest[0] == '&') return Reference();
        if (rest[0] == '%') return "A reference to an entity that is not declared";
        if (rest[0] == ']') return EndSubset();
        if (rest.starts_with("<!--")) return SkipTo("-->", 4);
        if (rest.starts_with("<?")) return SkipTo("?>", 2);
        if (m_inSubset) return Declaration(rest);
        if (rest.starts_with("<![CDATA[")) return SkipTo("]]>", 9);
        if (rest.starts_with("<!")) return DocumentType();
        if (rest.starts_with("</")) {
            --m_depth;
            return SkipTo(">", 2);
        }
        return Tag();
    }

    const char* SkipTo(std::string_view end, std::size_t from) {
        const std::size_t hit = m_text.find(end, m_at + from);
        m_at = hit == m_text.npos ? m_text.size() : hit + end.size();
        return nullptr;
    }

    // Advances to the next of `ends` outside quotes.
    char SkipToUnquoted(std::string_view ends) {
        for (char quote = 0; ++m_at < m_text.size();) {
            const char c = m_text[m_at];
            if (quote ? c == quote : c == '"' || c == '\'')
                quote = quote ? '\0' : c;
            else if (!quote && ends.find(c) != ends.npos)
                return c;
        }
        return 0;
    }

    const char* Reference() {
        const std::size_t end = m_text.find_first_of(";<& \t\r\n", m_at + 1);
        const std::string_view name = m_text.substr(m_at + 1, end == m_text.npos ? 0 : end - m_at - 1);
        constexpr std::array known = {"lt", "gt", "amp", "quot", "apos"};
        ++m_at;
        const bool bad = end == m_text.npos || m_text[end] != ';' || name.starts_with('#');  // for the DOM to judge
        if (bad || std::find(known.begin(), known.end(), name) != known.end()) return nullptr;
        return "A reference to an entity that is not declared";
    }

    const char* DocumentType() {
        m_inSubset = SkipToUnquoted(">[") == '[';
        if (m_at < m_text.size()) ++m_at;
        return nullptr;
    }

    const char* EndSubset() {
        m_inSubset = false;
        return SkipTo(">", 1);
    }

    const char* Declaration(std::string_view rest) {
        if (rest.starts_with("<!ENTITY")) return "The document type declaration must not declare entities";
        const std::size_t start = m_at;
        SkipToUnquoted(">");
        constexpr std::string_view list = "<!ATTLIST";
        if (!rest.starts_with(list)) return nullptr;
        return CountDefaults(AttributeList(m_text.substr(start, m_at - start).substr(list.size())));
    }

    const char* CountDefaults(AttributeList list) {
        Defaults& declared = m_declared[list.Word()];
        while (const auto attribute = list.NextDefault()) {
            if (!CanDefault(attribute->name, attribute->value)) return kBadDefault;
            declared += {1, std::ssize(attribute->value)};
        }
        return nullptr;
    }

    const char* Tag() {
        if (const auto declared = m_declared.find(NameOfTag(m_text.substr(m_at + 1))); declared != m_declared.end())
            m_given += declared->second;
        if (m_given.AreTooMany()) return "Too many attributes are given by default";
        const std::size_t start = m_at;
        const bool empty = SkipToUnquoted(">") && m_text[m_at - 1] == '/';
        const std::size_t end = m_at;
        const std::string_view tag = m_text.substr(0, end);
        for (m_at = tag.find('&', start); m_at != tag.npos; m_at = tag.find('&', m_at))
            if (const char* const reason = Reference()) return reason;
        m_at = end;
        if (empty) return nullptr;
        return ++m_depth > kMaxDepth ? "Elements are nested too deeply" : nullptr;
    }

    std::string_view m_text;
    std::size_t m_at = 0;
    bool m_inSubset = false;
    int m_depth = 0;
    KeyedMap<std::string_view, Defaults> m_declared;  // by element
    Defaults m_given;
};

}  // namespace

IXMLDOMParseError Screen(std::string_view text) {
    if (const std::size_t zero = text.find('\0'); zero != text.npos)
        return ProblemAt(text, zero, "A zero byte is not a character of XML");
    if (const std::size_t broken = FindBroken(text); broken != text.npos)
        return ProblemAt(text, broken, "A byte is not part of a character");
    return Scanner(text).Run();
}

}  // namespace qv::dom
