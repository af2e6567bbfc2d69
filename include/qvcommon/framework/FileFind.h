#pragma once

/// @file Searching folders: the record of an entry, and CFileFind.

#include <memory>

#include "qvcommon/framework/FileTime.h"
#include "qvcommon/framework/LeftOut.h"
#include "qvcommon/framework/String.h"

// System headers redefine these names with a trailing A. The classes have both, so headers may be included in any
// order.
#pragma push_macro("FindNextFile")
#undef FindNextFile
#pragma push_macro("GetFileTitle")
#undef GetFileTitle

/// A directory entry. It has the layout of the system's WIN32_FIND_DATAA. Times that the file system does not store are
/// 0.
///
/// On Linux the attributes are read-only (no owner write bit), hidden (a leading dot), directory, device (also pipes
/// and sockets), and for links the reparse point, with its tag in dwReserved0; the other fields of a link describe its
/// target. An entry without any of them is "normal". There are no short names.
struct QvFindData {
    DWORD dwFileAttributes = 0;                                    ///< the system's bits
    QvFileTime ftCreationTime, ftLastAccessTime, ftLastWriteTime;  ///< UTC
    DWORD nFileSizeHigh = 0, nFileSizeLow = 0;                     ///< the two halves of the size in bytes
    DWORD dwReserved0 = 0, dwReserved1 = 0;                        ///< the tag of a link; unused
    char cFileName[260] = {};                                      ///< without the folder; truncated if longer
    char cAlternateFileName[14] = {};                              ///< the short name, empty if absent
};

namespace qv {

/// A record, and the full name if its own field is too short.
struct FoundRecord : QvFindData {
    CString longName;  ///< empty if cFileName contains the whole name

    /// Returns the whole name.
    CString Name() const { return longName.IsEmpty() ? CString(cFileName) : longName; }
};

/// A running search, which returns one entry after the other.
class QVCOMMON_API IFileSearch {
public:
    virtual ~IFileSearch();
    /// Stores the next entry; returns false if none exists.
    virtual bool Next(QvFindData& entry) = 0;
    /// Returns the system error that made the search incomplete; 0 if it is complete.
    virtual LONG GetError() const { return 0; }
    /// Returns the name of the last entry if the record's field truncates it; empty otherwise.
    virtual CString GetLongName() const { return {}; }
};

/// Returns true for a link to another place: its content is not below the folder that was searched.
QVCOMMON_API bool QVCOMMON_CALL IsLink(const QvFindData& entry);

}  // namespace qv

/// A search of one folder. The entries are a snapshot taken when the system lists them, in its order; on Linux sorted
/// by name, ignoring case. "." and ".." are included.
///
///     CFileFind find;
///     for (BOOL more = find.FindFile("folder\\*.txt"); more;) {
///         more = find.FindNextFile();
///         Use(find.GetFilePath());
///     }
///
/// Not thread-safe. Members that describe an entry may be called only after FindNextFile.
class QVCOMMON_API CFileFind : public CObject {
public:
    /// For FindFile: do not search a folder whose own name is a link.
    static constexpr DWORD refuseLinkedFolder = 1;

    CFileFind() = default;
    ~CFileFind() override;
    CFileFind(const CFileFind&) = delete;
    CFileFind& operator=(const CFileFind&) = delete;

    /// Starts a search. The last part of `pattern` may contain * and ?; null means "*.*", which matches every name on
    /// every system.
    /// @return zero if nothing matches or the folder cannot be read; GetError distinguishes the two.
    virtual BOOL FindFile(const char* pattern = nullptr, DWORD options = 0);
    /// Moves to the next entry. @return non-zero if another one follows.
    virtual BOOL FindNextFile();
    BOOL FindNextFileA() { return FindNextFile(); }
    BOOL FindNextFileW() { return FindNextFile(); }
    /// Ends the search.
    virtual void Close();
    /// Returns the system error that made the search fail or leave out an entry that still exists; 0 if it is complete,
    /// or has not reached its end.
    LONG GetError() const;
    /// Sets the observer of each entry that a search leaves out and of a folder that cannot be listed completely. Not
    /// owned; null by default. Takes effect with the next search.
    void SetLeftOut(ILeftOut* observer) { m_leftOut = observer; }

    /// Returns the name with its extension.
    virtual CString GetFileName() const;
    /// Returns the absolute path.
    virtual CString GetFilePath() const;
    /// Returns the name without its extension.
    virtual CString GetFileTitle() const;
    CString GetFileTitleA() const { return GetFileTitle(); }
    CString GetFileTitleW() const { return GetFileTitle(); }
    /// Returns the absolute path of the folder, with its trailing separator.
    virtual CString GetRoot() const;

    /// Returns whether any of these attribute bits is set.
    BOOL MatchesMask(DWORD mask) const;
    /// Returns whether it is a folder, or a link to one.
    BOOL IsDirectory() const { return MatchesMask(0x10); }
    /// Returns whether it is a folder named "." or "..".
    BOOL IsDots() const;
    /// Returns whether it is a link, to a file or folder.
    BOOL IsLink() const;
    /// Each: Returns 0 if the file system does not store the time.
    QvFileTime GetCreationTime() const;
    QvFileTime GetLastWriteTime() const;

protected:
    /// Makes `search` the current one; null for none.
    BOOL Begin(std::unique_ptr<qv::IFileSearch> search, const CString& root);
    /// Returns the current entry; null before the first FindNextFile, which overwrites it.
    const qv::FoundRecord* GetRecord() const { return m_record.get(); }

private:
    bool Advance();

    std::unique_ptr<qv::IFileSearch> m_search;
    std::unique_ptr<qv::FoundRecord> m_record, m_following;
    CString m_root;
    ILeftOut* m_leftOut = nullptr;
    LONG m_error = 0;
};

#pragma pop_macro("GetFileTitle")
#pragma pop_macro("FindNextFile")
