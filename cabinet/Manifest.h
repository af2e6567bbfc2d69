#pragma once

/// @file The list of a tree's entries, an archive's first member: docs/formats/cabinet.md.

#include <optional>

#include "platform/SignalHold.h"
#include "qvcommon/TempFile.h"
#include "qvcommon/framework/Collections.h"

namespace qv::cabinet {

/// Represents the root of the tree.
inline constexpr const char* kRoot = "*ROOT*";
/// A manifest's name is this, six capital letters and ".xml".
inline constexpr const char* kManifestPrefix = "CabMan";

bool IsManifestName(std::string_view name);
/// Deletes manifests that killed programs have left in a folder: those more than a day old.
void RemoveStaleManifests(const CString& folder);

/// A temporary file for a manifest. Signals that end the process wait until it is deleted.
class ManifestFile {
    qv::platform::SignalHold m_hold;  // released last

public:
    /// Creates no file yet. @throws CFileException* with badPath if the temporary folder does not exist: Create would wait
    /// for it, and no signal could end that.
    ManifestFile();

    CTempFile file;
};

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
