#pragma once

/// @file The tags of a page, found as browsers find them.

#include <cstddef>
#include <string_view>

namespace qv::html {

/// Walks through a page from tag to tag and, within a tag, from attribute to attribute, following the tokenizer of the HTML
/// standard: comments, declarations, and the content of script, style, title, textarea and their like hold no tags.
/// Any text is accepted. Every byte is looked at a bounded number of times, and nothing is stored but positions.
/// Content of "svg" and "math" elements is read as the rest of the page is.
class HtmlTokenizer {
public:
    struct Tag {
        std::string_view name;  ///< as it stands in the page
        std::size_t begin = 0;  ///< position of the "<"
        bool isEnd = false;
    };
    struct Attribute {
        std::string_view name;        ///< as it stands in the page
        std::size_t valueBegin = 0;   ///< after the quote, if there is one
        std::size_t valueLength = 0;  ///< 0 without a value
    };

    /// The text has to outlive the tokenizer.
    explicit HtmlTokenizer(std::string_view html) : m_html(html) {}

    /// The next tag, whose attributes follow; what is left of the tag before is passed over.
    bool NextTag(Tag& tag);
    /// The next attribute of the tag; false at its end.
    bool NextAttribute(Attribute& attribute);
    /// The position after the present tag. Its remaining attributes are passed over.
    std::size_t EndOfTag();
    /// After the last attribute: whether the tag has its ">". One that the text cuts off is none, as browsers see it.
    bool IsComplete() const { return m_complete; }

private:
    enum class State { Text, Attributes, RawText };

    void SkipDeclaration();
    void SkipRawText();
    void SkipScript();
    void ReadName(Tag& tag);
    void ReadValue(Attribute& attribute);
    void CloseTag(std::size_t position);
    char At(std::size_t position) const { return position < m_html.size() ? m_html[position] : '\0'; }
    std::size_t EndOfSpace(std::size_t position) const;
    std::size_t After(std::string_view mark, std::size_t position) const;

    std::string_view m_html;
    std::string_view m_name;  // of the present tag
    std::size_t m_position = 0;
    State m_state = State::Text;
    bool m_isEnd = false;
    bool m_complete = false;
};

/// Whether a text equals a lower-case name but for the case of its ASCII letters.
bool IsName(std::string_view text, std::string_view lowerCaseName);

}  // namespace qv::html
