#include "xml/dom/msxml/Internals.h"

namespace qv::dom {
DOMNodeType TypeOf(Node& node) {
    ::DOMNodeType type{};
    Check(Com(node)->get_nodeType(&type));
    return static_cast<DOMNodeType>(type);
}

std::string NameOf(Node& node) {
    Text name;
    Check(Com(node)->get_nodeName(&name));
    return name.InUtf8();
}

std::string ValueOf(Node& node) {
    Variant value;
    Check(Com(node)->get_nodeValue(&value));
    return value.InUtf8();
}

std::string NamespaceOf(Node& node) {
    Text uri;
    return Com(node)->get_namespaceURI(&uri) == S_OK ? uri.InUtf8() : "";
}

std::string TextOf(Node& node) {
    Text text;
    Check(Com(node)->get_text(&text));
    return text.InUtf8();
}

// Removed children stay alive for their handles; children replaced by a text may not.
void SetText(Node& node, std::string_view text) {
    if (TypeOf(node) == MSXML2::NODE_ELEMENT)
        for (IXMLDOMNode child; (child = FirstChild(node));) Remove(node, child.Get());
    Check(Com(node)->put_text(Text(text).Get()));
}

}  // namespace qv::dom
