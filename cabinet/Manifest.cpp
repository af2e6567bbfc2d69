#include "cabinet/Manifest.h"

#include "qvcommon/Exceptions.h"
#include "qvcommon/XmlSection.h"

namespace qv::cabinet {
namespace {

constexpr const char* kTag = "MANIFEST";

}  // namespace

CString ManifestText(const CStringArray& entries) {
    CXmlSection section;
    section.AddStringArray(kTag, entries, 0);
    return section.GetRawXml();
}

std::optional<CStringArray> ReadManifest(std::string_view text) {
    CXmlSection section;
    CStringArray entries;
    try {
        section.SetRawXml(text);
    } catch (CVorbexException* error) {
        error->Delete();
        return std::nullopt;
    }
    CXmlSection list;
    if (!text.empty() && !section.GetSection(kTag, list)) return std::nullopt;
    section.GetStringArray(kTag, entries);
    return entries;
}

}  // namespace qv::cabinet
