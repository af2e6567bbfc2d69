// Reads and sets one value of a settings file. Every operation reads the file again.

#include <benchmark/benchmark.h>
#include <glib.h>

#include "benchmarks/files/Scratch.h"
#include "qvcommon/ProfileStore.h"

namespace {

/// Returns ten sections with the given number of entries in total.
std::string Settings(const benchmark::State& state) {
    const auto count = static_cast<std::size_t>(state.range());
    const std::string path = TheScratch() / ("settings" + std::to_string(count) + ".ini");
    std::ofstream file(path);
    for (std::size_t i = 0; i < count; ++i) {
        if (i % (count / 10) == 0) file << "[Section " << i / (count / 10) << "]\n# a comment\n";
        file << "Entry" << i << "=" << i << "\n";
    }
    return path;
}

struct KeyFile {
    explicit KeyFile(const std::string& path) {
        g_key_file_load_from_file(file, path.c_str(), G_KEY_FILE_KEEP_COMMENTS, nullptr);
    }
    ~KeyFile() { g_key_file_free(file); }
    KeyFile(const KeyFile&) = delete;
    KeyFile& operator=(const KeyFile&) = delete;

    GKeyFile* const file = g_key_file_new();
};

std::string LastEntry(const benchmark::State& state) {
    return "Entry" + std::to_string(state.range() - 1);
}

void OurGet(benchmark::State& state) {
    const std::string path = Settings(state), entry = LastEntry(state);
    const ProfileStore store(path.c_str());
    for (auto _ : state)
        if (store.GetInteger("Section 9", entry) != state.range() - 1) state.SkipWithError("not found");
}

void GlibGet(benchmark::State& state) {
    const std::string path = Settings(state), entry = LastEntry(state);
    for (auto _ : state)
        if (g_key_file_get_integer(KeyFile(path).file, "Section 9", entry.c_str(), nullptr) != state.range() - 1)
            state.SkipWithError("not found");
}

void OurSet(benchmark::State& state) {
    const std::string path = Settings(state), entry = LastEntry(state);
    ProfileStore store(path.c_str());
    int value = 0;
    for (auto _ : state) store.SetInteger("Section 9", entry, ++value);
}

// Only ours takes a lock, syncs, and preserves the attributes of the old file.
void GlibSet(benchmark::State& state) {
    const std::string path = Settings(state), entry = LastEntry(state);
    int value = 0;
    for (auto _ : state) {
        const KeyFile keys(path);
        g_key_file_set_integer(keys.file, "Section 9", entry.c_str(), ++value);
        if (!g_key_file_save_to_file(keys.file, path.c_str(), nullptr)) state.SkipWithError("not saved");
    }
}

void Counts(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(50)->Arg(5000)->Unit(benchmark::kMicrosecond)->UseRealTime();
}

BENCHMARK(OurGet)->Name("GetSetting/QvCommon")->Apply(Counts);
BENCHMARK(GlibGet)->Name("GetSetting/GLib's GKeyFile")->Apply(Counts);
BENCHMARK(OurSet)->Name("SetSetting/QvCommon")->Apply(Counts);
BENCHMARK(GlibSet)->Name("SetSetting/GLib's GKeyFile")->Apply(Counts);

}  // namespace
