#pragma once

/// @file What a folder and its subfolders hold.

#include "qvcommon/framework/Collections.h"
#include "qvcommon/framework/FileFind.h"
#include "qvcommon/framework/FtpFileFind.h"
#include "qvcommon/framework/Time.h"

namespace qv {
class FolderListing;
class FoundFolder;
class ListingsAhead;
struct SearchRules;
}  // namespace qv

#pragma push_macro("GetFileTitle")  // a system header's macro; the class declares each of its expansions
#undef GetFileTitle

/// The record of an entry that was found, and the folder in which. A value: it outlives the search. The entries of one
/// folder share their memory, which is freed with the last of them.
class QVCOMMON_API CFoundInfo {
public:
    /// No record: every test is false, every name empty (so the path is "\\" and the URL "file://\\"), every size 0.
    CFoundInfo() = default;
    /// Copies the record; null gives none. The system's own WIN32_FIND_DATAA will do.
    CFoundInfo(const QvFindData* record, const char* root);
    /// The same for another type of that layout.
    template <class T>
    requires requires(const T& data) { data.dwFileAttributes, data.ftCreationTime, data.cAlternateFileName; }
    CFoundInfo(const T* record, const char* root) : CFoundInfo(reinterpret_cast<const QvFindData*>(record), root) {
        static_assert(sizeof(T) >= sizeof(QvFindData));
    }
    /// Copies the record; null gives none.
    CFoundInfo(const qv::FoundRecord* record, const CString& root);
    /// Shares what a walk has found in a folder; for the library's own use.
    CFoundInfo(std::shared_ptr<const qv::FoundFolder> folder, std::size_t index)
        : m_folder(std::move(folder)), m_index(index) {}

    /// Each: whether the attribute of that name is set; FileFind.h says which of them Linux has.
    bool IsReadOnly() const { return MatchesMask(0x01); }
    bool IsHidden() const { return MatchesMask(0x02); }
    bool IsSystem() const { return MatchesMask(0x04); }
    bool IsDirectory() const { return MatchesMask(0x10); }
    bool IsArchived() const { return MatchesMask(0x20); }
    bool IsNormal() const { return MatchesMask(0x80); }
    bool IsTemporary() const { return MatchesMask(0x100); }
    bool IsCompressed() const { return MatchesMask(0x800); }
    /// Whether any of these attribute bits is set.
    bool MatchesMask(DWORD mask) const;
    /// A folder called "." or "..".
    bool IsDots() const;
    /// A link, to a file or folder.
    bool IsLink() const;

    /// The name with its extension.
    CString GetFileName() const;
    /// The root and the name, with a "\" between them unless the root ends in a separator of either kind.
    CString GetFilePath() const;
    /// The name without its extension, at most 255 bytes.
    CString GetFileTitle() const;
    CString GetFileTitleA() const { return GetFileTitle(); }
    CString GetFileTitleW() const { return GetFileTitle(); }
    /// "file://" and GetFilePath as it stands: backslashes stay.
    CString GetFileURL() const;
    /// The low 32 bits of the size in bytes, and all of it.
    DWORD GetLength() const;
    std::uint64_t GetLength64() const;

    /// Each: False, and `time` unchanged, without a record. 0, or 1970, for a time that the file system does not keep.
    bool GetCreationTime(QvFileTime* time) const { return GetTime(Time::Creation, time); }
    bool GetCreationTime(CTime& time) const { return GetTime(Time::Creation, time); }
    bool GetLastAccessTime(QvFileTime* time) const { return GetTime(Time::LastAccess, time); }
    bool GetLastAccessTime(CTime& time) const { return GetTime(Time::LastAccess, time); }
    bool GetLastWriteTime(QvFileTime* time) const { return GetTime(Time::LastWrite, time); }
    bool GetLastWriteTime(CTime& time) const { return GetTime(Time::LastWrite, time); }

private:
    enum class Time { Creation, LastAccess, LastWrite };

    bool HasRecord() const;
    bool GetTime(Time which, QvFileTime* time) const;
    bool GetTime(Time which, CTime& time) const;

    std::shared_ptr<const qv::FoundFolder> m_folder;
    std::size_t m_index = 0;
};

#pragma pop_macro("GetFileTitle")

/// Searches whose current entry can be kept.
class QVCOMMON_API CQvFileFind : public CFileFind {
public:
    /// The current entry, for as long as the copy lives.
    CFoundInfo GetFoundInfo() const { return {GetRecord(), GetRoot()}; }
};

/// The same on an FTP server.
class QVCOMMON_API CQvFtpFileFind : public CFtpFileFind {
public:
    using CFtpFileFind::CFtpFileFind;
    /// The current entry, for as long as the copy lives.
    CFoundInfo GetFoundInfo() const { return {GetRecord(), GetRoot()}; }
};

