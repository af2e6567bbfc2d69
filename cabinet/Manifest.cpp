#include "cabinet/Manifest.h"

#include <algorithm>

#include "platform/Clock.h"
#include "platform/FileSearch.h"
#include "platform/Path.h"
#include "platform/Text.h"
#include "platform/Utf8.h"
#include "qvcommon/Exceptions.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/XmlSection.h"
#include "qvcommon/framework/File.h"

namespace qv::cabinet {
namespace {

constexpr const char* kTag = "MANIFEST";
constexpr std::string_view kManifestExtension = ".xml";
constexpr std::size_t kManifestLetters = 6;

}  // namespace

bool IsManifestName(std::string_view name) {
    if (!name.starts_with(kManifestPrefix) || !name.ends_with(kManifestExtension)) return false;
    name.remove_prefix(std::string_view(kManifestPrefix).size());
    name.remove_suffix(kManifestExtension.size());
    return name.size() == kManifestLetters && std::ranges::all_of(name, [](char c) { return c >= 'A' && c <= 'Z'; });
}

void RemoveStaleManifests(const CString& folder) {
    constexpr std::int64_t kDay = 24 * 60 * 60;
    constexpr int kMost = 32;  // the rest is left to the next call: packing must not be slow in a crowded folder
    platform::FileSearch search;
    platform::FoundEntry entry;
    if (!search.Start(folder + kManifestPrefix + "*.xml").ok()) return;
    for (int seen = 0; seen < kMost && search.Next(entry);) {
        platform::FileInfo info;
        if (entry.IsFolder() || !IsManifestName(entry.name)) continue;
        ++seen;
        const CString path = folder + CString(entry.name);
        const bool isStale = platform::StatusOf(path, info).ok() && info.modified < platform::SecondsNow() - kDay;
        // Another program may have deleted it, and other users' files cannot be deleted.
        if (isStale) platform::RemoveFile(path).IgnoreError();
    }
}

ManifestFile::ManifestFile() {
    const CString folder = file.GetDirectory();
    // If the system names no temporary folder, the current one is used.
    if (folder.IsEmpty()) return;
    if (!CFileUtils::IsDirectory(folder)) AfxThrowFileException(CFileException::badPath, -1, folder);
}

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

bool IsInForeignCodePage(std::string_view manifest) {
    if (!platform::HasDriveLetters() || platform::CurrentCodePage() == platform::CodePage::Utf8) return false;
    bool isAscii = true;
    for (std::size_t i = 0; i < manifest.size();) {
        const platform::Utf8Character character = platform::DecodeUtf8(manifest, i);
        if (!character.wellFormed) return false;
        isAscii = isAscii && character.length == 1;
        i += character.length;
    }
    return !isAscii;
}

bool ConvertFromUtf8(CString& entry) {
    const std::u16string wide = platform::Utf8ToWide(entry);
    entry = CString(platform::FromWide(wide));
    return platform::ToWide(entry) == wide;
}

}  // namespace qv::cabinet
