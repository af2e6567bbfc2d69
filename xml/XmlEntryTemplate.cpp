#include "qvcommon/XmlEntryTemplate.h"

#include <charconv>

#include "platform/Ascii.h"

IMPLEMENT_DYNAMIC(CXmlUnknownEntry, CXmlObject)

CXmlUnknownEntry::~CXmlUnknownEntry() = default;

namespace {

bool IsEntryType(std::string_view type) {
    CString rest;
    return !type.empty() && type.front() != '/' && type.find_first_of("<>") == type.npos &&
           CXmlEntryTemplate::SplitTag(type, rest) == 1;
}

}  // namespace

CXmlEntryTemplate::CXmlEntryTemplate(std::string_view type) : m_type(type) {
    if (!IsEntryType(type)) AfxThrowInvalidArgException();
}

CXmlEntryTemplate::~CXmlEntryTemplate() {
    for (const auto& [tag, registration] : m_versions) CXmlObjectFactory::Unregister(tag, registration);
}

CString CXmlEntryTemplate::GetTag(std::string_view type, int version) {
    if (version < 1) AfxThrowInvalidArgException();
    CString tag(type);
    if (version > 1) tag += '.' + std::to_string(version);
    return tag;
}

int CXmlEntryTemplate::SplitTag(std::string_view tag, CString& type) {
    const std::size_t point = tag.rfind('.');
    const std::string_view digits = tag.substr(point == tag.npos ? tag.size() : point + 1);
    int version = 1;
    const auto [stop, error] = std::from_chars(digits.data(), digits.data() + digits.size(), version);
    const bool isVersion =
        error == std::errc() && stop == digits.data() + digits.size() && version > 1 && digits[0] != '0';
    type = tag.substr(0, isVersion ? point : tag.size());
    return isVersion ? version : 1;
}
