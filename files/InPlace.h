#pragma once

/// @file Overwriting a file without losing its content. The file keeps its identity, so its other hard links see the change.

#include "platform/File.h"
#include "qvcommon/framework/String.h"

namespace qv {

/// Overwrites an existing file with the content of `version`, a handle that can be read. Meanwhile the old content is in a
/// backup beside the file, its path with ".qvold", for the user alone. The new content has reached the disk at the end.
/// @throws CFileException*  naming the file, which is what it was; or naming the backup, which stays: it could not be
/// made, put back, or deleted, or another user's is in its place
void OverwriteInPlace(const CString& path, platform::FileHandle version);

/// Puts back the backup that an overwriting left which was killed or could not undo what it did. A file that is missing by
/// now gets the backup itself. Another user's backup is left alone.
/// @return whether there was one
/// @throws CFileException*  after which the backup is still there
bool RestoreBackup(const CString& path);

}  // namespace qv
