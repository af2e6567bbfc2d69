#pragma once

/// @file Cabinet archives: the published cabinet format with MSZIP compression, and a manifest that maps the members to
/// a folder tree. docs/formats/cabinet.md describes what is written and what is read.
///
///     CMakeCab::DirectoryToCab("C:\\Work", "D:\\work.cab", 1);
///     CReadCab::CabToDirectory("C:\\Copy", "D:\\work.cab");

#include <memory>

#include "qvcommon/CabinetException.h"
#include "qvcommon/CabinetRecords.h"
#include "qvcommon/framework/Collections.h"
#include "qvcommon/framework/LeftOut.h"

/// Creates an archive: set name and folder, then CreateNewCab, add files, Commit.
///
/// Data is compressed on all cores; the output does not depend on their number. Uncommitted data is kept in a temporary
/// file beside the archive. An archive that grows beyond GetMediaSize, or 65535 members, continues in "NAME1.cab",
/// "NAME2.cab" and so on. Memory use stays below 32 MB, not counting the names of the members. Not thread-safe.
///
/// A new archive has the permissions of a new file (on Linux 0666 less the umask), even if it replaces one: the old
/// file's permissions, owner and access list are not kept.
///
/// Every failure of the engine ends the archive, deletes a partly written cabinet, and raises a CCabinetException* with
/// severity 16, the number and text of GetFciErrorString; it names the archive, the file that was being added, and the
/// system's error. Exceptions raised by overridden members are passed to the caller and end the archive too. Below,
/// CVorbexException* means this one.
class QVCOMMON_API CMakeCab : public CObject {
public:
    CMakeCab();
    /// Discards an archive that was not committed.
    ~CMakeCab() override;
    CMakeCab(const CMakeCab&) = delete;
    CMakeCab& operator=(const CMakeCab&) = delete;

    /// The archive's name, without the extension.
    virtual void SetName(const char* name);
    /// Sets the archive's folder; a missing trailing "\" is added.
    virtual void SetDestPath(const char* path);
    /// Returns the name as passed to SetName.
    virtual CString GetName() const;
    /// Returns the folder as passed to SetDestPath, with its trailing "\".
    virtual CString GetDestPath() const;

    /// Starts an archive; an uncommitted one is discarded. No file with the archive's own name is touched before
    /// Commit, unless the archive grows into a set. @throws CVorbexException*; number 7 if GetNextCab returns 0.
    virtual void CreateNewCab();
    /// Adds the list as a member named "CabMan", six capital letters and ".xml": a "MANIFEST" of "ITEM"s, one per line.
    /// The list is briefly stored under that name in the system's temporary folder; such files older than a day, left
    /// by programs that were killed, are deleted there. On Linux SIGHUP, SIGINT, SIGQUIT and SIGTERM are blocked in the
    /// calling thread until that file is deleted.
    /// @throws CVorbexException*, and CFileException* if the temporary file cannot be written or its folder is missing.
    virtual void AddManifest(const CStringArray& entries);
    /// Adds a file under its name without the folder. Non-ASCII names are stored in UTF-8 and marked so. The file's
    /// time is stored as local time with a resolution of two seconds, clamped to 1980 to 2107. On Linux every file has
    /// the archive attribute, as a new file has on Windows, so that both systems store the same. Owner, group, access
    /// lists and the executable bit are not stored. A name longer than 255 bytes in UTF-8 is truncated; the manifest
    /// keeps the full name.
    /// @throws CVorbexException*; also (number 8) for a file of 2147450881 bytes or more.
    virtual void AddFile(const char* path);
    /// Starts a new folder: files added later are compressed separately from earlier ones. @throws CVorbexException*
    virtual void AddFolder();
    /// Completes the archive on disk. @throws CVorbexException*
    virtual void Commit();

    /// Called for every member that is written to a cabinet; `continued`: it starts in the previous cabinet. Returning
    /// -1 aborts (number 7). The default accepts everything.
    virtual int FilePlaced(const QvCabinetDescription& cabinet, const char* name, DWORD size, BOOL continued);
    /// Called to report progress. Type 0: a block was compressed; its compressed and its original size. 1: bytes
    /// written to the cabinet so far, and the total. 2: a cabinet is complete; its size, twice. Returning -1 aborts
    /// (number 7). The default accepts everything.
    virtual long Status(UINT type, DWORD first, DWORD second);
    /// Names the first or the next cabinet of a set: "%s.cab" or, unless its number is 0, "%s%d.cab". An override may
    /// also change sizes and reserves; a `dataReserve` other than that of the first cabinet is refused (number 6).
    /// Returning 0 aborts (number 7).
    virtual BOOL GetNextCab(QvCabinetDescription& cabinet, DWORD previousSize);

protected:
    /// Each: The maximum size in bytes of a cabinet, and of a folder before the next file starts a new one: 2147483647.
    virtual DWORD GetMediaSize() const;
    virtual DWORD GetFolderThreshold() const;
    /// Returns the text of the engine's error 0 to 8; "Unknown error" for others.
    virtual CString GetFciErrorString(int error) const;

public:
    /// Packs a folder; if `recurse` is non-zero, with all its subfolders. The archive is created in the folder of
    /// `cabinet`, with its name and the extension "cab" regardless of the given extension. Its first member is the
    /// manifest, in which an entry is "*ROOT*" and the relative path, with a trailing "\" for a folder; the files
    /// follow in that order. Links to folders are stored as empty folders; devices, pipes and folders that cannot be
    /// listed are left out.
    /// @throws as AddManifest and AddFile; CFileException* with badPath if the folder does not exist, if `cabinet`
    /// names no file or is too long for the system, and for an entry whose name contains "*ROOT*".
    static void DirectoryToCab(const char* folder, const char* cabinet, int recurse);
    /// Does the same with this object, so that overridden members are called. Sets name and destination folder.
    void Pack(const char* folder, const char* cabinet, int recurse);
    /// Sets the observer of what Pack leaves out; not owned, must outlive its use, null by default. With an observer,
    /// Pack also leaves out files that cannot be opened instead of failing, and reports links to folders. A file that
    /// vanishes or becomes unreadable while others are packed still ends the archive.
    void SetLeftOut(ILeftOut* observer);

private:
    class Context;

