#include <future>
#include <thread>

#include "platform/FolderWatch.h"
#include "qvcommon/ChangeWatchers.h"
#include "threads/DetachedThread.h"

using qv::platform::FolderWatch;

struct CDirChangeWatcher::Watch {
    std::unique_ptr<FolderWatch> folder;  // set once it is armed, null if it could not be opened
    std::promise<void> armed, finished;
    const std::shared_future<void> end = finished.get_future().share();
    std::atomic<bool> watching = true, stopping = false;
    std::atomic<std::thread::id> thread = {};
    std::shared_ptr<Watch> before = {};  // the watch whose OnChange started this one

    // Returns false on the watch's own thread, which cannot wait for itself.
    bool End() {
        stopping = true;
        folder->Stop();
        if (thread.load() == std::this_thread::get_id()) return false;
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
    watch->before = Current();
    Replace(watch);
    if (qv::StartDetached([this, watch] { Run(*watch); })) watch->armed.get_future().wait();
    if (watch->folder) return 1;
    Replace(watch->before);
    return 0;
}

void CDirChangeWatcher::OnChange() {
    m_changed = 1;
}

void CDirChangeWatcher::Stop() {
    bool ended = true;
    for (std::shared_ptr<Watch> watch = Current(); watch; watch = watch->before) ended &= watch->End();
    if (ended) Replace(nullptr);
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
    watch.armed.set_value();
    if (!watch.folder) return;
    while (watch.folder->Wait() == FolderWatch::Event::Change) {
        OnChange();
        if (watch.stopping || !watch.folder->Rearm()) break;
    }
    watch.folder->Close();
    watch.watching = false;
    watch.finished.set_value();
}
