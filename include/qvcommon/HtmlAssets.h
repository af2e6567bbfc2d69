#pragma once

/// @file The files that pages expect beside them.

#include "qvcommon/framework/Collections.h"

/// The pictures, the script that draws tree menus, and a style sheet. They are part of the library; installations carry
/// them as files too, in share/qvcommon/html. All members are static and free of state.
class QVCOMMON_API CHtmlAssets {
public:
    /// "open.gif" and "closed.gif" of sections, "folder.gif" and "folder-expanded.gif" of tree menus, "rolledup.gif" and
    /// "rolleddown.gif" of navigation bars, "TreeMenu.js", and "qvcommon.css", a style sheet for pages with any of
    /// these: for screens, light and dark, and for paper.
    static void GetNames(CStringArray& names);
    /// The bytes of one; empty for any other name.
    static std::string_view GetBytes(std::string_view name);

    /// Writes all of them into the folder, which has to exist. A file that holds the same bytes already is left alone;
    /// others of these names are overwritten.
    /// @throws CFileException* when a file cannot be written; those before it are there then.
    static void CopyTo(const char* directory);
};