    template <class Action>
    void Run(Action action);
    void Check(bool succeeded);

    CString m_destPath;
    CString m_name;
    std::unique_ptr<Context> m_context;
    QvCabinetError m_error;
    ILeftOut* m_leftOut = nullptr;
};

/// Limits of extraction. Cabinets that exceed them are rejected as corrupt before anything beyond them is written.
struct QvCabinetLimits {
    std::uint64_t members = 1'000'000;                  ///< maximum number of members
    std::uint64_t totalSize = std::uint64_t{64} << 30;  ///< maximum bytes of all members
    /// Maximum ratio of the size of all members to that of all cabinets of the set, which are opened early if the ratio
    /// depends on their sizes. Compression alone does not exceed 4096: each 32 KB of data have a header of 8 bytes.
    std::uint64_t expansion = 4096;
};

/// Extracts an archive and the cabinets that continue it: stored, MSZIP and LZX data. Members compressed with Quantum
/// are skipped; after all others are extracted, this is reported as a failure (number 6) that names the first one and
/// counts the rest.
///
/// Safety: members are never written outside the target folder. That is the destination folder; without one, each
/// substitution's target that ends in a separator (as later substitutions leave it); without those the current folder.
/// A member or manifest entry that is absolute, has a drive, contains "..", or has names that the system would
/// interpret as something else (on Windows devices, streams, trailing dots and blanks) is rejected, and extraction
/// fails with number 4. Links in the target folder are never followed; a link in a member's place is replaced.
///
/// A member is written under a temporary name (".qv" and digits) beside its destination, and renamed when it is
/// complete, replacing read-only files too; missing folders are created. A failed extraction keeps the members before
/// the failure. Members get the permissions of new files (on Linux 0666 less the umask); owner and executable bit are
/// not restored.
///
/// Failures raise a CCabinetException* with severity 16, the number and text of GetFdiErrorString; it names the
/// archive, the member and the system's error. Exceptions raised by overridden members are passed to the caller. Below,
/// CVorbexException* means this one. Not thread-safe.
class QVCOMMON_API CReadCab {
public:
    CReadCab();
    virtual ~CReadCab();
    CReadCab(const CReadCab&) = delete;
    CReadCab& operator=(const CReadCab&) = delete;

