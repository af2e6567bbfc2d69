#pragma once

/// @file Open folders, so that operations in them cannot be redirected. Paths may use "\" on every system; names of
/// entries are the system's, which NativePath and LibraryName translate.

#include <memory>
#include <string>
#include <vector>

#include "platform/FileSearch.h"
#include "platform/Status.h"

namespace qv::platform {

enum class EntryKind : unsigned char {
    File,       ///< everything else, including links to files
    Folder,     ///< can be opened and walked
    FolderLink  ///< a link to a folder, never to be followed
};

struct FolderEntry {
    std::string name;
    EntryKind kind;
};

/// A folder used only to look up and create entries need not be readable.
enum class FolderUse { Listed, LookedUpIn };

/// An open folder, independent of changes to its path: on Linux all operations use its descriptor, on Windows the
/// folder can be neither renamed nor replaced while it is open here.
class Folder {
public:
    Folder();
    Folder(Folder&& other) noexcept;
    Folder& operator=(Folder&& other) noexcept;
    ~Folder();

    Status Open(const char* path, LastName lastName, FolderUse use = FolderUse::Listed);
    /// Opens a folder in another one, which must be open. Anything but a folder is refused, including links.
    Status OpenIn(const Folder& parent, const std::string& name, FolderUse use = FolderUse::Listed);
    /// Does the same, creating the folder if its name is free. `made` is whether it was created.
    Status MakeIn(const Folder& parent, const std::string& name, bool& made);
    void Close();

    /// Appends all entries except "." and "..", in no particular order. After a failure `entries` contains those that
    /// were read.
    Status List(std::vector<FolderEntry>& entries) const;
    /// Returns whether both are the same folder, regardless of their paths. False for one that is not open.
    bool IsSame(const Folder& other) const;
    /// Describes the entry named by `entry`, in the library's form, as a search does.
    Status Find(FoundEntry& entry) const;
    /// Clears the read-only attribute of a file in the folder. A link is refused or left unchanged.
    Status MakeWritable(const std::string& name) const;
    /// Clears the read-only attribute of the folder itself.
    Status MakeWritable() const;
    /// Deletes one entry: a folder only if it is empty, a link but never its target. Clears the read-only attribute if
    /// that prevents the deletion.
    Status Remove(const FolderEntry& entry) const;
    /// Lets entries be deleted if the folder's own permissions prevent it. No-op on Windows.
    Status AllowRemoval() const;

    /// Suspend closes the system's handle temporarily; Resume reopens the same folder as the parent of `child`, and
    /// fails if that was moved elsewhere. No-ops on Windows, where trees are not deep enough to run out of handles.
    void Suspend();
    Status Resume(const Folder& child);

    /// The system's state of an open folder, null before Open: FolderBody.h of each system defines it, only for
    /// implementations of this layer.
    struct Body;
    const Body* GetBody() const { return m_body.get(); }

private:
    std::unique_ptr<Body> m_body;
};

}  // namespace qv::platform
