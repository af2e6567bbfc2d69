#include "qvcommon/XmlEntryTemplate.h"
#include "xml/Numbers.h"
#include "xml/SectionEscape.h"
#include "xml/SectionText.h"

int CXmlSection::SetRawXml(std::string_view text) {
    Clear();
    auto parsed = std::make_shared<const qv::SectionText>(qv::ParseSection(text, m_tag));
    m_node = std::make_shared<const qv::SectionNode>(std::move(parsed), 0);
    return static_cast<int>(m_node->Element().end);
}

BOOL CXmlSection::GetString(std::string_view tag, CString& value, int index) const {
    const std::uint32_t element = m_node ? m_node->Find(tag, index) : 0;
    if (element)
        value = CString(qv::SectionTextOf(m_node->DataOf(element)));
    else
        value.Empty();
    return element != 0;
}

BOOL CXmlSection::GetInteger(std::string_view tag, int& value, int index) const {
    CString text;
    const BOOL found = GetString(tag, text, index);
    value = qv::ReadInteger(text);
    return found;
}

BOOL CXmlSection::GetDouble(std::string_view tag, double& value, int index) const {
    CString text;
    const BOOL found = GetString(tag, text, index);
    value = qv::ReadDouble(text);
    return found;
}

BOOL CXmlSection::GetBool(std::string_view tag, BOOL& value, int index) const {
    CString text;
    const BOOL found = GetString(tag, text, index);
    value = qv::ReadBool(text);
    return found;
}

BOOL CXmlSection::GetDate(std::string_view tag, COleDateTime& value, int index) const {
    CString text;
    const BOOL found = GetString(tag, text, index);
    if (!found || text == "INVALID DATE")
        value.SetStatus(COleDateTime::invalid);
    else
        value.ParseDateTime(text);
    return found;
}

BOOL CXmlSection::GetSection(std::string_view tag, CXmlSection& section, int index) const {
    const std::uint32_t element = m_node ? m_node->Find(tag, index) : 0;
    CXmlSection found(element ? CString(m_node->TagOf(element)) : CleanTag(tag));
    if (element) found.m_node = m_node->Child(element);
    section = std::move(found);
    return element != 0;
}

BOOL CXmlSection::LoadObject(CXmlObject& object, int index) const {
    CXmlSection section;
    if (!GetSection(object.GetType(), section, index)) return 0;
    object.LoadXml(section);
    return 1;
}

BOOL CXmlSection::GetStringArray(std::string_view tag, CStringArray& texts) const {
    CXmlSection list;
    const BOOL found = GetSection(tag, list);  // the tag may be one of the texts
    CString text;
    texts.RemoveAll();
    for (int i = 0; list.GetString("ITEM", text, i); ++i) texts.Add(std::move(text));
    return found;
}

BOOL CXmlSection::GetStringToStringMap(std::string_view tag, CMapStringToString& map) const {
    CXmlSection list, entry;
    const BOOL found = GetSection(tag, list);  // the tag may belong to the map
    map.RemoveAll();
    for (int i = 0; list.GetSection("ENTRY", entry, i); ++i) {
        CString key, value;
        entry.GetString("KEY", key);
        entry.GetString("VALUE", value);
        map.SetAt(key, value);
    }
    return found;
}

BOOL CXmlSection::GetStringToIntMap(std::string_view tag, CMapStringToInt& map) const {
    CMapStringToString texts;
    const BOOL found = GetStringToStringMap(tag, texts);
    map.RemoveAll();
    for (const auto& [key, value] : texts) map.SetAt(key, qv::ReadInteger(value));
    return found;
}

namespace {

std::unique_ptr<CXmlObject> MakeObject(std::string_view tag, const CRuntimeClass* type) {
    if (!type) return std::unique_ptr<CXmlObject>(CXmlObjectFactory::CreateObject(tag));
    CObject* const object = type->CreateObject();
    auto* const created = dynamic_cast<CXmlObject*>(object);
    if (!created) delete object;
    return std::unique_ptr<CXmlObject>(created);
}

}  // namespace

/// `make` returns the object for a tag, or null to skip it.
template <class Make>
BOOL CXmlSection::AppendObjects(std::string_view tag, CXmlObjectArray& objects, Make make) const {
    CXmlSection list;
    if (!GetSection(tag, list)) return 0;
    const qv::SectionNode& node = *list.m_node;
    for (std::uint32_t element = node.FirstChild(); element; element = node.At(element).next) {
        std::unique_ptr<CXmlObject> object = make(node.TagOf(element));
        if (!object) continue;
        CXmlSection section(node.TagOf(element));
        section.m_node = node.Child(element);
        object->LoadXml(section);
        objects.Add(object.get());
        static_cast<void>(object.release());  // now owned by the array
    }
    return 1;
}

BOOL CXmlSection::GetObjectArray(std::string_view tag, CXmlObjectArray& objects, const CRuntimeClass* type) const {
    return AppendObjects(tag, objects, [type](std::string_view name) { return MakeObject(name, type); });
}

BOOL CXmlSection::GetEntryArray(std::string_view tag, CXmlObjectArray& objects) const {
    return AppendObjects(tag, objects, [](std::string_view name) {
        std::unique_ptr<CXmlObject> object = MakeObject(name, nullptr);
        if (!object) object = std::make_unique<CXmlUnknownEntry>();
        return object;
    });
}
