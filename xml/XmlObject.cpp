#include "qvcommon/XmlObject.h"

#include "qvcommon/XmlSection.h"

IMPLEMENT_DYNAMIC(CXmlObject, CObject)

CXmlObject::~CXmlObject() = default;

CXmlObject* CXmlObjectFactory::CreateObject(std::string_view type) {
    CObject* const object = CQVClassFactory::CreateObject(KeyOf(type));
    auto* const created = dynamic_cast<CXmlObject*>(object);
    if (!created) delete object;
    return created;
}

// Elements have their own classes in the same registry.
CString CXmlObjectFactory::KeyOf(std::string_view type) {
    return "section " + CXmlSection::CleanTag(type);
}
