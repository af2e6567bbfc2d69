#include "xml/dom/Held.h"
#include "xml/dom/msxml/Internals.h"

namespace qv::dom {
namespace {

ComPtr<::IXMLDOMElement> ElementOf(Node& node) {
    auto element = QueryFor<::IXMLDOMElement>(Com(node), kElement);
    if (!element) _com_raise_error(_com_error::kFail, "the node is not an element");
    return element;
}

bool PutAttribute(Node& element, std::string_view name, std::string_view value) {
    return Check(ElementOf(element)->setAttribute(Text(name).Get(), Variant(value).Get())) == S_OK;
}

// True when another attribute of the element has the same name in the same namespace.
bool MeansAnother(Node& element, std::string_view name, std::string_view uri) {
    for (const IXMLDOMNode& other : Attributes(element)) {
        const std::string known = NameOf(other.Get());
        if (PrefixOf(known).empty() || IsDeclaration(known) || known == name) continue;
        if (LocalPartOf(known) == LocalPartOf(name) && NamespaceOf(other.Get()) == uri) return true;
    }
    return false;
}

// The attribute is made in the namespace that its prefix stands for; setAttribute makes one in none.
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
    ComPtr<::IXMLDOMNamedNodeMap> map;
    Check(ElementOf(element)->get_attributes(map.Receive()));
    ComPtr<::IXMLDOMNode> set;
    Check(map->setNamedItem(attribute.Get(), set.Receive()));
}

}  // namespace

std::optional<std::string> UriOf(Node& node, std::string_view prefix) {
    const std::string declaration = prefix.empty() ? "xmlns" : "xmlns:" + std::string(prefix);
    Com(node)->AddRef();
    for (IXMLDOMNode at = HandleTo(Com(node)); at; at = at.get_parentNode()) {
        if (at.get_nodeType() != MSXML2::NODE_ELEMENT) continue;
        std::string uri;
        if (GetAttribute(at.Get(), declaration, uri)) return uri;
        if (PrefixOf(NameOf(at.Get())) == prefix) return NamespaceOf(at.Get());
    }
    return std::nullopt;
}

// Some DOMs count declarations of namespaces that they then cannot give.
std::vector<IXMLDOMNode> Attributes(Node& node) {
    std::vector<IXMLDOMNode> all;
    ComPtr<::IXMLDOMNamedNodeMap> map;
    if (Check(Com(node)->get_attributes(map.Receive())) != S_OK || !map) return all;
    long count = 0;
    Check(map->get_length(&count));
    for (long i = 0; i < count; ++i) {
        ComPtr<::IXMLDOMNode> attribute;
        if (map->get_item(i, attribute.Receive()) == S_OK && attribute) all.push_back(HandleTo(attribute.Detach()));
    }
    return all;
}

IXMLDOMNode OwnerOf(Node& attribute) {
    ComPtr<::IXMLDOMNode> owner;
    if (Com(attribute)->selectSingleNode(Text("..").Get(), owner.Receive()) != S_OK) return nullptr;
    return HandleTo(owner.Detach());
}

bool GetAttribute(Node& element, std::string_view name, std::string& value) {
    Variant answer;
    const HRESULT result = ElementOf(element)->getAttribute(Text(name).Get(), &answer);
    if (Check(result) != S_OK) return false;
    value = answer.InUtf8();
    return true;
}

bool SetAttribute(Node& element, std::string_view name, std::string_view value) {
    const std::string_view prefix = PrefixOf(name);
    std::string before;
    if (prefix.empty() || prefix == "xml" || IsDeclaration(name) || GetAttribute(element, name, before))
        return PutAttribute(element, name, value);
    const std::optional<std::string> uri = UriOf(element, prefix);
    if (!uri || uri->empty() || MeansAnother(element, name, *uri)) return false;
    AddPrefixed(element, name, value, *uri);
    return true;
}

// By the map, which leaves the attribute to those who have handles to it; the element's own operation may not.
bool RemoveAttribute(Node& element, std::string_view name) {
    ComPtr<::IXMLDOMNamedNodeMap> map;
    if (Check(ElementOf(element)->get_attributes(map.Receive())) != S_OK || !map) return true;
    ComPtr<::IXMLDOMNode> removed;
    Check(map->removeNamedItem(Text(name).Get(), removed.Receive()));
    return true;
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
