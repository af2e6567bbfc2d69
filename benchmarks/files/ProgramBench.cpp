// The tool compared with other programs: listing, copying, deleting and checksumming a tree.

#include <benchmark/benchmark.h>

#include <functional>

#include "benchmarks/files/DiskImage.h"
#include "benchmarks/files/Tree.h"

namespace {

using Command = std::function<std::string(const std::string& tree)>;

std::string InMemory() {
    return TheScratch().Path();
}

// Returns an empty string if it cannot be mounted.
std::string OnDisk() {
    static const DiskImage disk(TheScratch().Path());
    return disk.IsMounted() ? disk.Path() : "";
}

void Run(benchmark::State& state, const std::string& command) {
    if (!RunCommand(command + " > /dev/null 2>&1")) state.SkipWithError("failed, or not installed");
}

benchmark::internal::Benchmark* Register(const std::string& name, std::function<void(benchmark::State&)> run) {
    return benchmark::RegisterBenchmark(name.c_str(), std::move(run))->UseRealTime()->Unit(benchmark::kMillisecond);
}

void RegisterRead(const std::string& name, Command command) {
    Register(name, [=](benchmark::State& state) {
        const std::string line = command(Tree::In(InMemory()));
        for (auto _ : state) Run(state, line);
    });
}

/// Runs both commands and times one of them.
void RegisterChange(const std::string& name, std::string (*place)(), Command make, Command remove, bool timesMaking) {
    const auto run = [=](benchmark::State& state) {
        if (place().empty()) return state.SkipWithError("only root can mount a file system");
        const std::string tree = Tree::In(place());
        for (auto _ : state) {
            if (!timesMaking) state.PauseTiming();
            Run(state, make(tree));
            timesMaking ? state.PauseTiming() : state.ResumeTiming();
            Run(state, remove(tree));
            if (timesMaking) state.ResumeTiming();
        }
    };
    Register(name, run)->Iterations(1);
}

std::string Quoted(const std::string& text) {
    return "'" + text + "'";
}

std::string Target(const std::string& tree) {
    return Quoted(tree + " copy");
}

std::string CopyByQv(const std::string& tree) {
    return Qv("copy --quiet ") + Quoted(tree) + " " + Target(tree);
}

std::string CopyByCp(const std::string& tree) {
    return "cp -a " + Quoted(tree) + " " + Target(tree);
}

std::string DeleteByQv(const std::string& tree) {
    return Qv("delete ") + Target(tree);
}

std::string DeleteByRm(const std::string& tree) {
    return "rm -rf " + Target(tree);
}

/// Returns the names of all files, each terminated by a zero byte.
std::string ListOf(const std::string& tree) {
    const std::string list = tree + " list";
    if (!std::filesystem::exists(list)) RunCommand("find " + Quoted(tree) + " -type f -print0 > " + Quoted(list));
    return Quoted(list);
}

std::string Large() {
    return Quoted(FileOf(std::size_t{1} << 30));
}

void RegisterFind() {
    RegisterRead("Names/QvCommon", [](const auto& tree) { return Qv("find --recurse --folders too ") + Quoted(tree); });
    RegisterRead("Names/fd", [](const auto& tree) { return "fdfind --unrestricted . " + Quoted(tree); });
    RegisterRead("Names/find", [](const auto& tree) { return "find " + Quoted(tree); });
    RegisterRead("NamesSizesTimes/QvCommon",
                 [](const auto& tree) { return Qv("find --recurse --json ") + Quoted(tree); });
    RegisterRead("NamesSizesTimes/find -printf",
                 [](const auto& tree) { return "find " + Quoted(tree) + " -type f -printf '%s %T@ %p\\n'"; });
}

void RegisterCopies(const std::string& where, std::string (*place)()) {
    RegisterChange("CopyTree" + where + "/QvCommon", place, CopyByQv, DeleteByRm, true);
    RegisterChange("CopyTree" + where + "/cp -a", place, CopyByCp, DeleteByRm, true);
    RegisterChange("DeleteTree" + where + "/QvCommon", place, CopyByCp, DeleteByQv, false);
    RegisterChange("DeleteTree" + where + "/rm -rf", place, CopyByCp, DeleteByRm, false);
}

void RegisterSums() {
    RegisterRead("SumsOfTree/QvCommon", [](const auto& tree) { return Qv("crc --quiet -0T ") + ListOf(tree); });
    RegisterRead("SumsOfTree/rhash", [](const auto& tree) { return "rhash --crc32 --simple -r " + Quoted(tree); });
    RegisterRead("SumsOfTree/7zz h", [](const auto& tree) { return "7zz h -scrccrc32 " + Quoted(tree); });
    RegisterRead("SumsOfTree/reading alone (cat)", [](const auto& tree) { return "xargs -0 cat < " + ListOf(tree); });
    RegisterRead("SumOfLargeFile/QvCommon", [](const auto&) { return Qv("crc --quiet ") + Large(); });
    RegisterRead("SumOfLargeFile/rhash", [](const auto&) { return "rhash --crc32 --simple " + Large(); });
    RegisterRead("SumOfLargeFile/7zz h", [](const auto&) { return "7zz h -scrccrc32 " + Large(); });
    RegisterRead("SumOfLargeFile/reading alone (cat)", [](const auto&) { return "cat " + Large(); });
}

const bool g_registered = [] {
    RegisterFind();
    RegisterCopies("InMemory", &InMemory);
    RegisterCopies("OnExt4", &OnDisk);
    RegisterSums();
    return true;
}();

}  // namespace
