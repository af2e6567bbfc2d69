#include "xml/dom/msxml/Internals.h"

namespace qv::dom {
namespace {

Owned<::IXMLDOMElement> ElementOf(Node& node) {
    auto element = As<::IXMLDOMElement>(Com(node), kElement);
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

void SetText(Node& node, std::string_view text) {
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

void RemoveAttribute(Node& element, std::string_view name) {
    Check(ElementOf(element)->removeAttribute(Text(name).Get()));
}

}  // namespace qv::dom
