#pragma once

/// @file Searches of folders: the record of an entry, and CFileFind.

#include <memory>

#include "qvcommon/framework/FileTime.h"
#include "qvcommon/framework/LeftOut.h"
#include "qvcommon/framework/String.h"

// System headers turn these names into others with an A behind. The classes have both, so headers may come in any order.
#pragma push_macro("FindNextFile")
#undef FindNextFile
#pragma push_macro("GetFileTitle")
#undef GetFileTitle

/// What a folder's listing tells of an entry. It has the layout of the system's WIN32_FIND_DATAA. Times that the file
/// system does not keep are 0.
///
/// On Linux the attributes are read-only (no write bit for the owner), hidden (a leading point), directory, device (also
/// pipes and sockets), and for links the reparse point, whose tag stands in dwReserved0; of a link, everything else is told
/// of what it leads to. An entry with none of them is "normal". There are no short names.
struct QvFindData {
    DWORD dwFileAttributes = 0;                                    ///< the system's bits
    QvFileTime ftCreationTime, ftLastAccessTime, ftLastWriteTime;  ///< UTC
    DWORD nFileSizeHigh = 0, nFileSizeLow = 0;                     ///< the two halves of the size in bytes
    DWORD dwReserved0 = 0, dwReserved1 = 0;                        ///< the tag of a link; nothing
    char cFileName[260] = {};                                      ///< without the folder; cut where it is longer
    char cAlternateFileName[14] = {};                              ///< the short name, empty where there is none
};

namespace qv {

/// A record, and the name that its own field is too short for.
struct FoundRecord : QvFindData {
    CString longName;  ///< empty where cFileName holds the whole name

    /// The whole name.
    CString Name() const { return longName.IsEmpty() ? CString(cFileName) : longName; }
};

/// A search under way. Entries come one after the other.
class QVCOMMON_API IFileSearch {
public:
    virtual ~IFileSearch();
    /// Writes the next entry; false when there is none.
    virtual bool Next(QvFindData& entry) = 0;
    /// The system's error that made the search leave something out; 0 when it gave all there is.
    virtual LONG GetError() const { return 0; }
    /// The name of the entry written last where the record's field cuts it; empty otherwise.
    virtual CString GetLongName() const { return {}; }
};

/// True for a link that stands for another place: what lies below it is not below the folder that was searched.
QVCOMMON_API bool QVCOMMON_CALL IsLink(const QvFindData& entry);

}  // namespace qv

/// A search of one folder. The entries are those of the moment when the system lists them, in its order; on Linux sorted by
/// name without regard to case. "." and ".." are among them.
///
///     CFileFind find;
///     for (BOOL more = find.FindFile("folder\\*.txt"); more;) {
///         more = find.FindNextFile();
///         Use(find.GetFilePath());
///     }
///
/// One object, one thread. The members that tell of an entry may be called after FindNextFile only.
class QVCOMMON_API CFileFind : public CObject {
public:
    /// For FindFile: a folder whose own name is a link is not searched.
    static constexpr DWORD refuseLinkedFolder = 1;

    CFileFind() = default;
    ~CFileFind() override;
    CFileFind(const CFileFind&) = delete;
    CFileFind& operator=(const CFileFind&) = delete;

    /// Begins a search. The last part of `pattern` may hold * and ?; null means "*.*", every name, as that does everywhere.
    /// @return zero when nothing matches or the folder cannot be read; GetError tells which.
    virtual BOOL FindFile(const char* pattern = nullptr, DWORD options = 0);
    /// Goes to the next entry. @return non-zero when another one follows.
    virtual BOOL FindNextFile();
    BOOL FindNextFileA() { return FindNextFile(); }
    BOOL FindNextFileW() { return FindNextFile(); }
    /// Ends the search.
    virtual void Close();
    /// The system's error that made the search fail or leave something out that has not vanished; 0 when it gave all there
    /// is, or has not come to its end.
    LONG GetError() const;
    /// The observer, not owned and null by default, of each entry that a search leaves out and of a folder that cannot be
    /// listed completely. Takes effect with the next search.
    void SetLeftOut(ILeftOut* observer) { m_leftOut = observer; }

    /// The name with its extension.
    virtual CString GetFileName() const;
    /// The absolute path.
    virtual CString GetFilePath() const;
    /// The name without its extension.
    virtual CString GetFileTitle() const;
    CString GetFileTitleA() const { return GetFileTitle(); }
    CString GetFileTitleW() const { return GetFileTitle(); }
    /// The absolute path of the folder, with its final separator.
    virtual CString GetRoot() const;

    /// Whether any of these attribute bits is set.
    BOOL MatchesMask(DWORD mask) const;
    /// A folder, and a link to one.
    BOOL IsDirectory() const { return MatchesMask(0x10); }
    /// A folder called "." or "..".
    BOOL IsDots() const;
    /// A link, to a file or folder.
    BOOL IsLink() const;
    /// Each: 0 where the file system keeps no such time.
    QvFileTime GetCreationTime() const;
    QvFileTime GetLastWriteTime() const;

protected:
    /// Makes `search` the one under way; null for none.
    BOOL Begin(std::unique_ptr<qv::IFileSearch> search, const CString& root);
    /// The current entry; null before the first FindNextFile. FindNextFile overwrites it.
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
