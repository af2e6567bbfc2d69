#pragma once

/// @file Saving a file atomically.

#include <memory>

#include "qvcommon/framework/File.h"

/// A new version of a file. It is written beside the file and replaces it on Commit: every reader sees the old version
/// or the new one, never a partial one, even after a crash of the program or the machine. Without a Commit the file is
/// unchanged.
///
///     CSaveFile file(path);
///     file.Write(data, size);
///     file.Commit();
///
/// Commit preserves the file's metadata as far as the user may set it: on Linux mode, owner, group, access lists and
/// extended attributes; on Windows attributes, access lists and streams. To keep these, Windows may rename twice: for a
/// moment readers may find no file, and a crash then leaves the new version in ".qvN.new" beside it. If the path is a
/// link, its target is saved; on Windows the target must exist.
/// Other hard links of the file keep the old version, unless CommitInPlace is used. The folder must be writable and
/// have room for both versions.
///
/// Not thread-safe.
class QVCOMMON_API CSaveFile : public CFile {
public:
    CSaveFile();
    /// Opens the file. @throws CFileException*
    explicit CSaveFile(const char* fileName);
    /// Discards uncommitted data.
    ~CSaveFile() override;

    /// Starts a new, empty version of the file, which need not exist; its folder must. Discards one started before.
    /// @param openFlags  ignored: the new version can be read and written by this object alone
    /// @return non-zero on success; on 0, `*error`, if given, has cause, system error and name.
    BOOL Open(const char* fileName, UINT openFlags = modeCreate | modeReadWrite,
              CFileException* error = nullptr) override;

    /// Replaces the file by the new version, once it has reached the disk. The object is then closed in any case.
    /// @throws CFileException* leaving the file unchanged: accessDenied if the file may not be written,
    /// sharingViolation while another opener denies writing it (on Windows while it is open at all), or what could not
    /// be stored. If only its new name could not be flushed to the disk, the new version is in place nevertheless.
    void Commit();

    /// Writes the new version into the existing file, which keeps its identity: all its hard links see the new content,
    /// and only content and times change. It is slower than Commit and needs room for three versions.
    ///
    /// The old content is meanwhile in a backup beside the file, NAME.qvold, readable by the user only; programs must
    /// not use that name for their own files. The file is open exclusively: programs that use this library, and on
    /// Windows all programs, see no partial version. If the process or the machine crashes, the file may be incomplete.
    /// The backup then remains, and is restored by the next Commit or CommitInPlace of the same user on the same path,
    /// or by Recover.
    ///
    /// Otherwise like Commit, which is called for a file that does not exist.
    /// @throws CFileException* naming the file, which is unchanged: sharingViolation while it is open elsewhere, or
    /// what could not be stored. If it names the backup, the backup could not be created, restored or deleted, or
    /// belongs to another user; if it exists, it contains the old version.
    void CommitInPlace();
    /// Restores the content from a backup that a CommitInPlace of this user has left because it was killed or raised an
    /// error that names the backup. What was written to the file since then is lost.
    /// @return non-zero if there was such a backup
    /// @throws CFileException* keeping the backup: sharingViolation while the file is open elsewhere
    static BOOL Recover(const char* fileName);

    /// Both discard the new version. Never raise.
    void Close() override;
    void Abort() override;
    /// Not applicable: there is no open file of that name to delete.
    bool CloseAndRemove() = delete;

private:
    struct Version;

    std::unique_ptr<Version> m_version;
};
