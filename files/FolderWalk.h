#pragma once

#include <string>
#include <vector>

#include "platform/FileStatus.h"
#include "platform/Folder.h"
#include "platform/Path.h"
#include "qvcommon/framework/String.h"
#include "threads/Executor.h"

namespace qv {

/// Walks a tree of folders. Each folder is opened relative to its open parent, so renaming or replacing folders during
/// the walk cannot lead it out of the tree. Links are never entered. Memory bounds the depth, open files do not.
///
/// Other threads list and treat folders ahead of their turn. The members named On... are called on the thread of Walk,
/// in an order that does not depend on the other threads.
class FolderWalk {
public:
    /// @param threads  how many threads help; with 0 each folder is listed and treated in its turn
    explicit FolderWalk(unsigned threads = Executor::SpareProcessors()) : m_executor(threads) {}
    FolderWalk(const FolderWalk&) = delete;
    FolderWalk& operator=(const FolderWalk&) = delete;
    virtual ~FolderWalk() = default;

    /// By default refuses a path that is itself a link. @throws what the members below throw.
    void Walk(const CString& path, platform::LastName lastName = platform::LastName::NoLink);

protected:
    struct Failure {
        platform::Status status;
        platform::FolderEntry entry;
    };
    /// An opened folder and the results of opening, listing and treating it.
    struct Visit {
        platform::Folder folder = {};
        platform::Status opened = {}, listed = {};
        std::vector<platform::FolderEntry> entries = {};
        std::vector<Failure> failures = {};  ///< from Treat
    };
    struct Subfolder {
        platform::FolderEntry entry;
        Task<Visit> visit;  ///< set for a folder that is visited ahead of its turn
    };
    struct Place {
        platform::Folder folder;
        std::size_t pathLength;                  ///< with the final separator
        platform::FolderEntry entry;             ///< in the parent folder
        std::vector<Subfolder> subfolders = {};  ///< yet to be walked, in reverse order
    };

    /// Returns the path of a place on the way to the current one, with its final separator.
    CString PathOf(const Place& place) const { return std::string_view(m_path).substr(0, place.pathLength); }
    CString PathOf(const Place& place, const platform::FolderEntry& entryInIt) const {
        return PathOf(place) + std::string_view(platform::LibraryName(entryInIt.name));
    }

    /// Processes those entries of a folder that need no order. Called on any thread; must not throw. With threads,
    /// later folders may already be treated when another member ends the walk by an exception.
    virtual void Treat(Visit&) const {}
    /// Called with a folder's entries, before any of its subfolders is entered.
    virtual void OnFolder(const Place& place, const Visit& visit) = 0;
    /// Called after everything in the subfolder was walked.
    virtual void OnLeave(const Place&, const platform::FolderEntry&) {}
    /// Called after the whole first folder was walked.
    virtual void OnEnd(const Place&) {}
    /// Called for a folder that cannot be opened or read to its end; the walk continues with the next one unless this
    /// raises an exception. `parent` is null for the first folder and if the way back to the parent is lost.
    virtual void OnFailure(const platform::Status& failure, const Place& place, const Place* parent) = 0;

private:
    void Enter(Place&& place, Visit&& visit, const Place* parent);
    void Descend();
    void Leave();
    void LookAhead(Place& place);
    Visit ListAndTreat(Visit visit) const;

    Executor m_executor;
    int m_entered = 0;
    int m_seenAhead = 0;          // folders that are open ahead of their turn
    std::vector<Place> m_places;  // from the first folder down to the current one
    std::string m_path;           // of the current place; the other paths are its prefixes: memory is linear in depth
};

}  // namespace qv
