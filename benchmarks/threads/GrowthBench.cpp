// More objects in a map of locked ones, more listeners, longer messages, more watched folders.

#include <memory>
#include <vector>

#include "benchmarks/files/Scratch.h"
#include "benchmarks/support/Growth.h"
#include "qvcommon/ChangeWatchers.h"
#include "qvcommon/LockedObjects.h"
#include "qvcommon/UserMessages.h"

namespace {

class Object : public CLockableObject {};

void FillLockedMap(benchmark::State& state) {
    for (auto _ : state) {
        CLockedObjectMap map;
        for (std::int64_t i = 0; i < state.range(); ++i) map.AddItem(std::to_string(i).c_str(), new Object);
        for (std::int64_t i = 0; i < state.range(); ++i)
            delete map.RemoveAt(std::to_string(i * 7919 % state.range()).c_str());
        map.Clear();
    }
}
QV_GROWTH(FillLockedObjectMap, FillLockedMap, 2500);

std::string NameOf(std::int64_t number) {
    return "qv-bench-growth-" + std::to_string(number);
}

void Listeners(benchmark::State& state) {
    for (auto _ : state) {
        std::vector<std::unique_ptr<CUserMessageListener>> listeners;
        for (std::int64_t i = 0; i < state.range(); ++i) {
            listeners.push_back(std::make_unique<CUserMessageListener>());
            if (!listeners.back()->Create(NameOf(i).c_str(), 1)) return state.SkipWithError("not created");
        }
        for (std::int64_t i = 0; i < state.range(); ++i)
            if (!CUserMessageListener::DoesListenerExist(NameOf(i).c_str(), 1)) return state.SkipWithError("not there");
    }
}
QV_GROWTH(Listeners, Listeners, 50);

class CountingWatcher : public CDirChangeWatcher {
public:
    ~CountingWatcher() override { Stop(); }
};

void WatchFolders(benchmark::State& state) {
    const std::string tree = TheScratch() / "watched growth" + std::to_string(state.range());
    for (std::int64_t i = 0; i < state.range(); ++i)
        std::filesystem::create_directories(tree + "/" + std::to_string(i));
    for (auto _ : state) {
        CountingWatcher watcher;
        watcher.SetDirectory(tree.c_str());
        if (!watcher.Start()) return state.SkipWithError("not armed");
    }
}
QV_GROWTH(WatchFolders, WatchFolders, 2000);

}  // namespace
