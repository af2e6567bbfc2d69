#pragma once

/// @file A file of a fresh name that goes when its object does.

#include "qvcommon/framework/String.h"

/// A temporary file. By default it lies in the system's temporary folder, is called "QV", six random capital letters and a
/// final point, and is deleted with the object.
///
/// The names are not secret. The file is created exclusively: a file that another program creates under the name first is
/// left alone, and the next name is tried. One object, one thread; different objects may work in different threads.
class QVCOMMON_API CTempFile : public CObject {
public:
    CTempFile();
    /// Deletes the file, unless SetDeleteOnDtor said otherwise.
    ~CTempFile() override;
    CTempFile(const CTempFile&) = delete;
    CTempFile& operator=(const CTempFile&) = delete;

    /// Makes an empty, closed file and owns it; a file owned before is deleted first. With `useGivenName` non-zero, or
    /// after SetFilename, it takes the present name if there is one, and empties a file of that name; otherwise a fresh
    /// one. A folder that does not exist keeps it looking for ever: set one that does.
    /// @throws CFileException* with the system's error and the name when too many files are open, access is refused or
    /// folder or disk is full; with accessDenied and no name when a given name cannot be made for another reason, or after
    /// 1000 fresh names that exist. The object is then as before, but for the file owned before, which is gone.
    virtual void Create(int useGivenName = 0);
    /// Back to the system's temporary folder.
    virtual void SetTempDirectory();
    /// Where new names lie, used as it is: with its final separator. The empty text means the temporary folder.
    virtual void SetDirectory(const char* directory);
    virtual CString GetDirectory() const;
    /// The whole path; empty while there is no file.
    virtual CString GetFilename() const;
    /// The extension of new names, without its point; empty at first.
    virtual CString GetExtension() const;
    /// Without a point: one is always added.
    virtual void SetExtension(const char* extension);
    /// What new names begin with, before the six letters; "QV" at first.
    virtual void SetPrefix(const char* prefix);
    virtual CString GetPrefix() const;
    /// Non-zero, as at first: the file is deleted with the object.
    virtual void SetDeleteOnDtor(int deleteOnDtor);

    /// Deletes the file owned before, then owns the named one: it will be deleted like a file of the object's own making.
    void SetFilename(const char* filename);

protected:
    /// Deletes the file owned. When that fails, it is still owned; a name from SetFilename is kept in any case.
    virtual void RemoveFile();
    /// Six random capital letters.
    static CString GetRandomName();

private:
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
