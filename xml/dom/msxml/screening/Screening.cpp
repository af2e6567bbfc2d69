#include "xml/dom/msxml/screening/Screening.h"

#include <algorithm>
#include <array>

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

// Returns the name at the start of a tag's or declaration's content.
std::string_view NameIn(std::string_view content) {
    return content.substr(0, content.find_first_of(" \t\r\n/>"));
}

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
        constexpr std::string_view attributes = "<!ATTLIST";
        if (rest.starts_with(attributes)) CountDefaults(m_text.substr(start, m_at - start).substr(attributes.size()));
        return nullptr;
    }

    // Only defaults have quotes.
    void CountDefaults(std::string_view declaration) {
        Defaults& declared = m_declared[NameIn(ascii::TrimmedLeft(declaration, IsSpace))];
        for (;;) {
            const std::size_t open = declaration.find_first_of("\"'");
            const std::size_t close = open == declaration.npos ? open : declaration.find(declaration[open], open + 1);
            if (close == declaration.npos) return;
            ++declared.number;
            declared.bytes += static_cast<long long>(close - open) - 1;
            declaration.remove_prefix(close + 1);
        }
    }

    const char* Tag() {
        if (const auto declared = m_declared.find(NameIn(m_text.substr(m_at + 1))); declared != m_declared.end())
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
