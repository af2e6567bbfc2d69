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
/// links of the file keep the old version. The folder must be writable, and has room for both versions.
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

    /// Both drop the new version. Never raise.
    void Close() override;
    void Abort() override;
    /// There is no open file of that name to delete.
    bool CloseAndRemove() = delete;

private:
    struct Version;

    std::unique_ptr<Version> m_version;
};
