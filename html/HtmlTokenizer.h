#pragma once

/// @file The tags of a page as browsers find them.

#include <cstddef>
#include <string_view>

namespace qv::html {

/// Iterates over a page's tags and their attributes, following the tokenizer of the HTML standard: comments,
/// declarations, and the content of script, style, title, textarea and similar elements contain no tags. Accepts any
/// text. O(n), and stores only positions. The content of "svg" and "math" elements is read like the rest of the page.
class HtmlTokenizer {
public:
    struct Tag {
        std::string_view name;  ///< as written in the page
        std::size_t begin = 0;  ///< position of the "<"
        bool isEnd = false;
    };
    struct Attribute {
        std::string_view name;        ///< as written in the page
        std::size_t valueBegin = 0;   ///< after the quote, if there is one
        std::size_t valueLength = 0;  ///< 0 without a value
    };

    /// The text must outlive the tokenizer.
    explicit HtmlTokenizer(std::string_view html) : m_html(html) {}

    /// Advances to the next tag; the remaining attributes of the previous one are skipped.
    bool NextTag(Tag& tag);
    /// Reads the next attribute of the tag; returns false at its end.
    bool NextAttribute(Attribute& attribute);
    /// Returns the position after the current tag. Its remaining attributes are skipped.
    std::size_t EndOfTag();
    /// After the last attribute: whether the tag has its ">". Browsers do not treat a truncated tag as a tag.
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
    std::string_view m_name;  // of the current tag
    std::size_t m_position = 0;
    State m_state = State::Text;
    bool m_isEnd = false;
    bool m_complete = false;
};

/// Whether a text equals a lower-case name, ignoring ASCII case.
bool IsName(std::string_view text, std::string_view lowerCaseName);

}  // namespace qv::html
