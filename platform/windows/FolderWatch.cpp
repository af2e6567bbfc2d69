#include "platform/FolderWatch.h"

#include "platform/windows/UniqueHandle.h"
#include "platform/windows/names/WidePath.h"

namespace qv::platform {
namespace {

using UniqueNotification = UniqueResource<HANDLE, sys::FindCloseChangeNotification>;

class ChangeNotification : public FolderWatch {
public:
    ChangeNotification(UniqueNotification notification, UniqueHandle stop)
        : m_notification(std::move(notification)), m_stop(std::move(stop)) {}

    Event Wait() override {
        const HANDLE waited[] = {m_notification.Get(), m_stop.Get()};
        switch (sys::WaitForMultipleObjects(2, waited, FALSE, INFINITE).value()) {
            case WAIT_OBJECT_0: return Event::Change;
            case WAIT_OBJECT_0 + 1: return Event::Stop;
            default: return Event::Failure;
        }
    }

    bool Rearm() override { return sys::FindNextChangeNotification(m_notification.Get()).ok(); }

    // The event exists as long as this object, and the system fails for no other reason.
    void Stop() override { sys::SetEvent(m_stop.Get()).IgnoreError(); }

    // After a failed close, too, no changes are reported any longer.
    void Close() override { m_notification.Close().IgnoreError(); }

private:
    UniqueNotification m_notification;
    UniqueHandle m_stop;
};

}  // namespace

std::unique_ptr<FolderWatch> FolderWatch::Open(const char* folder, bool subfolders, unsigned changes) {
    UniqueHandle stop(sys::CreateEventA(nullptr, FALSE, FALSE, nullptr));
    UniqueNotification notification(sys::FindFirstChangeNotificationW(WidePath(folder).c_str(), subfolders, changes));
    if (!stop || !notification) return nullptr;
    return std::make_unique<ChangeNotification>(std::move(notification), std::move(stop));
}

}  // namespace qv::platform
