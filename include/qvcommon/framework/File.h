#pragma once

/// @file Files: CFile, its exception, and its status. Names are paths in the library's form ("\" or the system's own
/// separator). Not thread-safe.

#include <cstdint>

#include "qvcommon/framework/String.h"

/// A failed file operation: the cause, the system's error number, and the file's name.
class QVCOMMON_API CFileException : public CException {
    DECLARE_DYNAMIC(CFileException)

public:
    /// The causes, with the framework's names and numbers.
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

    /// With these values; a null name means none. For use with `new`: Delete frees the object.
    explicit CFileException(int cause = none, LONG osError = -1, const char* fileName = nullptr)
        : m_cause(cause), m_lOsError(osError), m_strFileName(fileName) {}
    /// A copy owned by its holder: Delete does not free it.
    CFileException(const CFileException& other);
    CFileException& operator=(const CFileException& other);

    /// Writes one line that names the file, in the system's form, and the cause. Always returns non-zero; the text is
    /// zero-terminated.
    BOOL GetErrorMessage(char* text, UINT maximum, UINT* helpContext = nullptr) override;

    /// Returns the cause for an error number of the system; `generic` for unknown numbers.
    static int OsErrorToException(LONG osError);

    int m_cause;            ///< a Cause
    LONG m_lOsError;        ///< the system's error number, -1 if unknown
    CString m_strFileName;  ///< in the library's form; empty if unknown
};

/// Raises a new CFileException* with these values.
[[noreturn]] QVCOMMON_API void AfxThrowFileException(int cause, LONG osError = -1, const char* fileName = nullptr);

/// The metadata of a file. Times are seconds since 1970 UTC, -1 if unknown.
struct QVCOMMON_API CFileStatus {
    std::int64_t m_ctime = -1;  ///< creation; on Linux the birth time, else the last change of the inode
    std::int64_t m_mtime = -1;  ///< last change of the content
    std::int64_t m_atime = -1;  ///< last access, as far as the system records it
    std::uint64_t m_size = 0;   ///< bytes
    BYTE m_attribute = 0;       ///< CFile's bits; on Linux readOnly: no owner write bit, hidden: a leading dot
    CString m_szFullName;       ///< absolute path in the library's form
};

/// An unbuffered file. Not thread-safe; different objects may use the same file on different threads.
class QVCOMMON_API CFile : public CObject {
    DECLARE_DYNAMIC(CFile)

public:
    /// How a file is opened: one access mode, one share mode, and any of the others.
    enum OpenFlags : UINT {
        modeRead = 0x0000,
        modeWrite = 0x0001,
        modeReadWrite = 0x0002,
        shareCompat = 0x0000,  ///< same as shareExclusive
        shareExclusive = 0x0010,
        shareDenyWrite = 0x0020,
        shareDenyRead = 0x0030,
        shareDenyNone = 0x0040,
        modeNoInherit = 0x0080,   ///< child programs do not inherit the handle; without it they may
        modeCreate = 0x1000,      ///< create; an existing file is truncated
        modeNoTruncate = 0x2000,  ///< with modeCreate: an existing file keeps its content
        typeText = 0x4000,        ///< for CStdioFile
        typeBinary = 0x8000,
        modeFolderAccess = 0x10000  ///< for a file shared by all users of a folder: see Open
    };
    /// Bits of CFileStatus::m_attribute.
    static constexpr BYTE normal = 0, readOnly = 1, hidden = 2, system = 4, volume = 8, directory = 16, archive = 32;

    /// The origin of Seek.
    enum SeekPosition { begin = 0, current = 1, end = 2 };

    /// The system's handle; a descriptor on Linux.
    using Handle = std::intptr_t;
    /// No handle: the file is closed.
    static constexpr Handle hFileNull = -1;

    CFile();
    /// Takes ownership of a system handle (a descriptor on Linux) that was opened elsewhere: the object closes it.
    explicit CFile(Handle handle);
    /// Opens the file. @throws CFileException*
    CFile(const char* fileName, UINT openFlags);
    /// Closes the file if it is open; a failure to close is not reported.
    ~CFile() override;
    CFile(const CFile&) = delete;
    CFile& operator=(const CFile&) = delete;

