#include <algorithm>
#include <charconv>
#include <cstring>
#include <span>

#include "qvcommon/XmlSection.h"
#include "xml/Numbers.h"
#include "xml/SectionEscape.h"
#include "xml/SectionText.h"

namespace {

constexpr int kStep = 4;

// A tag in its written form; copies only if that differs.
class WrittenTag {
public:
    explicit WrittenTag(std::string_view tag) : m_view(tag) {
        if (tag.find(' ') == tag.npos) return;
        m_cleaned = CXmlSection::CleanTag(tag);
        m_view = m_cleaned;
    }
    WrittenTag(const WrittenTag&) = delete;
    WrittenTag& operator=(const WrittenTag&) = delete;

    operator std::string_view() const { return m_view; }

private:
    CString m_cleaned;
    std::string_view m_view;
};

// Sizes are added in 64 bits.
void CheckRoom(const std::string& text, std::uint64_t more) {
    if (more > qv::kLongestSection - text.size()) qv::RefuseLongSection();
}

// Reserves space for `more` bytes; capacity doubles, up to the maximum size of a section.
void Reserve(std::string& text, std::uint64_t more) {
    CheckRoom(text, more);
    const auto size = static_cast<std::size_t>(more);
    if (text.capacity() - text.size() < size) text.reserve(std::max(2 * text.capacity(), text.size() + size));
}

// Removes the lines of an operation that raises before it is complete.
class Transaction {
public:
    Transaction(std::string& text, std::vector<std::size_t>& verbatimLines, int& indent)
        : m_text(text),
          m_verbatimLines(verbatimLines),
          m_indent(indent),
          m_sizeBefore(text.size()),
          m_verbatimBefore(verbatimLines.size()),
          m_indentBefore(indent) {}
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    ~Transaction() {
        if (m_committed) return;
        m_text.resize(m_sizeBefore);
        m_verbatimLines.resize(m_verbatimBefore);
        m_indent = m_indentBefore;
    }

    void Commit() { m_committed = true; }

private:
    std::string& m_text;
    std::vector<std::size_t>& m_verbatimLines;
    int& m_indent;
    const std::size_t m_sizeBefore, m_verbatimBefore;
    const int m_indentBefore;
    bool m_committed = false;
};

char* Put(char* to, std::string_view text) {
    std::memcpy(to, text.data(), text.size());
    return to + text.size();
}

// Appends "<tag>text</tag>" and a line end, assembled first because most lines are short.
void AppendLine(std::string& out, std::size_t indent, std::string_view tag, std::string_view text) {
    constexpr std::size_t kMarks = 6, kShort = 256;
    const std::uint64_t size = std::uint64_t{indent} + tag.size() + tag.size() + text.size() + kMarks;
    Reserve(out, size);
    if (size > kShort) {
        (out.append(indent, ' ') += '<').append(tag).append(">").append(text).append("</").append(tag).append(">\n");
        return;
    }
    char line[kShort];
    std::memset(line, ' ', indent);
    char* at = line + indent;
    *at++ = '<';
    at = Put(at, tag);
    *at++ = '>';
    at = Put(Put(Put(Put(at, text), "</"), tag), ">\n");
    out.append(line, at);
}

// Appends whole lines, each indented by `indent` spaces, except those that begin at a position in `verbatim`.
void AppendIndented(std::string& text, std::vector<std::size_t>& verbatimLines, std::string_view lines,
                    std::span<const std::size_t> verbatim, std::size_t indent) {
    Reserve(text, std::min(lines.size() + lines.size() / 4, qv::kLongestSection - text.size()));
    for (std::size_t from = 0, end; from < lines.size(); from = end) {
        end = lines.find('\n', from) + 1;
        CheckRoom(text, indent + (end - from));
        if (!verbatim.empty() && verbatim.front() == from) {
            verbatim = verbatim.subspan(1);
            verbatimLines.push_back(text.size());
        } else {
            text.append(indent, ' ');
        }
        text.append(lines, from, end - from);
    }
}

}  // namespace

void CXmlSection::AppendRawXml(std::string_view text, BOOL indentAfter, BOOL outdentBefore) {
    const int indent = outdentBefore ? std::max(m_indent - kStep, 0) : m_indent;
    const auto blanks = static_cast<std::size_t>(indent);
    Reserve(m_text, std::uint64_t{blanks} + text.size() + 1);
    m_text.append(blanks, ' ').append(text) += '\n';
    m_indent = indentAfter ? indent + kStep : indent;
}

void CXmlSection::AddElement(std::string_view tag, std::string_view escaped) {
    AppendLine(m_text, static_cast<std::size_t>(m_indent), WrittenTag(tag), escaped);
}

