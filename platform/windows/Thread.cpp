#include "platform/Thread.h"

#include <windows.h>

#include <memory>

namespace qv::platform {
namespace {

struct Start {
    ThreadFunction function;
    void* argument;
    HMODULE module;
};

// A reference to the module of this code; FreeLibrary lets go of it.
HMODULE AcquireOwnModule() {
    HMODULE module = nullptr;
    ::GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, reinterpret_cast<LPCSTR>(&AcquireOwnModule), &module);
    return module;
}

// The system's calling convention is not the compiler's own. A program may unload the library once a thread has told it
// that its work is done; the thread's last instructions are still to come, so it holds a reference until the system
// takes both away.
DWORD WINAPI Run(void* argument) {
    const Start start = *std::unique_ptr<Start>(static_cast<Start*>(argument));
    ::FreeLibraryAndExitThread(start.module, start.function(start.argument));
}

}  // namespace

ThreadHandle StartThread(ThreadFunction function, void* argument, std::uint32_t* id) {
    auto start = std::make_unique<Start>(Start{function, argument, AcquireOwnModule()});
    DWORD number = 0;
    const HANDLE thread = ::CreateThread(nullptr, 0, &Run, start.get(), 0, &number);
    if (!thread) {
        ::FreeLibrary(start->module);
        return nullptr;
    }
    static_cast<void>(start.release());  // the thread's now
    if (id) *id = number;
    return thread;
}

void CloseThread(ThreadHandle thread) {
    if (thread) ::CloseHandle(thread);
}

}  // namespace qv::platform
