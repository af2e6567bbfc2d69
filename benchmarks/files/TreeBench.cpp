#include <benchmark/benchmark.h>

#include <cstdlib>

#include "benchmarks/files/Scratch.h"
#include "qvcommon/CopyTree.h"
#include "qvcommon/FileFinder.h"
#include "qvcommon/FileUtils.h"

// A tree of 100,000 files in 5,000 folders, in the page cache.

namespace {

namespace fs = std::filesystem;

constexpr int kTop = 50, kBelow = 99, kFiles = 20;

void MakeFiles(const std::string& folder) {
    fs::create_directories(folder);
    for (int i = 0; i < kFiles; ++i)
        std::ofstream(folder + "/Document " + std::to_string(i) + ".txt") << std::string(i * 97u, 'x');
}

std::string Tree() {
    const std::string tree = TheScratch() / "tree";
    if (fs::exists(tree)) return tree;
    for (int i = 0; i < kTop; ++i) {
        const std::string folder = tree + "/Folder " + std::to_string(i);
        MakeFiles(folder);
        for (int j = 0; j < kBelow; ++j) MakeFiles(folder + "/Part " + std::to_string(j));
    }
    return tree;
}

void Run(const std::string& command) {
    if (std::system(command.c_str())) std::abort();
}

void Find(benchmark::State& state) {
    const std::string tree = Tree();
    for (auto _ : state) {
        FileFinder finder;
        finder.SetSearchPath(tree.c_str());
        finder.SetSearchMask("*.*");
        finder.SetRecurse(1);
        finder.Discover();
        if (finder.GetFiles().GetSize() != kTop * (kBelow + 1) * kFiles) state.SkipWithError("not all found");
    }
}

void FindStandard(benchmark::State& state) {
    const std::string tree = Tree();
    for (auto _ : state) {
        std::uintmax_t sum = 0;
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(tree))
            if (entry.status().type() == fs::file_type::regular)
                sum +=
                    entry.file_size() + static_cast<std::uintmax_t>(entry.last_write_time().time_since_epoch().count());
        benchmark::DoNotOptimize(sum);
    }
}

// One question for each entry, and no more of its answer than the type.
void FindStandardStatus(benchmark::State& state) {
    const std::string tree = Tree();
    for (auto _ : state) {
        int files = 0;
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(tree))
            files += entry.status().type() == fs::file_type::regular;
        benchmark::DoNotOptimize(files);
    }
}

void FindProgram(benchmark::State& state) {
    const std::string command = "find '" + Tree() + "' -printf '%s %T@ %p\\n' > /dev/null";
    for (auto _ : state) Run(command);
}

BENCHMARK(Find)->Name("Find/qvcommon")->Unit(benchmark::kMillisecond);
BENCHMARK(FindStandard)->Name("Find/recursive_directory_iterator_size_time")->Unit(benchmark::kMillisecond);
BENCHMARK(FindStandardStatus)->Name("Find/recursive_directory_iterator_status")->Unit(benchmark::kMillisecond);
BENCHMARK(FindProgram)->Name("Find/find_printf")->Unit(benchmark::kMillisecond);

void CopyTo(const std::string& target, int laterOnly) {
    CCopyTree copy;
    copy.SetLaterOnly(laterOnly);
    copy.CopyTree(CString(Tree()), CString(target));
}

/// Each copy goes to a fresh folder; what deletes it is not timed.
template <class Copy>
void TimeCopy(benchmark::State& state, Copy copy) {
    const std::string target = TheScratch() / "copy";
    Tree();
    for (auto _ : state) {
        copy(target);
        state.PauseTiming();
        Run("rm -rf '" + target + "'");
        state.ResumeTiming();
    }
}

void Copy(benchmark::State& state) {
    TimeCopy(state, [](const std::string& target) { CopyTo(target, 0); });
}

void CopyProgram(benchmark::State& state) {
    TimeCopy(state, [](const std::string& target) { Run("cp -a '" + Tree() + "' '" + target + "'"); });
}

void CopyAgain(benchmark::State& state) {
    const std::string target = TheScratch() / "again";
    CopyTo(target, 1);
    for (auto _ : state) CopyTo(target, 1);
}

BENCHMARK(Copy)->Name("Copy/qvcommon")->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(CopyProgram)->Name("Copy/cp_a")->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(CopyAgain)->Name("Copy/qvcommon_later_only_again")->Unit(benchmark::kMillisecond);

/// Each run deletes a fresh copy; what makes it is not timed.
template <class Delete>
void TimeDelete(benchmark::State& state, Delete remove) {
    const std::string target = TheScratch() / "victim";
    Tree();
    for (auto _ : state) {
        state.PauseTiming();
        Run("cp -a '" + Tree() + "' '" + target + "'");
        state.ResumeTiming();
        remove(target);
    }
}

void Delete(benchmark::State& state) {
    TimeDelete(state, [](const std::string& target) { CFileUtils::DelTree(target.c_str(), 1); });
}

void DeleteProgram(benchmark::State& state) {
    TimeDelete(state, [](const std::string& target) { Run("rm -rf '" + target + "'"); });
}

BENCHMARK(Delete)->Name("DelTree/qvcommon")->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(DeleteProgram)->Name("DelTree/rm_rf")->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
