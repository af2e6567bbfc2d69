#pragma once

/// @file A path in its parts.

#include "qvcommon/framework/String.h"

/// A path held as drive, directory, file and extension. A value: copies share nothing.
///
/// Splitting takes both "\" and "/" for separators, joining adds "\". Nothing is checked and nothing fails: a part longer
/// than 255 bytes is cut there, a joined path longer than 259. On systems without drive letters the drive is always empty.
class QVCOMMON_API CFilePath : public CObject {
public:
    CFilePath() = default;
    /// Each: SplitPath with all parts replaced.
    CFilePath(const char* path) { SplitPath(path, 1); }
    CFilePath& operator=(const char* path) {
        SplitPath(path, 1);
        return *this;
    }

    /// The drive is a letter and a colon in front; the directory goes up to and including the last separator; the extension
    /// begins at the last point of the rest. With `replaceAll` zero, a part that is empty in the new path keeps its old
    /// text.
    void SplitPath(const char* path, int replaceAll);

    /// With its final separator; empty when there is none.
    CString GetDir() const { return m_dir; }
    /// Without folder and extension.
    CString GetFile() const { return m_file; }
    /// With its point.
    CString GetExt() const { return m_ext; }
    /// Each: Each replaces one part as it is.
    void SetDir(const char* text) { m_dir = text; }
    void SetFile(const char* text) { m_file = text; }
    void SetExt(const char* text) { m_ext = text; }

    /// All parts, joined by MakePath.
    CString GetFullPath() const { return MakePath(m_drive, m_dir, m_file, m_ext); }
    /// The file's name with its extension.
    CString GetFullFile() const { return MakePath("", "", m_file, m_ext); }
    /// Drive and directory, with a final "\" or, when `terminate` is zero, without it.
    CString GetPath(int terminate) const;

    /// Joins the parts: a colon is added after the drive, a "\" after the directory and a point before the extension where
    /// they lack one. Empty or null parts add nothing.
    static CString MakePath(const char* drive, const char* directory, const char* file, const char* extension);

private:
    CString m_drive;
    CString m_dir;
    CString m_file;
    CString m_ext;
};
