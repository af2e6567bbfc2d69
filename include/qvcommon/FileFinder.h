#pragma once

/// @file Listing a folder and its subfolders.

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

/// A directory entry that was found, and its folder. A value type that outlives the search. The entries of one folder
/// share their memory, which is freed with the last of them.
class QVCOMMON_API CFoundInfo {
public:
    /// An empty record: every test is false, every name empty (so the path is "\\" and the URL "file://\\"), every size
    /// 0.
    CFoundInfo() = default;
    /// Copies the record; null gives an empty one. Also accepts the system's WIN32_FIND_DATAA.
    CFoundInfo(const QvFindData* record, const char* root);
    /// Accepts other types of the same layout.
    template <class T>
    requires requires(const T& data) { data.dwFileAttributes, data.ftCreationTime, data.cAlternateFileName; }
    CFoundInfo(const T* record, const char* root) : CFoundInfo(reinterpret_cast<const QvFindData*>(record), root) {
        static_assert(sizeof(T) >= sizeof(QvFindData));
    }
    /// Copies the record; null gives an empty one.
    CFoundInfo(const qv::FoundRecord* record, const CString& root);
    /// Shares the result of a walk; for internal use.
    CFoundInfo(std::shared_ptr<const qv::FoundFolder> folder, std::size_t index)
        : m_folder(std::move(folder)), m_index(index) {}

    /// Each: Returns whether the attribute of that name is set; FileFind.h lists those available on Linux.
    bool IsReadOnly() const { return MatchesMask(0x01); }
    bool IsHidden() const { return MatchesMask(0x02); }
    bool IsSystem() const { return MatchesMask(0x04); }
    bool IsDirectory() const { return MatchesMask(0x10); }
    bool IsArchived() const { return MatchesMask(0x20); }
    bool IsNormal() const { return MatchesMask(0x80); }
    bool IsTemporary() const { return MatchesMask(0x100); }
    bool IsCompressed() const { return MatchesMask(0x800); }
    /// Returns whether any of these attribute bits is set.
    bool MatchesMask(DWORD mask) const;
    /// Returns whether it is a folder named "." or "..".
    bool IsDots() const;
    /// Returns whether it is a link, to a file or folder.
    bool IsLink() const;

    /// Returns the name with its extension.
    CString GetFileName() const;
    /// Returns the root and the name, separated by a "\" unless the root ends in a separator of either kind.
    CString GetFilePath() const;
    /// Returns the name without its extension, at most 255 bytes.
    CString GetFileTitle() const;
    CString GetFileTitleA() const { return GetFileTitle(); }
    CString GetFileTitleW() const { return GetFileTitle(); }
    /// Returns "file://" and GetFilePath unchanged: backslashes are kept.
    CString GetFileURL() const;
    /// Returns the low 32 bits of the size in bytes, and the whole size.
    DWORD GetLength() const;
    std::uint64_t GetLength64() const;

    /// Each: Returns false and leaves `time` unchanged without a record. The time is 0, or 1970, if the file system
    /// does not store it.
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

/// A search whose current entry can be copied.
class QVCOMMON_API CQvFileFind : public CFileFind {
public:
    /// Returns a copy of the current entry.
    CFoundInfo GetFoundInfo() const { return {GetRecord(), GetRoot()}; }
};

/// The same for an FTP server.
class QVCOMMON_API CQvFtpFileFind : public CFtpFileFind {
public:
    using CFtpFileFind::CFtpFileFind;
    /// Returns a copy of the current entry.
    CFoundInfo GetFoundInfo() const { return {GetRecord(), GetRoot()}; }
};

/// Lists the entries of a folder that match a mask, optionally including its subfolders.
///
///     FileFinder finder;
///     finder.SetSearchPath("C:\\Work");
///     finder.SetSearchMask("*.txt");
///     finder.SetRecurse(1);
///     finder.Discover();
///     for (const CString& path : finder.GetFiles()) ...
///
/// A folder's matching entries precede those of its subfolders, both in the order of the system; on Linux they are
/// sorted by name, ignoring case. The mask also applies to folders, but every subfolder is searched regardless of its
/// name. A link to a folder is listed like a folder and never followed. A folder that cannot be searched adds nothing
/// and is reported to the observer of SetLeftOut.
///
/// Not thread-safe: the arrays of paths are created on demand. Discover reads folders ahead on background threads, so a
/// folder that changes during the walk is listed as it was then; observers and overridden members are called only on
/// the thread of Discover.
class QVCOMMON_API FileFinder : public CObject {
public:
    /// 0 (the default) lists files only, 1 folders only, any other value both.
    virtual void SetIncludeDirectories(int mode);
    /// Sets the folder; a missing trailing "\" is added.
    virtual void SetSearchPath(const char* path);
    /// Sets the mask; empty by default, which matches nothing. Replaces the masks of SetSearchMasks.
    virtual void SetSearchMask(const char* mask);
    /// Non-zero: subfolders are searched too. Zero by default.
    virtual void SetRecurse(int recurse);

protected:
    /// Adds the entries of one folder, and recurses into its subfolders. `offset` is the folder's path relative to the
    /// search path, empty for the search path itself. The subfolders get the depths `depth`, `depth` + 1 and so on.
    virtual void Discover(const CString& path, const CString& offset, int depth);

public:
    /// Clears the arrays and searches.
    virtual void Discover();

    /// Each: Arrays with the same indexes: absolute path, path relative to the search path, depth and record of each
    /// entry.
    virtual const CStringArray& GetFiles() const;
    virtual const CStringArray& GetFileOffsets() const;
    /// The depth is 0 for entries of the search path. The first subfolder of a folder has that folder's own depth, each
    /// further one 1 more than the previous one: numbers that distinguish siblings, not levels.
    virtual const CUIntArray& GetOffsetDepths() const;
    /// Returns the records of the entries, with the same indexes.
    virtual const CArray<CFoundInfo>& GetFoundInfo() const;

    /// Each: Called before and after the entries of each folder, not once per walk, and with the title of each entry
    /// seen, listed or not. The default does nothing. An exception raised in them leaves Discover at once; what was
    /// found is kept.
    virtual void StartProgress();
    virtual void UpdateProgress(const char* title);
    virtual void StopProgress();

    /// Sets the observer of folders that cannot be searched and of entries that vanish during the walk. Not owned; null
    /// by default.
    void SetLeftOut(ILeftOut* observer);
    /// Lists names that match any of the masks, instead of a single one.
    void SetSearchMasks(const CStringArray& masks);
    /// Non-zero: Discover queries only names and kinds, which is several times faster on Linux. The other fields of a
    /// CFoundInfo are queried when they are first read, on the reading thread, and are 0 for an entry that no longer
    /// exists. 0 (the default): records reflect the time of Discover. Windows provides all fields at once.
    void SetRecordsOnDemand(int onDemand);
    /// Excludes names that match any of these masks; folders among them are not searched. None by default.
    void SetExcludedMasks(const CStringArray& masks);

private:
    /// The entries found in one folder.
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
    std::shared_ptr<const qv::SearchRules> m_rules;  // null while all rules are the defaults
    std::vector<Part> m_parts;
    mutable CUIntArray m_depths;  // these are filled on demand
    mutable CStringArray m_offsets;
    mutable CStringArray m_files;
    mutable CArray<CFoundInfo> m_foundInfo;
    qv::ListingsAhead* m_ahead = nullptr;  // during Discover
    ILeftOut* m_leftOut = nullptr;
};
