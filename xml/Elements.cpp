#include "xml/Elements.h"

namespace qv {
namespace {

using MSXML2::IXMLDOMElement;
using MSXML2::IXMLDOMNode;

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

}  // namespace qv
