#include "qvcommon/ChangeWatchers.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/framework/MessageBox.h"

namespace {

constexpr UINT kInformationIcon = 0x40;

}  // namespace

void CDeletedFileWatcher::OnTick() {
    if (CFileUtils::IsExist(m_path)) return;
    AfxMessageBox(m_message, kInformationIcon);
    m_manager->FileDeleted(m_path);
    StopThread();
}

CDeletedFileWatchManager::CDeletedFileWatchManager(DWORD seconds, int allowDuplicates)
    : m_seconds(seconds), m_allowDuplicates(allowDuplicates) {}

CDeletedFileWatchManager::~CDeletedFileWatchManager() {
    Close();
}

void CDeletedFileWatchManager::AddFile(const char* path, const char* message) {
    {
        const std::scoped_lock guard(m_guard);
        void* present = nullptr;
        if (!m_allowDuplicates && m_paths.Lookup(path, present)) return;
        m_paths.SetAt(path, nullptr);
    }
    auto watcher = std::make_unique<CDeletedFileWatcher>(path, message, this);
    watcher->StartThread(m_seconds);
    m_watchers.push_back(std::move(watcher));
}

void CDeletedFileWatchManager::FileDeleted(const char* path) {
    const std::scoped_lock guard(m_guard);
    m_paths.RemoveKey(path);
}

void CDeletedFileWatchManager::Close() {
    for (std::unique_ptr<CDeletedFileWatcher>& watcher : m_watchers) {
        watcher->StopThread();
        watcher = nullptr;
    }
    m_watchers.clear();
    const std::scoped_lock guard(m_guard);
    m_paths.RemoveAll();
}
