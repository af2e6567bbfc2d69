#pragma once

/// @file Sections of XML text, written and read without a DOM: values, lists, maps and objects as nested elements.
/// docs/formats/xml-sections.md is the format's page.
///
/// A section is either written, line by line with the Add operations, or read, after SetRawXml or GetSection. Tags may hold
/// anything but "<" and ">", and no "/" in front; a blank is written, and looked up, as "_". There are no attributes,
/// comments or declarations: whatever stands between "<" and ">" is the tag. Texts are bytes; no code page plays a part.
///
/// **Values that are the default are left out**: empty, 0, FALSE, an invalid date, unless `force` is not zero. Reading, a
/// missing element is the default: Get operations return 0 then and set their output to it.
///
/// Copies of a section that was read, and its inner sections, share its text; each keeps it alive. Looking up a value takes
/// the same time whatever the number of elements, after a first look that is linear in the elements of the section. A
/// section belongs to one thread.

#include <memory>

#include "qvcommon/XmlObject.h"
#include "qvcommon/framework/DateTime.h"
#include "qvcommon/framework/StringToIntMap.h"

namespace qv {

class SectionNode;

}  // namespace qv

/// A section: values and other sections under tags, written or read as text.
class QVCOMMON_API CXmlSection {
public:
    CXmlSection();
    /// An empty section with this tag.
    explicit CXmlSection(std::string_view tag);
    virtual ~CXmlSection();
    CXmlSection(const CXmlSection&);
    CXmlSection(CXmlSection&&) noexcept;
    CXmlSection& operator=(const CXmlSection&);
    CXmlSection& operator=(CXmlSection&&) noexcept;

    /// The section's own tag, not checked; empty for none.
    void SetTagName(std::string_view tag) { m_tag = tag; }
    CString GetTagName() const { return m_tag; }
    /// The tag of the first element that was read; empty when there is none. A text read into a section without a tag tells
    /// its root element's name that way.
    CString GetNextTag() const;
    /// Back to a section without content; the tag stays.
    void Clear();
    /// 1 when there is nothing to save: neither lines written nor elements read.
    BOOL EmptyForSave() const;

    // Writing (xml/XmlSectionWrite.cpp)
    //
    // A section holds at most 2^31 - 1 bytes. An operation that would pass this raises CVorbexException* (severity 16, code
    // 1, "The text is too long") and writes nothing.

    /// "<tag>text</tag>", the text escaped by Clean.
    void AddString(std::string_view tag, std::string_view text, BOOL force = 0);
    /// As decimal digits.
    void AddInteger(std::string_view tag, int value, BOOL force = 0);
    /// With six decimals, and a point whatever the locale.
    void AddDouble(std::string_view tag, double value, BOOL force = 0);
    /// "TRUE" or "FALSE".
    void AddBool(std::string_view tag, BOOL value, BOOL force = 0);
    /// "05 May 2004 14:03", with the English names of months whatever the locale; "INVALID DATE".
    void AddDate(std::string_view tag, const COleDateTime& value, BOOL force = 0);
    /// Nested, an element "ITEM" for each: empty ones only when forced. Left out when the array is empty.
    void AddStringArray(std::string_view tag, const CStringArray& texts, BOOL force = 0);
    /// Each: Nested, an element "ENTRY" with "KEY" and "VALUE" for each pair. Left out when the map is empty.
    void AddStringToStringMap(std::string_view tag, const CMapStringToString& map, BOOL force = 0);
    void AddStringToIntMap(std::string_view tag, const CMapStringToInt& map, BOOL force = 0);
    /// Another section with its tag around it: one that was written with its lines indented, one that was read as its text
    /// stands. Left out when it is empty.
    void AddSection(const CXmlSection& section, BOOL force = 0);
    /// The object, saved into a section named by its type.
    void AddObject(const CXmlObject& object, BOOL force = 0);
    /// Nested, the section of each object, also of those that saved nothing. Left out when the array is empty.
    void AddObjectArray(std::string_view tag, const CXmlObjectArray& objects, BOOL force = 0);
    /// A line as it is, behind the present indentation, which is 4 blanks less from this line on, or 4 more from the next.
    /// The format indents every level, so the text of n levels in each other grows with n squared: 20,000 are 1.6 GB.
    void AppendRawXml(std::string_view text, BOOL indentAfter, BOOL outdentBefore);
    /// The lines written; of a section that was read the character data between its elements, as it stands there.
    CString GetRawXml() const;

