#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <unordered_map>

namespace qv::platform {

/// The folders of one inotify instance by their watch numbers. A folder keeps its number when it is renamed.
class WatchedFolders {
public:
    enum class Added {
        Known,         ///< watched before, or nothing to watch
        Empty,         ///< watched from now on, nothing was in it
        NotEmpty,      ///< watched from now on; what is in it came before
        NotReadable,   ///< gone, no folder, or not permitted
        NoMoreWatches  ///< the system has none left
    };

    WatchedFolders(int inotify, std::uint32_t events, bool subfolders);

    /// Watches the folder, native path, and all below it. False when it cannot be watched.
    bool AddRoot(const std::string& path);
    bool HasRoot() const { return m_folders.contains(m_root); }
    bool IsRoot(int watch) const { return watch == m_root; }
    bool FollowsSubfolders() const { return m_subfolders; }

    /// Watches a new subfolder with all below it.
    Added Add(int parent, const std::string& name);
    /// Watches the folders whose events an overflow has dropped.
    Added Rescan() { return m_subfolders && HasRoot() ? AddBelow(m_root) : Added::Known; }

    /// The folder is dropped by DropMovedOut unless it is added under another name before.
    void MovedFrom(int parent, const std::string& name);
    void DropMovedOut();
    /// The system has ended this watch.
    void Forget(int watch);

private:
    struct WatchedFolder {
        int parent = -1;
        std::string name = {};
        std::map<std::string, int> children = {};
    };

    std::string PathOf(int watch) const;
    void Unlink(int watch);
    Added AddOne(int parent, const std::string& name, int& watch);
    Added AddBelow(int top);

    int m_inotify;
    std::uint32_t m_events;
    bool m_subfolders;
    int m_root = -1;
    std::string m_rootPath;
    std::unordered_map<int, WatchedFolder> m_folders;
    std::set<int> m_movedOut;
};

}  // namespace qv::platform