    /// Opens a file. An open object is closed first; if that fails, so does the open.
    ///
    /// The share modes apply between all openers of the file, in this process and others, by the access and deny rules
    /// of Windows: an open fails (sharingViolation) if another opener denies the requested access, or has access that
    /// this one wants to deny. A failed open has not created, truncated or changed anything. Folders cannot be opened
    /// (accessDenied).
    ///
    /// On Linux the share modes are honoured only by programs that use this library; they are byte-range locks far
    /// beyond the end of the file, which network file systems support too. If a file system does not support locks, a
    /// file is opened for reading without protection, and opening it for writing fails with invalidFile and a message
    /// that says so. Devices and pipes have no share modes. A file can be deleted and renamed while it is open, unlike
    /// on Windows. Deny rights that a child program inherited with the handle remain until it has ended.
    ///
    /// With modeFolderAccess, on Linux, a new file can be written by all users who can write to its folder, and is
    /// world-readable, regardless of the umask. A read-only one is opened for reading even if writing was requested,
    /// and still claims its share modes. Links are not followed (badPath), and only regular files are opened
    /// (accessDenied). On Windows the folder's access list applies, with or without the flag; with it links are refused
    /// (badPath).
    /// @return non-zero on success; on 0, `*error`, if given, has cause, system error and name, and the object is
    /// closed.
    virtual BOOL Open(const char* fileName, UINT openFlags, CFileException* error = nullptr);
    /// Closes the file; no-op if it is closed. @throws CFileException* if what was written could not be stored; the
    /// object is closed then too.
    virtual void Close();
    /// Closes without raising anything.
    virtual void Abort();
    /// Deletes and closes a file that is open exclusively, so that no other opener ends up with a deleted file: on
    /// Linux it is deleted while still held, and only if its name still refers to it; on Windows it is closed first,
    /// and if it is opened in between it is not deleted. Never raises.
    /// @return true if the file is deleted; it is closed in any case.
    bool CloseAndRemove();

    /// Reads up to `count` bytes; fewer only at the end of the file. Returns the number read. @throws CFileException*
    virtual UINT Read(void* buffer, UINT count);
    /// Writes all bytes or raises; how much of a failed write reached the file is unspecified. @throws CFileException*
    virtual void Write(const void* buffer, UINT count);
    /// Flushes written data to disk. @throws CFileException*
    virtual void Flush();

    /// Moves to `offset` bytes from the given origin and returns the new position. @throws CFileException* (badSeek)
    /// before the start.
    virtual std::uint64_t Seek(std::int64_t offset, UINT from);
    /// Returns the position in bytes from the start. @throws CFileException*
    virtual std::uint64_t GetPosition() const;
    /// Returns the current length in bytes. @throws CFileException*
    virtual std::uint64_t GetLength() const;
    /// Truncates the file or extends it with zero bytes; the position is then the new end. @throws CFileException*
    virtual void SetLength(std::uint64_t length);

    /// Returns whether a file is open.
    bool IsOpen() const { return m_hFile != hFileNull; }
    /// Returns the name as passed to Open; empty while closed.
    const CString& GetFilePath() const { return m_strFileName; }
    /// Returns the handle, still owned by this object; hFileNull while closed.
    Handle GetHandle() const { return m_hFile; }

    /// Returns false, leaving `status` unchanged, if the file or folder does not exist or cannot be queried, such as
    /// the root of a volume on Windows. A folder has size 0. Never raises.
    bool GetStatus(CFileStatus& status) const;
    static bool GetStatus(const char* fileName, CFileStatus& status);
    /// Sets attributes and modification time; the time is unchanged, including fractions of a second, if m_mtime is -1
    /// or equals it to the second. The other members are ignored. On Linux setting the read-only attribute removes all
    /// write permissions and clearing it restores the owner's; the other attributes cannot be set. @throws
    /// CFileException*
    static void SetStatus(const char* fileName, const CFileStatus& status);
    /// Deletes a file. On Linux also if it is open or read-only. @throws CFileException*
    static void Remove(const char* fileName);
    /// Renames a file or folder. Fails if the new name exists (accessDenied). On Linux the new name must be on the same
    /// file system. @throws CFileException*
    static void Rename(const char* oldName, const char* newName);

    Handle m_hFile = hFileNull;  ///< as GetHandle returns it

protected:
    /// Performs one system read: at most `count` bytes, 0 only at the end of the file. @throws CFileException*
    UINT ReadSome(void* buffer, UINT count);

    CString m_strFileName;  ///< as GetFilePath returns it

private:
    BOOL OpenClosed(const char* fileName, UINT openFlags, CFileException* error);
};
