// Walks a tree with the size and time of each file, using a library.

#include <benchmark/benchmark.h>

#include "benchmarks/files/Tree.h"
#include "qvcommon/FileFinder.h"

namespace {

namespace fs = std::filesystem;

void Find(benchmark::State& state) {
    const std::string tree = Tree::In(TheScratch().Path());
    for (auto _ : state) {
        FileFinder finder;
        finder.SetSearchPath(tree.c_str());
        finder.SetSearchMask("*.*");
        finder.SetRecurse(1);
        finder.Discover();
        if (finder.GetFiles().GetSize() != Tree::kAllFiles) state.SkipWithError("not all found");
    }
}

void FindStandard(benchmark::State& state) {
    const std::string tree = Tree::In(TheScratch().Path());
    for (auto _ : state) {
        std::uintmax_t sum = 0;
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(tree))
            if (entry.status().type() == fs::file_type::regular)
                sum +=
                    entry.file_size() + static_cast<std::uintmax_t>(entry.last_write_time().time_since_epoch().count());
        benchmark::DoNotOptimize(sum);
    }
}

// One query per entry, which only uses the type.
void FindStandardStatus(benchmark::State& state) {
    const std::string tree = Tree::In(TheScratch().Path());
    for (auto _ : state) {
        int files = 0;
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(tree))
            files += entry.status().type() == fs::file_type::regular;
        benchmark::DoNotOptimize(files);
    }
}

#define QV_WALK(function, who) BENCHMARK(function)->Name("Walk/" who)->Unit(benchmark::kMillisecond)->UseRealTime()
QV_WALK(Find, "QvCommon");
QV_WALK(FindStandard, "recursive_directory_iterator, size and time");
QV_WALK(FindStandardStatus, "recursive_directory_iterator, type alone");

}  // namespace
