#include <algorithm>
#include <set>

#include "xml/dom/Held.h"
#include "xml/dom/msxml/Internals.h"

namespace qv::dom {
namespace {

ComPtr<::IXMLDOMElement> ElementOf(Node& node) {
    auto element = QueryFor<::IXMLDOMElement>(Com(node), kElement);
    if (!element) _com_raise_error(_com_error::kFail, "the node is not an element");
    return element;
}

ComPtr<::IXMLDOMNamedNodeMap> MapOf(Node& node) {
    ComPtr<::IXMLDOMNamedNodeMap> map;
    Check(Com(node)->get_attributes(map.Receive()));
    return map;
}

bool HasPrefix(std::string_view name) {
    return !PrefixOf(name).empty() && !IsDeclaration(name);
}

// Compares the qualified name: the operations of some DOMs do not find an attribute by a name with a prefix.
IXMLDOMNode FindPrefixed(Node& element, std::string_view name) {
    for (const IXMLDOMNode& attribute : Attributes(element))
        if (NameOf(attribute.Get()) == name) return attribute;
    return nullptr;
}

void PutAttribute(Node& element, std::string_view name, std::string_view value) {
    Check(ElementOf(element)->setAttribute(Text(name).Get(), Variant(value).Get()));
}

// Whether another attribute of the element has the same name in the same namespace.
bool IsDuplicateAttribute(Node& element, std::string_view name, std::string_view uri) {
    for (const IXMLDOMNode& other : Attributes(element)) {
        const std::string known = NameOf(other.Get());
        if (PrefixOf(known).empty() || IsDeclaration(known) || known == name) continue;
        if (LocalPartOf(known) == LocalPartOf(name) && NamespaceOf(other.Get()) == uri) return true;
    }
    return false;
}

// Creates the attribute in the namespace of its prefix; setAttribute would create it in none.
void AddPrefixed(Node& element, std::string_view name, std::string_view value, std::string_view uri) {
    ComPtr<::IXMLDOMDocument> document;
    Check(Com(element)->get_ownerDocument(document.Receive()));
    VARIANT type;
    ::VariantInit(&type);
    type.vt = VT_I4;
    type.lVal = ::NODE_ATTRIBUTE;
    ComPtr<::IXMLDOMNode> attribute;
    Check(document->createNode(type, Text(name).Get(), Text(uri).Get(), attribute.Receive()));
    Check(attribute->put_text(Text(value).Get()));
    ComPtr<::IXMLDOMNode> set;
    Check(MapOf(element)->setNamedItem(attribute.Get(), set.Receive()));
}

// Returns the URI of a prefix at one element: from its declarations, or from the names of the element and its
// attributes, which keep theirs when moved.
std::optional<std::string> OwnUriOf(Node& element, std::string_view prefix) {
    std::string uri;
    if (GetAttribute(element, prefix.empty() ? "xmlns" : "xmlns:" + std::string(prefix), uri)) return uri;
    if (PrefixOf(NameOf(element)) == prefix) return NamespaceOf(element);
    if (prefix.empty()) return std::nullopt;
    for (const IXMLDOMNode& attribute : Attributes(element))
        if (PrefixOf(NameOf(attribute.Get())) == prefix) return NamespaceOf(attribute.Get());
    return std::nullopt;
}

}  // namespace

std::optional<std::string> UriOf(Node& node, std::string_view prefix) {
    Com(node)->AddRef();
    for (IXMLDOMNode at = HandleTo(Com(node)); at; at = at.get_parentNode()) {
        if (at.get_nodeType() != MSXML2::NODE_ELEMENT) continue;
        if (std::optional<std::string> uri = OwnUriOf(at.Get(), prefix)) return uri;
    }
    return std::nullopt;
}

// Some DOMs count namespace declarations that they cannot return, or return one twice.
std::vector<IXMLDOMNode> Attributes(Node& node) {
    std::vector<IXMLDOMNode> all;
    std::set<std::string> declarations;
    const ComPtr<::IXMLDOMNamedNodeMap> map = MapOf(node);
    if (!map) return all;
    long count = 0;
    Check(map->get_length(&count));
    for (long i = 0; i < count; ++i) {
        ComPtr<::IXMLDOMNode> object;
        if (map->get_item(i, object.Receive()) != S_OK || !object) continue;
        IXMLDOMNode attribute = HandleTo(object.Detach());
        std::string name = NameOf(attribute.Get());
        if (!IsDeclaration(name) || declarations.insert(std::move(name)).second) all.push_back(std::move(attribute));
    }
    return all;
}

IXMLDOMNode OwnerOf(Node& attribute) {
    ComPtr<::IXMLDOMNode> owner;
    if (Com(attribute)->selectSingleNode(Text("..").Get(), owner.Receive()) != S_OK) return nullptr;
    return HandleTo(owner.Detach());
}

bool GetAttribute(Node& element, std::string_view name, std::string& value) {
    if (HasPrefix(name)) {
        const IXMLDOMNode found = FindPrefixed(element, name);
        if (found) value = ValueOf(found.Get());
        return static_cast<bool>(found);
    }
    Variant answer;
    if (Check(ElementOf(element)->getAttribute(Text(name).Get(), &answer)) != S_OK) return false;
    value = answer.InUtf8();
    return true;
}

bool SetAttribute(Node& element, std::string_view name, std::string_view value) {
    const IXMLDOMNode known = HasPrefix(name) ? FindPrefixed(element, name) : nullptr;
    if (known) {
        SetText(known.Get(), value);
        return true;
    }
    const std::string_view prefix = PrefixOf(name);
    if (!HasPrefix(name) || prefix == "xml") {
        PutAttribute(element, name, value);
        return true;
    }
    const std::optional<std::string> uri = UriOf(element, prefix);
    if (!uri || uri->empty() || IsDuplicateAttribute(element, name, *uri)) return false;
    AddPrefixed(element, name, value, *uri);
    return true;
}

// Through the map, which keeps the attribute alive for its other handles; the element's own operation may not.
bool RemoveAttribute(Node& element, std::string_view name) {
    const ComPtr<::IXMLDOMNamedNodeMap> map = MapOf(element);
    if (!map) return true;
    const IXMLDOMNode known = HasPrefix(name) ? FindPrefixed(element, name) : nullptr;
    const std::string uri = known ? NamespaceOf(known.Get()) : "";
    ComPtr<::IXMLDOMNode> removed;
    if (uri.empty())
        Check(map->removeNamedItem(Text(name).Get(), removed.Receive()));
    else
        Check(map->removeQualifiedItem(Text(LocalPartOf(name)).Get(), Text(uri).Get(), removed.Receive()));
    return true;
}

bool CanCopyAttributes(Node& to, Node& from) {
    const std::vector<IXMLDOMNode> attributes = Attributes(from);
    return std::none_of(attributes.begin(), attributes.end(), [&](const IXMLDOMNode& attribute) {
        const std::string name = NameOf(attribute.Get());
        // Some DOMs put "xml:lang" in no namespace when it is set.
        if (!HasPrefix(name) || PrefixOf(name) == "xml") return false;
        const std::optional<std::string> uri = UriOf(to, PrefixOf(name));
        return uri && *uri != NamespaceOf(attribute.Get());
    });
}

void CopyAttributes(Node& to, Node& from) {
    std::string value;
    for (const IXMLDOMNode& attribute : Attributes(to)) {
        const std::string name = NameOf(attribute.Get());
        if (!IsDeclaration(name) && !GetAttribute(from, name, value)) RemoveAttribute(to, name);
    }
    for (const IXMLDOMNode& attribute : Attributes(from)) {
        const std::string name = NameOf(attribute.Get());
        if (!IsDeclaration(name) && !SetAttribute(to, name, ValueOf(attribute.Get())))
            AddPrefixed(to, name, ValueOf(attribute.Get()), NamespaceOf(attribute.Get()));
    }
}

}  // namespace qv::dom
