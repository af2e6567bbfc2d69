#include "files/InPlace.h"

#include <memory>

#include "framework/FileErrors.h"
#include "platform/AtomicFile.h"
#include "platform/FileStatus.h"
#include "qvcommon/framework/File.h"

// The backup is complete and on the disk before the file changes, and is deleted once the new content is on the disk.
// So an existing backup holds the content to restore and is never overwritten. The file is open exclusively throughout:
// no other program reads it half-written or makes a backup of it.

namespace qv {
namespace {

using platform::FileHandle;
using platform::FileInfo;
using platform::Status;

constexpr UINT kExclusively = CFile::modeReadWrite | CFile::shareExclusive | CFile::modeNoInherit;
constexpr UINT kToRead = CFile::modeRead | CFile::shareDenyWrite | CFile::modeNoInherit;

/// Another user could place any content there to have it restored, so only a file owned by the current user is a
/// backup.
CString BackupOf(const CString& path) {
    return path + ".qvold";
}

/// Copies all of `from` to the start of `to`.
Status CopyContent(FileHandle from, FileHandle to) {
    constexpr std::size_t kStep = 256 * 1024;
    const auto buffer = std::make_unique_for_overwrite<char[]>(kStep);
    std::uint64_t position = 0;
    for (const FileHandle file : {from, to})
        if (const Status sought = platform::SeekTo(file, 0, platform::SeekFrom::Begin, position); !sought.ok())
            return sought;
    for (;;) {
        std::size_t count = 0;
        if (const Status read = platform::ReadBytes(from, buffer.get(), kStep, count); !read.ok()) return read;
        if (count == 0) return platform::Resize(to, position);
        if (const Status written = platform::WriteBytes(to, buffer.get(), count); !written.ok()) return written;
        position += count;
    }
}

Status ReplaceContent(FileHandle file, FileHandle content) {
    const Status copied = CopyContent(content, file);
    return copied.ok() ? platform::FlushToDisk(file) : copied;
}

void MakeBackup(FileHandle file, const CString& backup) {
    platform::AtomicFile copy;
    ThrowIfFailed(copy.Create(backup), backup);
    ThrowIfFailed(CopyContent(file, copy.Handle()), backup);
    ThrowIfFailed(copy.Commit(platform::IfExists::Fail, platform::Durability::Synced), backup);
}

void PutBack(FileHandle file, const CString& backup) {
    CFile content(backup, kToRead);
    ThrowIfFailed(ReplaceContent(file, content.GetHandle()), backup);
    content.Close();
    ThrowIfFailed(platform::RemoveSynced(backup), backup);
}

void ThrowUnlessRegular(const CFile& file, const CString& path) {
    FileInfo info;
    ThrowIfFailed(platform::StatusOf(file.GetHandle(), path, info), path);
    if (!info.isRegular) AfxThrowFileException(CFileException::accessDenied, -1, path);
}

}  // namespace

void OverwriteInPlace(const CString& path, FileHandle version) {
    const CFile file(path, kExclusively);
    ThrowUnlessRegular(file, path);
    const CString backup = BackupOf(path);
    if (platform::IsOwnFile(backup)) PutBack(file.GetHandle(), backup);
    MakeBackup(file.GetHandle(), backup);
    const Status replaced = ReplaceContent(file.GetHandle(), version);
    if (!replaced.ok()) PutBack(file.GetHandle(), backup);
    ThrowIfFailed(replaced, path);
    ThrowIfFailed(platform::RemoveSynced(backup), backup);
}

bool RestoreBackup(const CString& path) {
    const CString backup = BackupOf(path);
    if (!platform::IsOwnFile(backup)) return false;
    FileInfo info;
    if (platform::StatusOf(path, info).cause() == platform::FileCause::FileNotFound) {
        ThrowIfFailed(platform::RenameFile(backup, path), backup);
        return true;
    }
    const CFile file(path, kExclusively);
    ThrowUnlessRegular(file, path);
    if (!platform::IsOwnFile(backup)) return false;  // its overwriting has just ended
    PutBack(file.GetHandle(), backup);
    return true;
}

}  // namespace qv