    // Reading (xml/XmlSectionRead.cpp)

    /// Takes a text in the place of the content. In a section without a tag it is read to its end; in one with a tag it has
    /// to hold the closing tag, and is read up to there.
    ///
    /// Linear in time and memory, however deep elements are nested.
    /// @return the number of bytes read.
    /// @throws CVorbexException* (severity 16, code 1) for tags that are not closed or do not match, for a stray ">", and
    /// for 2 GB or more. The section is then empty.
    int SetRawXml(std::string_view text);

    /// The text of element number `index`, from 0, with that tag, its escapes undone. "a b" and "a_b" count as one tag.
    virtual BOOL GetString(std::string_view tag, CString& value, int index = 0) const;
    /// As atoi has it; the nearest number for one out of range.
    BOOL GetInteger(std::string_view tag, int& value, int index = 0) const;
    /// As atof has it, with a decimal point whatever the locale.
    BOOL GetDouble(std::string_view tag, double& value, int index = 0) const;
    /// TRUE exactly for "true" in any case.
    BOOL GetBool(std::string_view tag, BOOL& value, int index = 0) const;
    /// As COleDateTime::ParseDateTime reads it; 1 for whatever element is there.
    BOOL GetDate(std::string_view tag, COleDateTime& value, int index = 0) const;
    /// The element itself as a section; an empty one with that tag when it is missing.
    BOOL GetSection(std::string_view tag, CXmlSection& section, int index = 0) const;
    /// Lets the object load from section number `index` of its type. 0, and the object left alone, when it is missing.
    BOOL LoadObject(CXmlObject& object, int index = 0) const;
    /// Each: Clear the output first. Array: up to the first missing "ITEM".
    BOOL GetStringArray(std::string_view tag, CStringArray& texts) const;
    BOOL GetStringToStringMap(std::string_view tag, CMapStringToString& map) const;
    BOOL GetStringToIntMap(std::string_view tag, CMapStringToInt& map) const;
    /// Appends a new object for every section in the array, in order, made by CXmlObjectFactory, those of unknown types
    /// left out; or all of them of the given class, if it makes objects and they are CXmlObjects. They are the
    /// caller's, also when loading one raises.
    BOOL GetObjectArray(std::string_view tag, CXmlObjectArray& objects, const CRuntimeClass* type = nullptr) const;
    /// The same, but sections of unknown types are not left out: they come as CXmlUnknownEntry (XmlEntryTemplate.h), which
    /// AddObjectArray writes as they were.
    BOOL GetEntryArray(std::string_view tag, CXmlObjectArray& objects) const;

    /// The key of an element: the index in eight or more lower-case hexadecimal digits, and the tag, its blanks as "_".
    static CString GetIndex(int index, std::string_view tag);

    // Escaping

    /// & < > LF CR, as "&amp;", "&lt;", "&gt;", "&#10;", "&#13;".
    static CString Clean(std::string_view text);
    /// The inverse.
    static CString Dirty(std::string_view text);
    /// Blanks as "_".
    static CString CleanTag(std::string_view tag);

    /// Raises the error (severity 16, the number, shown). @throws CVorbexException*
    [[noreturn]] static void ThrowXmlException(int number, const char* message);

private:
    void AddElement(std::string_view tag, std::string_view escaped);
    void OpenElement(std::string_view tag);
    void CloseElement(std::string_view tag);
    template <class Make>
    BOOL AppendObjects(std::string_view tag, CXmlObjectArray& objects, Make make) const;

    CString m_tag;
    std::string m_text;                             // the lines written
    std::string m_escaped;                          // room for the text of a line
    int m_indent = 0;                               // in blanks
    std::shared_ptr<const qv::SectionNode> m_node;  // what was read
};