void CXmlSection::AddVerbatim(std::string_view tag, std::string_view content) {
    constexpr std::size_t kCloseMarks = 4;  // of "</", ">" and the line end
    Transaction guard(m_text, m_verbatimLines, m_indent);
    AddElement(tag, content);
    const std::size_t begin = m_text.size() - kCloseMarks - tag.size() - content.size();
    for (std::size_t end = content.find('\n'); end != content.npos; end = content.find('\n', end + 1))
        m_verbatimLines.push_back(begin + end + 1);
    guard.Commit();
}

void CXmlSection::OpenElement(std::string_view tag) {
    const WrittenTag written(tag);
    CheckRoom(m_text, static_cast<std::uint64_t>(m_indent) + std::string_view(written).size() + 3);
    (m_text.append(static_cast<std::size_t>(m_indent), ' ') += '<').append(written).append(">\n");
    m_indent += kStep;
}

void CXmlSection::CloseElement(std::string_view tag) {
    const WrittenTag written(tag);
    m_indent = std::max(m_indent - kStep, 0);
    CheckRoom(m_text, static_cast<std::uint64_t>(m_indent) + std::string_view(written).size() + 4);
    m_text.append(static_cast<std::size_t>(m_indent), ' ').append("</").append(written).append(">\n");
}

// Most texts need no escaping.
void CXmlSection::AddString(std::string_view tag, std::string_view text, BOOL force) {
    if (text.empty() && !force) return;
    if (text.size() > qv::kLongestSection) qv::RefuseLongSection();
    if (!qv::NeedsEscapes(text)) return AddElement(tag, text);
    m_escaped.clear();
    qv::AppendSectionText(m_escaped, text);
    AddElement(tag, m_escaped);
}

void CXmlSection::AddInteger(std::string_view tag, int value, BOOL force) {
    char digits[16];
    if (value || force)
        AddElement(tag, {digits, static_cast<std::size_t>(std::to_chars(digits, digits + 16, value).ptr - digits)});
}

void CXmlSection::AddDouble(std::string_view tag, double value, BOOL force) {
    if (value != 0 || force) AddElement(tag, qv::WriteFixed(value));
}

void CXmlSection::AddBool(std::string_view tag, BOOL value, BOOL force) {
    if (value || force) AddElement(tag, value ? "TRUE" : "FALSE");
}

void CXmlSection::AddDate(std::string_view tag, const COleDateTime& value, BOOL force) {
    const bool valid = value.GetStatus() == COleDateTime::valid;
    if (valid || force) AddElement(tag, valid ? qv::WriteDate(value, false) : "INVALID DATE");
}

void CXmlSection::AddStringArray(std::string_view tag, const CStringArray& texts, BOOL force) {
    if (texts.IsEmpty() && !force) return;
    Transaction guard(m_text, m_verbatimLines, m_indent);
    OpenElement(tag);
    for (const CString& text : texts) AddString("ITEM", text, force);
    CloseElement(tag);
    guard.Commit();
}

void CXmlSection::AddStringToStringMap(std::string_view tag, const CMapStringToString& map, BOOL force) {
    if (map.IsEmpty() && !force) return;
    Transaction guard(m_text, m_verbatimLines, m_indent);
    OpenElement(tag);
    for (const auto& [key, value] : map) {
        OpenElement("ENTRY");
        AddString("KEY", key, 1);
        AddString("VALUE", value, 1);
        CloseElement("ENTRY");
    }
    CloseElement(tag);
    guard.Commit();
}

void CXmlSection::AddStringToIntMap(std::string_view tag, const CMapStringToInt& map, BOOL force) {
    CMapStringToString texts;
    for (const auto& [key, value] : map) texts.SetAt(key, std::to_string(value));
    AddStringToStringMap(tag, texts, force);
}

void CXmlSection::AddSection(const CXmlSection& section, BOOL force) {
    if (section.EmptyForSave() && !force) return;
    if (&section == this) return AddSection(CXmlSection(section), force);
    if (section.m_node) return AddVerbatim(section.m_tag, section.m_node->Content());
    Transaction guard(m_text, m_verbatimLines, m_indent);
    OpenElement(section.m_tag);
    AppendIndented(m_text, m_verbatimLines, section.m_text, section.m_verbatimLines,
                   static_cast<std::size_t>(m_indent));
    CloseElement(section.m_tag);
    guard.Commit();
}

void CXmlSection::AddObject(const CXmlObject& object, BOOL force) {
    CXmlSection section(CleanTag(object.GetType()));
    object.SaveXml(section);
    AddSection(section, force);
}

void CXmlSection::AddObjectArray(std::string_view tag, const CXmlObjectArray& objects, BOOL force) {
    if (objects.IsEmpty() && !force) return;
    Transaction guard(m_text, m_verbatimLines, m_indent);
    OpenElement(tag);
    for (const CXmlObject* const object : objects) AddObject(*object, 1);
    CloseElement(tag);
    guard.Commit();
}
