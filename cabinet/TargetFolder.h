#pragma once

/// @file Extraction that stays in its folder.

#include <optional>
#include <string>
#include <vector>

#include "platform/AtomicFile.h"
#include "platform/FolderFiles.h"
#include "qvcommon/framework/String.h"

namespace qv::cabinet {

/// The names of a relative path in the system's own form, folders first; either separator may be between them. Nothing when it is no such path or
/// could lead out of the folder that it is taken from: absolute, with a drive, empty names, "..", and what
/// platform::IsPlainName refuses. A name "." and a final separator are passed over.
std::optional<std::vector<std::string>> SafeNames(std::string_view path);

/// A folder into which members are brought. Every folder on the way to a member is opened by way of the one above it and is
/// no link, so what lies in the folder, and what happens to it meanwhile, leads nowhere else. Only the folder itself may be
/// reached through links.
///
/// A member takes its name when it is complete; until then a file that has this name is left alone. One member at a time.
class TargetFolder {
public:
    /// The folder, with its final separator, is made when needed. The empty text is the current folder.
    void SetRoot(const CString& root);
    platform::Status MakeFolder(const std::vector<std::string>& names);
    /// Makes the member's folders and its file, whose handle stays this object's own.
    platform::Status Create(const std::vector<std::string>& names, platform::FileHandle& handle);
    /// Gives the file its name and closes it. A failure discards it.
    platform::Status Commit();
    /// Deletes the file that has not got its name, if there is one.
    void Discard();
    /// Stamps a file that is there.
    platform::Status Stamp(const std::vector<std::string>& names, const platform::FileStamp& stamp);

private:
    platform::Status Enter(const std::vector<std::string>& names, std::size_t count, bool make);
    platform::Status OpenRoot(bool make);

    CString m_root;
    platform::Folder m_rootFolder;
    bool m_rootIsOpen = false;
    platform::Folder m_folder;         ///< where the last member went
    std::vector<std::string> m_names;  ///< of that one, when m_isIn
    bool m_isIn = false;
    platform::AtomicFile m_member;
};

}  // namespace qv::cabinet