    /// Extracts every member: under its own name (which may contain folders) to the destination folder, or, with the
    /// manifest, to the path given there. @throws CVorbexException*
    ///
    /// The manifest is the first member. If it cannot be read, is longer than 32 MB, or lists fewer files than there
    /// are members after it, the error is number 4. Surplus entries are ignored. With the manifest, the members of each
    /// folder must cover its data without gaps, as CMakeCab stores them: otherwise number 4.
    ///
    /// The manifest is briefly stored in a temporary file; on Linux SIGHUP, SIGINT, SIGQUIT and SIGTERM are blocked in the
    /// calling thread until that file is deleted. @throws CFileException* if it cannot be written or its folder is missing.
    ///
    /// The cabinets that continue this one are searched for in its folder, ignoring the case of their names. If the
    /// cabinet is not the first of its set, members that begin in an earlier one are skipped: use FindFirstCabinet to
    /// extract all of them.
    virtual void ReadCab(const char* path);
    /// Returns non-zero if the file is a cabinet, and stores its header in `info`. Raises nothing.
    virtual int GetCabInfo(const char* path, QvCabinetInfo& info);
    /// Closes the engine and the cabinet that it reads. ReadCab calls it when it ends, also after a failure. Raises
    /// nothing. The members below Notify must call neither this nor ReadCab of the same object; they return -1 to stop.
    virtual void CloseHfdi();
    /// A missing trailing "\" is added.
    virtual void SetDestPath(const char* path);
    virtual CString GetDestPath() const;
    /// Non-zero: members are extracted to the paths in the manifest. Zero (the default): under their own names.
    virtual void UseManifest(int use);
    /// Replaces every `source` in a manifest entry by `target`; pairs are applied in the order in which they were
    /// added.
    virtual void AddSubstitution(const char* source, const char* target);
    /// Dispatches the engine's notifications to the members below; returns 0 for unknown types. Names of members are in
    /// the process's code page here where the cabinet marks them as UTF-8; characters that it lacks become "_".
    virtual int Notify(int type, QvCabinetNotification& notification);

protected:
    /// A cabinet of the set was opened (QvCabinetNotification::cabinetInfo). Returns 0; an override may return -1 to
    /// abort.
    virtual int NotifyCabinetInfo(QvCabinetNotification& notification);
    /// A member that begins in an earlier cabinet is skipped (partialFile). Returns 0; an override may return -1 to
    /// abort.
    virtual int NotifyPartialFile(QvCabinetNotification& notification);
    /// Opens a member's target and returns its handle, or -1, which ends the extraction with number 11.
    virtual int NotifyCopyFile(QvCabinetNotification& notification);
    /// Completes the member. Sets time and attributes of the file with the member's own name in the destination folder;
    /// not of members that the manifest redirected elsewhere.
    virtual int NotifyCloseFileInfo(QvCabinetNotification& notification);
    /// The next cabinet of the set is needed (nextCabinet). Returns 0 to have it opened as the record now says: an
    /// override may first ask the user, and change `path` or `name`. If that fails, it is called again with `error`
    /// set, as long as these change; -1 aborts. Returns 0 here.
    virtual int NotifyNextCabinet(QvCabinetNotification& notification);
    /// All members of a cabinet were processed (enumerate). Returns 0; an override may return -1 to abort.
    virtual int NotifyEnumerate(QvCabinetNotification& notification);
    /// Called before every member.
    virtual void NotifyChangeFolder(QvCabinetNotification& notification);
    /// Called after every member. After the first one it reads the manifest, if used, and creates its folders.
    virtual void NotifyCopyComplete(QvCabinetNotification& notification);
    /// @throws CVorbexException*
    virtual void OpenHfdi();
    /// Returns the text of the engine's error 0 to 11; "Unknown error" for others.
    virtual CString GetFdiErrorString(int error) const;

public:
    /// Returns the limits; by default those of a new QvCabinetLimits.
    const QvCabinetLimits& GetLimits() const;
    /// May also be called between two cabinets.
    void SetLimits(const QvCabinetLimits& limits);
    /// Sets the observer of each member that is skipped because of its compression, and of each file that the manifest
    /// names and the archive does not contain. Not owned; null by default.
    void SetLeftOut(ILeftOut* observer);
    /// Non-zero: members extracted by the manifest get their times and attributes, too. Zero by default.
    void SetRestoreTimes(int restore);
    /// Non-zero: members are enumerated and their targets determined and checked, but no folder or file is created,
    /// except a temporary file for the manifest. The data of other members is not read. Zero by default.
    void SetDryRun(int dryRun);

    /// Unpacks an archive written by CMakeCab::DirectoryToCab, given any cabinet of the set. Creates the folder if
    /// missing.
    /// @throws as ReadCab and FindFirstCabinet.
    static void CabToDirectory(const char* folder, const char* cabinet);
    /// Does the same with this object, so that overridden members are called. Adds the substitution for "*ROOT*", in
    /// place of an earlier one, and enables the manifest.
    void Unpack(const char* folder, const char* cabinet);

    /// Returns the path of the first cabinet of a cabinet's set: the path itself if it is the first. The others are
    /// searched for in the same folder, ignoring case. @throws CVorbexException*, number 1 with the name of the missing
    /// one, 10 if a cabinet of that name belongs to another set, 2 to 5 as ReadCab.
    static CString FindFirstCabinet(const char* cabinet);
    /// Returns non-zero if the name of the cabinet's first member is that of a manifest. Raises nothing.
    static int HasManifest(const char* cabinet);

protected:
    /// Called after `bytes` more of a member were written to its file, some dozens of KB at a time. The default does
    /// nothing.
    virtual void NotifyWritten(DWORD bytes);
    /// Returns the path to which the current member is written, in the library's form: valid from NotifyCopyFile of
    /// this class until the member is complete. Empty for the manifest and outside of an extraction.
    CString GetTargetPath() const;

private:
    class Context;
    struct Target;

    CString Substituted(CString entry, int first) const;
    CStringArray Roots() const;
    bool FindTarget(const CString& path, Target& target) const;
    int OpenManifest();
    void LoadManifest();
    void Tell(const CString& path, const CString& reason) const;
    void TellOfMissingMembers() const;
    [[noreturn]] void Fail(int error);

    int m_lastFolder = -1;
    BOOL m_useManifest = 0;
    CStringArray m_manifest;
    BOOL m_manifestLoaded = 0;
    int m_nextManifest = 0;
    CStringArray m_sources;
    CStringArray m_targets;
    std::unique_ptr<Context> m_context;
    QvCabinetError m_error;
    CString m_destPath;
    QvCabinetLimits m_limits;
    BOOL m_restoreTimes = 0;
    BOOL m_dryRun = 0;
    ILeftOut* m_leftOut = nullptr;
};
