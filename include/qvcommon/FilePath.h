#pragma once

/// @file A path split into its parts.

#include "qvcommon/framework/String.h"

/// A path stored as drive, directory, file and extension. A value type.
///
/// Splitting accepts both "\" and "/" as separators, joining adds "\". Nothing is validated and nothing fails: a part
/// longer than 255 bytes is truncated, and so is a joined path longer than 259. On systems without drive letters the
/// drive is always empty.
class QVCOMMON_API CFilePath : public CObject {
public:
    CFilePath() = default;
    /// Each: Calls SplitPath, replacing all parts.
    CFilePath(const char* path) { SplitPath(path, 1); }
    CFilePath& operator=(const char* path) {
        SplitPath(path, 1);
        return *this;
    }

    /// Splits a path. The drive is a leading letter and colon; the directory extends to the last separator, inclusive;
    /// the extension begins at the last dot of the rest. If `replaceAll` is zero, a part that is empty in the new path
    /// keeps its old value.
    void SplitPath(const char* path, int replaceAll);

    /// Returns the directory with its trailing separator; empty if absent.
    CString GetDir() const { return m_dir; }
    /// Returns the file name without folder and extension.
    CString GetFile() const { return m_file; }
    /// Returns the extension with its dot.
    CString GetExt() const { return m_ext; }
    /// Each: Replaces one part, unchanged.
    void SetDir(const char* text) { m_dir = text; }
    void SetFile(const char* text) { m_file = text; }
    void SetExt(const char* text) { m_ext = text; }

    /// Returns all parts, joined by MakePath.
    CString GetFullPath() const { return MakePath(m_drive, m_dir, m_file, m_ext); }
    /// Returns the file name with its extension.
    CString GetFullFile() const { return MakePath("", "", m_file, m_ext); }
    /// Returns drive and directory, with a trailing "\" or, if `terminate` is zero, without it.
    CString GetPath(int terminate) const;

    /// Joins the parts, adding where missing a colon after the drive, a "\" after the directory and a dot before the
    /// extension. Empty or null parts add nothing.
    static CString MakePath(const char* drive, const char* directory, const char* file, const char* extension);

private:
    CString m_drive;
    CString m_dir;
    CString m_file;
    CString m_ext;
};
