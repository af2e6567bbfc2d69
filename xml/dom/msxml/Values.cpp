#include "xml/dom/msxml/Internals.h"

namespace qv::dom {
namespace {

ComPtr<::IXMLDOMElement> ElementOf(Node& node) {
    auto element = QueryFor<::IXMLDOMElement>(Com(node), kElement);
    if (!element) _com_raise_error(_com_error::kFail, "the node is no element");
    return element;
}

}  // namespace

DOMNodeType TypeOf(Node& node) {
    ::DOMNodeType type{};
    Check(Com(node)->get_nodeType(&type));
    return static_cast<DOMNodeType>(type);
}

std::string NameOf(Node& node) {
    Text name;
    Check(Com(node)->get_nodeName(&name));
    return name.InCodePage();
}

std::string ValueOf(Node& node) {
    Variant value;
    Check(Com(node)->get_nodeValue(&value));
    return value.InCodePage();
}

std::string NamespaceOf(Node& node) {
    Text uri;
    return Com(node)->get_namespaceURI(&uri) == S_OK ? uri.InCodePage() : "";
}

std::string TextOf(Node& node) {
    Text text;
    Check(Com(node)->get_text(&text));
    return text.InCodePage();
}

// What is taken out first lives on for those who have handles to it; what a text replaces may not.
void SetText(Node& node, std::string_view text) {
    if (TypeOf(node) == MSXML2::NODE_ELEMENT)
        for (IXMLDOMNode child; (child = FirstChild(node));) Remove(node, child.Get());
    Check(Com(node)->put_text(Text(text).Get()));
}

bool GetAttribute(Node& element, std::string_view name, CString& value) {
    Variant answer;
    const HRESULT result = ElementOf(element)->getAttribute(Text(name).Get(), &answer);
    if (Check(result) != S_OK) return false;
    value = CString(answer.InCodePage());
    return true;
}

void SetAttribute(Node& element, std::string_view name, std::string_view value) {
    Check(ElementOf(element)->setAttribute(Text(name).Get(), Variant(value).Get()));
}

// By the map, which leaves the attribute to those who have handles to it; the element's own operation may not.
void RemoveAttribute(Node& element, std::string_view name) {
    ComPtr<::IXMLDOMNamedNodeMap> map;
    if (Check(ElementOf(element)->get_attributes(map.Receive())) != S_OK || !map) return;
    ComPtr<::IXMLDOMNode> removed;
    Check(map->removeNamedItem(Text(name).Get(), removed.Receive()));
}

}  // namespace qv::dom
