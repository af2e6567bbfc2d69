// Folders with more entries, files with more lines, settings with more values.

#include "benchmarks/files/Scratch.h"
#include "benchmarks/support/Growth.h"
#include "qvcommon/CopyTree.h"
#include "qvcommon/FileFinder.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/ProfileStore.h"

namespace {

namespace fs = std::filesystem;

/// Returns a folder with the given number of empty files.
std::string Folder(const benchmark::State& state, const std::string& name) {
    const std::string folder = TheScratch() / (name + std::to_string(state.range()));
    fs::create_directories(folder);
    for (std::int64_t i = 0; i < state.range(); ++i)
        std::ofstream(folder + "/Document " + std::to_string(i * 7919 % state.range()));
    return folder;
}

void Find(benchmark::State& state) {
    const std::string folder = Folder(state, "found");
    for (auto _ : state) {
        FileFinder finder;
        finder.SetSearchPath(folder.c_str());
        finder.SetSearchMasks({"Doc*", "*.txt"});
        finder.Discover();
        if (finder.GetFiles().GetSize() != state.range()) state.SkipWithError("not all found");
    }
}
QV_GROWTH(FindInOneFolder, Find, 5000);

void Copy(benchmark::State& state) {
    const std::string folder = Folder(state, "copied"), target = folder + " to";
    for (auto _ : state) {
        CCopyTree copy;
        copy.CopyTree(CString(folder), CString(target));
    }
}
QV_GROWTH(CopyOneFolder, Copy, 2500);

void Delete(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        const std::string folder = Folder(state, "deleted");
        state.ResumeTiming();
        CFileUtils::DelTree(folder.c_str(), 1);
    }
}
QV_GROWTH(DeleteOneFolder, Delete, 2500);

void ReadLines(benchmark::State& state) {
    const std::string path = TheScratch() / ("lines" + std::to_string(state.range()));
    {
        std::ofstream file(path);
        for (std::int64_t i = 0; i < state.range(); ++i) file << "Line " << i << "\n";
    }
    for (auto _ : state) {
        CStringArray lines;
        CFileUtils::ReadFile(path.c_str(), lines);
        if (lines.GetSize() < state.range()) state.SkipWithError("lines are missing");
    }
}
QV_GROWTH(ReadLines, ReadLines, 50000);

// In one update, as programs save their settings.
void SetSettings(benchmark::State& state) {
    const std::string path = TheScratch() / ("set" + std::to_string(state.range()) + ".ini");
    for (auto _ : state) {
        ProfileStore store(path.c_str());
        store.Update([&] {
            for (std::int64_t i = 0; i < state.range(); ++i)
                store.SetInteger("Section " + std::to_string(i % 10), "Entry " + std::to_string(i), 1);
        });
    }
}
QV_GROWTH(SetSettings, SetSettings, 1000);

}  // namespace
