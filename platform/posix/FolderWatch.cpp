#include "platform/FolderWatch.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>

#include <cerrno>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/Folder.h"
#include "platform/Path.h"
#include "platform/posix/Owned.h"

namespace qv::platform {
namespace {

constexpr std::uint32_t kNames = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO;

// The system's events that a change shows in, for files or for folders.
std::uint32_t EventsOf(unsigned changes, bool ofFolders) {
    std::uint32_t events = 0;
    if (changes & (ofFolders ? kFolderNames : kFileNames)) events |= kNames;
    if (changes & (kAttributes | kLastWrite | kSecurity)) events |= IN_ATTRIB;
    if (changes & (kSize | kLastWrite)) events |= IN_MODIFY;
    if (changes & kLastAccess) events |= IN_ACCESS;
    if (changes & kCreation) events |= IN_CREATE;
    return events;
}

// The folders of a watch by their watch numbers. A folder keeps its number when it is renamed.
class WatchedFolders {
public:
    enum class Added { Known, Empty, NotEmpty, NotReadable, NoMoreWatches };

    WatchedFolders(int inotify, std::uint32_t events, bool subfolders)
        : m_inotify(inotify), m_events(events | IN_ONLYDIR), m_subfolders(subfolders) {
        if (m_subfolders) m_events |= IN_CREATE | IN_MOVED_FROM | IN_MOVED_TO;
    }

    bool AddRoot(const std::string& path) {
        m_rootPath = path;
        m_root = ::inotify_add_watch(m_inotify, path.c_str(), m_events | IN_MOVE_SELF);
        if (m_root == -1) return false;
        m_folders[m_root];
        return !m_subfolders || AddBelow(m_root) != Added::NoMoreWatches;
    }

    bool HasRoot() const { return m_folders.contains(m_root); }
    bool IsRoot(int watch) const { return watch == m_root; }
    bool FollowsSubfolders() const { return m_subfolders; }

    // A new subfolder with all below it.
    Added Add(int parent, const std::string& name) {
        if (!m_subfolders || !m_folders.contains(parent)) return Added::NotReadable;
        int watch = -1;
        const Added added = AddOne(parent, name, watch);
        if (added == Added::NotReadable || added == Added::NoMoreWatches) return added;
        const Added below = AddBelow(watch);
        return below == Added::NotEmpty && added == Added::Known ? Added::Known : below;
    }

    // Watches what an overflow kept from being told.
    Added Rescan() { return m_subfolders && HasRoot() ? AddBelow(m_root) : Added::Known; }

    // The folder is dropped unless it comes back under another name among the events that are read together.
    void MovedFrom(int parent, const std::string& name) {
        const auto folder = m_folders.find(parent);
        if (folder == m_folders.end()) return;
        const auto child = folder->second.children.find(name);
        if (child == folder->second.children.end()) return;
        m_movedOut.insert(child->second);
        m_folders[child->second].parent = -1;
        folder->second.children.erase(child);
    }

    void DropMovedOut() {
        std::vector<int> dropped(m_movedOut.begin(), m_movedOut.end());
        m_movedOut.clear();
        while (!dropped.empty()) {
            const int watch = dropped.back();
            dropped.pop_back();
            const auto folder = m_folders.find(watch);
            if (folder == m_folders.end()) continue;
            for (const auto& [name, child] : folder->second.children) dropped.push_back(child);
            m_folders.erase(folder);
            ::inotify_rm_watch(m_inotify, watch);
        }
    }

    // The system watches the folder no longer.
    void Forget(int watch) {
        m_movedOut.erase(watch);
        Unlink(watch);
        m_folders.erase(watch);
    }

private:
    struct WatchedFolder {
        int parent = -1;
        std::string name = {};
        std::map<std::string, int> children = {};
    };

    std::string PathOf(int watch) const {
        std::vector<const std::string*> names;
        for (; watch != m_root; watch = m_folders.at(watch).parent) {
            if (watch == -1) return "";  // moved out, so nobody knows where it is
            names.push_back(&m_folders.at(watch).name);
        }
        std::string path = m_rootPath;
        for (auto name = names.rbegin(); name != names.rend(); ++name) path += '/' + **name;
        return path;
    }

    void Unlink(int watch) {
        const auto folder = m_folders.find(watch);
        if (folder == m_folders.end()) return;
        const auto parent = m_folders.find(folder->second.parent);
        if (parent == m_folders.end()) return;
        const auto child = parent->second.children.find(folder->second.name);
        if (child != parent->second.children.end() && child->second == watch) parent->second.children.erase(child);
    }

