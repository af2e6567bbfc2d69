#include <thread>

#include "platform/Event.h"
#include "platform/FolderWatch.h"
#include "qvcommon/ChangeWatchers.h"

using qv::platform::FolderWatch;

struct CDirChangeWatcher::Watch {
    std::unique_ptr<FolderWatch> folder;  // there once it is armed, null when it could not be opened
    qv::platform::Event armed, finished;
    std::atomic<bool> watching = true, stopping = false;
    std::atomic<std::thread::id> thread = {};
    std::shared_ptr<Watch> before = {};  // whose OnChange started this one

    // False on the watch's own thread, which cannot wait for itself.
    bool End() {
        stopping = true;
        folder->Stop();
        if (thread.load() == std::this_thread::get_id()) return false;
        finished.Wait();
        finished.Set();  // for who else asks
        return true;
    }
};

struct CDirChangeWatcher::Body {
    CDirChangeWatcher* watcher;
    std::shared_ptr<Watch> watch;
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
    auto start = std::make_unique<Body>(Body{this, watch});
    const HANDLE thread = QvCreateThread(
        [](void* argument) -> UINT {
            const std::unique_ptr<Body> given(static_cast<Body*>(argument));
            given->watcher->Run(*given->watch);
            return 1;
        },
        start.get(), nullptr);
    if (!thread) return Replace(watch->before), 0;
    static_cast<void>(start.release());  // the thread's own now
    QvCloseThread(thread);
    watch->armed.Wait();
    if (!watch->folder) return Replace(watch->before), 0;
    return 1;
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

// The system's own notifications belong to the thread that asks for them, so all is done on this one. After each OnChange
// the object may be gone; what the thread goes on with is its own share of the watch.
void CDirChangeWatcher::Run(Watch& watch) {
    watch.thread = std::this_thread::get_id();
    watch.folder = FolderWatch::Open(m_folder, m_checkSubfolders != 0, m_filter);
    watch.armed.Set();
    if (!watch.folder) return;
    while (watch.folder->Wait() == FolderWatch::Event::Change) {
        OnChange();
        if (watch.stopping || !watch.folder->Rearm()) break;
    }
    watch.folder->Close();
    watch.watching = false;
    watch.finished.Set();
}
