#pragma once

/// @file The COM objects that the handles refer to. A Node is what a handle and its copies share: one reference to an object.

#include <windows.h>
// After windows.h
#include <msxml2.h>

#include <optional>
#include <string_view>

#include "platform/windows/ComPtr.h"
#include "xml/dom/Backend.h"

namespace qv::dom {

using platform::ComPtr;
using platform::QueryFor;

struct Node {
    ::IXMLDOMNode* object;
    long references = 1;
    MSXML2::IXMLDOMParseError problem = {};  // of a document, if the DOM itself does not have it
};

inline ::IXMLDOMNode* Com(Node& node) {
    return node.object;
}
inline ::IXMLDOMDocument* ComDocument(Node& document) {
    return static_cast<::IXMLDOMDocument*>(document.object);
}

/// Raises a failed result. S_FALSE means that there is no value.
inline HRESULT Check(HRESULT result) {
    if (result < 0) _com_raise_error(result);
    return result;
}

/// Owns a BSTR; converts from and to UTF-8.
class Text {
public:
    Text() = default;
    explicit Text(std::string_view text);
    explicit Text(BSTR text) : m_text(text) {}
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;
    ~Text() { ::SysFreeString(m_text); }

    BSTR* operator&() { return &m_text; }
    BSTR Get() const { return m_text; }
    std::string InUtf8() const;

private:
    BSTR m_text = nullptr;
};

class Variant {
public:
    Variant() { ::VariantInit(&m_value); }
    explicit Variant(std::string_view text);
    explicit Variant(::IUnknown* object);
    Variant(const Variant&) = delete;
    Variant& operator=(const Variant&) = delete;
    ~Variant() { ::VariantClear(&m_value); }

    VARIANT* operator&() { return &m_value; }
    const VARIANT& Get() const { return m_value; }
    /// Returns an empty string if it is not a text.
    std::string InUtf8() const;

private:
    VARIANT m_value;
};

/// Returns a handle that takes over the reference; a null one for null.
inline IXMLDOMNode HandleTo(::IXMLDOMNode* object) {
    return object ? IXMLDOMNode(new Node{object}) : nullptr;
}

/// Returns an interface pointer that a call has returned, as a handle.
template <class T>
IXMLDOMNode Answer(HRESULT result, ComPtr<T>& node) {
    Check(result);
    return HandleTo(node.Detach());
}

/// Includes the document type declaration, which the backend otherwise skips.
std::vector<IXMLDOMNode> ChildrenOfDocument(Node& document);

/// Returns the URI of a prefix at a node; nullopt if it is not declared.
std::optional<std::string> UriOf(Node& node, std::string_view prefix);

inline constexpr IID kNode = {0x2933BF80, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};
inline constexpr IID kDocument = {0x2933BF81, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};
inline constexpr IID kElement = {0x2933BF86, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};
inline constexpr IID kDocument2 = {0x2933BF95, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};

}  // namespace qv::dom
