#include "platform/posix/watching/WatchedFolders.h"

#include <cerrno>
#include <vector>

#include "platform/Folder.h"
#include "platform/posix/System.h"

namespace qv::platform {

WatchedFolders::WatchedFolders(int inotify, std::uint32_t events, bool subfolders)
    : m_inotify(inotify), m_events(events | IN_ONLYDIR), m_subfolders(subfolders) {
    if (m_subfolders) m_events |= IN_CREATE | IN_MOVED_FROM | IN_MOVED_TO;
}

bool WatchedFolders::AddRoot(const std::string& path) {
    m_rootPath = path;
    m_root = sys::inotify_add_watch(m_inotify, path.c_str(), m_events | IN_MOVE_SELF).value();
    if (m_root == -1) return false;
    m_folders[m_root];
    return !m_subfolders || AddBelow(m_root) != Added::NoMoreWatches;
}

WatchedFolders::Added WatchedFolders::Add(int parent, const std::string& name) {
    if (!m_subfolders || !m_folders.contains(parent)) return Added::NotReadable;
    int watch = -1;
    const Added added = AddOne(parent, name, watch);
    if (added == Added::NotReadable || added == Added::NoMoreWatches) return added;
    const Added below = AddBelow(watch);
    return below == Added::NotEmpty && added == Added::Known ? Added::Known : below;
}

void WatchedFolders::MovedFrom(int parent, const std::string& name) {
    const auto folder = m_folders.find(parent);
    if (folder == m_folders.end()) return;
    const auto child = folder->second.children.find(name);
    if (child == folder->second.children.end()) return;
    m_movedOut.insert(child->second);
    m_folders[child->second].parent = -1;
    folder->second.children.erase(child);
}

void WatchedFolders::DropMovedOut() {
    std::vector<int> dropped(m_movedOut.begin(), m_movedOut.end());
    m_movedOut.clear();
    while (!dropped.empty()) {
        const int watch = dropped.back();
        dropped.pop_back();
        const auto folder = m_folders.find(watch);
        if (folder == m_folders.end()) continue;
        for (const auto& [name, child] : folder->second.children) dropped.push_back(child);
        m_folders.erase(folder);
        // One that the system has ended already is none the less gone.
        sys::inotify_rm_watch(m_inotify, watch).IgnoreError();
    }
}

void WatchedFolders::Forget(int watch) {
    m_movedOut.erase(watch);
    Unlink(watch);
    m_folders.erase(watch);
}

// Empty for a folder that was moved out: its path is unknown.
std::string WatchedFolders::PathOf(int watch) const {
    std::vector<const std::string*> names;
    for (; watch != m_root; watch = m_folders.at(watch).parent) {
        if (watch == -1) return "";
        names.push_back(&m_folders.at(watch).name);
    }
    std::string path = m_rootPath;
    for (auto name = names.rbegin(); name != names.rend(); ++name) path += '/' + **name;
    return path;
}

void WatchedFolders::Unlink(int watch) {
    const auto folder = m_folders.find(watch);
    if (folder == m_folders.end()) return;
    const auto parent = m_folders.find(folder->second.parent);
    if (parent == m_folders.end()) return;
    const auto child = parent->second.children.find(folder->second.name);
    if (child != parent->second.children.end() && child->second == watch) parent->second.children.erase(child);
}

WatchedFolders::Added WatchedFolders::AddOne(int parent, const std::string& name, int& watch) {
    const std::string path = PathOf(parent);
    if (path.empty()) return Added::NotReadable;
    const std::string full = path + '/' + name;
    const auto added = sys::inotify_add_watch(m_inotify, full.c_str(), m_events | IN_DONT_FOLLOW);
    if (added.error() == ENOSPC || added.error() == ENOMEM) return Added::NoMoreWatches;
    if (!added.ok()) return Added::NotReadable;
    watch = added.value();
    const bool known = m_folders.contains(watch);
    m_movedOut.erase(watch);
    Unlink(watch);
    WatchedFolder& folder = m_folders[watch];
    folder.parent = parent;
    folder.name = name;
    m_folders[parent].children[name] = watch;
    return known ? Added::Known : Added::Empty;
}

// All folders below one that is watched already. Each is watched first and read then, so that nothing slips between.
WatchedFolders::Added WatchedFolders::AddBelow(int top) {
    Added result = Added::Empty;
    std::vector<int> unread = {top};
    while (!unread.empty()) {
        const int watch = unread.back();
        unread.pop_back();
        Folder folder;
        std::vector<FolderEntry> entries;
        const std::string path = PathOf(watch);
        if (path.empty() || !folder.Open(path.c_str(), LastName::NoLink).ok() || !folder.List(entries).ok()) continue;
        if (!entries.empty()) result = Added::NotEmpty;
        for (const FolderEntry& entry : entries) {
            int child = -1;
            if (entry.kind != EntryKind::Folder) continue;
            const Added added = AddOne(watch, entry.name, child);
            if (added == Added::NoMoreWatches) return added;
            if (added != Added::NotReadable) unread.push_back(child);
        }
    }
    return result;
}

}  // namespace qv::platform
