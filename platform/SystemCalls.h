#pragma once

/// @file The seam between the library and the system. Every system call goes through the tables posix/System.h and
/// windows/System.h, which consult the fault injector in force before each call. A test replaces the injector to make the
/// Nth call fail, transfer a single byte, wait, or end the process. Nothing else in the library knows of it.

#include <atomic>
#include <string_view>

namespace qv::platform {

/// What a call does, alike on every system.
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
    const char* name;       ///< the system's own name of the call
    std::string_view path;  ///< the first path among its arguments in the system's form, or empty
};

/// What is to become of a call.
struct Fault {
    unsigned long error = 0;  ///< unless 0, the call is not made and fails with this error number of the system
    bool shorten = false;     ///< a transfer of bytes moves one byte at most
};

class IFaultInjector {
public:
    virtual ~IFaultInjector() = default;
    /// Runs on the calling thread before each call. May wait, or end the process. Must not call the library.
    virtual Fault Before(const SystemCallInfo& call) = 0;
};

/// Puts an injector in force for the whole process, null for none, and returns the previous one. Not owned; it must
/// outlive the call that replaces it. Safe from any thread.
IFaultInjector* SetFaultInjector(IFaultInjector* injector);

/// The injector in force, null in every program but tests.
inline std::atomic<IFaultInjector*> g_faultInjector = nullptr;

}  // namespace qv::platform
