#include "xml/SectionText.h"

#include <cstring>

#include "qvcommon/XmlSection.h"

namespace qv {
namespace {

[[noreturn]] void Fail(std::string_view message) {
    CXmlSection::ThrowXmlException(1, CString(message));
}

[[noreturn]] void Fail(std::string_view begin, std::string_view tag) {
    Fail((CString(begin) + tag) + ")");
}

// Parses element by element; the open elements are the current one and its ancestors.
class Parser {
public:
    Parser(std::string_view text, std::string_view tag) : m_tag(tag) {
        if (text.size() > kLongestSection) RefuseLongSection();
        m_result.text = text;
        m_last.reserve(64);
        m_result.elements.reserve(text.size() / 48 + 1);
    }

    SectionText Run() {
        const char* const begin = m_result.text.data();
        const char* const end = begin + m_result.text.size();
        m_result.elements.emplace_back();
        m_last.push_back(0);
        for (const char* at = begin; (at = SkipData(at, end)) != end;) {
            const auto position = static_cast<std::uint32_t>(at - begin);
            if (end - at == 1) Fail("A brace at the end of the file was opened but not closed");
            const bool closing = at[1] == '/';
            const auto* const brace =
                static_cast<const char*>(std::memchr(at, '>', static_cast<std::size_t>(end - at)));
            if (!brace && closing)
                Fail("A closing brace at the end of the file was opened but not closed (", View(at + 2, end));
            if (!brace) Fail("An opening brace at the end of the file was opened but not closed");
            at = brace + 1;
            const auto after = static_cast<std::uint32_t>(at - begin);
            if (!closing)
                Open(position, after);
            else if (Close(position, after, View(begin + position + 2, brace)))
                return std::move(m_result);
        }
        return Finish();
    }

private:
    static std::string_view View(const char* begin, const char* end) {
        return {begin, static_cast<std::size_t>(end - begin)};
    }

    // Advances to the next "<".
    static const char* SkipData(const char* at, const char* end) {
        while (at != end && *at != '<' && *at != '>') ++at;
        if (at != end && *at == '>') Fail("An closing brace was found without a corresponding opening brace");
        return at;
    }

    std::string_view TagOf(std::uint32_t element) const {
        return element == 0 ? m_tag : m_result.elements[element].Tag(m_result.text);
    }

    void Open(std::uint32_t position, std::uint32_t after) {
        std::vector<SectionElement>& elements = m_result.elements;
        const auto fresh = static_cast<std::uint32_t>(elements.size());
        if (m_last.back() != 0) elements[m_last.back()].next = fresh;
        m_last.back() = fresh;
        elements.push_back({.begin = position, .content = after, .parent = m_present});
        m_last.push_back(0);
        m_present = fresh;
    }

    // Returns true for the closing tag of the section itself.
    bool Close(std::uint32_t position, std::uint32_t after, std::string_view tag) {
        SectionElement& element = m_result.elements[m_present];
        if (tag != TagOf(m_present))
            Fail("A closing XML brace did not match the opening brace (expecting ",
                 (CString(TagOf(m_present)) + ", but found ") + tag);
        element.contentEnd = position;
        element.end = after;
        if (m_present == 0) return true;
        m_present = element.parent;
        m_last.pop_back();
        return false;
    }

    SectionText Finish() {
        if (const std::string_view open = TagOf(m_present); m_present != 0 || !open.empty())
            Fail("An XML tag was found missing the closing triangular brace (", open);
        const auto size = static_cast<std::uint32_t>(m_result.text.size());
        m_result.elements[0].contentEnd = m_result.elements[0].end = size;
        return std::move(m_result);
    }

    std::string_view m_tag;
    SectionText m_result;
    std::uint32_t m_present = 0;
    std::vector<std::uint32_t> m_last;  // the last child of each open element so far
};

std::string CleanedTag(std::string_view tag) {
    std::string cleaned(tag);
    for (char& c : cleaned)
        if (c == ' ') c = '_';
    return cleaned;
}

}  // namespace

void RefuseLongSection() {
    Fail("The text is too long");
}

SectionText ParseSection(std::string_view text, std::string_view tag) {
    return Parser(text, tag).Run();
}

std::string SectionNode::DataOf(std::uint32_t element) const {
    const SectionElement& self = At(element);
    const std::string_view text = Text();
    std::string data;
    std::uint32_t from = self.content;
    for (std::uint32_t child = m_text->HasChildren(element) ? element + 1 : 0; child; child = At(child).next) {
        data += text.substr(from, At(child).begin - from);
        from = At(child).end;
    }
    return data += text.substr(from, self.contentEnd - from);
}

// Elements are numbered and found by the normalized form of their tags: "a b" and "a_b" are equal.
void SectionNode::MakeIndex() const {
    m_indexed = true;
    for (std::uint32_t child = FirstChild(); child; child = At(child).next) {
        const std::string_view tag = TagOf(child);
        const auto known = m_index.find(tag);
        (known != m_index.end() ? known->second : m_index[CleanedTag(tag)]).push_back(child);
    }
}

std::uint32_t SectionNode::Find(std::string_view tag, int number) const {
    if (!m_indexed) MakeIndex();
    const auto found = tag.find(' ') == tag.npos ? m_index.find(tag) : m_index.find(CleanedTag(tag));
    const auto place = static_cast<std::size_t>(number);
    return found == m_index.end() || number < 0 || place >= found->second.size() ? 0 : found->second[place];
}

}  // namespace qv
