#pragma once

/// @file Everyday file work. All members are static and free of state. Paths may use "\" on every system, and those that
/// members give back do: the library's form. GetLibraryPath and GetNativePath lead from the system's own form and back.

#include "qvcommon/framework/Collections.h"
#include "qvcommon/framework/LeftOut.h"

/// Hears of shell operations where the system has no progress window of its own.
class QVCOMMON_API IShellProgress {
public:
    virtual ~IShellProgress() = default;
    /// Before each file and folder. @param title  the caller's, null when it gave none. @return false to stop.
    virtual bool OnEntry(const char* title, const char* path) = 0;
};

/// Operations on paths, files and folders. All members are free of state.
class QVCOMMON_API CFileUtils {
public:
    CFileUtils() = default;
    virtual ~CFileUtils() = default;

    // Paths as texts: no file is touched and nothing fails (files/FilePaths.cpp)

    /// Adds a final "\" where it is missing; the empty text stays empty. A final "/" does not count.
    static CString TerminateDir(const char* path);
    /// Removes one final "\".
    static CString UnterminateDir(const char* path);
    /// What follows the last "\"; the whole text when there is none.
    static CString GetFilenameFromPath(const CString& path);
    /// What goes up to and including the last "\"; empty when there is none.
    static CString GetDirectoryFromPath(const CString& path);
    /// Without the characters \ / : * ? " < > | and without white space at both ends.
    static CString StripInvalidFilenameChars(const char* text);
    /// "file://" and the name with "/" for "\"; nothing is escaped. With a drive letter the URL has two slashes only.
    static CString FileNameToFileUrl(const char* name);
    /// The name of a URL: percent signs undone, "file:///" in any case taken away, "\" for "/". A URL with two slashes only keeps its
    /// "file:", so this is not the way back from FileNameToFileUrl.
    static CString FileUrlToFileName(const char* url);
    /// The form in which the system itself takes a path: on Linux "/" for every "\", and "\" for every U+F05C. For showing
    /// a path, and for the system's own calls.
    static CString GetNativePath(const char* path);
    /// The way back, for paths from outside: arguments, the environment, dialogs, other libraries. Only a path in this form
    /// may be split at its "\". "\" for every "/"; on Linux a name's own "\" becomes the character U+F05C (EF 81 9C in any
    /// code page), and one that is U+F05C or U+F025 already gets a U+F025 before it, so that GetNativePath gives the same
    /// bytes again.
    static CString GetLibraryPath(const char* nativePath);

    /// The kind of the file system on which a path lies, by the system's own name: "ext4", "fuse.sshfs", "NTFS". Empty
    /// where the path does not exist or the system does not tell.
    static CString GetFileSystem(const char* path);

    // Tests and queries: absence shows in the result, nothing is raised (files/FileUtils.cpp)

    /// True for a file, a folder and the root of a volume.
    static bool IsExist(const char* path);
    /// True for the root of a volume, with or without its final "\"; on Linux for "/" and a folder on which a file
    /// system is mounted.
    static bool IsVolume(const char* path);
    /// True for a folder, and for a link to one.
    static bool IsDirectory(const char* path);
    /// Takes the read-only attribute away. True when that is done or nothing of that name exists; false when the system
    /// refused. Never raises.
    static bool MakeWritable(const char* path);
    /// In bytes, 2147483647 for any larger file; -1 when there is none.
    static std::int32_t GetFilesize(const char* path);
    /// Non-zero when something matches the wild cards of the last part; "folder\*.*" finds "." in an empty folder too.
    static int HasMatching(const char* pattern);
    /// The short (8.3) form; the path as it is where there is none, always on Linux.
    static CString GetShortPath(const char* path);
    /// The short form in capital letters.
    static CString GetUppercaseShortPath(const char* path);
    /// Non-zero for a text that begins like "C:\" or "\\server\".
    static int MatchesPathFormat(const char* path);

    // Dates (files/FileDates.cpp)

    /// When the first entry that matches was last written, as local time in the form of COleDateTime::Format; empty when
    /// nothing matches.
    static CString GetDateModified(const char* pattern, const char* format);
    /// The same as "May 05 2004, 14:03:07".
    static CString GetDateModified(const char* pattern);
    /// The same by CTimeHelper::FileTimeToUnixTime. Zero, and `time` unchanged, when nothing matches or 32 bits do not hold
    /// the time (before 1902, after January 2038).
    static int GetDateModified(const char* pattern, LONG& time);

    /// The name of the matching subfolder that was created last, and when, as "May 05 2004, 14:03:07". Both are left alone
    /// when there is none.
    static void FindLastestSubdir(const char* pattern, CString& name, CString& date);
    /// The name of the matching subfolder that carries the highest number: what follows from its first digit on,
    /// without any point but the first, so "v1.2.3" counts 1.23 and "2.10" counts 2.1. Of equal ones the first; 0
    /// without a digit. Left alone when there is none.
    static void FindLastestSubdirByName(const char* pattern, CString& name);

    // Whole files (files/WholeFiles.cpp)
    //
    // They wait, as CMultiUserFile::Open does, while another opener's share mode is in the way, unless a flag says
    // otherwise.

    /// All bytes of a file; empty when it cannot be opened or read to its end, or is 2 GB or longer. Its length is what the
    /// system tells before it is opened, so devices and pipes count as empty. Raises nothing but std::bad_alloc.
    static CString ReadFile(const char* path);
    /// Its lines, without their ends (LF or CR LF). None when the file cannot be opened or read to its end.
    static void ReadFile(const char* path, CStringArray& lines);

