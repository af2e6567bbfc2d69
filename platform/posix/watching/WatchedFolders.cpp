#include "platform/posix/watching/WatchedFolders.h"

#include <linux/magic.h>

#include <cerrno>
#include <string_view>

#include "platform/posix/FolderEntries.h"
#include "platform/posix/RealPath.h"
#include "platform/posix/SameFile.h"

namespace qv::platform {
namespace {

// Any other failure means that the folder is gone, is not a folder, or is not readable.
bool IsExhaustion(unsigned long error) {
    return error == ENOSPC || error == ENOMEM || error == EMFILE || error == ENFILE;
}

// Whether a folder's link count includes its subfolders, as only these file systems do.
bool CountsSubfolders(const char* path) {
    struct statfs system;
    if (!sys::statfs(path, &system).ok()) return false;
    return system.f_type == EXT4_SUPER_MAGIC || system.f_type == TMPFS_MAGIC || system.f_type == XFS_SUPER_MAGIC;
}

}  // namespace

WatchedFolders::WatchedFolders(int inotify, std::uint32_t events, bool subfolders, const std::atomic<bool>& stop)
    : m_inotify(inotify), m_events(events | IN_MOVE_SELF | IN_ONLYDIR), m_subfolders(subfolders), m_stop(stop) {}

bool WatchedFolders::AddRoot(const std::string& path) {
    m_rootPath = RealPath(path);  // independent of later changes of links and of the current folder
    const auto added = sys::inotify_add_watch(m_inotify, m_rootPath.c_str(), m_events);
    if (!added.ok()) return false;
    m_root = added.value();
    m_folders[m_root];
    if (!m_subfolders) return true;
    m_linksTellSubfolders = CountsSubfolders(m_rootPath.c_str());
    return sys::fstatat(AT_FDCWD, m_rootPath.c_str(), &m_rootStatus, 0).ok() && Settle();
}

void WatchedFolders::Appeared(int parent, const std::string& name) {
    if (m_subfolders) m_appeared.emplace(parent, name);
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

void WatchedFolders::Forget(int watch) {
    m_movedOut.erase(watch);
    Unlink(watch);
    m_folders.erase(watch);
}

bool WatchedFolders::Settle() {
    ++m_pass;
    if (!m_subfolders && std::exchange(m_lostEvents, false) && !IsRootWatched()) Forget(m_root);
    const bool complete = AddAppeared();
    DropMovedOut();
    return complete;
}

bool WatchedFolders::AddAppeared() {
    const auto appeared = std::exchange(m_appeared, {});
    const bool readAll = m_subfolders && (std::exchange(m_lostEvents, false) || m_pass == 1);
    if (!HasRoot() || (appeared.empty() && !readAll)) return true;
    if (readAll && !AddBelow(m_root, m_rootPath)) return false;
    for (const auto& [parent, name] : appeared) {
        // Unknown for a folder that was moved: its content is found with it, if it is still below the root.
        std::string path = PathOf(parent);
        if (path.empty()) continue;
        path += '/' + name;
        const auto added = AddOne(parent, name, path);
        if (IsExhaustion(added.error())) return false;
        if (added.ok() && !AddBelow(added.value(), std::move(path))) return false;
    }
    return IsRootInPlace();
}

// Adds all folders below one that is already watched. Each is watched before it is read, so that nothing is missed, and
// read once per pass even if it is named repeatedly.
bool WatchedFolders::AddBelow(int top, std::string path) {
    std::vector<Unread> unread;
    unread.push_back({top, std::move(path)});
    std::vector<std::string> names;
    while (!unread.empty() && !m_stop) {
        const Unread folder = std::move(unread.back());
        unread.pop_back();
        if (std::exchange(m_folders[folder.watch].pass, m_pass) == m_pass) continue;
        if (HasNoSubfolders(folder)) continue;
        names.clear();
        if (IsExhaustion(ListSubfolders(folder, names).error())) return false;
        for (const std::string& name : names) {
            std::string below = folder.path + '/' + name;
            const auto added = AddOne(folder.watch, name, below);
            if (IsExhaustion(added.error())) return false;
            if (added.ok()) unread.push_back({added.value(), std::move(below)});
        }
    }
    return true;
}

Result<int> WatchedFolders::AddOne(int parent, const std::string& name, const std::string& path) {
    const auto added = sys::inotify_add_watch(m_inotify, path.c_str(), m_events | IN_DONT_FOLLOW);
    if (!added.ok()) return added;
    if (added.value() == m_root) return Result<int>::OfError(-1, ELOOP);  // a mount of the root below itself
    const auto [folder, isNew] = m_folders.try_emplace(added.value());
    if (!isNew) {
        m_movedOut.erase(added.value());
        Unlink(added.value());
    }
    folder->second.parent = parent;
    folder->second.name = name;
    m_folders[parent].children[name] = added.value();
    return added;
}

// A folder on the root's file system with only its own two links has no subfolders, which is faster to check than
// reading it: most folders are such.
bool WatchedFolders::HasNoSubfolders(const Unread& folder) const {
    struct stat status;
    return m_linksTellSubfolders && sys::fstatat(AT_FDCWD, folder.path.c_str(), &status, AT_SYMLINK_NOFOLLOW).ok() &&
           S_ISDIR(status.st_mode) && status.st_dev == m_rootStatus.st_dev && status.st_nlink == 2;
}

// Includes entries that may be folders if the file system does not say; only a folder can be watched.
Status WatchedFolders::ListSubfolders(const Unread& folder, std::vector<std::string>& names) const {
    const auto opened = sys::openat_folder(AT_FDCWD, folder.path.c_str(), IsRoot(folder.watch) ? 0 : O_NOFOLLOW);
    if (!opened.ok()) return opened.status();
    const UniqueFd descriptor(opened);
    return ForEachEntry(descriptor.Get(), [&names](const dirent64& entry) {
        if (entry.d_type == DT_DIR || entry.d_type == DT_UNKNOWN) names.emplace_back(entry.d_name);
    });
}

// The event that reports the end of its watch may be lost. Without subfolders it is the only one of the instance.
bool WatchedFolders::IsRootWatched() const {
    const std::string path = "/proc/self/fdinfo/" + std::to_string(m_inotify);
    const UniqueFd info(sys::openat(AT_FDCWD, path.c_str(), O_RDONLY | O_CLOEXEC, mode_t{}));
    char text[1024];
    const auto size = sys::read(info.Get(), text, sizeof text);
    if (!size.ok()) return true;
    return std::string_view(text, static_cast<std::size_t>(size.value())).find("inotify wd:") != std::string_view::npos;
}

// A parent folder may have been renamed.
bool WatchedFolders::IsRootInPlace() const {
    return LeadsTo(AT_FDCWD, m_rootPath.c_str(), m_rootStatus);
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
        // A watch that the system has already ended needs no removal.
        sys::inotify_rm_watch(m_inotify, watch).IgnoreError();
    }
}

// Empty while it is unknown: the folder or one of its parents was moved, or the known names are inconsistent, since an
// outdated path has led to another folder. Pending events resolve that.
std::string WatchedFolders::PathOf(int watch) const {
    std::vector<const std::string*> names;
    while (watch != m_root) {
        const auto folder = m_folders.find(watch);
        if (folder == m_folders.end() || names.size() > m_folders.size()) return "";
        names.push_back(&folder->second.name);
        watch = folder->second.parent;
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

}  // namespace qv::platform
