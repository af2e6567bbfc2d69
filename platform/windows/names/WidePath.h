#pragma once

/// @file Conversion of paths and names to the system's wide form, and back.
///
/// The mapping is unambiguous: no text names another file than the intended one, and no file gets the text of another
/// one. Best-fit conversion is never used, and what the target cannot represent is rejected. A rejected path is empty;
/// system calls fail for it with ERROR_PATH_NOT_FOUND.

#include <optional>
#include <string>
#include <string_view>

namespace qv::platform {

/// Converts to and from the system's wide type. Characters that the target cannot represent become "?".
std::wstring ToSystem(std::string_view text);
std::string FromSystem(std::wstring_view text);
/// ToSystem without replacement characters: nullopt for a text that is not well-formed in the code page.
std::optional<std::wstring> ToSystemExactly(std::string_view text);

/// Returns the path for one call, in the extended form if the plain one would be too long.
std::wstring WidePath(std::string_view path);
/// Returns the absolute path in the extended form, which has no limit except the system's, and in which the system
/// takes names verbatim, including trailing dots and blanks.
std::wstring ExtendedPath(std::string_view path);
/// Returns the folder and the mask of a search. The mask is the same in either form.
std::wstring WidePattern(std::string_view pattern);

/// Returns the absolute path in its plain form, of any length; empty if the system has none.
std::wstring WideFullPath(const std::wstring& path);

/// Returns the text of a path, without the prefix of the extended form; nullopt if the code page cannot represent it.
std::optional<std::string> NarrowPath(std::wstring_view path);
/// Does the same, using short names if needed and possible.
std::optional<std::string> ReachablePath(const std::wstring& path);
/// Does the same for display and logs, with "?" for characters that the code page lacks.
std::string ShownPath(std::wstring_view path);

/// Returns whether the plain form of a path may end with this name, and then refers to the entry of exactly this name:
/// not a device, stream, drive or wildcard, and nothing that the system strips.
bool IsPlainWideName(std::wstring_view name);
/// Returns a text that refers to the entry of this name in plain paths; nullopt if none does.
std::optional<std::string> ReachableName(std::wstring_view name);

/// Returns the name of any entry of an open folder as bytes: its text if it can be represented, else a "\" and the code
/// units of the name, which only WideName decodes.
std::string EntryName(std::wstring_view name);
/// The inverse. Empty for a text that is not well-formed in the code page.
std::wstring WideName(std::string_view name);
/// Returns an entry's name for display.
std::string ShownEntryName(std::string name);

}  // namespace qv::platform
