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

// Returns a reference to the module of this code; FreeLibrary releases it.
HMODULE AcquireOwnModule() {
    HMODULE module = nullptr;
    ::GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, reinterpret_cast<LPCSTR>(&AcquireOwnModule), &module);
    return module;
}

// Uses the system's calling convention, not the compiler's default. A program may unload the library once a thread has
// signalled that its work is done; the last instructions of the thread are yet to run, so it holds a reference until
// the system releases it together with the thread.
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
    static_cast<void>(start.release());  // now owned by the thread
    if (id) *id = number;
    return thread;
}

void CloseThread(ThreadHandle thread) {
    if (thread) ::CloseHandle(thread);
}

}  // namespace qv::platform
