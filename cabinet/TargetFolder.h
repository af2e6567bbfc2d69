#pragma once

/// @file Extraction that cannot leave its folder.

#include <optional>
#include <string>
#include <vector>

#include "platform/AtomicFile.h"
#include "platform/FolderFiles.h"
#include "qvcommon/framework/String.h"

namespace qv::cabinet {

/// Splits a relative path at either separator into names in the system's form, folders first. Returns nullopt if it is
/// not such a path or could lead out of its folder: absolute, with a drive, empty names, "..", and what
/// platform::IsPlainName refuses. Names "." and a final separator are ignored.
std::optional<std::vector<std::string>> SafeNames(std::string_view path);

/// A folder that receives members. Every folder on the way to a member is opened relative to its parent and must not be
/// a link, so neither existing content nor concurrent changes can redirect a member. Only the folder itself may be
/// reached through links.
///
/// A member gets its name when it is complete; until then an existing file of that name is unchanged. One member at a
/// time.
class TargetFolder {
public:
    /// Sets the folder, with its final separator; it is created when needed. The empty text is the current folder.
    void SetRoot(const CString& root);
    platform::Status MakeFolder(const std::vector<std::string>& names);
    /// Creates the member's folders and its file, whose handle this object owns.
    platform::Status Create(const std::vector<std::string>& names, platform::FileHandle& handle);
    /// Gives the file its name and closes it. On failure the file is discarded.
    platform::Status Commit();
    /// Deletes the unnamed file, if there is one.
    void Discard();
    /// Sets times and attributes of an existing file.
    platform::Status Stamp(const std::vector<std::string>& names, const platform::FileStamp& stamp);

private:
    platform::Status Enter(const std::vector<std::string>& names, std::size_t count, bool make);
    platform::Status OpenRoot(bool make);

    CString m_root;
    platform::Folder m_rootFolder;
    bool m_rootIsOpen = false;
    platform::Folder m_folder;         ///< the folder of the last member
    std::vector<std::string> m_names;  ///< of that one, if m_isIn
    bool m_isIn = false;
    platform::AtomicFile m_member;
};

}  // namespace qv::cabinet
