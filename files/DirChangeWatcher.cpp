#include <algorithm>
#include <future>
#include <thread>
#include <utility>

#include "platform/FolderWatch.h"
#include "qvcommon/ChangeWatchers.h"
#include "threads/DetachedThread.h"

using qv::platform::FolderWatch;

struct CDirChangeWatcher::Watch {
    std::unique_ptr<FolderWatch> folder;  // set once it is armed, null if it could not be opened
    std::promise<void> armed, finished;
    const std::shared_future<void> start = armed.get_future().share(), end = finished.get_future().share();
    std::atomic<bool> watching = false, stopping = false;
    bool isLast = false;  // guarded: another thread is stopping the watcher, so OnChange can no longer restart it
    std::atomic<std::thread::id> thread = {};
    std::shared_ptr<Watch> before = {};  // guarded: the watch whose OnChange started this one, until it has ended

    bool IsOwnThread() const { return thread.load() == std::this_thread::get_id(); }

    // Returns false on the watch's own thread, which cannot wait for itself.
    bool End() {
        stopping = true;
        start.wait();
        if (folder) folder->Stop();
        if (IsOwnThread()) return false;
        end.wait();
        return true;
    }
};

CDirChangeWatcher::CDirChangeWatcher() = default;

CDirChangeWatcher::~CDirChangeWatcher() {
    CDirChangeWatcher::Stop();
}

int CDirChangeWatcher::Start() {
    Stop();
    auto watch = std::make_shared<Watch>();
    {
        const std::scoped_lock guard(m_guard);
        if (m_watch && m_watch->isLast) return 0;
        watch->before = std::exchange(m_watch, watch);
    }
    if (!qv::StartDetached([this, watch] { Run(*watch); })) {
        watch->armed.set_value();
        watch->finished.set_value();
    }
    watch->start.wait();
    if (watch->folder) return 1;
    Replace(watch->before);
    return 0;
}

void CDirChangeWatcher::OnChange() {
    m_changed = 1;
}

// OnChange may be about to restart the watcher while another thread stops it: whichever holds the guard first decides
// whether there is one more watch to end.
void CDirChangeWatcher::Stop() {
    std::vector<std::shared_ptr<Watch>> watches;
    {
        const std::scoped_lock guard(m_guard);
        for (auto watch = m_watch; watch; watch = watch->before) watches.push_back(watch);
        const bool inOnChange = std::ranges::any_of(watches, [](const auto& watch) { return watch->IsOwnThread(); });
        for (const auto& watch : watches) watch->isLast |= !inOnChange;
    }
    std::shared_ptr<Watch> own;
    for (const auto& watch : watches)
        if (!watch->End()) own = watch;
    if (!own) return Replace(nullptr);
    const std::scoped_lock guard(m_guard);
    own->before.reset();
}

int CDirChangeWatcher::HasChanged(int reset) {
    return reset ? m_changed.exchange(0) : m_changed.load();
}

int CDirChangeWatcher::IsWatching() {
    const std::shared_ptr<Watch> watch = Current();
    return watch && watch->watching && !watch->stopping;
}

std::shared_ptr<CDirChangeWatcher::Watch> CDirChangeWatcher::Current() {
    const std::scoped_lock guard(m_guard);
    return m_watch;
}

void CDirChangeWatcher::Replace(std::shared_ptr<Watch> watch) {
    const std::scoped_lock guard(m_guard);
    m_watch.swap(watch);
}

// The system's notifications belong to the thread that requests them, so everything runs on this one. OnChange may
// destroy the object; the thread continues with its own share of the watch.
void CDirChangeWatcher::Run(Watch& watch) {
    watch.thread = std::this_thread::get_id();
    watch.folder = FolderWatch::Open(m_folder, m_checkSubfolders != 0, m_filter);
    watch.watching = watch.folder != nullptr;
    watch.armed.set_value();
    while (watch.folder && watch.folder->Wait() == FolderWatch::Event::Change) {
        OnChange();
        if (watch.stopping || !watch.folder->Rearm()) break;
    }
    if (watch.folder) watch.folder->Close();
    watch.watching = false;
    watch.thread = std::thread::id();  // the system may reuse it
    watch.finished.set_value();
}
