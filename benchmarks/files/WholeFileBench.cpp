#include <benchmark/benchmark.h>

#include <cstdio>
#include <memory>
#include <vector>

#include "benchmarks/files/Scratch.h"
#include "qvcommon/FileUtils.h"

namespace {

constexpr std::size_t kSize = 64 << 20;

void Ours(benchmark::State& state) {
    const std::string path = FileOf(kSize);
    for (auto _ : state) benchmark::DoNotOptimize(CFileUtils::ReadFile(path.c_str()));
}

// One system call.
void Read(const std::string& path, char* buffer) {
    std::FILE* const file = std::fopen(path.c_str(), "rb");
    std::setvbuf(file, nullptr, _IONBF, 0);
    benchmark::DoNotOptimize(std::fread(buffer, 1, kSize, file));
    std::fclose(file);
}

// Into memory that was written before.
void IntoReadyBuffer(benchmark::State& state) {
    const std::string path = FileOf(kSize);
    std::vector<char> buffer(kSize, 'x');
    for (auto _ : state) Read(path, buffer.data());
}

// Into new memory, as for a returned result.
void IntoNewBuffer(benchmark::State& state) {
    const std::string path = FileOf(kSize);
    for (auto _ : state) Read(path, std::make_unique_for_overwrite<char[]>(kSize).get());
}

BENCHMARK(Ours)->Name("ReadFile_64MB/QvCommon")->Unit(benchmark::kMillisecond);
BENCHMARK(IntoReadyBuffer)->Name("ReadFile_64MB/fread into a ready buffer")->Unit(benchmark::kMillisecond);
BENCHMARK(IntoNewBuffer)->Name("ReadFile_64MB/fread into a new buffer")->Unit(benchmark::kMillisecond);

std::string FileOfLines() {
    const std::string path = TheScratch() / "lines";
    if (std::filesystem::exists(path)) return path;
    std::ofstream file(path, std::ios::binary);
    for (int i = 0; i < 500000; ++i) file << "Line " << i << " of a text file" << std::string(i % 60u, '.') << "\n";
    return path;
}

void OurLines(benchmark::State& state) {
    const std::string path = FileOfLines();
    for (auto _ : state) {
        CStringArray lines;
        CFileUtils::ReadFile(path.c_str(), lines);
        benchmark::DoNotOptimize(lines);
    }
}

void StandardLines(benchmark::State& state) {
    const std::string path = FileOfLines();
    for (auto _ : state) {
        std::vector<std::string> lines;
        std::ifstream file(path);
        for (std::string line; std::getline(file, line);) lines.push_back(line);
        benchmark::DoNotOptimize(lines);
    }
}

BENCHMARK(OurLines)->Name("ReadFile_lines/QvCommon")->Unit(benchmark::kMillisecond);
BENCHMARK(StandardLines)->Name("ReadFile_lines/std::getline")->Unit(benchmark::kMillisecond);

}  // namespace
