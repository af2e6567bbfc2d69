#include "html/HtmlTokenizer.h"

#include <algorithm>

#include "platform/Ascii.h"

namespace qv::html {
namespace {

constexpr std::string_view kSpace = "\t\n\f\r ";

// Elements whose content is text up to their own end tag.
constexpr std::string_view kRawElements[] = {"script", "style",  "textarea", "title",
                                             "xmp",    "iframe", "noembed",  "noframes"};

// HTML's white space, without the vertical tab.
bool IsSpace(char c) {
    return kSpace.find(c) != kSpace.npos;
}

bool EndsName(char c) {
    return IsSpace(c) || c == '/' || c == '>';
}

bool IsRawElement(std::string_view name) {
    return std::any_of(std::begin(kRawElements), std::end(kRawElements),
                       [&](std::string_view raw) { return IsName(name, raw); });
}

// Whether the text continues at `position` with a name, after which a tag's name would end.
bool NameFollows(std::string_view html, std::size_t position, std::string_view name) {
    if (position > html.size() || html.size() - position <= name.size()) return false;
    const std::string_view found = html.substr(position, name.size());
    return EndsName(html[position + name.size()]) && ascii::EqualsIgnoreCase(found, name);
}

}  // namespace

bool IsName(std::string_view text, std::string_view lowerCaseName) {
    return std::equal(text.begin(), text.end(), lowerCaseName.begin(), lowerCaseName.end(),
                      [](char a, char b) { return ascii::ToLower(a) == b; });
}

std::size_t HtmlTokenizer::EndOfSpace(std::size_t position) const {
    return std::min(m_html.find_first_not_of(kSpace, position), m_html.size());
}

std::size_t HtmlTokenizer::After(std::string_view mark, std::size_t position) const {
    const std::size_t found = m_html.find(mark, position);
    return found == m_html.npos ? m_html.size() : found + mark.size();
}

bool HtmlTokenizer::NextTag(Tag& tag) {
    if (m_state == State::Attributes) EndOfTag();
    if (m_state == State::RawText) SkipRawText();
    for (;;) {
        m_position = m_html.find('<', m_position);
        if (m_position == m_html.npos) break;
        const bool isEnd = At(m_position + 1) == '/';
        const char first = At(m_position + (isEnd ? 2 : 1));
        if (ascii::IsLetter(first)) {
            tag.begin = m_position;
            tag.isEnd = isEnd;
            ReadName(tag);
            return true;
        }
        if (isEnd || first == '!' || first == '?')
            SkipDeclaration();
        else
            ++m_position;
    }
    m_position = m_html.size();
    m_state = State::Text;
    return false;
}

void HtmlTokenizer::ReadName(Tag& tag) {
    const std::size_t begin = tag.begin + (tag.isEnd ? 2 : 1);
    m_position = begin;
    while (m_position < m_html.size() && !EndsName(m_html[m_position])) ++m_position;
    tag.name = m_name = m_html.substr(begin, m_position - begin);
    m_isEnd = tag.isEnd;
    m_complete = false;
    m_state = State::Attributes;
}

// Skips a comment, a declaration, a processing instruction, or an end tag without a name.
void HtmlTokenizer::SkipDeclaration() {
    if (!m_html.substr(m_position).starts_with("<!--")) {
        m_position = After(">", m_position);
        return;
    }
    const std::size_t begin = m_position + 4;
    const std::string_view rest = m_html.substr(begin);
    if (rest.starts_with('>') || rest.starts_with("->")) {
        m_position = begin + (rest[0] == '>' ? 1 : 2);
        return;
    }
    for (std::size_t dashes = m_html.find("--", begin);; dashes = m_html.find("--", dashes + 1)) {
        if (dashes == m_html.npos) {
            m_position = m_html.size();
            return;
        }
        const bool banged = At(dashes + 2) == '!';
        m_position = dashes + (banged ? 4 : 3);
        if (At(m_position - 1) == '>') return;
    }
}

bool HtmlTokenizer::NextAttribute(Attribute& attribute) {
    if (m_state != State::Attributes) return false;
    while (IsSpace(At(m_position)) || At(m_position) == '/') ++m_position;
    if (m_position >= m_html.size() || m_html[m_position] == '>') {
        CloseTag(m_position);
        return false;
    }
    const std::size_t begin = m_position++;  // a name may begin with "="
    while (m_position < m_html.size() && !EndsName(m_html[m_position]) && m_html[m_position] != '=') ++m_position;
    attribute = {m_html.substr(begin, m_position - begin), m_position, 0};
    const std::size_t sign = EndOfSpace(m_position);
    if (At(sign) == '=') {
        m_position = EndOfSpace(sign + 1);
        ReadValue(attribute);
    }
    return true;
}

void HtmlTokenizer::ReadValue(Attribute& attribute) {
    const char quote = At(m_position);
    const bool quoted = quote == '"' || quote == '\'';
    std::size_t end = quoted ? m_html.find(quote, ++m_position) : m_html.find_first_of("\t\n\f\r >", m_position);
    end = std::min(end, m_html.size());
    attribute.valueBegin = m_position;
    attribute.valueLength = end - m_position;
    m_position = std::min(end + (quoted ? 1 : 0), m_html.size());
}

// `position` is that of the ">", or the end of the text.
void HtmlTokenizer::CloseTag(std::size_t position) {
    m_complete = position < m_html.size();
    m_position = position + (m_complete ? 1 : 0);
    m_state = m_complete && !m_isEnd ? State::RawText : State::Text;
}

std::size_t HtmlTokenizer::EndOfTag() {
    Attribute ignored;
    while (NextAttribute(ignored)) continue;
    return m_position;
}

void HtmlTokenizer::SkipRawText() {
    m_state = State::Text;
    if (IsName(m_name, "plaintext")) m_position = m_html.size();
    if (IsName(m_name, "script")) return SkipScript();
    if (!IsRawElement(m_name)) return;
    m_position = m_html.find("</", m_position);
    while (m_position != m_html.npos && !NameFollows(m_html, m_position + 2, m_name))
        m_position = m_html.find("</", m_position + 2);
    m_position = std::min(m_position, m_html.size());
}

// Scripts hidden from old browsers in "<!--" may write whole script elements: there, a "</script>" only ends the inner
// one.
void HtmlTokenizer::SkipScript() {
    bool hidden = false, inner = false;
    for (; m_position < m_html.size(); ++m_position) {
        m_position = std::min(m_html.find_first_of("<-", m_position), m_html.size());
        const std::string_view rest = m_html.substr(m_position);
        const bool ends = NameFollows(m_html, m_position + 2, "script") && rest.starts_with("</");
        if (ends && !inner) return;
        if (ends) inner = false;
        if (rest.starts_with("<!--")) {
            hidden = true;
            m_position += 1;
        }
        if (rest.starts_with("-->")) hidden = inner = false;
        if (hidden && rest.starts_with("<") && NameFollows(m_html, m_position + 1, "script")) inner = true;
    }
}

}  // namespace qv::html
