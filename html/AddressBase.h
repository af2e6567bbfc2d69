#pragma once

/// @file What relative addresses are resolved against. The contract is at RebaseAddress in qvcommon/HtmlDocument.h.

#include <optional>
#include <string>
#include <string_view>

namespace qv::html {

/// A base address, stored as text that is valid between any quotes of an attribute's value.
class AddressBase {
public:
    /// Takes a folder or an address from the caller.
    static AddressBase FromCaller(std::string_view base);
    /// Resolves a page's own base against this one. A value that names no place, such as "javascript:", leaves the base
    /// unchanged.
    AddressBase Within(std::string_view value) const;

    /// Returns the resolved value; nullopt if the value is unchanged.
    std::optional<std::string> Join(std::string_view value) const;

private:
    explicit AddressBase(std::string value, bool isFolder);
    std::string JoinPath(std::string path, std::string_view address) const;
    bool IsRelative() const { return m_root.empty(); }

    std::string m_root;    // scheme and host, or drive, including the "/"; empty for a relative base
    std::string m_folder;  // after the root, ends with "/" unless empty
    std::string m_name;    // after the folder: the page's own name
    bool m_usable = false;
    bool m_isFolder = false;
};

}  // namespace qv::html
