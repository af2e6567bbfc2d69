#include "platform/FolderWatch.h"

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <string>

#include "platform/Path.h"
#include "platform/posix/UniqueFd.h"
#include "platform/posix/watching/WatchedFolders.h"

namespace qv::platform {
namespace {

constexpr std::uint32_t kNames = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO;

// Reads between two checks for other work. Together they cover the system's default queue size, so that changes that
// occurred together are reported once, and a busy folder delays callbacks by a bounded time only.
constexpr int kMostReads = 32;
constexpr std::size_t kReadSize = 16384;

// The system's events that indicate a change, for files or for folders.
std::uint32_t EventsOf(unsigned changes, bool ofFolders) {
    std::uint32_t events = 0;
    if (changes & (ofFolders ? kFolderNames : kFileNames)) events |= kNames;
    if (changes & (kAttributes | kLastWrite | kSecurity)) events |= IN_ATTRIB;
    if (changes & (kSize | kLastWrite)) events |= IN_MODIFY;
    if (changes & kLastAccess) events |= IN_ACCESS;
    if (changes & kCreation) events |= IN_CREATE;
    return events;
}

class InotifyWatch : public FolderWatch {
public:
    InotifyWatch(bool subfolders, unsigned changes)
        : m_events(sys::inotify_init1(IN_CLOEXEC | IN_NONBLOCK)),
          m_stop(sys::eventfd(0, EFD_CLOEXEC)),
          m_ofFiles(EventsOf(changes, false)),
          m_ofFolders(EventsOf(changes, true) | (subfolders ? kNames : 0)),
          m_folders(m_events.Get(), m_ofFiles | m_ofFolders, subfolders, m_stopped) {}

    bool Arm(const std::string& path) { return m_events && m_stop && m_folders.AddRoot(path); }

    Event Wait() override {
        pollfd waited[] = {{m_events.Get(), POLLIN, 0}, {m_stop.Get(), POLLIN, 0}};
        for (;;) {
            const auto ready = sys::poll(waited, 2, -1);
            if (!ready.ok() && ready.error() != EINTR) return Event::Failure;
            if (waited[0].revents && ReadEvents()) return Event::Change;
            if (waited[1].revents) return Event::Stop;
        }
    }

    bool Rearm() override { return m_folders.HasRoot() && !m_failed; }

    void Stop() override {
        m_stopped = true;
        // Fails only if the counter is at its maximum: the wait ends anyway.
        sys::eventfd_write(m_stop.Get(), 1).IgnoreError();
    }

    void Close() override { m_events = UniqueFd(); }

private:
    // Reads pending events; returns true if they contain a change.
    bool ReadEvents() {
        alignas(inotify_event) char buffer[kReadSize];
        bool changed = false;
        int reads = 0;
        do {
            const auto got = sys::inotify_read(m_events.Get(), buffer, sizeof buffer);
            m_failed |= !got.ok() && got.error() != EAGAIN;
            if (!got.ok()) break;
            changed |= HandleAll(buffer, buffer + got.value());
        } while (++reads < kMostReads && !m_stopped);
        m_failed |= !m_folders.Settle();
        return changed || m_failed;
    }

    bool HandleAll(const char* at, const char* end) {
        bool changed = false;
        while (at < end) {
            const auto* const event = reinterpret_cast<const inotify_event*>(at);
            changed |= Handle(*event);
            at += sizeof *event + event->len;
        }
        return changed;
    }

    bool Handle(const inotify_event& event) {
        if (event.mask & IN_Q_OVERFLOW) {
            m_folders.LostEvents();
            return true;
        }
        if (event.mask & (IN_IGNORED | IN_UNMOUNT | IN_MOVE_SELF)) return Lose(event);
        if (event.len == 0) return false;  // the watched folder itself, which its parent reports
        if (!(event.mask & IN_ISDIR)) return event.mask & m_ofFiles;
        if (event.mask & IN_MOVED_FROM) m_folders.MovedFrom(event.wd, event.name);
        if (event.mask & (IN_CREATE | IN_MOVED_TO)) m_folders.Appeared(event.wd, event.name);
        return event.mask & m_ofFolders;
    }

    // A folder that is no longer watched, or no longer at its place: its content can no longer be found.
    bool Lose(const inotify_event& event) {
        const bool isRoot = m_folders.IsRoot(event.wd);
        if (!(event.mask & IN_MOVE_SELF))
            m_folders.Forget(event.wd);
        else if (isRoot && m_folders.FollowsSubfolders())
            m_failed = true;
        return isRoot;
    }

    UniqueFd m_events, m_stop;
    std::atomic<bool> m_stopped = false;
    // Only requested changes are watched. With subfolders the creation or removal of a folder always counts, because
    // changes in it may have been missed.
    std::uint32_t m_ofFiles, m_ofFolders;
    WatchedFolders m_folders;
    bool m_failed = false;
};

}  // namespace

std::unique_ptr<FolderWatch> FolderWatch::Open(const char* folder, bool subfolders, unsigned changes) {
    if (!changes) return nullptr;  // as on Windows
    auto watch = std::make_unique<InotifyWatch>(subfolders, changes);
    if (!watch->Arm(NativePath(folder))) return nullptr;
    return watch;
}

}  // namespace qv::platform
