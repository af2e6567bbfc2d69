#pragma once

/// @file File utilities. All members are static and stateless. Paths may use "\" on every system, and returned paths
/// do: the library's form. GetLibraryPath and GetNativePath convert from and to the system's form.

#include "qvcommon/framework/Collections.h"
#include "qvcommon/framework/LeftOut.h"

/// Observes shell operations on systems without a progress window of their own.
class QVCOMMON_API IShellProgress {
public:
    virtual ~IShellProgress() = default;
    /// Called before each file and folder. @param title  the caller's, null if it gave none. @return false to stop.
    virtual bool OnEntry(const char* title, const char* path) = 0;
};

/// Operations on paths, files and folders. All members are stateless.
class QVCOMMON_API CFileUtils {
public:
    CFileUtils() = default;
    virtual ~CFileUtils() = default;

    // Paths as strings: no file is accessed and nothing fails (files/FilePaths.cpp)

    /// Adds a trailing "\" if missing; an empty string stays empty. A trailing "/" does not count.
    static CString TerminateDir(const char* path);
    /// Removes one trailing "\".
    static CString UnterminateDir(const char* path);
    /// Returns the part after the last "\"; the whole string if there is no "\".
    static CString GetFilenameFromPath(const CString& path);
    /// Returns the part up to and including the last "\"; empty if there is no "\".
    static CString GetDirectoryFromPath(const CString& path);
    /// Removes the characters \ / : * ? " < > | and leading and trailing white space.
    static CString StripInvalidFilenameChars(const char* text);
    /// Returns "file://" and the name with "/" for "\"; nothing is escaped. With a drive letter the URL has only two
    /// slashes.
    static CString FileNameToFileUrl(const char* name);
    /// Returns the file name of a URL: percent-decoded, "file:///" in any case removed, "\" for "/". A URL with only
    /// two slashes keeps its "file:", so this is not the inverse of FileNameToFileUrl.
    static CString FileUrlToFileName(const char* url);
    /// Returns the path in the system's form: on Linux "/" for every "\", and "\" for every U+F05C. For displaying a
    /// path, and for system calls.
    static CString GetNativePath(const char* path);
    /// The inverse, for external paths: arguments, the environment, dialogs, other libraries. Only a path in this form
    /// may be split at its "\". Replaces every "/" by "\"; on Linux a "\" within a name becomes the character U+F05C
    /// (EF 81 9C in any code page), and an existing U+F05C or U+F025 is prefixed with a U+F025, so that GetNativePath
    /// restores the same bytes.
    static CString GetLibraryPath(const char* nativePath);

    /// Returns the type of the file system that contains a path, by the system's name: "ext4", "fuse.sshfs", "NTFS".
    /// Empty if the path does not exist or the system does not report it.
    static CString GetFileSystem(const char* path);

    // Tests and queries: absence is a result, nothing is raised (files/FileUtils.cpp)

    /// Returns true for a file, a folder and the root of a volume.
    static bool IsExist(const char* path);
    /// Returns true for the root of a volume, with or without its trailing "\"; on Linux for "/" and mount points.
    static bool IsVolume(const char* path);
    /// Returns true for a folder, and for a link to one.
    static bool IsDirectory(const char* path);
    /// Clears the read-only attribute. Returns true on success or if nothing of that name exists; false if the system
    /// refused. Never raises.
    static bool MakeWritable(const char* path);
    /// Returns the size in bytes, 2147483647 for any larger file; -1 if it does not exist.
    static std::int32_t GetFilesize(const char* path);
    /// Returns non-zero if an entry matches the wildcards of the last part; "folder\*.*" finds "." in an empty folder
    /// too.
    static int HasMatching(const char* pattern);
    /// Returns the short (8.3) form; the path unchanged if it has no such form, always on Linux.
    static CString GetShortPath(const char* path);
    /// Returns the short form in upper case.
    static CString GetUppercaseShortPath(const char* path);
    /// Returns non-zero for a string that begins like "C:\" or "\\server\".
    static int MatchesPathFormat(const char* path);

    // Dates (files/FileDates.cpp)

    /// Returns the last write time of the first matching entry, as local time formatted by COleDateTime::Format; empty
    /// if nothing matches.
    static CString GetDateModified(const char* pattern, const char* format);
    /// Does the same in the format "May 05 2004, 14:03:07".
    static CString GetDateModified(const char* pattern);
    /// Does the same with CTimeHelper::FileTimeToUnixTime. Returns zero, leaving `time` unchanged, if nothing matches
    /// or the time does not fit in 32 bits (before 1902, after January 2038).
    static int GetDateModified(const char* pattern, LONG& time);

    /// Stores the name and the creation time, as "May 05 2004, 14:03:07", of the matching subfolder that was created
    /// last. Both are unchanged if nothing matches.
    static void FindLastestSubdir(const char* pattern, CString& name, CString& date);
    /// Stores the name of the matching subfolder with the highest number: the part from its first digit on, without any
    /// dot except the first, so "v1.2.3" counts as 1.23 and "2.10" as 2.1; 0 without a digit. It is read as atof does,
    /// with exponents, and with the decimal point of the C library's locale. The first of equal ones wins. Unchanged if
    /// nothing matches.
    static void FindLastestSubdirByName(const char* pattern, CString& name);

    // Whole files (files/WholeFiles.cpp)
    //
    // These wait, as CMultiUserFile::Open does, while the share mode of another opener conflicts, unless a flag says
    // otherwise.