    /// Makes the file anew with these bytes. A read-only file is made writable. With `multiUser` non-zero it waits for
    /// others; with `createDirectory` non-zero missing folders are made.
    /// @throws CFileException* with the file's name when it cannot be opened, or what was written could not be kept; in the
    /// latter case the file holds an unknown part of the text.
    static void WriteFile(const char* path, const CString& text, int multiUser, int createDirectory);
    /// The same with a line feed after each element, in text mode. When the file cannot be opened it does nothing.
    /// @throws CFileException* when what was written could not be kept.
    static void WriteFile(const char* path, const CStringArray& lines, int multiUser, int createDirectory);
    /// Saves a file whole or not at all, as CSaveFile does, and tries 9 times, like WriteFile with `multiUser`, while another
    /// opener is in the way. @throws CFileException*, after which the file is what it was.
    static void SaveFile(const char* path, const CString& text);

    /// Adds one line to a file, which is made when missing: with `stamp` non-zero the local time as "%c" writes it and
    /// a blank, then the text, then CR LF. Lines of several threads and processes that log at once are never mixed nor
    /// lost: each waits for the others, up to about 20 seconds.
    /// @return zero when the line could not be written; the file is then as it was, as far as the system lets it.
    static int Log(const char* path, const char* text, int stamp);

    /// Renames the file to the same name with the extension "bak". A backup that is there already goes. Nothing happens
    /// without a file. Read-only files are made writable first.
    /// @throws CFileException* when the file cannot be renamed (the old backup may be gone then), or has the extension "bak"
    /// itself; nothing was touched in the last case.
    static void BackupFile(const char* path);

    // Trees (files/DelTree.cpp, files/ShellOperations.cpp)

    /// Deletes all that a folder holds, read-only files too, and with `removeItself` non-zero the folder. A process whose
    /// current folder is the folder itself (by the text given) moves to the Windows directory or root first.
    ///
    /// Links are deleted, never what they lead to, and nothing outside is touched when a folder becomes a link meanwhile; a
    /// folder that is itself a link is refused, or deleted as a link with `removeItself`. A missing folder is no error; nor is
    /// a file, which stays; nor is a folder that does not go away in the end, because someone put something there.
    /// @throws CFileException* with its name for the first entry that cannot be deleted and the first folder that cannot be
    /// read; the rest stays.
    static void DelTree(const char* directory, int removeItself);
    /// The same, but what cannot be deleted or read is reported to the observer, folders that stay included, and all the rest is
    /// deleted, by several threads in a large tree. Raises what the observer raises; something of the rest may be deleted
    /// then.
    static void DelTree(const char* directory, int removeItself, ILeftOut& leftOut);

    /// Bits of the shell operations' flags. Windows knows more and gets them all.
    enum ShellFlags : unsigned short {
        shellSilent = 0x4,                 ///< no progress
        shellRenameOnCollision = 0x8,      ///< a copy whose name is taken gets another one, "Copy of a.txt"
        shellNoConfirmation = 0x10,        ///< Yes to all questions
        shellFilesOnly = 0x80,             ///< with wild cards: no folders
        shellSimpleProgress = 0x100,       ///< without names; set by itself when there is a title
        shellNoConfirmMakeFolder = 0x200,  ///< a missing target folder is made without a question
        shellNoErrorBox = 0x400,           ///< failures are not shown
        shellNoRecursion = 0x1000          ///< folders without their subfolders
    };

    /// Copies files and folders as the system's shell does; the last part of `source` may hold wild cards. An existing
    /// folder takes the sources into itself, anything else is the copy's own name.
    ///
    /// Without a shell (Linux) this library does the same: it copies trees with times and attributes, asks and tells by
    /// message boxes what the flags do not forbid (files to be replaced, folders to be made, failures), and shows its
    /// progress to the handler of SetShellProgress, in the place of a window of its own; nothing can be undone.
    /// @param title  of the progress window; null for none of its own.
    /// @return 1 when all was copied and the user stopped nothing, else 0. Paths longer than 1302 bytes give 0.
    static int ShellCopyFile(const char* source, const char* destination, unsigned short flags, HWND owner,
                             const char* title);
    /// Deletes in the same way. Folders go with all they hold; on Linux it asks before, unless told not to, and links are
    /// deleted, never followed.
    static int ShellDeleteFile(const char* path, unsigned short flags, HWND owner, const char* title);

    /// Puts a handler in force for the whole process, null for none, and returns the one before. Windows has its own
    /// progress window and never asks it. The caller keeps its life.
    static IShellProgress* SetShellProgress(IShellProgress* handler);

    /// The name that BackupFile gives a file: the path with its extension replaced by "bak", or with that added where the
    /// name has none. A path as a text: no file is touched, and nothing fails.
    static CString GetBackupName(const char* path);
};

/// Makes a folder and all that are missing above it; both separators count. Non-zero on success and when the name exists
/// already. After 0 the last system error tells why.
QVCOMMON_API int QVCOMMON_CALL QvCreateDirectory(const char* path);

/// Non-zero when the folder exists. Otherwise it tells the user by message boxes, offers to make it, and answers non-zero
/// when that was wanted and done.
QVCOMMON_API int QVCOMMON_CALL ValidateDir(const char* path);
