#include "xml/ElementKey.h"

namespace qv {

CString KeyOfElement(const MSXML2::IXMLDOMElement& element) {
    CString key = element.get_nodeName();
    if (const MSXML2::IXMLDOMNode type = element.selectSingleNode("@typ")) (key += ' ') += type.get_xml();
    return key;
}

}  // namespace qv
