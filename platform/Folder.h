#pragma once

/// @file Folders that are held open, so that what is done in them cannot be led elsewhere. Paths may use "\" on every
/// system; names of entries are the system's own, which NativePath and LibraryName translate.

#include <memory>
#include <string>
#include <vector>

#include "platform/FileSearch.h"
#include "platform/Status.h"

namespace qv::platform {

enum class EntryKind : unsigned char {
    File,       ///< everything that is none of the others, links to files too
    Folder,     ///< one that may be opened and walked
    FolderLink  ///< a link to a folder, never to be walked
};

struct FolderEntry {
    std::string name;
    EntryKind kind;
};

/// A folder in which others are only looked up and made need not be readable.
enum class FolderUse { Listed, LookedUpIn };

/// An open folder. What happens to its path meanwhile does not matter: on Linux all goes through its descriptor, on
/// Windows the folder can be neither renamed nor replaced while it is open here.
class Folder {
public:
    Folder();
    Folder(Folder&& other) noexcept;
    Folder& operator=(Folder&& other) noexcept;
    ~Folder();

    Status Open(const char* path, LastName lastName, FolderUse use = FolderUse::Listed);
    /// Opens a folder in another one, which has to be open. Anything but a folder is refused, links too.
    Status OpenIn(const Folder& parent, const std::string& name, FolderUse use = FolderUse::Listed);
    /// The same with a folder that is made if its name is free. `made` is whether it was.
    Status MakeIn(const Folder& parent, const std::string& name, bool& made);
    void Close();

    /// Appends all entries but "." and "..", in no order. After a failure `entries` has those that were read.
    Status List(std::vector<FolderEntry>& entries) const;
    /// Whether both are the same folder, by whatever paths. False for one that is not open.
    bool IsSame(const Folder& other) const;
    /// Describes the entry that `entry` names, in the library's form, as a search does.
    Status Find(FoundEntry& entry) const;
    /// Takes the read-only attribute from a file in the folder. A link is refused, or stays as it is.
    Status MakeWritable(const std::string& name) const;
    /// Takes the read-only attribute from the folder itself.
    Status MakeWritable() const;
    /// Deletes one entry: a folder only when it is empty, a link never with what it leads to. Takes the read-only attribute
    /// away where that keeps the entry.
    Status Remove(const FolderEntry& entry) const;
    /// Lets entries be deleted where the folder's own permissions refuse it. Does nothing on Windows.
    Status AllowRemoval() const;

    /// Gives the system's handle back for a while, and opens the same folder again by way of one in it. Fails when that
    /// one was moved elsewhere. Does nothing on Windows, where trees are not deep enough to run out of handles.
    void LetGo();
    Status TakeBack(const Folder& child);

    /// What the system needs of an open folder, null before Open: FolderBody.h of each system defines it, for the
    /// implementations of this layer alone.
    struct Body;
    const Body* GetBody() const { return m_body.get(); }

private:
    std::unique_ptr<Body> m_body;
};

}  // namespace qv::platform