    /// Returns all bytes of a file; empty if it cannot be opened or fully read, or is 2 GB or longer. Devices and pipes
    /// are not opened and count as empty. Raises nothing except std::bad_alloc.
    static CString ReadFile(const char* path);
    /// Reads the lines, without their ends (LF or CR LF). None if the file cannot be opened or fully read.
    static void ReadFile(const char* path, CStringArray& lines);

    /// Creates or truncates the file and writes these bytes. A read-only file is made writable. `multiUser` non-zero:
    /// waits for other openers; `createDirectory` non-zero: creates missing folders.
    /// @throws CFileException* with the file's name if it cannot be opened or written; in the latter case the file
    /// contains an unspecified part of the text.
    static void WriteFile(const char* path, const CString& text, int multiUser, int createDirectory);
    /// Does the same with a line feed after each element, in text mode. No-op if the file cannot be opened.
    /// @throws CFileException* if it cannot be written.
    static void WriteFile(const char* path, const CStringArray& lines, int multiUser, int createDirectory);
    /// Replaces a file atomically, as CSaveFile does, and retries up to 9 times, like WriteFile with `multiUser`, while
    /// another opener conflicts. @throws CFileException*, leaving the file unchanged.
    static void SaveFile(const char* path, const CString& text);

    /// Appends one line to a file, creating it if missing: with `stamp` non-zero the local time in the format "%c" and
    /// a blank, then the text, then CR LF. Lines logged concurrently by several threads and processes are never
    /// interleaved or lost: each waits for the others, up to about 20 seconds.
    /// @return zero if the line could not be written; the file is then unchanged, as far as the system permits.
    static int Log(const char* path, const char* text, int stamp);

    /// Renames the file to the same name with the extension "bak", replacing an existing backup. No-op without a file.
    /// Read-only files are made writable first.
    /// @throws CFileException* if the file cannot be renamed (the old backup may be lost then), or has the extension
    /// "bak" itself; in the latter case nothing was touched.
    static void BackupFile(const char* path);

    // Trees (files/DelTree.cpp, files/ShellOperations.cpp)

    /// Deletes the contents of a folder, read-only files too, and with `removeItself` non-zero the folder itself. If
    /// the folder (by the given string) is the current one of the process, the process first changes to the Windows
    /// directory or root.
    ///
    /// Links are deleted, never followed, and nothing outside is touched even if a folder is replaced by a link
    /// meanwhile; a folder that is itself a link is refused, or deleted as a link with `removeItself`. Not errors: a
    /// missing folder; a file, which is kept; and a folder, including the given one, that cannot be deleted when it has
    /// been emptied, or in which another process has created something meanwhile.
    /// @throws CFileException* naming the first entry other than a folder that cannot be deleted, or the first folder
    /// that cannot be read; the rest is kept.
    static void DelTree(const char* directory, int removeItself);
    /// Does the same, but what cannot be deleted or read is reported to the observer, including folders, except those
    /// that remain because of something reported in them, and everything else is deleted, by several threads in a large
    /// tree. A folder that cannot be opened is kept even if it is empty; one that can be opened but not read to its end
    /// is deleted if nothing remains in it. Raises what the observer raises; part of the rest may be deleted then.
    static void DelTree(const char* directory, int removeItself, ILeftOut& leftOut);

    /// Flags of the shell operations. Windows supports more, and receives all bits.
    enum ShellFlags : unsigned short {
        shellSilent = 0x4,                 ///< no progress
        shellRenameOnCollision = 0x8,      ///< a copy whose name exists gets another one, "Copy of a.txt"
        shellNoConfirmation = 0x10,        ///< answers Yes to all questions
        shellFilesOnly = 0x80,             ///< with wildcards: no folders
        shellSimpleProgress = 0x100,       ///< without names; implied by a title
        shellNoConfirmMakeFolder = 0x200,  ///< creates a missing target folder without asking
        shellNoErrorBox = 0x400,           ///< shows no errors
        shellNoRecursion = 0x1000          ///< does not recurse into subfolders
    };

    /// Copies files and folders as the system's shell does; the last part of `source` may contain wildcards. If the
    /// destination is an existing folder, the sources are copied into it, otherwise it is the copy's name.
    ///
    /// Without a shell (Linux) the library does the same itself: it copies trees with times and attributes, shows
    /// message boxes unless the flags disable them (files to be replaced, folders to be created, failures), and reports
    /// progress to the handler of SetShellProgress instead of a window; undo is not available.
    /// @param title  of the progress window; null for the default.
    /// @return 1 if everything was copied and the user cancelled nothing, else 0. Paths longer than 1302 bytes give 0.
    static int ShellCopyFile(const char* source, const char* destination, unsigned short flags, HWND owner,
                             const char* title);
    /// Deletes in the same way. Folders are deleted with their contents; on Linux it asks first unless disabled, and
    /// links are deleted, never followed.
    static int ShellDeleteFile(const char* path, unsigned short flags, HWND owner, const char* title);

    /// Sets a handler for the whole process, null for none, and returns the previous one. Not owned; must outlive its
    /// use. Ignored on Windows, which has its own progress window.
    static IShellProgress* SetShellProgress(IShellProgress* handler);

    /// Returns the name that BackupFile gives a file: the path with its extension replaced by "bak", or with that
    /// appended if the name has none. No file is accessed, and nothing fails.
    static CString GetBackupName(const char* path);
};

/// Creates a folder and all missing parents; both separators are accepted. Returns non-zero on success and if the name
/// already exists. On 0 the last system error is set.
QVCOMMON_API int QVCOMMON_CALL QvCreateDirectory(const char* path);

/// Returns non-zero if the folder exists. Otherwise informs the user by message boxes, offers to create it, and returns
/// non-zero if it was created.
QVCOMMON_API int QVCOMMON_CALL ValidateDir(const char* path);
