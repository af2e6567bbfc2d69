#include "xml/Elements.h"

namespace qv {
namespace {

using MSXML2::IXMLDOMElement;
using MSXML2::IXMLDOMNode;

bool IsDeclaration(const CString& name) {
    return name == "xmlns" || name.Left(6) == "xmlns:";
}

}  // namespace

CString KeyOfElement(const IXMLDOMElement& element) {
    CString key = element.get_nodeName();
    if (const IXMLDOMNode type = element.selectSingleNode("@typ")) (key += ' ') += type.get_xml();
    return key;
}

bool IsElement(const IXMLDOMNode& node) {
    return node.get_nodeType() == MSXML2::NODE_ELEMENT;
}

std::vector<IXMLDOMNode> ChildrenOf(const IXMLDOMNode& parent) {
    std::vector<IXMLDOMNode> children;
    for (IXMLDOMNode child = parent.get_firstChild(); child; child = child.get_nextSibling()) children.push_back(child);
    return children;
}

void CopyAttributes(const IXMLDOMElement& to, const IXMLDOMElement& from) {
    CString value;
    for (const IXMLDOMNode& attribute : to.get_attributes()) {
        const CString name = attribute.get_nodeName();
        if (!from.getAttribute(name, value)) to.removeAttribute(name);
    }
    for (const IXMLDOMNode& attribute : from.get_attributes()) {
        const CString name = attribute.get_nodeName();
        if (!IsDeclaration(name)) to.setAttribute(name, attribute.get_nodeValue());
    }
}

}  // namespace qv
