#include "platform/Registry.h"

#include <algorithm>
#include <cerrno>
#include <set>

#include "platform/Ascii.h"
#include "platform/Hex.h"
#include "platform/IniFile.h"
#include "platform/IniText.h"
#include "platform/Profile.h"
#include "platform/UserFolders.h"

namespace qv::platform {
namespace {

/// The section of an INI file that represents a key.
struct Section {
    ProfilePlace place;
    std::string name;
};

/// Removes and returns the text up to the first separator, which is removed too.
std::string TakeName(std::string_view& path) {
    const std::size_t end = std::min(path.find('\\'), path.size());
    std::string name(path.substr(0, end));
    path.remove_prefix(std::min(end + 1, path.size()));
    return name;
}

bool IsFileName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." && name.find('/') == name.npos;
}

Section SectionOf(const std::string& key) {
    std::string_view rest = key;
    const std::string software = TakeName(rest), company = TakeName(rest), application = TakeName(rest);
    if (ascii::EqualsIgnoreCase(software, "Software") && IsFileName(company) && IsFileName(application))
        return {{company, application}, std::string(rest)};
    return {{"QvCommon", "registry"}, key};
}

std::string FileOf(const RegistryKey& key, const ProfilePlace& place) {
    if (key.root == RegistryRoot::User) return ProfileFile(place);
    return UserFolder(UserFolderKind::MachineSettings) + '\\' + place.company + '\\' + place.application + ".ini";
}

/// All users may read the machine's settings.
Access AccessTo(const RegistryKey& key) {
    return key.root == RegistryRoot::Machine ? Access::AsFolder : Access::Owner;
}

Status Change(const RegistryKey& key,
              const std::function<std::string(const std::string& text, const std::string&)>& change) {
    const Section section = SectionOf(key.path);
    const std::string file = FileOf(key, section.place);
    if (file.empty()) return {FileCause::BadPath, ENOENT};
    const auto changeSection = [&](const std::string& text) { return change(text, section.name); };
    return ChangeIniFile(file, changeSection, AccessTo(key));
}

std::string TextOf(const RegistryValue& value) {
    return value.type == RegistryType::Bytes ? HexText(value.data) : value.data;
}

bool IsMissing(const Status& status) {
    return status.cause() == FileCause::BadPath || status.cause() == FileCause::FileNotFound;
}

/// Deleting from a missing folder succeeds.
Status Deleted(const Status& changed) {
    return IsMissing(changed) ? Status() : changed;
}

std::string BeginOf(const std::string& section) {
    return section.empty() ? "" : section + '\\';
}

}  // namespace

Status ReadRegistryValue(const RegistryKey& key, const std::string& name, RegistryValue& value) {
    const Section section = SectionOf(key.path);
    std::string text;
    if (const Status read = ReadIniFile(FileOf(key, section.place), text); !read.ok()) return read;
    const auto found = FindIniValue(text, section.name, name);
    if (!found) return {FileCause::FileNotFound, ENOENT};
    value = {RegistryType::Text, *found};
    return {};
}

Status WriteRegistryValue(const RegistryKey& key, const std::string& name, const RegistryValue& value) {
    const std::string file = FileOf(key, SectionOf(key.path).place);
    const std::string folder = file.substr(0, file.rfind('\\'));
    if (const Status made = MakeUserFolder(folder, AccessTo(key)); !made.ok()) return made;
    return Change(key, [&](const std::string& text, const std::string& section) {
        return WithIniValue(text, section, name, TextOf(value));
    });
}

Status DeleteRegistryValue(const RegistryKey& key, const std::string& name) {
    return Deleted(Change(key, [&](const std::string& text, const std::string& section) {
        return WithoutIniValue(text, section, name);
    }));
}

Status DeleteRegistryKey(const RegistryKey& key) {
    return Deleted(Change(key, [](const std::string& text, const std::string& section) {
        return WithoutIniSections(WithoutIniSection(text, section), BeginOf(section));
    }));
}

Status ListRegistryValues(const RegistryKey& key, std::vector<std::string>& names) {
    const Section section = SectionOf(key.path);
    std::string text;
    const Status read = ReadIniFile(FileOf(key, section.place), text);
    if (read.ok()) names = IniEntries(text, section.name);
    return read;
}

Status ListRegistryKeys(const RegistryKey& key, std::vector<std::string>& names) {
    const Section section = SectionOf(key.path);
    std::string text;
    if (const Status read = ReadIniFile(FileOf(key, section.place), text); !read.ok()) return read;
    const std::string begin = BeginOf(section.name);
    std::set<std::string> known;
    names.clear();
    for (const std::string& name : IniSections(text)) {
        if (!ascii::EqualsIgnoreCase(name.substr(0, begin.size()), begin)) continue;
        std::string_view rest = std::string_view(name).substr(begin.size());
        const std::string child = TakeName(rest);
        if (!child.empty() && known.insert(ascii::ToLower(child)).second) names.push_back(child);
    }
    return {};
}

}  // namespace qv::platform
