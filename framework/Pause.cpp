#include "framework/Pause.h"

#include <atomic>
#include <chrono>
#include <thread>

namespace qv {
namespace {

std::atomic<IPause*> g_handler = nullptr;

}  // namespace

void Pause(unsigned long long milliseconds) {
    if (IPause* const handler = g_handler) return handler->Pause(milliseconds);
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

IPause* SetPause(IPause* handler) {
    return g_handler.exchange(handler);
}

}  // namespace qv
