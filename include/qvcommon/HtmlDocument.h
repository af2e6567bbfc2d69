#pragma once

/// @file A page and the addresses in it.

#include <map>
#include <optional>
#include <span>
#include <vector>

#include "qvcommon/framework/String.h"

/// The text of a page together with the places of its addresses, which can be replaced one by one; every other byte stays
/// as it was. Tags are found as browsers find them: none in comments, scripts, style sheets, text areas and titles.
///
/// An element is listed when it has at least one address that is not empty: the first of each of the attributes href, src,
/// background, action, formaction, longdesc, usemap, cite, data (of "object" only) and poster. The "base" element
/// is not listed: its address is the page's own business.
/// A value; one object, one thread.
class QVCOMMON_API CHtmlDocument {
public:
    CHtmlDocument() = default;
    /// Accepts any text. Memory and time grow in line with it.
    explicit CHtmlDocument(std::string_view html);

    /// The number of elements that are listed.
    int GetElementCount() const { return static_cast<int>(m_elements.size()); }
    /// Lower-case tag name. @throws CInvalidArgException* for an element outside 0 to GetElementCount() - 1, as all
    /// members with an element do.
    CString GetTag(int element) const;
    /// The value as it stands in the page now, character references and all; empty without such an attribute. Attributes
    /// go by their lower-case names.
    CString GetAddress(int element, std::string_view attribute) const;
    /// The same before any replacing.
    CString GetOriginalAddress(int element, std::string_view attribute) const;
    /// Replaces a value. The text goes into the page as it is: it has to fit between the quotes, or without any, that stand
    /// there. Returns false, and changes nothing, without such an attribute.
    bool SetAddress(int element, std::string_view attribute, std::string_view value);
    /// The address of the first "base" element; empty without one.
    CString GetBaseAddress() const { return m_base.value_or(""); }

    /// The attributes above, by their lower-case names.
    static std::span<const std::string_view> GetAddressAttributes();

    /// The page with the addresses as they are now.
    CString GetHtml() const { return Assemble(0, m_html.size()); }
    /// What stands between the tag "<body>" and the last "</body>"; up to the end without the latter, and the whole text
    /// without the former.
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
/// - a folder: "pages\img", "..\x", "/srv/pages", "C:\Pages", "\\server\share\pages". "\" and "/" both separate, a
///   final one may be missing. Bytes that mean something in an address become %XX; a drive or a server gives a "file:"
///   address;
/// - an address "scheme://host/path" or "//host/path", taken as RFC 3986 says: what follows the last "/" of the path, the
///   query and the fragment do not count.
///
/// Relative is what has neither scheme nor drive letter nor host and is not just a fragment. Of these, one that begins
/// with "/" joins to the base's host and stays as it is when the base is a folder; one that is just a query joins to a base
/// that is an address, its last name included, and stays as it is when the base is a folder. In the joined path "\" becomes
/// "/", and "." and ".." are resolved; ".." stays at the front of a relative result and is dropped at the root. Query and
/// fragment stay, and so does every byte of the value that is kept: character references are understood but not decoded.
/// The result fits between any quotes that the value did, or without any, as the value did.
///
/// Joining a second time to the same base changes nothing, unless the base is a relative folder.
/// @return the new value; nothing when the value stays as it is or the base is empty or has a scheme without a host.
QVCOMMON_API std::optional<std::string> QVCOMMON_CALL RebaseAddress(std::string_view value, std::string_view newBase);

}  // namespace qv
