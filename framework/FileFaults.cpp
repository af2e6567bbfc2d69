#include "framework/FileFaults.h"

#include <atomic>

namespace qv {
namespace {

std::atomic<IFileFaults*> g_faults = nullptr;

}  // namespace

IFileFaults* SetFileFaults(IFileFaults* faults) {
    return g_faults.exchange(faults);
}

platform::FileFailure FaultBefore(FileCall call, const char* path) {
    IFileFaults* const faults = g_faults;
    return faults ? faults->Before(call, path) : platform::FileFailure{};
}

}  // namespace qv
