#pragma once

/// @file The list of a tree's entries, an archive's first member: docs/formats/cabinet.md.

#include <optional>

#include "qvcommon/framework/Collections.h"

namespace qv::cabinet {

/// Represents the root of the tree.
inline constexpr const char* kRoot = "*ROOT*";
/// A manifest's name is this, six capital letters and ".xml".
inline constexpr const char* kManifestPrefix = "CabMan";

bool IsManifestName(std::string_view name);
/// Deletes manifests that killed programs have left in a folder: those more than a day old.
void RemoveStaleManifests(const CString& folder);

/// Returns the manifest's text, with a line feed after each line.
CString ManifestText(const CStringArray& entries);
/// Returns the entries of a manifest; nullopt if malformed. An empty text is an empty manifest. Any line end is
/// accepted.
std::optional<CStringArray> ReadManifest(std::string_view text);

/// Whether a manifest was written in UTF-8 while this process uses another code page, on a system whose file names are
/// characters. Where file names are bytes, entries are used unchanged.
bool IsInForeignCodePage(std::string_view manifest);
/// Converts an entry of such a manifest. Returns false if the code page lacks characters of it, which become "?".
bool ConvertFromUtf8(CString& entry);

}  // namespace qv::cabinet
