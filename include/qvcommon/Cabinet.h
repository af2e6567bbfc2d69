#pragma once

/// @file Cabinet archives: the published cabinet format with MSZIP compression, and a manifest that maps the members
/// back to a folder tree. docs/formats/cabinet.md describes what is written and what is read.
///
///     CMakeCab::DirectoryToCab("C:\\Work", "D:\\work.cab", 1);
///     CReadCab::CabToDirectory("C:\\Copy", "D:\\work.cab");

#include <memory>

#include "qvcommon/CabinetException.h"
#include "qvcommon/CabinetRecords.h"
#include "qvcommon/TempFile.h"
#include "qvcommon/framework/Collections.h"
#include "qvcommon/framework/LeftOut.h"

/// Makes an archive: name and folder, CreateNewCab, files, Commit.
///
/// Data is compressed on all cores; the archive does not depend on their number. What is not committed waits in a temporary
/// file beside the archive. An archive that grows beyond GetMediaSize, or 65535 members, goes on in "NAME1.cab",
/// "NAME2.cab" and so on. Memory stays below 32 MB but for the names of the members; one object, one thread.
///
/// A new archive has the permissions of a new file (on Linux 0666 less the umask), also where it replaces one: it does not
/// keep the old one's permissions, owner or access list.
///
/// Every failure of the engine ends the archive, deletes a cabinet that is half written, and raises a
/// CCabinetException* with severity 16, the number of GetFciErrorString and its text; it names the archive, the file that
/// was being added, and the system's error. Exceptions that overridden members raise go through to the caller and end the
/// archive too. Below, CVorbexException* is this one.
class QVCOMMON_API CMakeCab : public CObject {
public:
    CMakeCab();
    /// Drops an archive that was not committed.
    ~CMakeCab() override;
    CMakeCab(const CMakeCab&) = delete;
    CMakeCab& operator=(const CMakeCab&) = delete;

    /// The archive's name, without the extension.
    virtual void SetName(const char* name);
    /// The archive's folder; the final "\" is added where it is missing.
    virtual void SetDestPath(const char* path);
    /// As SetName got it.
    virtual CString GetName() const;
    /// As SetDestPath got it, with its final "\".
    virtual CString GetDestPath() const;

    /// Begins an archive; one that was not committed is dropped. Nothing of the archive's own name is touched before
    /// Commit, unless it grows into a set. @throws CVorbexException*; number 7 when GetNextCab answers 0.
    virtual void CreateNewCab();
    /// Adds the list as a member called "CabMan", six capital letters and ".xml": a "MANIFEST" of "ITEM"s, one a line.
    /// The list stands for a moment in a file of that name in the system's temporary folder; such files that are more than
    /// a day old, left by programs that were killed, are deleted there. On Linux SIGHUP, SIGINT, SIGQUIT and SIGTERM are
    /// blocked in the calling thread until that file is deleted.
    /// @throws CVorbexException*, and CFileException* when the list cannot be brought into a temporary file.
    virtual void AddManifest(const CStringArray& entries);
    /// Adds a file under its bare name. Names beyond ASCII are stored in UTF-8 and marked so. Its time is stored as local
    /// time in steps of two seconds, at least 1980 and at most 2107. On Linux every file counts as one to be archived, as a
    /// new file does on Windows, so that both systems store the same. Owner, group, access lists and the executable bit are
    /// not stored. A name that has more than 255 bytes in UTF-8 is cut; the manifest keeps it whole.
    /// @throws CVorbexException*; also (number 8) for a file of 2147450881 bytes or more.
    virtual void AddFile(const char* path);
    /// Files added later are compressed apart from those before. @throws CVorbexException*
    virtual void AddFolder();
    /// Completes the archive on disk. @throws CVorbexException*
    virtual void Commit();

