#pragma once

/// @file The list of a tree's entries that stands in an archive as its first member: docs/formats/cabinet.md.

#include <optional>

#include "qvcommon/framework/Collections.h"

namespace qv::cabinet {

/// What the root of the tree is written as.
inline constexpr const char* kRoot = "*ROOT*";
/// A manifest is called by this, six capital letters and ".xml".
inline constexpr const char* kManifestPrefix = "CabMan";

bool IsManifestName(std::string_view name);
/// Deletes manifests in a folder that killed programs have left there: those that are more than a day old.
void RemoveStaleManifests(const CString& folder);

/// The manifest's text, with a line feed after each line.
CString ManifestText(const CStringArray& entries);
/// The entries of a manifest; nothing when the text is none. An empty text is an empty manifest. Lines end as they will.
std::optional<CStringArray> ReadManifest(std::string_view text);

/// Whether a manifest was written in UTF-8 while this process speaks another code page, on a system whose names are
/// characters. Where they are bytes, entries are the names whatever they mean.
bool IsInForeignCodePage(std::string_view manifest);
/// Converts an entry of such a manifest. False when the code page cannot hold all of it: "?" is in the place of the rest.
bool ConvertFromUtf8(CString& entry);

}  // namespace qv::cabinet
