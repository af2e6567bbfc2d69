#include "tools/qv/XmlValueEdit.h"

#include <algorithm>

namespace qv::tool {
namespace {

constexpr std::string_view kSpace = " \t\r\n";

struct Range {
    std::size_t begin = 0, end = 0;

    std::string_view Of(std::string_view text) const { return text.substr(begin, end - begin); }
};

/// An element's position in the text. `content` is the text up to the next tag, if `hasText`.
struct Element {
    Range tag;      // from "<" to after ">"
    Range content;  // empty after an empty-element tag
    bool endsItself = false;
    bool hasText = true;  // it contains nothing but text

    std::string_view NameIn(std::string_view text) const {
        const std::string_view name = tag.Of(text).substr(1);
        return name.substr(0, name.find_first_of(" \t\r\n/>"));
    }
};

/// Reads the markup of a text that a parser has accepted. The caller verifies the result, so misreading is harmless.
class Scanner {
public:
    explicit Scanner(std::string_view text) : m_text(text) {}

    std::optional<Element> Find(const std::vector<std::size_t>& way) {
        std::vector<std::size_t> before{0};  // for each level, the number of elements before the current position
        for (Range tag; Next(tag);) {
            const bool closes = m_text[tag.begin + 1] == '/', endsItself = m_text[tag.end - 2] == '/';
            if (closes) before.pop_back();
            if (before.empty()) return std::nullopt;
            if (!closes && before == way) return ElementAt(tag, endsItself);
            if (closes || endsItself)
                ++before.back();
            else
                before.push_back(0);
        }
        return std::nullopt;
    }

private:
    Element ElementAt(const Range& tag, bool endsItself) const {
        Element element{.tag = tag, .content = {tag.end, tag.end}, .endsItself = endsItself};
        if (endsItself) return element;
        element.content.end = std::min(m_text.find('<', tag.end), m_text.size());
        element.hasText = m_text.substr(element.content.end, 2) == "</";
        return element;
    }

    bool Skip(std::string_view begin, std::string_view end) {
        if (m_text.substr(m_at, begin.size()) != begin) return false;
        const std::size_t found = m_text.find(end, m_at + begin.size());
        m_at = found == m_text.npos ? m_text.size() : found + end.size();
        return true;
    }

    /// Skips to after the ">" that ends the markup, ignoring quotes and the brackets of a document type.
    void SkipMarkup() {
        char quote = 0;
        for (int brackets = 0; m_at < m_text.size(); ++m_at) {
            const char c = m_text[m_at];
            if (quote) {
                if (c == quote) quote = 0;
            } else if (c == '"' || c == '\'') {
                quote = c;
            } else if (brackets && (Skip("<!--", "-->") || Skip("<?", "?>"))) {
                --m_at;
            } else if (c == '>' && brackets == 0) {
                ++m_at;
                return;
            } else {
                brackets += (c == '[') - (c == ']');
            }
        }
    }

    /// Finds the next start or end tag of an element.
    bool Next(Range& tag) {
        while ((m_at = m_text.find('<', m_at)) < m_text.size()) {
            if (Skip("<!--", "-->") || Skip("<![CDATA[", "]]>") || Skip("<?", "?>")) continue;
            tag.begin = m_at;
            SkipMarkup();
            tag.end = m_at;
            if (m_text[tag.begin + 1] != '!') return tag.end - tag.begin > 2;
        }
        return false;
    }

    std::string_view m_text;
    std::size_t m_at = 0;
};

/// Returns the attribute's value with its quotes.
std::optional<Range> FindAttribute(std::string_view text, const Element& element, std::string_view name) {
    std::size_t at = element.tag.begin + 1 + element.NameIn(text).size();
    while ((at = text.find_first_not_of(kSpace, at)) < element.tag.end) {
        const std::size_t equals = text.find('=', at), quote = text.find_first_of("\"'", equals);
        if (quote >= element.tag.end) return std::nullopt;
        const Range found{quote, text.find(text[quote], quote + 1) + 1};
        const std::string_view written = text.substr(at, equals - at);
        if (written.substr(0, written.find_first_of(kSpace)) == name) return found;
        at = found.end;
    }
    return std::nullopt;
}

std::string Replace(std::string_view text, const Range& range, std::string_view value) {
    std::string replaced(text.substr(0, range.begin));
    replaced += value;
    return replaced += text.substr(range.end);
}

std::string ReplaceContent(std::string_view text, const Element& element, std::string_view value) {
    if (!element.endsItself) return Replace(text, element.content, value);
    std::size_t end = text.find_last_not_of(kSpace, element.tag.end - 3) + 1;
    std::string tail = ">";
    tail += value;
    tail += "</";
    tail += element.NameIn(text);
    return Replace(text, {end, element.tag.end}, tail += '>');
}

std::size_t ElementsBefore(MSXML2::IXMLDOMNode node) {
    std::size_t count = 0;
    while ((node = node.get_previousSibling())) count += node.get_nodeType() == MSXML2::NODE_ELEMENT;
    return count;
}

}  // namespace

std::optional<XmlValuePlace> PlaceOfValue(const MSXML2::IXMLDOMDocument& document, const std::string& path) {
    XmlValuePlace place;
    std::size_t step = path.rfind("/@");
    if (path.find(']', std::min(step, path.size())) != path.npos) step = path.npos;  // part of a condition
    if (step != path.npos) place.attribute = path.substr(step + 2);
    MSXML2::IXMLDOMNode node = document.selectSingleNode(path.substr(0, step));
    if (!node || node.get_nodeType() != MSXML2::NODE_ELEMENT) return std::nullopt;
    for (; node && node.get_nodeType() == MSXML2::NODE_ELEMENT; node = node.get_parentNode())
        place.element.push_back(ElementsBefore(node));
    std::reverse(place.element.begin(), place.element.end());
    return place;
}

std::optional<std::string> WithValueOf(std::string_view before, std::string_view after, const XmlValuePlace& place) {
    if (before.find('\0') != before.npos) return std::nullopt;
    const auto oldElement = Scanner(before).Find(place.element), newElement = Scanner(after).Find(place.element);
    if (!oldElement || !newElement) return std::nullopt;
    if (place.attribute.empty()) {
        if (!oldElement->hasText || !newElement->hasText) return std::nullopt;
        return ReplaceContent(before, *oldElement, newElement->content.Of(after));
    }
    const auto oldValue = FindAttribute(before, *oldElement, place.attribute);
    const auto newValue = FindAttribute(after, *newElement, place.attribute);
    if (!oldValue || !newValue) return std::nullopt;
    return Replace(before, *oldValue, newValue->Of(after));
}

}  // namespace qv::tool
