#pragma once

/// @file The files that generated pages refer to.

#include "qvcommon/framework/Collections.h"

/// The pictures, the script that draws tree menus, and a style sheet. They are embedded in the library; installations
/// also contain them as files, in share/qvcommon/html. All members are static and stateless.
class QVCOMMON_API CHtmlAssets {
public:
    /// Returns the names: "open.gif" and "closed.gif" of sections, "folder.gif" and "folder-expanded.gif" of tree
    /// menus, "rolledup.gif" and "rolleddown.gif" of navigation bars, "TreeMenu.js", and "qvcommon.css", a style sheet
    /// for pages with any of these: for screens, light and dark, and for paper.
    static void GetNames(CStringArray& names);
    /// Returns the content of a file; empty for any other name.
    static std::string_view GetBytes(std::string_view name);

    /// Writes all files to the folder, which must exist. A file with identical content is left alone; others of these
    /// names are overwritten.
    /// @throws CFileException* if a file cannot be written; those before it are written then.
    static void CopyTo(const char* directory);
};
