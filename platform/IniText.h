#pragma once

/// @file The text of an INI file: lines "[section]", "name=value" and comments that begin with ";" or "#".
///
/// Names ignore the case of A to Z. The first of several sections or entries with the same name is used. Blanks around
/// names and values are not part of them. Anything that would not be read back is escaped on writing: in names bytes as
/// "%" and two hexadecimal digits, values in double quotes with the escapes \\ \" and \x and two hexadecimal digits.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qv::platform {

/// Accepts any text. Returns nullopt if the entry does not exist.
std::optional<std::string> FindIniValue(std::string_view text, std::string_view section, std::string_view entry);

/// Returns the text with the value set, all other lines unchanged. A new entry is added after the last one of its
/// section, a new section at the end.
std::string WithIniValue(std::string_view text, std::string_view section, std::string_view entry,
                         std::string_view value);

/// Returns the text without any occurrence of the entry, all other lines unchanged.
std::string WithoutIniValue(std::string_view text, std::string_view section, std::string_view entry);

/// Returns the text without the sections of the name: their headers, entries and comments. All other lines are
/// unchanged.
std::string WithoutIniSection(std::string_view text, std::string_view section);
/// Does the same for all sections whose names begin with `prefix`.
std::string WithoutIniSections(std::string_view text, std::string_view prefix);

/// Return the names of the sections, and of a section's entries, without duplicates, in the order of the text. O(n log
/// n).
std::vector<std::string> IniSections(std::string_view text);
std::vector<std::string> IniEntries(std::string_view text, std::string_view section);

}  // namespace qv::platform
