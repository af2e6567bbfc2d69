#include "platform/Profile.h"

#include "platform/IniFile.h"
#include "platform/IniText.h"
#include "platform/UserFolders.h"

namespace qv::platform {
namespace {

// Empty if the user has no folder for settings, as a service may not.
std::string FolderOf(const ProfilePlace& place) {
    const std::string settings = UserFolder(UserFolderKind::Settings);
    return settings.empty() || place.company.empty() ? settings : settings + '\\' + place.company;
}

std::string Changed(const std::string& text, const char* section, const char* entry, const char* value) {
    if (!entry) return WithoutIniSection(text, section);
    return value ? WithIniValue(text, section, entry, value) : WithoutIniValue(text, section, entry);
}

}  // namespace

std::string ProfileFile(const ProfilePlace& place) {
    const std::string folder = FolderOf(place);
    return folder.empty() ? "" : folder + '\\' + place.application + ".ini";
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
