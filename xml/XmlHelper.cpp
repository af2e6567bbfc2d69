#include "qvcommon/XmlHelper.h"

#include "qvcommon/Exceptions.h"

CXmlHelper::Document CXmlHelper::CreateDocument() {
    Document document;
    if (document.CreateInstance() < 0)
        ThrowQvException("XML Dom not found.\nInstall the latest MSXML Dom.", 0x30, 0, 0);
    document.put_async(false);
    return document;
}

CXmlHelper::Element CXmlHelper::GetDocumentElement(std::string_view xml) {
    const Document document = CreateDocument();
    LoadXml(document, xml);
    return document.get_documentElement();
}

BOOL CXmlHelper::LoadXml(const Document& document, std::string_view xml) {
    return document.loadXML(xml);
}

CString CXmlHelper::MakeElement(std::string_view tag, std::string_view text) {
    CString element("<");
    ((((element += tag) += ">") += Clean(text)) += "</") += tag;
    return element += ">";
}

CString CXmlHelper::MakeElement(std::string_view tag, int value) {
    return MakeElement(tag, std::to_string(value));
}
