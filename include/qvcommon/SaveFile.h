#pragma once

/// @file Saving a file whole or not at all.

#include <memory>

#include "qvcommon/framework/File.h"

/// The new version of a file. It is written beside the file, and Commit puts it in the file's place: whoever opens the file
/// finds the old version or the new one, never a part of it, whatever happens to the program or the machine meanwhile.
/// Without a Commit the file stays as it was.
///
///     CSaveFile file(path);
///     file.Write(data, size);
///     file.Commit();
///
/// Commit keeps what the file has and the user may give: on Linux mode, owner, group, access lists and extended attributes;
/// on Windows attributes, access lists and streams. Through a link it saves the file that the link leads to. Other hard
/// links of the file keep the old version, unless CommitInPlace is used. The folder must be writable, and has room for both
/// versions.
///
/// One object, one thread.
class QVCOMMON_API CSaveFile : public CFile {
public:
    CSaveFile();
    /// Opens at once. @throws CFileException*
    explicit CSaveFile(const char* fileName);
    /// Drops what was not committed.
    ~CSaveFile() override;

    /// Begins a new, empty version of the file, which need not exist; its folder must. Drops one begun before.
    /// @param openFlags  have no effect: the new version can be read and written by this object alone
    /// @return non-zero on success; after 0, `*error`, if given, tells cause, system error and name.
    BOOL Open(const char* fileName, UINT openFlags = modeCreate | modeReadWrite,
              CFileException* error = nullptr) override;

    /// Puts the new version in the file's place, once it has reached the disk. The object is closed then, in any case.
    /// @throws CFileException* after which the file is what it was: accessDenied where the file may not be written,
    /// sharingViolation while another opener denies writing it (on Windows while it is open at all), or what the system
    /// could not keep.
    void Commit();

    /// Writes the new version into the existing file, which stays the same file: all its hard links see the new content,
    /// and nothing about it changes but content and times. It is slower than Commit and needs room for three versions.
    ///
    /// The old content is meanwhile in a backup beside the file, NAME.qvold, which only the user may read; programs must
    /// not keep files of their own under that name. The file is open exclusively: programs that use this library, and on
    /// Windows all programs, see no part of a version. If the process or the machine dies, the file may be left in parts.
    /// The backup is left then, and is put back by the next Commit or CommitInPlace of the same user on the same path, or
    /// by Recover.
    ///
    /// Otherwise as Commit, which it is for a file that does not exist.
    /// @throws CFileException*  naming the file, which is what it was: sharingViolation while it is open elsewhere, or what
    /// the system could not keep. One that names the backup means that the backup could not be made, put back or deleted,
    /// or is another user's; where it exists, it holds the old version.
    void CommitInPlace();
    /// Puts back the content that a CommitInPlace of this user has left in a backup, when it was killed or raised an error
    /// that names the backup. What was written to the file since then is lost.
    /// @return non-zero if there was such a backup
    /// @throws CFileException*  after which the backup is still there: sharingViolation while the file is open elsewhere
    static BOOL Recover(const char* fileName);

    /// Both drop the new version. Never raise.
    void Close() override;
    void Abort() override;
    /// There is no open file of that name to delete.
    bool CloseAndRemove() = delete;

private:
    struct Version;

    std::unique_ptr<Version> m_version;
};
