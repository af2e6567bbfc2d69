#pragma once

/// @file What relative addresses are joined to. The contract stands with RebaseAddress in qvcommon/HtmlDocument.h.

#include <optional>
#include <string>
#include <string_view>

namespace qv::html {

/// A base, held as text that fits between any quotes of an attribute's value.
class AddressBase {
public:
    /// A folder or an address, as a caller gives it.
    static AddressBase FromCaller(std::string_view base);
    /// The base that an address in a page stands for when the page's own base is this one. What names no place, such as
    /// "javascript:", leaves this one as it is.
    AddressBase Within(std::string_view value) const;

    /// The joined value; nothing when the value stays as it is.
    std::optional<std::string> Join(std::string_view value) const;

private:
    explicit AddressBase(std::string value, bool isFolder);
    std::string JoinPath(std::string path, std::string_view address) const;
    bool IsRelative() const { return m_root.empty(); }

    std::string m_root;    // scheme and host, or drive, up to and with the "/"; empty for a relative base
    std::string m_folder;  // after the root, ends with "/" unless empty
    std::string m_name;    // after the folder: the page's own name
    bool m_usable = false;
    bool m_isFolder = false;
};

}  // namespace qv::html
