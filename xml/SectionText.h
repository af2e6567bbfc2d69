#pragma once

/// @file The parsed text of sections: one array of elements over one copy of the text.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/KeyedHash.h"

namespace qv {

/// Lengths and results of the interface are of type int.
constexpr std::size_t kLongestSection = 0x7FFFFFFF;
[[noreturn]] void RefuseLongSection();

/// Positions are byte offsets into the text.
struct SectionElement {
    std::uint32_t begin = 0;       ///< at the "<" of the opening tag
    std::uint32_t content = 0;     ///< after the opening tag
    std::uint32_t contentEnd = 0;  ///< at the closing tag, or the end of the text
    std::uint32_t end = 0;         ///< after the closing tag
    std::uint32_t next = 0;        ///< the next sibling; 0 if none
    std::uint32_t parent = 0;

    std::string_view Tag(std::string_view text) const { return text.substr(begin + 1, content - begin - 2); }
};

/// Element 0 is the section itself. Its descendants follow in the order of their opening tags, so the first child of an
/// element, if any, is the next element.
struct SectionText {
    std::string text;
    std::vector<SectionElement> elements;

    bool HasChildren(std::uint32_t element) const {
        return element + 1 < elements.size() && elements[element + 1].begin < elements[element].contentEnd;
    }
};

/// Parses a text as the content of a section; see CXmlSection::SetRawXml. @throws CVorbexException*
SectionText ParseSection(std::string_view text, std::string_view tag);

/// One element. The index of its children by tag and number is built on first use.
class SectionNode {
public:
    SectionNode(std::shared_ptr<const SectionText> text, std::uint32_t element)
        : m_text(std::move(text)), m_element(element) {}

    const SectionElement& Element() const { return m_text->elements[m_element]; }
    std::string_view Text() const { return m_text->text; }
    std::string_view Content() const {
        return Text().substr(Element().content, Element().contentEnd - Element().content);
    }
    std::uint32_t FirstChild() const { return m_text->HasChildren(m_element) ? m_element + 1 : 0; }
    const SectionElement& At(std::uint32_t element) const { return m_text->elements[element]; }
    std::string_view TagOf(std::uint32_t element) const { return At(element).Tag(Text()); }

    /// Returns the character data of an element of this text, without that of its child elements.
    std::string DataOf(std::uint32_t element) const;
    std::string Data() const { return DataOf(m_element); }
    /// Returns 0 if not found. Spaces in a tag match "_".
    std::uint32_t Find(std::string_view tag, int number) const;
    std::shared_ptr<const SectionNode> Child(std::uint32_t element) const {
        return std::make_shared<SectionNode>(m_text, element);
    }

private:
    void MakeIndex() const;

    std::shared_ptr<const SectionText> m_text;
    std::uint32_t m_element;
    mutable bool m_indexed = false;
    mutable KeyedMap<std::string, std::vector<std::uint32_t>> m_index;
};

}  // namespace qv
