#pragma once

/// @file Paths and names as the system's wide calls take them, and the way back.
///
/// No text becomes the name of another file than the one it means, and no file gets the text of another one: nothing is
/// converted by best fit, and what one side cannot hold is refused. A path that is refused is empty; the system's calls
/// answer it with ERROR_PATH_NOT_FOUND.

#include <optional>
#include <string>
#include <string_view>

namespace qv::platform {

/// Wide text as the system's types spell it. What one side cannot hold becomes "?".
std::wstring ToSystem(std::string_view text);
std::string FromSystem(std::wstring_view text);
/// ToSystem for what must not become something else: nullopt for a text that is not well-formed in the code page.
std::optional<std::wstring> ToSystemExactly(std::string_view text);

/// The path for one call, in the extended form where the plain one would be too long.
std::wstring WidePath(std::string_view path);
/// The absolute path in the extended form, which has no other limit than the system's, and in which the system takes names
/// as they are, final points and blanks included.
std::wstring ExtendedPath(std::string_view path);
/// The folder and the mask of a search. The mask is left as it is in either form.
std::wstring WidePattern(std::string_view pattern);

/// The absolute path in its plain form, of any length; empty where the system has none.
std::wstring WideFullPath(const std::wstring& path);

/// The text of a path, without the prefix of the extended form; nullopt where the code page cannot hold it.
std::optional<std::string> NarrowPath(std::wstring_view path);
/// The same, by way of short names where needed and possible.
std::optional<std::string> ReachablePath(const std::wstring& path);
/// The same for people and logs, where what the code page cannot hold is "?".
std::string ShownPath(std::wstring_view path);

/// Whether the plain form of a path may end with this name, and then means the entry of exactly this name: no device, no
/// stream, no drive, no wild card, nothing that the system cuts off.
bool IsPlainWideName(std::wstring_view name);
/// The text by which plain paths reach the entry of this name; nullopt when no text does.
std::optional<std::string> ReachableName(std::wstring_view name);

/// The name of any entry of an open folder as bytes: its text where it has one, else a "\" and the units of the name, which
/// WideName alone understands.
std::string EntryName(std::wstring_view name);
/// The way back. Empty for a text that is not well-formed in the code page.
std::wstring WideName(std::string_view name);
/// An entry's name for people.
std::string ShownEntryName(std::string name);

}  // namespace qv::platform
