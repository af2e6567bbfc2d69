#pragma once

/// @file The text of an INI file: lines "[section]", "name=value" and comments that begin with ";" or "#".
///
/// Names go without regard to the case of A to Z. Of sections and of entries with the same name the first counts. Blanks
/// around names and values are no part of them. What would not come back otherwise is escaped on writing: in names bytes
/// as "%" and two hexadecimal digits, values in double quotes with the escapes \\ \" and \x and two hexadecimal digits.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qv::platform {

/// Accepts any text. Nothing when there is no such entry.
std::optional<std::string> FindIniValue(std::string_view text, std::string_view section, std::string_view entry);

/// The text with the value set, every other line as it was. A new entry goes behind the last one of its section, a new
/// section to the end.
std::string WithIniValue(std::string_view text, std::string_view section, std::string_view entry,
                         std::string_view value);

/// The text without the entry, however often it is there, every other line as it was.
std::string WithoutIniValue(std::string_view text, std::string_view section, std::string_view entry);

/// The text without the sections of the name: their headers, entries and comments. Every other line is as it was.
std::string WithoutIniSection(std::string_view text, std::string_view section);
/// The same for all sections whose names begin with `prefix`.
std::string WithoutIniSections(std::string_view text, std::string_view prefix);

/// The names of the sections, and of a section's entries, each once, in the order of the text. O(n log n).
std::vector<std::string> IniSections(std::string_view text);
std::vector<std::string> IniEntries(std::string_view text, std::string_view section);

}  // namespace qv::platform
