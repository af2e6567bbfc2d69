#include "platform/FolderWatch.h"

#include <cerrno>
#include <cstdint>
#include <string>

#include "platform/Path.h"
#include "platform/posix/UniqueFd.h"
#include "platform/posix/watching/WatchedFolders.h"

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

class InotifyWatch : public FolderWatch {
public:
    InotifyWatch(bool subfolders, unsigned changes)
        : m_events(sys::inotify_init1(IN_CLOEXEC | IN_NONBLOCK)),
          m_stop(sys::eventfd(0, EFD_CLOEXEC)),
          m_ofFiles(EventsOf(changes, false)),
          m_ofFolders(EventsOf(changes, true)),
          m_folders(m_events.Get(), m_ofFiles | m_ofFolders, subfolders) {}

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
        // Fails only where the count is at its limit: the wait ends all the same.
        sys::eventfd_write(m_stop.Get(), 1).IgnoreError();
    }

    void Close() override { m_events = UniqueFd(); }

private:
    // Reads what there is; true when it holds a change.
    bool ReadEvents() {
        alignas(inotify_event) char buffer[16384];
        bool changed = false;
        auto got = ReadInto(buffer);
        for (; got.ok() && got.value() > 0; got = ReadInto(buffer)) {
            for (const char* at = buffer; at < buffer + got.value();) {
                const auto* const event = reinterpret_cast<const inotify_event*>(at);
                changed |= Handle(*event);
                at += sizeof *event + event->len;
            }
        }
        m_failed |= got.error() != EAGAIN;
        m_folders.DropMovedOut();
        return changed || m_failed;
    }

    template <std::size_t size>
    Result<ssize_t> ReadInto(char (&buffer)[size]) const {
        return sys::inotify_read(m_events.Get(), buffer, size);
    }

    bool Handle(const inotify_event& event) {
        if (event.mask & IN_Q_OVERFLOW) {
            Checked(m_folders.Rescan());
            return true;
        }
        if (event.mask & (IN_IGNORED | IN_UNMOUNT | IN_MOVE_SELF)) return Lose(event);
        if (event.len == 0) return false;  // the watched folder itself, which its parent reports
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

    UniqueFd m_events, m_stop;
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
