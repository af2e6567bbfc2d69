#pragma once

/// @file The store in which applications keep their settings.

#include <optional>
#include <string>

namespace qv::platform {

/// Whose settings. Both are names of files; the company's may be empty.
///
/// On Windows the registry below "Software" of the current user, or without a company the private profile of that name; on
/// Linux an INI file in the user's configuration folder.
struct ProfilePlace {
    std::string company, application;
};

/// Nothing when there is no such value, or none that can be read. Names go without regard to case.
std::optional<std::string> ReadProfile(const ProfilePlace& place, const char* section, const char* entry);

/// Sets the value. A null value deletes the entry, a null entry the section; what is not there is deleted already. False
/// when the system could not keep that; nothing has changed then. Writers in other threads and processes wait their turn.
///
/// On Linux a new file takes the old one's place (what is a link stays one) and keeps its mode; one that is made first is
/// the user's alone. Beside it lies a file ".lock" that the writers take turns by.
bool WriteProfile(const ProfilePlace& place, const char* section, const char* entry, const char* value);

/// Makes the folder take the place of the user's configuration folder in this process; null ends that. False, and nothing
/// done, where settings are not kept in a folder. Not safe while other threads use a profile.
bool UseProfileFolder(const char* folder);

}  // namespace qv::platform
