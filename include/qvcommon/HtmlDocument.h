#pragma once

/// @file A page and the addresses in it.

#include <map>
#include <optional>
#include <span>
#include <vector>

#include "qvcommon/framework/String.h"

/// The text of a page and the positions of its addresses, which can be replaced individually; every other byte is kept.
/// Tags are recognized as browsers do: none in comments, scripts, style sheets, text areas and titles.
///
/// An element is listed if it has at least one address that is not empty: the first of each of the attributes href,
/// src, background, action, formaction, longdesc, usemap, cite, data (of "object" only) and poster. The "base" element
/// is not listed: its address applies to the page itself.
/// A value type; not thread-safe.
class QVCOMMON_API CHtmlDocument {
public:
    CHtmlDocument() = default;
    /// Accepts any text. Memory and time are O(n).
    explicit CHtmlDocument(std::string_view html);

    /// Returns the number of listed elements.
    int GetElementCount() const { return static_cast<int>(m_elements.size()); }
    /// Returns the lower-case tag name. @throws CInvalidArgException* for an element outside 0 to GetElementCount() -
    /// 1, as all members with an element do.
    CString GetTag(int element) const;
    /// Returns the current value verbatim, including character references; empty without such an attribute. Attributes
    /// are given by their lower-case names.
    CString GetAddress(int element, std::string_view attribute) const;
    /// Returns the value before any replacement.
    CString GetOriginalAddress(int element, std::string_view attribute) const;
    /// Replaces a value. The text is inserted verbatim: it must be valid between the existing quotes, or without any.
    /// Returns false, and changes nothing, without such an attribute.
    bool SetAddress(int element, std::string_view attribute, std::string_view value);
    /// Returns the address of the first "base" element; empty without one.
    CString GetBaseAddress() const { return m_base.value_or(""); }

    /// Returns the attributes above, by their lower-case names.
    static std::span<const std::string_view> GetAddressAttributes();

    /// Returns the page with the current addresses.
    CString GetHtml() const { return Assemble(0, m_html.size()); }
    /// Returns the text between the tag "<body>" and the last "</body>"; up to the end without the latter, and the
    /// whole text without the former.
    CString GetBody() const { return Assemble(m_bodyBegin, m_bodyEnd); }

private:
    struct Address {
        std::string_view attribute;  // one of a fixed list
        std::size_t begin, length;
    };
    struct Element {
        std::size_t nameBegin, nameLength;
        std::size_t firstAddress, addressCount;
    };

    void AddElement(std::string_view tag, const std::vector<Address>& addresses);
    const Element& At(int element) const;
    std::optional<std::size_t> FindAddress(int element, std::string_view attribute) const;
    std::string Assemble(std::size_t begin, std::size_t end) const;

    std::string m_html;
    std::optional<std::string> m_base;
    std::vector<Element> m_elements;
    std::vector<Address> m_addresses;               // in the order of the page
    std::map<std::size_t, std::string> m_replaced;  // by index into m_addresses
    std::size_t m_bodyBegin = 0;
    std::size_t m_bodyEnd = 0;
};

namespace qv {

/// Joins the value of an address attribute to a base, if it is relative.
///
/// The base is one of
/// - a folder: "pages\img", "..\x", "/srv/pages", "C:\Pages", "\\server\share\pages". Both "\" and "/" are separators,
///   a trailing one is optional. Bytes with a special meaning in an address become %XX; a drive or a server gives a
///   "file:" address;
/// - an address "scheme://host/path" or "//host/path", interpreted as in RFC 3986: the part after the last "/" of the
///   path, the query and the fragment are ignored.
///
/// A value is relative if it has neither scheme nor drive letter nor host and is not just a fragment. Of these, one
/// that begins with "/" is joined to the base's host and unchanged if the base is a folder; one that is just a query is
/// joined to a base that is an address, including its last name, and unchanged if the base is a folder. In the joined
/// path "\" becomes "/", and "." and ".." are resolved; ".." is kept at the front of a relative result and dropped at
/// the root. Query and fragment are kept, as is every byte of the remaining value: character references are interpreted
/// but not decoded. The result is valid between the same quotes as the value, or without any, as the value is.
///
/// Joining again to the same base changes nothing, unless the base is a relative folder.
/// @return the new value; nullopt if the value is unchanged or the base is empty or has a scheme without a host.
QVCOMMON_API std::optional<std::string> QVCOMMON_CALL RebaseAddress(std::string_view value, std::string_view newBase);

}  // namespace qv
