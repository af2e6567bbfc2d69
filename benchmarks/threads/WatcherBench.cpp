#include <benchmark/benchmark.h>

#include <chrono>
#include <semaphore>

#include "benchmarks/files/Scratch.h"
#include "qvcommon/ChangeWatchers.h"
#include "qvcommon/framework/Process.h"

// The time from a write of one byte until OnChange runs, or until the program's line has been read.

namespace {

namespace fs = std::filesystem;

using Clock = std::chrono::steady_clock;

constexpr DWORD kWrites = 0x18;

class Watcher : public CDirChangeWatcher {
public:
    ~Watcher() override { Stop(); }
    void OnChange() override {
        m_at = Clock::now();
        m_told.release();
    }

    Clock::time_point m_at;
    std::counting_semaphore<> m_told{0};
};

/// A file in its own folder, which is written to.
class Changing {
public:
    explicit Changing(const char* name) : m_folder(TheScratch() / name) {
        fs::create_directory(m_folder);
        m_file.rdbuf()->pubsetbuf(nullptr, 0);
        m_file.open(m_folder + "/file", std::ios::binary);
    }
    Clock::time_point Write() {
        const auto before = Clock::now();
        m_file.put('x');
        return before;
    }
    CString Folder() const { return CString(m_folder); }

private:
    std::string m_folder;
    std::ofstream m_file;
};

void Count(benchmark::State& state, Clock::duration latency) {
    state.SetIterationTime(std::chrono::duration<double>(latency).count());
}

void Ours(benchmark::State& state) {
    Changing changing("watched");
    Watcher watcher;
    watcher.SetDirectory(changing.Folder());
    watcher.SetFilter(kWrites);
    if (!watcher.Start()) return state.SkipWithError("not armed");
    for (auto _ : state) {
        const auto before = changing.Write();
        watcher.m_told.acquire();
        Count(state, watcher.m_at - before);
    }
}

void InotifyWait(benchmark::State& state) {
    Changing changing("waited");
    CProcess program;
    const CString ready(TheScratch() / "ready");
    fs::remove(ready.AsStd());
    program.Start("sh",
                  {"-c", "exec inotifywait --monitor --recursive --event modify,attrib \"$1\" 2> \"$2\"", "sh",
                   changing.Folder(), ready},
                  CProcess::pipeOutput);
    for (std::string line; line.find("established") == std::string::npos;) {
        std::ifstream said(ready.AsStd());
        while (line.find("established") == std::string::npos && std::getline(said, line)) continue;
    }
    CString line;
    for (auto _ : state) {
        const auto before = changing.Write();
        program.Output().ReadString(line);
        Count(state, Clock::now() - before);
    }
    program.Kill();
}

BENCHMARK(Ours)->Name("WatcherLatency/QvCommon")->UseManualTime();
BENCHMARK(InotifyWait)->Name("WatcherLatency/inotifywait")->UseManualTime();

constexpr int kTop = 100, kBelow = 99;

/// 10,000 folders with one file each.
std::string Tree() {
    const std::string tree = TheScratch() / "folders";
    if (fs::exists(tree)) return tree;
    for (int i = 0; i < kTop; ++i)
        for (int j = 0; j <= kBelow; ++j) {
            std::string folder = tree + "/Folder " + std::to_string(i);
            if (j) folder += "/Part " + std::to_string(j);
            fs::create_directories(folder);
            std::ofstream(folder + "/file") << 'x';
        }
    return tree;
}

void Arm(benchmark::State& state) {
    const std::string tree = Tree();
    for (auto _ : state) {
        Watcher watcher;
        watcher.SetDirectory(tree.c_str());
        if (!watcher.Start()) return state.SkipWithError("not armed");
        state.PauseTiming();
        watcher.Stop();
        state.ResumeTiming();
    }
}

void Walk(benchmark::State& state) {
    const std::string tree = Tree();
    for (auto _ : state) {
        int folders = 0;
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(tree)) folders += entry.is_directory();
        if (folders != kTop * (kBelow + 1)) return state.SkipWithError("not all found");
    }
}

BENCHMARK(Arm)->Name("ArmTenThousandFolders/QvCommon")->UseRealTime();
BENCHMARK(Walk)->Name("ArmTenThousandFolders/walking alone")->UseRealTime();

}  // namespace
