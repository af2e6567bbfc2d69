#pragma once

#include <string>
#include <vector>

#include "platform/FileStatus.h"
#include "platform/Folder.h"
#include "platform/Path.h"
#include "qvcommon/framework/String.h"
#include "threads/Executor.h"

namespace qv {

/// Walks a tree of folders that it holds open, each by way of the one above it, so that nothing done to their names
/// meanwhile leads it out of the tree. Links are never entered. Depth is bounded by memory, not by open files.
///
/// Folders are listed, and treated, ahead of their turn by other threads. All that is called On... is called on the thread
/// of Walk, in an order that does not depend on them.
class FolderWalk {
public:
    /// @param threads  that help; 0 sees each folder in its turn
    explicit FolderWalk(unsigned threads = Executor::SpareProcessors()) : m_executor(threads) {}
    FolderWalk(const FolderWalk&) = delete;
    FolderWalk& operator=(const FolderWalk&) = delete;
    virtual ~FolderWalk() = default;

    /// A path that is itself a link is refused. @throws what the members below do.
    void Walk(const CString& path);

protected:
    struct Failure {
        platform::Status status;
        platform::FolderEntry entry;
    };
    /// A folder that was opened, and what came of that.
    struct Visit {
        platform::Folder folder = {};
        platform::Status opened = {}, listed = {};
        std::vector<platform::FolderEntry> entries = {};
        std::vector<Failure> failures = {};  ///< of Treat
    };
    struct Subfolder {
        platform::FolderEntry entry;
        Task<Visit> visit;  ///< under way, for one that is seen ahead of its turn
    };
    struct Place {
        platform::Folder folder;
        std::size_t pathLength;                  ///< with the final separator
        platform::FolderEntry entry;             ///< in the folder above
        std::vector<Subfolder> subfolders = {};  ///< to be walked, the last one first
    };

    /// The path of a place on the way to the present one, with its final separator.
    CString PathOf(const Place& place) const { return std::string_view(m_path).substr(0, place.pathLength); }
    CString PathOf(const Place& place, const platform::FolderEntry& entryInIt) const {
        return PathOf(place) + std::string_view(platform::LibraryName(entryInIt.name));
    }

    /// Does to the entries of a folder what need not be done in order. Any thread, no exceptions. Where threads help, later
    /// folders may be treated before one of the other members ends the walk by an exception.
    virtual void Treat(Visit&) const {}
    /// A folder's entries, before any of its subfolders is entered.
    virtual void OnFolder(const Place& place, const Visit& visit) = 0;
    /// After all that lies in the subfolder was walked.
    virtual void OnLeave(const Place&, const platform::FolderEntry&) {}
    /// Called after the whole first folder was walked.
    virtual void OnEnd(const Place&) {}
    /// A folder that cannot be opened or read to its end; the walk goes on beside it unless this raises something.
    /// `parent` is null for the first one and when the way back to it is lost.
    virtual void OnFailure(const platform::Status& failure, const Place& place, const Place* parent) = 0;

private:
    void Enter(Place&& place, Visit&& visit, const Place* parent);
    void Descend();
    void Leave();
    void LookAhead(Place& place);
    Visit Seen(Visit visit) const;

    Executor m_executor;
    int m_entered = 0;
    int m_seenAhead = 0;          // folders that are open ahead of their turn
    std::vector<Place> m_places;  // from the first folder down to the present one
    std::string m_path;           // of the present one: the others' are its beginnings, so memory is linear in depth
};

}  // namespace qv
