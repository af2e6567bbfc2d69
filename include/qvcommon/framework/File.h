#pragma once

/// @file Files: CFile, its exception, and its status. Names are paths in the library's form ("\" or the system's own
/// separator). One object, one thread.

#include <cstdint>

#include "qvcommon/framework/String.h"

/// A failed file operation: what failed in the framework's words, in the system's number, and the file's name.
class QVCOMMON_API CFileException : public CException {
    DECLARE_DYNAMIC(CFileException)

public:
    /// What failed, in the framework's words and numbers.
    enum Cause : int {
        none,
        generic,
        fileNotFound,
        badPath,
        tooManyOpenFiles,
        accessDenied,
        invalidFile,
        removeCurrentDir,
        directoryFull,
        badSeek,
        hardIO,
        sharingViolation,
        lockViolation,
        diskFull,
        endOfFile
    };

    /// With these values; a null name is none. For `new`: Delete ends the object.
    explicit CFileException(int cause = none, LONG osError = -1, const char* fileName = nullptr)
        : m_cause(cause), m_lOsError(osError), m_strFileName(fileName) {}
    /// A copy that the holder owns: Delete leaves it alone.
    CFileException(const CFileException& other);
    CFileException& operator=(const CFileException& other);

    /// One line that names the file, in the system's own form, and says what failed. Always returns non-zero; the text ends
    /// with a zero byte.
    BOOL GetErrorMessage(char* text, UINT maximum, UINT* helpContext = nullptr) override;

    /// The cause for an error number of the system; `generic` for numbers that fit none.
    static int OsErrorToException(LONG osError);

    int m_cause;            ///< a Cause
    LONG m_lOsError;        ///< the system's error number, -1 when there is none
    CString m_strFileName;  ///< in the library's form; empty when it is not known
};

/// Raises a new CFileException* with these values.
[[noreturn]] QVCOMMON_API void AfxThrowFileException(int cause, LONG osError = -1, const char* fileName = nullptr);

/// What the file system tells of a file. Times are seconds since 1970 UTC, -1 when not known.
struct QVCOMMON_API CFileStatus {
    std::int64_t m_ctime = -1;  ///< creation; on Linux the birth time, else the last change of the file's record
    std::int64_t m_mtime = -1;  ///< last change of the content
    std::int64_t m_atime = -1;  ///< last reading, as far as the system keeps it
    std::uint64_t m_size = 0;   ///< bytes
    BYTE m_attribute = 0;       ///< CFile's bits; on Linux readOnly: no owner write bit, hidden: a leading point
    CString m_szFullName;       ///< absolute path in the library's form
};

/// A file without a buffer. One object, one thread; different objects of one file may work in different threads.
class QVCOMMON_API CFile : public CObject {
    DECLARE_DYNAMIC(CFile)

public:
    /// How a file is opened: one mode for access, one for sharing, and any of the others.
    enum OpenFlags : UINT {
        modeRead = 0x0000,
        modeWrite = 0x0001,
        modeReadWrite = 0x0002,
        shareCompat = 0x0000,  ///< counts as shareExclusive
        shareExclusive = 0x0010,
        shareDenyWrite = 0x0020,
        shareDenyRead = 0x0030,
        shareDenyNone = 0x0040,
        modeNoInherit = 0x0080,   ///< child programs do not get the handle; without it they may
        modeCreate = 0x1000,      ///< create; an existing file is emptied
        modeNoTruncate = 0x2000,  ///< with modeCreate: an existing file keeps its content
        typeText = 0x4000,        ///< for CStdioFile
        typeBinary = 0x8000,
        modeFolderAccess = 0x10000  ///< for a file that all users of a folder share: see Open
    };
    /// Bits of CFileStatus::m_attribute.
    static constexpr BYTE normal = 0, readOnly = 1, hidden = 2, system = 4, volume = 8, directory = 16, archive = 32;

    /// Where Seek counts from.
    enum SeekPosition { begin = 0, current = 1, end = 2 };

    /// The system's handle; a descriptor on Linux.
    using Handle = std::intptr_t;
    /// No handle: the file is closed.
    static constexpr Handle hFileNull = -1;

    CFile();
    /// Takes over a system handle (a descriptor on Linux) that was opened elsewhere: the object closes it.
    explicit CFile(Handle handle);
    /// Opens at once. @throws CFileException*
    CFile(const char* fileName, UINT openFlags);
    /// Closes the file if it is open; a failure of that close is not reported.
    ~CFile() override;
    CFile(const CFile&) = delete;
    CFile& operator=(const CFile&) = delete;

