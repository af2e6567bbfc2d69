#pragma once

/// @file Sections of XML text, written and read without a DOM: values, lists, maps and objects as nested elements.
/// docs/formats/xml-sections.md describes the format.
///
/// A section is either written, line by line with the Add operations, or read, after SetRawXml or GetSection. Tags may
/// contain any character except "<" and ">", and no leading "/"; a blank is written, and looked up, as "_". There are
/// no attributes, comments or declarations: everything between "<" and ">" is the tag. Strings are bytes, independent
/// of the code page.
///
/// **Default values are left out**: empty, 0, FALSE, an invalid date, unless `force` is non-zero. Reading treats a
/// missing element as the default: Get operations then return 0 and set their output to it.
///
/// Copies of a section that was read, and its inner sections, share its text; each keeps it alive. Looking up a value
/// is O(1), after the first lookup, which is O(n) in the elements of the section. A section and its copies must be used
/// by one thread only.

#include <memory>
#include <vector>

#include "qvcommon/XmlObject.h"
#include "qvcommon/framework/DateTime.h"
#include "qvcommon/framework/StringToIntMap.h"

namespace qv {

class SectionNode;

}  // namespace qv

/// A section: values and other sections with tags, written or read as text.
class QVCOMMON_API CXmlSection {
public:
    CXmlSection();
    /// Creates an empty section with this tag.
    explicit CXmlSection(std::string_view tag);
    virtual ~CXmlSection();
    CXmlSection(const CXmlSection&);
    CXmlSection(CXmlSection&&) noexcept;
    CXmlSection& operator=(const CXmlSection&);
    CXmlSection& operator=(CXmlSection&&) noexcept;

    /// The section's own tag, not validated; empty for none.
    void SetTagName(std::string_view tag) { m_tag = tag; }
    CString GetTagName() const { return m_tag; }
    /// Returns the tag of the first element that was read; empty if nothing was read. After reading into a section
    /// without a tag, this is the name of the root element.
    CString GetNextTag() const;
    /// Removes all content, keeping the tag.
    void Clear();
    /// Returns 1 if there is nothing to save: neither lines written nor elements read.
    BOOL EmptyForSave() const;

    // Writing (xml/XmlSectionWrite.cpp)
    //
    // A section contains at most 2^31 - 1 bytes. An operation that would exceed this raises CVorbexException* (severity
    // 16, code 1, "The text is too long") and writes nothing.

    /// Writes "<tag>text</tag>", the text escaped by Clean.
    void AddString(std::string_view tag, std::string_view text, BOOL force = 0);
    /// Writes decimal digits.
    void AddInteger(std::string_view tag, int value, BOOL force = 0);
    /// Writes six decimals, and a decimal point regardless of the locale.
    void AddDouble(std::string_view tag, double value, BOOL force = 0);
    /// Writes "TRUE" or "FALSE".
    void AddBool(std::string_view tag, BOOL value, BOOL force = 0);
    /// Writes "05 May 2004 14:03", with the English names of months regardless of the locale; "INVALID DATE".
    void AddDate(std::string_view tag, const COleDateTime& value, BOOL force = 0);
    /// Writes a nested element "ITEM" for each string: empty ones only if forced. Left out if the array is empty.
    void AddStringArray(std::string_view tag, const CStringArray& texts, BOOL force = 0);
    /// Each: Writes a nested element "ENTRY" with "KEY" and "VALUE" for each pair. Left out if the map is empty.
    void AddStringToStringMap(std::string_view tag, const CMapStringToString& map, BOOL force = 0);
    void AddStringToIntMap(std::string_view tag, const CMapStringToInt& map, BOOL force = 0);
    /// Writes another section enclosed in its tag: a written one with its lines indented, one that was read verbatim.
    /// Left out if it is empty.
    void AddSection(const CXmlSection& section, BOOL force = 0);
    /// Writes the object to a section named after its type.
    void AddObject(const CXmlObject& object, BOOL force = 0);
    /// Writes the nested section of each object, also of those that saved nothing. Left out if the array is empty.
    void AddObjectArray(std::string_view tag, const CXmlObjectArray& objects, BOOL force = 0);
    /// Writes a line verbatim, after the current indentation, which is reduced by 4 blanks from this line on, or
    /// increased by 4 from the next. Every level is indented, so the text of n nested levels is O(n^2): 20,000 are 1.6
    /// GB.
    void AppendRawXml(std::string_view text, BOOL indentAfter, BOOL outdentBefore);
    /// Returns the lines written; for a section that was read the character data between its elements, verbatim.
    CString GetRawXml() const;