    /// Called for every member that is written into a cabinet; `continued`: its start lies in the cabinet before. -1 stops
    /// (number 7). Accepts everything.
    virtual int FilePlaced(const QvCabinetDescription& cabinet, const char* name, DWORD size, BOOL continued);
    /// Called as work goes on. Type 0: a block was compressed, its size afterwards and before. 1: bytes brought into the
    /// cabinet so far, and of all. 2: a cabinet is complete, its size twice. -1 stops (number 7). Accepts everything.
    virtual long Status(UINT type, DWORD first, DWORD second);
    /// Names the next cabinet of a set, or the first: "%s.cab" or, unless its number is 0, "%s%d.cab". 0 stops (number 7).
    virtual BOOL GetNextCab(QvCabinetDescription& cabinet, DWORD previousSize);

protected:
    /// Each: Bytes that a cabinet may have, and that a folder may have before the next file starts a new one:
    /// 2147483647.
    virtual DWORD GetMediaSize() const;
    virtual DWORD GetFolderThreshold() const;
    /// The text of the engine's number, 0 to 8; "Unknown error" for others.
    virtual CString GetFciErrorString(int error) const;

public:
    /// Packs a folder, with `recurse` non-zero through all its subfolders. The archive lies in the folder of `cabinet` and
    /// has its name with the extension "cab", whatever extension is given. Its first member is the manifest, in which an
    /// entry is "*ROOT*" and the relative path, with a final "\" for a folder; the files follow in that order. Links to
    /// folders are stored as empty folders; devices, pipes and folders that cannot be listed are left out.
    /// @throws as AddManifest and AddFile; CFileException* with badPath when the folder does not exist, when `cabinet`
    /// names no file or is too long for the system, and for an entry whose name holds "*ROOT*".
    static void DirectoryToCab(const char* folder, const char* cabinet, int recurse);
    /// The same by this object, so that overridden members hear of it. Sets name and destination folder.
    void Pack(const char* folder, const char* cabinet, int recurse);
    /// The observer of what Pack leaves out, not owned; null by default. With an observer Pack leaves out files that cannot
    /// be opened, too, instead of failing; links to folders are reported as well. What fails later, because it vanishes or
    /// becomes unreadable while others are packed, ends the archive. The caller keeps its life.
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

/// What extraction accepts. More is refused as a corrupt cabinet, before it is written.
struct QvCabinetLimits {
    std::uint64_t members = 1'000'000;                  ///< how many there may be
    std::uint64_t totalSize = std::uint64_t{64} << 30;  ///< bytes of all members
    /// Times that all members may be as large as the cabinets. Compression alone does not get beyond 4096: each 32 KB of
    /// data have a head of 8 bytes.
    std::uint64_t expansion = 4096;
};

/// Extracts an archive, and the cabinets that continue it: stored, MSZIP and LZX data. Members with Quantum data are passed
/// over; when all others are extracted, that is a failure (number 6) that names the first one and counts the rest.
///
/// Safety: members land in the target folder or nowhere. That is the destination folder; without one, each substitution's
/// target that ends in a separator (as later substitutions leave it); without those the current folder. A member or
/// manifest entry that is absolute, has a drive, names with "..", or names that the system would take for something else
/// (on Windows devices, streams, final points and blanks) is refused, and the extraction with it: number 4. Links in the
/// target folder are never followed; a link in a member's place is replaced.
///
/// A member is written under a temporary name (".qv" and numbers) beside its place, and takes its name when it is complete,
/// replacing a read-only file too; missing folders are made. A failed extraction leaves the members before the failure.
/// Members get the permissions of new files (on Linux 0666 less the umask); owner and executable bit do not travel.
///
/// Failures raise a CCabinetException* with severity 16, the number of GetFdiErrorString and its text; it names the
/// archive, the member and the system's error. Exceptions that overridden members raise go through to the caller. Below,
/// CVorbexException* is this one. One object, one thread.
class QVCOMMON_API CReadCab {
public:
    CReadCab();
    virtual ~CReadCab();
    CReadCab(const CReadCab&) = delete;
    CReadCab& operator=(const CReadCab&) = delete;

