#include "platform/FolderWatch.h"

#include "platform/windows/Owned.h"

namespace qv::platform {
namespace {

class ChangeNotification : public FolderWatch {
public:
    explicit ChangeNotification(HANDLE notification)
        : m_stop(::CreateEventA(nullptr, FALSE, FALSE, nullptr)), m_waited{notification, m_stop.Get()} {}
    ~ChangeNotification() override { ChangeNotification::Close(); }
    ChangeNotification(const ChangeNotification&) = delete;
    ChangeNotification& operator=(const ChangeNotification&) = delete;

    Event Wait() override {
        switch (::WaitForMultipleObjects(2, m_waited, FALSE, INFINITE)) {
            case WAIT_OBJECT_0: return Event::Change;
            case WAIT_OBJECT_0 + 1: return Event::Stop;
            default: return Event::Failure;
        }
    }

    bool Rearm() override { return ::FindNextChangeNotification(m_waited[0]); }

    void Stop() override { ::SetEvent(m_stop.Get()); }

    void Close() override {
        if (m_waited[0] != INVALID_HANDLE_VALUE) ::FindCloseChangeNotification(m_waited[0]);
        m_waited[0] = INVALID_HANDLE_VALUE;
    }

private:
    Owned m_stop;
    HANDLE m_waited[2];
};

}  // namespace

std::unique_ptr<FolderWatch> FolderWatch::Open(const char* folder, bool subfolders, unsigned changes) {
    const HANDLE notification = ::FindFirstChangeNotificationA(folder, subfolders, changes);
    if (notification == INVALID_HANDLE_VALUE) return nullptr;
    return std::make_unique<ChangeNotification>(notification);
}

}  // namespace qv::platform
