#pragma once

#include <sys/stat.h>

#include <atomic>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/Status.h"

namespace qv::platform {

/// The folders of one inotify instance by their watch numbers. A folder keeps its number when it is renamed.
///
/// Events name folders by their parent's number and a name. Settle looks up new folders after all pending events have
/// been processed: by then the path of the parent is correct, or further events that correct it are pending and will
/// name the folder again.
class WatchedFolders {
public:
    /// @param stop  once set, the search for folders ends: their changes are no longer needed.
    WatchedFolders(int inotify, std::uint32_t events, bool subfolders, const std::atomic<bool>& stop);

    /// Watches the folder, a native path, and its subfolders. Returns false if it cannot be watched, or the system has
    /// run out of watches, descriptors or memory.
    bool AddRoot(const std::string& path);
    bool HasRoot() const { return m_folders.contains(m_root); }
    bool IsRoot(int watch) const { return watch == m_root; }
    bool FollowsSubfolders() const { return m_subfolders; }

    /// A folder of this name was created or moved here.
    void Appeared(int parent, const std::string& name);
    /// A folder was moved away; Settle ends its watch unless it appeared elsewhere.
    void MovedFrom(int parent, const std::string& name);
    /// Events were lost: any folder may have appeared, and the root may be gone.
    void LostEvents() { m_lostEvents = true; }
    /// The system has ended this watch.
    void Forget(int watch);

    /// Watches new folders with their subfolders. Returns false if changes may be missed from now on: the system has
    /// run out of resources, or the root is no longer at its path, so that new folders cannot be found.
    bool Settle();

private:
    struct WatchedFolder {
        int parent = -1;
        std::string name = {};
        std::map<std::string, int> children = {};
        unsigned pass = 0;  ///< the last pass that has read it
    };
    struct Unread {
        int watch;
        std::string path;
    };

    std::string PathOf(int watch) const;
    void Unlink(int watch);
    bool AddAppeared();
    bool AddBelow(int top, std::string path);
    Result<int> AddOne(int parent, const std::string& name, const std::string& path);
    bool HasNoSubfolders(const Unread& folder) const;
    Status ListSubfolders(const Unread& folder, std::vector<std::string>& names) const;
    bool IsRootWatched() const;
    bool IsRootInPlace() const;
    void DropMovedOut();

    int m_inotify;
    std::uint32_t m_events;
    bool m_subfolders;
    const std::atomic<bool>& m_stop;
    int m_root = -1;
    std::string m_rootPath;
    struct stat m_rootStatus = {};
    bool m_linksTellSubfolders = false;
    std::unordered_map<int, WatchedFolder> m_folders;
    std::set<std::pair<int, std::string>> m_appeared;
    std::set<int> m_movedOut;
    bool m_lostEvents = false;
    unsigned m_pass = 0;
};

}  // namespace qv::platform
