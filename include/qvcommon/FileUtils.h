#pragma once

/// @file Everyday file work. All members are static and free of state. Paths may use "\" on every system, and those that
/// members give back do; GetNativePath gives the system's own form.

#include "qvcommon/framework/String.h"

class QVCOMMON_API CFileUtils {
public:
    CFileUtils() = default;
    virtual ~CFileUtils() = default;

    // Paths as texts: no file is touched and nothing fails (files/FilePaths.cpp)

    /// Adds a final "\" where it is missing; the empty text stays empty. A final "/" does not count.
    static CString TerminateDir(const char* path);
    /// Removes one final "\".
    static CString UnterminateDir(const char* path);
    /// What follows the last "\"; the whole text when there is none.
    static CString GetFilenameFromPath(const CString& path);
    /// What goes up to and including the last "\"; empty when there is none.
    static CString GetDirectoryFromPath(const CString& path);
    /// Without the bytes \ / : * ? " < > | and without white space at both ends.
    static CString StripInvalidFilenameChars(const char* text);
    /// "file://" and the name with "/" for "\"; nothing is escaped. With a drive letter the URL has two slashes only.
    static CString FileNameToFileUrl(const char* name);
    /// The name of a URL: percent signs undone, "file:///" taken away, "\" for "/". A URL with two slashes only keeps its
    /// "file:", so this is not the way back from FileNameToFileUrl.
    static CString FileUrlToFileName(const char* url);
    /// The form in which the system itself takes a path: on Linux "/" stands for every "\". (A name that holds a backslash
    /// of its own cannot be reached through this library there.)
    static CString GetNativePath(const char* path);

    // Files (files/FileUtils.cpp)

    /// Takes the read-only attribute away. True when that is done or nothing of that name exists; false when the system
    /// refused. Never raises.
    static bool MakeWritable(const char* path);
};
