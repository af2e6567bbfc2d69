#include "platform/Profile.h"

#include "platform/IniFile.h"
#include "platform/IniText.h"
#include "platform/UserFolders.h"

namespace qv::platform {
namespace {

std::string FolderOf(const ProfilePlace& place) {
    return UserFolder(UserFolderKind::Settings) + (place.company.empty() ? "" : '\\' + place.company);
}

std::string Changed(const std::string& text, const char* section, const char* entry, const char* value) {
    if (!entry) return WithoutIniSection(text, section);
    return value ? WithIniValue(text, section, entry, value) : WithoutIniValue(text, section, entry);
}

}  // namespace

std::string ProfileFile(const ProfilePlace& place) {
    return FolderOf(place) + '\\' + place.application + ".ini";
}

std::optional<std::string> ReadProfile(const ProfilePlace& place, const char* section, const char* entry) {
    std::string text;
    return ReadIniFile(ProfileFile(place), text).ok() ? FindIniValue(text, section, entry) : std::nullopt;
}

bool WriteProfile(const ProfilePlace& place, const char* section, const char* entry, const char* value) {
    if (!MakeUserFolder(FolderOf(place)).ok()) return false;
    return ChangeIniFile(ProfileFile(place),
                         [&](const std::string& text) { return Changed(text, section, entry, value); })
        .ok();
}

std::vector<std::string> ListProfile(const ProfilePlace& place, const char* section) {
    std::string text;
    if (!ReadIniFile(ProfileFile(place), text).ok()) return {};
    return section ? IniEntries(text, section) : IniSections(text);
}

}  // namespace qv::platform
