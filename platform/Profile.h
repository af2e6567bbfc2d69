#pragma once

/// @file The store in which applications keep their settings.

#include <optional>
#include <string>
#include <vector>

namespace qv::platform {

/// Whose settings. Both are names of files; the company's may be empty.
///
/// On Windows the registry below "Software" of the current user, or without a company the private profile of that name; on
/// Linux an INI file in the user's configuration folder.
struct ProfilePlace {
    std::string company, application;
};

/// The file, in the library's form, that an INI file's rules hold for (platform/IniFile.h). Empty where settings are not
/// kept in one.
std::string ProfileFile(const ProfilePlace& place);

/// Nothing when there is no such value, or none that can be read. Names go without regard to case.
std::optional<std::string> ReadProfile(const ProfilePlace& place, const char* section, const char* entry);

/// Sets the value. A null value deletes the entry, a null entry the section; what is not there is deleted already. False
/// when the system could not keep that; nothing has changed then. Writers in other threads and processes wait their turn.
bool WriteProfile(const ProfilePlace& place, const char* section, const char* entry, const char* value);

/// The names of the section's entries that have a text, or with null those of the sections. Empty when they cannot be read.
std::vector<std::string> ListProfile(const ProfilePlace& place, const char* section);

}  // namespace qv::platform