/// Lists the entries of a folder that match a mask, through its subfolders too if asked to.
///
///     FileFinder finder;
///     finder.SetSearchPath("C:\\Work");
///     finder.SetSearchMask("*.txt");
///     finder.SetRecurse(1);
///     finder.Discover();
///     for (const CString& path : finder.GetFiles()) ...
///
/// A folder's matching entries come before those of its subfolders, both in the order of the system; on Linux that is by
/// name without regard to case. The mask holds for folders too, but every subfolder is searched, whatever its name. A link
/// to a folder is listed like a folder and never entered. A folder that cannot be searched adds nothing and
/// is reported to the observer of SetLeftOut.
///
/// One object, one thread: the arrays of paths are made when they are asked for. Discover reads folders ahead of their turn
/// on threads of its own, so a folder that changes during the walk is listed as it was then; observers and overridden
/// members are called on the thread of Discover only.
class QVCOMMON_API FileFinder : public CObject {
public:
    /// 0, as at first, lists files only, 1 folders only, any other value both.
    virtual void SetIncludeDirectories(int mode);
    /// Adds the final "\" where it is missing.
    virtual void SetSearchPath(const char* path);
    /// Empty at first, which matches nothing. Replaces the masks of SetSearchMasks.
    virtual void SetSearchMask(const char* mask);
    /// Non-zero: subfolders are searched too. Zero at first.
    virtual void SetRecurse(int recurse);

protected:
    /// Adds what one folder holds, and its subfolders by calling itself. `offset` is the folder's path from the search
    /// path, empty for that itself. The subfolders get the depths `depth`, `depth` + 1 and so on, in turn.
    virtual void Discover(const CString& path, const CString& offset, int depth);

public:
    /// Empties the arrays and searches.
    virtual void Discover();

    /// Each: Four arrays with the same indexes: absolute path, path from the search path, depth and record of each
    /// entry.
    virtual const CStringArray& GetFiles() const;
    virtual const CStringArray& GetFileOffsets() const;
    /// 0 for entries of the search path. The first subfolder of a folder has that folder's own depth, each further one
    /// 1 more than the one before: numbers to tell siblings apart, not levels.
    virtual const CUIntArray& GetOffsetDepths() const;
    /// The records of the entries, with the same indexes.
    virtual const CArray<CFoundInfo>& GetFoundInfo() const;

    /// Each: Called before and after the entries of each folder, not once a walk, and with the title of each entry met,
    /// listed or not. They do nothing here. An exception raised in them leaves Discover at once; what was found stays.
    virtual void StartProgress();
    virtual void UpdateProgress(const char* title);
    virtual void StopProgress();

    /// The observer, not owned and null by default, of folders that cannot be searched and of entries that vanish during the
    /// walk.
    void SetLeftOut(ILeftOut* observer);
    /// Lists names that match any of the masks, in place of a single one.
    void SetSearchMasks(const CStringArray& masks);
    /// Non-zero: Discover asks the system for names and kinds alone, which takes a fraction of the time on Linux. What else a
    /// CFoundInfo has is asked for, by any thread, when it is read for the first time, and is 0 for an entry that cannot be
    /// found then. 0, as at first: records are of the moment of Discover. Windows gives all of it at once.
    void SetRecordsOnDemand(int onDemand);
    /// Names that match any of these masks are not listed, and folders among them not entered. None at first.
    void SetExcludedMasks(const CStringArray& masks);

private:
    /// What was found in one folder.
    struct Part {
        std::shared_ptr<qv::FoundFolder> folder;
        CString offset;
        UINT depth = 0;
        std::size_t first = 0;  ///< the index of its first entry
    };

    void Keep(const qv::FolderListing& listing, const CString& offset, int depth);
    void TellLeftOut(const qv::FolderListing& listing) const;
    int ExpectAll(const CString& path, const CStringArray& subfolders, int current, int expected) const;
    qv::FolderListing ListingOf(const CString& path, bool isOutermost) const;
    qv::SearchRules& ChangeRules();
    std::size_t Count() const;
    template <class Array, class Make>
    const Array& Filled(Array& array, Make make) const;

    CString m_path;
    std::shared_ptr<const qv::SearchRules> m_rules;  // null as long as all are those of a new object
    std::vector<Part> m_parts;
    mutable CUIntArray m_depths;  // these are filled when they are asked for
    mutable CStringArray m_offsets;
    mutable CStringArray m_files;
    mutable CArray<CFoundInfo> m_foundInfo;
    qv::ListingsAhead* m_ahead = nullptr;  // during Discover
    ILeftOut* m_leftOut = nullptr;
};
