#pragma once

/// @file Overwriting a file without losing its content. The file keeps its identity, so its other hard links see the
/// change.

#include "platform/File.h"
#include "qvcommon/framework/String.h"

namespace qv {

/// Overwrites an existing file with the content of `version`, a readable handle. Meanwhile a backup beside the file,
/// its path plus ".qvold", holds the old content; only the current user can access it. On return the new content is on
/// the disk.
/// @throws CFileException*  naming the file, whose content is unchanged; or naming the backup, which stays: it could
/// not be made, restored or deleted, or another user's file has its name
void OverwriteInPlace(const CString& path, platform::FileHandle version);

/// Restores the backup of an overwrite that was killed or could not be undone. If the file no longer exists, the backup
/// is renamed to it. Another user's backup is left alone.
/// @return whether a backup existed
/// @throws CFileException*  the backup still exists then
bool RestoreBackup(const CString& path);

}  // namespace qv
