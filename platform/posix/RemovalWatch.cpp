#include "platform/RemovalWatch.h"

#include "platform/Path.h"
#include "platform/posix/System.h"
#include "platform/posix/UniqueFd.h"

namespace qv::platform {
namespace {

class InotifyRemovalWatch : public RemovalWatch {
public:
    InotifyRemovalWatch() : m_events(sys::inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {}

    // Removing the name of an open file changes its link count, which is an attribute.
    bool Arm(const std::string& path) {
        return m_events &&
               sys::inotify_add_watch(m_events.Get(), path.c_str(), IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF).ok();
    }

    // An interrupted wait just ends early.
    void WaitFor(std::chrono::milliseconds limit) override {
        pollfd waited{m_events.Get(), POLLIN, 0};
        sys::poll(&waited, 1, static_cast<int>(limit.count())).IgnoreError();
    }

private:
    UniqueFd m_events;
};

}  // namespace

std::unique_ptr<RemovalWatch> RemovalWatch::Open(const char* path) {
    auto watch = std::make_unique<InotifyRemovalWatch>();
    if (!watch->Arm(NativePath(path))) return nullptr;
    return watch;
}

}  // namespace qv::platform