    /// Opens a file. An open object is closed first; when that close fails, so does the open.
    ///
    /// The share modes hold between all openers of the file, in this process and others, as the access and deny matrix of
    /// Windows says: an open is refused (sharingViolation) when another one denies what this one wants to do, or does what
    /// this one wants to deny. An open that is refused has not created, emptied or changed anything. Folders cannot be
    /// opened (accessDenied).
    ///
    /// On Linux the share modes bind programs that use this library, over byte-range locks far beyond the end of the file,
    /// which file systems for several machines keep too. Where a file system keeps none, a file opens for reading unguarded
    /// and for writing not at all. Devices and pipes have no share modes. A file can be deleted and renamed while it is
    /// open, which Windows refuses. Where the file system refuses locks, the cause is invalidFile and the message says so.
    /// Deny rights that a child program inherited with the handle last until it has ended.
    ///
    /// With modeFolderAccess, on Linux, a file that is made may be written by whoever may write in its folder, and read by
    /// everybody who reaches it, whatever the umask. One that may only be read is opened for reading although writing was
    /// asked for, and claims its share modes all the same. Links are not followed (badPath), and only regular files are
    /// opened (accessDenied). On Windows the folder's access list rules, with the flag and without.
    /// @return non-zero on success; after 0, `*error`, if given, tells cause, system error and name, and the object is
    /// closed.
    virtual BOOL Open(const char* fileName, UINT openFlags, CFileException* error = nullptr);
    /// Closes the file; nothing happens to a closed one. @throws CFileException* when the system could not keep what
    /// was written; the object is closed then too.
    virtual void Close();
    /// Closes without raising anything.
    virtual void Abort();
    /// Closes a file that is open exclusively and deletes it, so that no other opener is left with a deleted file in hand:
    /// on Linux it is deleted while still held, and only if its name still leads to it; on Windows it is closed first, and
    /// an opener that comes in between keeps the file. Never raises.
    /// @return true when the file is deleted; it is closed in any case.
    bool CloseAndRemove();

    /// Reads up to `count` bytes; fewer only at the end of the file. Returns the number read. @throws CFileException*
    virtual UINT Read(void* buffer, UINT count);
    /// Writes all bytes or raises; how much of a failed write reached the file is not known. @throws CFileException*
    virtual void Write(const void* buffer, UINT count);
    /// Hands what is written to the system's disk. @throws CFileException*
    virtual void Flush();

    /// Moves to `offset` bytes from the given place and returns the new position. @throws CFileException* (badSeek)
    /// before the start.
    virtual std::uint64_t Seek(std::int64_t offset, UINT from);
    /// In bytes from the start. @throws CFileException*
    virtual std::uint64_t GetPosition() const;
    /// In bytes, as it is now. @throws CFileException*
    virtual std::uint64_t GetLength() const;
    /// Cuts the file or extends it with zero bytes; the position is then the new end. @throws CFileException*
    virtual void SetLength(std::uint64_t length);

    /// Whether there is an open file.
    bool IsOpen() const { return m_hFile != hFileNull; }
    /// The name as it was given to Open; empty while closed.
    const CString& GetFilePath() const { return m_strFileName; }
    /// The handle, which stays this object's; hFileNull while closed.
    Handle GetHandle() const { return m_hFile; }

    /// False, and `status` unchanged, when the file or folder does not exist or cannot be asked, as the root of a volume
    /// on Windows. A folder has size 0. Never raises.
    bool GetStatus(CFileStatus& status) const;
    static bool GetStatus(const char* fileName, CFileStatus& status);
    /// Sets attributes and modification time; the time stays as it is, fractions of a second included, when m_mtime is
    /// -1 or agrees with it to the second. The other members are not looked at. On Linux the read-only attribute takes
    /// all write permissions away and gives the owner's back; the others cannot be set. @throws CFileException*
    static void SetStatus(const char* fileName, const CFileStatus& status);
    /// Deletes a file. On Linux also one that is open or read-only. @throws CFileException*
    static void Remove(const char* fileName);
    /// Renames a file or folder. An existing file of the new name makes it fail (accessDenied). On Linux the new name
    /// has to lie on the same file system. @throws CFileException*
    static void Rename(const char* oldName, const char* newName);

    Handle m_hFile = hFileNull;  ///< as GetHandle returns it

protected:
    /// One read of the system: at most `count` bytes, 0 at the end of the file only. @throws CFileException*
    UINT ReadSome(void* buffer, UINT count);

    CString m_strFileName;  ///< as GetFilePath returns it

private:
    BOOL OpenClosed(const char* fileName, UINT openFlags, CFileException* error);
};
