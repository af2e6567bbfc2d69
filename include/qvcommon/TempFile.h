#pragma once

/// @file A file with a unique name that is deleted with its object.

#include "qvcommon/framework/String.h"

/// A temporary file. By default it is created in the system's temporary folder, is named "QV", six random capital
/// letters and a trailing dot, and is deleted with the object.
///
/// The names are not secret. The file is created exclusively: if another program creates the name first, that file is
/// left alone, and another name is tried. Not thread-safe; different objects may be used on different threads.
class QVCOMMON_API CTempFile : public CObject {
public:
    CTempFile();
    /// Deletes the file, unless disabled by SetDeleteOnDtor.
    ~CTempFile() override;
    CTempFile(const CTempFile&) = delete;
    CTempFile& operator=(const CTempFile&) = delete;

    /// Creates an empty, closed file and owns it; a file owned before is deleted first. With `useGivenName` non-zero,
    /// or after SetFilename, it uses the current name, if any, and truncates an existing file of that name; otherwise a
    /// new one. Does not return while the system refuses new names for any reason but those below: set an existing
    /// folder, and a prefix and an extension that are valid in names and short enough.
    /// @throws CFileException* with the system's error and the name if too many files are open, access is denied or
    /// folder or disk is full; with accessDenied and no name if a given name cannot be created for another reason, or
    /// after 1000 new names that exist. The object is then unchanged, except that the file owned before is deleted.
    virtual void Create(int useGivenName = 0);
    /// Restores the system's temporary folder.
    virtual void SetTempDirectory();
    /// Sets the folder of new names, used verbatim: include the trailing separator. An empty string means the temporary
    /// folder.
    virtual void SetDirectory(const char* directory);
    virtual CString GetDirectory() const;
    /// Returns the full path; empty while there is no file.
    virtual CString GetFilename() const;
    /// Returns the extension of new names, without its dot; empty by default.
    virtual CString GetExtension() const;
    /// Sets the extension, without a dot: one is always added.
    virtual void SetExtension(const char* extension);
    /// Sets the prefix of new names, before the six letters; "QV" by default.
    virtual void SetPrefix(const char* prefix);
    virtual CString GetPrefix() const;
    /// Non-zero (the default): the file is deleted with the object.
    virtual void SetDeleteOnDtor(int deleteOnDtor);

    /// Deletes the file owned before, then takes ownership of the named one: it will be deleted like a file created by
    /// the object.
    void SetFilename(const char* filename);

protected:
    /// Deletes the owned file. If that fails, it is still owned; a name from SetFilename is kept in any case.
    virtual void RemoveFile();
    /// Returns six random capital letters.
    static CString GetRandomName();

private:
    bool HasGivenName() const;
    CString NextCandidate() const;
    CString CreateCandidate() const;

    BOOL m_deleteOnDtor = 1;
    BOOL m_fixedName = 0;
    bool m_created = false;
    CString m_directory;
    CString m_prefix = "QV";
    CString m_filename;
    CString m_extension;
};