    /// Extracts every member: under its own name (which may have folders) in the destination folder, or, with the manifest,
    /// where the manifest says. @throws CVorbexException*
    ///
    /// The manifest is the first member. One that cannot be read, or is longer than 32 MB, and one with fewer files than
    /// there are members behind it: number 4. Entries that are left over are passed over. With the manifest, members have to
    /// be all of their folders' data, without gaps, as CMakeCab stores them: else number 4.
    ///
    /// The cabinets that continue this one are looked for beside it; their names may differ from those in the set in case.
    /// Of a cabinet that is not its set's first, members that begin in an earlier one are passed over: start with
    /// FindFirstCabinet for all of them.
    virtual void ReadCab(const char* path);
    /// Non-zero when the file is a cabinet; its head is then in `info`. Raises nothing.
    virtual int GetCabInfo(const char* path, QvCabinetInfo& info);
    /// Closes the engine and the cabinet that it reads. ReadCab calls it at its end, whatever that is. Raises nothing.
    virtual void CloseHfdi();
    /// The final "\" is added where it is missing.
    virtual void SetDestPath(const char* path);
    virtual CString GetDestPath() const;
    /// Non-zero: members go where the manifest says. Zero, as at first: they go by their own names.
    virtual void UseManifest(int use);
    /// Every `source` in a manifest's entry becomes `target`; pairs are applied in the order in which they were added.
    virtual void AddSubstitution(const char* source, const char* target);
    /// What the engine tells goes through here to the members below. Other types are answered with 0. Names of members are
    /// in the process's code page here, where the cabinet marks them as UTF-8; what that lacks is "_".
    virtual int Notify(int type, QvCabinetNotification& notification);

protected:
    /// A cabinet of the set was opened (QvCabinetNotification::cabinetInfo). Returns 0; an override may return -1 to
    /// stop.
    virtual int NotifyCabinetInfo(QvCabinetNotification& notification);
    /// A member that begins in an earlier cabinet is passed over (partialFile). Returns 0; an override may return -1 to
    /// stop.
    virtual int NotifyPartialFile(QvCabinetNotification& notification);
    /// Opens a member's target and gives its number, or -1, which ends the extraction with number 11.
    virtual int NotifyCopyFile(QvCabinetNotification& notification);
    /// Completes the member. Its time and attributes are given to the destination folder's file of its own name: to a
    /// member that the manifest led elsewhere they are not.
    virtual int NotifyCloseFileInfo(QvCabinetNotification& notification);
    /// The next cabinet of the set is needed (nextCabinet). Return 0 to have it looked for as the record now says: an
    /// override
    /// may first ask the user, and change `path` or `name`. While it is not found the call comes again, with `error`
    /// set, for as
    /// long as these change; -1 stops. Returns 0 here.
    virtual int NotifyNextCabinet(QvCabinetNotification& notification);
    /// The members of a cabinet were gone through (enumerate). Returns 0; an override may return -1 to stop.
    virtual int NotifyEnumerate(QvCabinetNotification& notification);
    /// Called before every member.
    virtual void NotifyChangeFolder(QvCabinetNotification& notification);
    /// Called after every member. After the first one it reads the manifest, if that is used, and makes its folders.
    virtual void NotifyCopyComplete(QvCabinetNotification& notification);
    /// @throws CVorbexException*
    virtual void OpenHfdi();
    /// The text of the engine's number, 0 to 11; "Unknown error" for others.
    virtual CString GetFdiErrorString(int error) const;

public:
    /// The limits in force; those of a new QvCabinetLimits at first.
    const QvCabinetLimits& GetLimits() const;
    /// Also between two cabinets.
    void SetLimits(const QvCabinetLimits& limits);
    /// The observer, not owned and null by default, of each member that is skipped because of its compression, and of each
    /// file that the manifest names and the archive does not contain.
    void SetLeftOut(ILeftOut* observer);
    /// Non-zero: with the manifest, too, members get their times and attributes. Zero at first.
    void SetRestoreTimes(int restore);
    /// Non-zero: members are found and their targets determined and checked, but no folder and no file is made; the
    /// manifest is read by way of a temporary file all the same. The data of other members is not read. Zero at first.
    void SetDryRun(int dryRun);

    /// Unpacks what CMakeCab::DirectoryToCab packed; any cabinet of a set will do. The folder is made when it is missing.
    /// @throws as ReadCab and FindFirstCabinet.
    static void CabToDirectory(const char* folder, const char* cabinet);
    /// The same by this object, so that overridden members hear of it. Adds a substitution and sets the use of the
    /// manifest.
    void Unpack(const char* folder, const char* cabinet);

    /// The path of the cabinet with which a cabinet's set begins, which is looked for in the same folder without regard to
    /// case: the path itself when nothing comes before it. @throws CVorbexException*, number 1 with the name of the one that
    /// is missing, 10 where one of that name belongs to another set, 2 to 5 as ReadCab.
    static CString FindFirstCabinet(const char* cabinet);
    /// Non-zero when the cabinet's first member is called as a manifest is. Raises nothing.
    static int HasManifest(const char* cabinet);

protected:
    /// Called when so many bytes more of a member have been written to its file, some dozens of KB at a time. Does nothing.
    virtual void NotifyWritten(DWORD bytes);
    /// The path to which the present member goes, in the library's form: after NotifyCopyFile of this class, until the
    /// member is complete. Empty for the manifest and outside of an extraction.
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
    CTempFile m_manifestFile;
    QvCabinetLimits m_limits;
    BOOL m_restoreTimes = 0;
    BOOL m_dryRun = 0;
    ILeftOut* m_leftOut = nullptr;
};
