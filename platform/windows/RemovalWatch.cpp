#include "platform/RemovalWatch.h"

#include "platform/windows/UniqueHandle.h"
#include "platform/windows/names/WidePath.h"

namespace qv::platform {
namespace {

using UniqueNotification = UniqueResource<HANDLE, sys::FindCloseChangeNotification>;

class FolderRemovalWatch : public RemovalWatch {
public:
    explicit FolderRemovalWatch(UniqueNotification notification) : m_notification(std::move(notification)) {}

    void WaitFor(std::chrono::milliseconds limit) override {
        sys::WaitForSingleObject(m_notification.Get(), static_cast<DWORD>(limit.count())).IgnoreError();
    }

private:
    UniqueNotification m_notification;
};

}  // namespace

std::unique_ptr<RemovalWatch> RemovalWatch::Open(const char* path) {
    std::wstring folder = WidePath(path);
    folder.erase(folder.find_last_of(L"\\/") + 1);
    if (folder.empty()) folder = L".";
    UniqueNotification notification(
        sys::FindFirstChangeNotificationW(folder.c_str(), FALSE, FILE_NOTIFY_CHANGE_FILE_NAME));
    if (!notification) return nullptr;
    return std::make_unique<FolderRemovalWatch>(std::move(notification));
}

}  // namespace qv::platform