    // Reading (xml/XmlSectionRead.cpp)

    /// Replaces the content by a text. In a section without a tag it is read to its end; in one with a tag it must
    /// contain the closing tag, and is read up to there.
    ///
    /// O(n) in time and memory, regardless of the nesting depth.
    /// @return the number of bytes read.
    /// @throws CVorbexException* (severity 16, code 1) for tags that are not closed or do not match, for a stray ">",
    /// and for 2 GB or more. The section is then empty.
    int SetRawXml(std::string_view text);

    /// Reads the unescaped text of element number `index`, from 0, with that tag. "a b" and "a_b" are the same tag.
    virtual BOOL GetString(std::string_view tag, CString& value, int index = 0) const;
    /// Parsed as by atoi; the nearest number for one out of range.
    BOOL GetInteger(std::string_view tag, int& value, int index = 0) const;
    /// Parsed as by atof, with a decimal point regardless of the locale.
    BOOL GetDouble(std::string_view tag, double& value, int index = 0) const;
    /// TRUE exactly for "true" in any case.
    BOOL GetBool(std::string_view tag, BOOL& value, int index = 0) const;
    /// Parsed by COleDateTime::ParseDateTime; returns 1 for any existing element.
    BOOL GetDate(std::string_view tag, COleDateTime& value, int index = 0) const;
    /// Returns the element itself as a section; an empty one with that tag if it is missing.
    BOOL GetSection(std::string_view tag, CXmlSection& section, int index = 0) const;
    /// Loads the object from section number `index` of its type. Returns 0, leaving the object unchanged, if it is
    /// missing.
    BOOL LoadObject(CXmlObject& object, int index = 0) const;
    /// Each: Clears the output first. Array: up to the first missing "ITEM".
    BOOL GetStringArray(std::string_view tag, CStringArray& texts) const;
    BOOL GetStringToStringMap(std::string_view tag, CMapStringToString& map) const;
    BOOL GetStringToIntMap(std::string_view tag, CMapStringToInt& map) const;
    /// Appends a new object for every section in the array, in order, created by CXmlObjectFactory, skipping unknown
    /// types; or all of the given class, if it can be created dynamically and derives from CXmlObject. The caller owns
    /// them, even if loading one raises an exception.
    BOOL GetObjectArray(std::string_view tag, CXmlObjectArray& objects, const CRuntimeClass* type = nullptr) const;
    /// Does the same, but sections of unknown types become a CXmlUnknownEntry (XmlEntryTemplate.h), which
    /// AddObjectArray writes unchanged.
    BOOL GetEntryArray(std::string_view tag, CXmlObjectArray& objects) const;

    /// Returns the key of an element: the index in eight or more lower-case hexadecimal digits, and the tag, its blanks
    /// as "_".
    static CString GetIndex(int index, std::string_view tag);

    // Escaping

    /// Escapes & < > LF CR, as "&amp;", "&lt;", "&gt;", "&#10;", "&#13;".
    static CString Clean(std::string_view text);
    /// The inverse.
    static CString Dirty(std::string_view text);
    /// Replaces blanks by "_".
    static CString CleanTag(std::string_view tag);

    /// Raises the error (severity 16, the number, shown). @throws CVorbexException*
    [[noreturn]] static void ThrowXmlException(int number, const char* message);

private:
    void AddElement(std::string_view tag, std::string_view escaped);
    void AddVerbatim(std::string_view tag, std::string_view content);
    void OpenElement(std::string_view tag);
    void CloseElement(std::string_view tag);
    template <class Make>
    BOOL AppendObjects(std::string_view tag, CXmlObjectArray& objects, Make make) const;

    CString m_tag;
    std::string m_text;                             // the lines written
    std::string m_escaped;                          // buffer for the text of a line
    std::vector<std::size_t> m_verbatimLines;       // where lines begin in m_text that are never indented further
    int m_indent = 0;                               // in blanks
    std::shared_ptr<const qv::SectionNode> m_node;  // the parsed content
};
