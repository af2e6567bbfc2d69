#pragma once

/// @file The store of application settings.

#include <optional>
#include <string>
#include <vector>

namespace qv::platform {

/// The owner of settings. Both are file names; the company's may be empty.
///
/// On Windows the registry below "Software" of the current user, or without a company the private profile of that name;
/// on Linux an INI file in the user's configuration folder.
struct ProfilePlace {
    std::string company, application;
};

/// Returns the INI file, in the library's form (platform/IniFile.h). Empty if settings are not stored in one, or the
/// user has no folder for settings: nothing is stored then.
std::string ProfileFile(const ProfilePlace& place);

/// Returns nullopt if the value does not exist or cannot be read. Names are case-insensitive. Integers and bytes of the
/// registry are read in their text form; lists, which only other programs write, count as missing.
std::optional<std::string> ReadProfile(const ProfilePlace& place, const char* section, const char* entry);

/// Sets the value. A null value deletes the entry, a null entry the section; deleting what does not exist succeeds.
/// Returns false, without any change, if it could not be stored. Safe for concurrent writers in other threads and
/// processes.
bool WriteProfile(const ProfilePlace& place, const char* section, const char* entry, const char* value);

/// Returns the names of the section's entries that can be read, or with null those of the sections. Empty if they
/// cannot be read.
std::vector<std::string> ListProfile(const ProfilePlace& place, const char* section);

}  // namespace qv::platform
