#pragma once

/// @file Folders that are held open, so that what is done in them cannot be led elsewhere. Paths may use "\" on every
/// system; names of entries are the system's own.

#include <cstdint>
#include <string>
#include <vector>

#include "platform/FileCause.h"
#include "platform/FileSearch.h"

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

/// An open folder. What happens to its path meanwhile does not matter: on Linux all goes through its descriptor, on
/// Windows the folder can be neither renamed nor replaced while it is open here.
class Folder {
public:
    Folder() = default;
    Folder(Folder&& other) noexcept;
    Folder& operator=(Folder&& other) noexcept;
    ~Folder() { Close(); }

    FileFailure Open(const char* path, LastName lastName);
    /// Opens a folder in another one, which has to be open. Anything but a folder is refused, links too.
    FileFailure OpenIn(const Folder& parent, const std::string& name);
    void Close();

    /// All entries but "." and "..", in no order. After a failure `entries` has those that were read.
    FileFailure List(std::vector<FolderEntry>& entries) const;
    /// Deletes one entry: a folder only when it is empty, a link never with what it leads to. Takes the read-only attribute
    /// away where that keeps the entry.
    FileFailure Remove(const FolderEntry& entry) const;
    /// Lets entries be deleted where the folder's own permissions refuse it. Does nothing on Windows.
    FileFailure AllowRemoval() const;

    /// Gives the descriptor back for a while, and takes the same folder again by way of one in it. Fails when that one was
    /// moved elsewhere. On Windows, where paths are short, nothing happens.
    void LetGo();
    FileFailure TakeBack(const Folder& child);

    /// Where an entry lies. On Windows only, whose calls take paths.
    std::string PathOf(const std::string& name) const { return m_path + name; }
    /// The system's handle; a descriptor on Linux.
    std::intptr_t Handle() const { return m_handle; }

private:
    std::intptr_t m_handle = kNoFile;
    [[maybe_unused]] std::uint64_t m_volume = 0, m_number = 0;  // which folder it is
    std::string m_path;                                         // on Windows, with its final separator
};

}  // namespace qv::platform