    Added AddOne(int parent, const std::string& name, int& watch) {
        const std::string path = PathOf(parent);
        if (path.empty()) return Added::NotReadable;
        watch = ::inotify_add_watch(m_inotify, (path + '/' + name).c_str(), m_events | IN_DONT_FOLLOW);
        if (watch == -1) return errno == ENOSPC || errno == ENOMEM ? Added::NoMoreWatches : Added::NotReadable;
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
    Added AddBelow(int top) {
        Added result = Added::Empty;
        std::vector<int> unread = {top};
        while (!unread.empty()) {
            const int watch = unread.back();
            unread.pop_back();
            Folder folder;
            std::vector<FolderEntry> entries;
            const std::string path = PathOf(watch);
            if (path.empty() || folder.Open(path.c_str(), LastName::NoLink) || folder.List(entries)) continue;
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

    int m_inotify;
    std::uint32_t m_events;
    bool m_subfolders;
    int m_root = -1;
    std::string m_rootPath;
    std::unordered_map<int, WatchedFolder> m_folders;
    std::set<int> m_movedOut;
};

class InotifyWatch : public FolderWatch {
public:
    InotifyWatch(bool subfolders, unsigned changes)
        : m_events(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK)),
          m_stop(::eventfd(0, EFD_CLOEXEC)),
          m_ofFiles(EventsOf(changes, false)),
          m_ofFolders(EventsOf(changes, true)),
          m_folders(m_events.Get(), m_ofFiles | m_ofFolders, subfolders) {}

    bool Arm(const std::string& path) { return m_events && m_stop && m_folders.AddRoot(path); }

    Event Wait() override {
        pollfd waited[] = {{m_events.Get(), POLLIN, 0}, {m_stop.Get(), POLLIN, 0}};
        for (;;) {
            if (::poll(waited, 2, -1) < 0 && errno != EINTR) return Event::Failure;
            if (waited[0].revents && ReadEvents()) return Event::Change;
            if (waited[1].revents) return Event::Stop;
        }
    }

    bool Rearm() override { return m_folders.HasRoot() && !m_failed; }

    void Stop() override {
        constexpr std::uint64_t one = 1;
        static_cast<void>(!::write(m_stop.Get(), &one, sizeof one));
    }

    void Close() override { m_events.Close(); }

private:
    // Reads what there is; true when it holds a change.
    bool ReadEvents() {
        alignas(inotify_event) char buffer[16384];
        bool changed = false;
        for (ssize_t size; (size = ::read(m_events.Get(), buffer, sizeof buffer)) > 0;) {
            for (const char* at = buffer; at < buffer + size;) {
                const auto* const event = reinterpret_cast<const inotify_event*>(at);
                changed |= Handle(*event);
                at += sizeof *event + event->len;
            }
        }
        m_failed |= errno != EAGAIN;
        m_folders.DropMovedOut();
        return changed || m_failed;
    }

    bool Handle(const inotify_event& event) {
        if (event.mask & IN_Q_OVERFLOW) return Checked(m_folders.Rescan()), true;
        if (event.mask & (IN_IGNORED | IN_UNMOUNT | IN_MOVE_SELF)) return Lose(event);
        if (event.len == 0) return false;  // the watched folder itself, which its parent tells of
        const bool isFolder = event.mask & IN_ISDIR;
        const bool counts = event.mask & (isFolder ? m_ofFolders : m_ofFiles);
        return (isFolder && Follow(event)) || counts;
    }

    // A folder that is not watched any longer, or not where it was: what is below it can be found no more.
    bool Lose(const inotify_event& event) {
        const bool isRoot = m_folders.IsRoot(event.wd);
        if (!(event.mask & IN_MOVE_SELF))
            m_folders.Forget(event.wd);
        else if (isRoot && m_folders.FollowsSubfolders())
            m_failed = true;
        return isRoot;
    }

    // True when a new subfolder held something before it was watched.
    bool Follow(const inotify_event& event) {
        if (event.mask & IN_MOVED_FROM) m_folders.MovedFrom(event.wd, event.name);
        return event.mask & (IN_CREATE | IN_MOVED_TO) && Checked(m_folders.Add(event.wd, event.name));
    }

    bool Checked(WatchedFolders::Added added) {
        m_failed |= added == WatchedFolders::Added::NoMoreWatches;
        return m_failed || added == WatchedFolders::Added::NotEmpty;
    }

    Owned m_events, m_stop;
    std::uint32_t m_ofFiles, m_ofFolders;
    WatchedFolders m_folders;
    bool m_failed = false;
};

}  // namespace

std::unique_ptr<FolderWatch> FolderWatch::Open(const char* folder, bool subfolders, unsigned changes) {
    if (!changes) return nullptr;  // as Windows has it
    auto watch = std::make_unique<InotifyWatch>(subfolders, changes);
    if (!watch->Arm(NativePath(folder))) return nullptr;
    return watch;
}

}  // namespace qv::platform
