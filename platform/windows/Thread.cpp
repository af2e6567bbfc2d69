#include "platform/Thread.h"

#include <windows.h>

#include <memory>

namespace qv::platform {
namespace {

struct Start {
    ThreadFunction function;
    void* argument;
};

// The system's calling convention is not the compiler's own.
DWORD WINAPI Run(void* argument) {
    const Start start = *std::unique_ptr<Start>(static_cast<Start*>(argument));
    return start.function(start.argument);
}

}  // namespace

ThreadHandle StartThread(ThreadFunction function, void* argument, std::uint32_t* id) {
    auto start = std::make_unique<Start>(Start{function, argument});
    DWORD number = 0;
    const HANDLE thread = ::CreateThread(nullptr, 0, &Run, start.get(), 0, &number);
    if (!thread) return nullptr;
    static_cast<void>(start.release());  // the thread's own now
    if (id) *id = number;
    return thread;
}

void CloseThread(ThreadHandle thread) {
    if (thread) ::CloseHandle(thread);
}

}  // namespace qv::platform
