#pragma once

/// @file The interface between the library and the system. Every system call goes through the tables posix/System.h and
/// windows/System.h, which consult the installed fault injector before each call. A test replaces the injector to make
/// the Nth call fail, transfer a single byte, wait, or end the process. The rest of the library is not aware of it.

#include <atomic>
#include <string_view>

namespace qv::platform {

/// The kind of a call, the same on every system.
enum class CallKind {
    Open,
    Close,
    Read,
    Write,
    Flush,
    Seek,
    Resize,
    Lock,
    Status,
    ChangeStatus,
    Remove,
    Rename,
    Link,
    Copy,
    CreateFolder,
    OpenFolder,
    ListFolder,
    Watch,
    Message,
    Process,
    Other
};

struct SystemCallInfo {
    CallKind kind;
    const char* name;       ///< the system's name of the call
    std::string_view path;  ///< the first path among its arguments in the system's form, or empty
};

/// How to change a call.
struct Fault {
    unsigned long error = 0;  ///< unless 0, the call is not made and fails with this system error number
    bool shorten = false;     ///< limits a transfer to one byte
};

class IFaultInjector {
public:
    virtual ~IFaultInjector() = default;
    /// Called on the calling thread before each call. May wait, or end the process. Must not call the library.
    virtual Fault Before(const SystemCallInfo& call) = 0;
};

/// Sets an injector for the whole process, null for none, and returns the previous one. Not owned; must outlive the
/// call that replaces it. Thread-safe.
IFaultInjector* SetFaultInjector(IFaultInjector* injector);

/// The current injector, null in every program except tests.
inline std::atomic<IFaultInjector*> g_faultInjector = nullptr;

}  // namespace qv::platform
