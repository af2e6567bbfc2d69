#include <benchmark/benchmark.h>
#include <libdeflate.h>
#include <zlib.h>

#include <memory>

#include "benchmarks/files/Scratch.h"
#include "core/Crc32.h"
#include "qvcommon/Checksum.h"

namespace {

std::string Text(std::size_t size) {
    std::string text(size, '\0');
    unsigned value = 1;
    for (char& c : text) c = static_cast<char>((value = value * 1664525 + 1013904223) >> 24);
    return text;
}

template <class Sum>
void OfMemory(benchmark::State& state, Sum sum) {
    const std::string text = Text(1 << 20);
    for (auto _ : state) benchmark::DoNotOptimize(sum(text));
}

BENCHMARK_CAPTURE(OfMemory, ours, [](const std::string& t) {
    return MemCRC(t.data(), static_cast<int>(t.size()));
})->Name("MemCRC_1MB/QvCommon");
BENCHMARK_CAPTURE(OfMemory, zlib, [](const std::string& t) {
    return crc32(0, reinterpret_cast<const Bytef*>(t.data()), static_cast<uInt>(t.size()));
})->Name("MemCRC_1MB/zlib");
BENCHMARK_CAPTURE(OfMemory, libdeflate, [](const std::string& t) {
    return libdeflate_crc32(0, t.data(), t.size());
})->Name("MemCRC_1MB/libdeflate");
BENCHMARK_CAPTURE(OfMemory, tables, [](const std::string& t) {
    return qv::Crc32ByTables(0, t.data(), t.size());
})->Name("MemCRC_by_tables_1MB/QvCommon");
BENCHMARK_CAPTURE(OfMemory, zlib_tables, [](const std::string& t) {
    return crc32(0, reinterpret_cast<const Bytef*>(t.data()), static_cast<uInt>(t.size()));
})->Name("MemCRC_by_tables_1MB/zlib");

constexpr std::size_t kGigabyte = 1 << 30;

void OfFile(benchmark::State& state) {
    const std::string path = FileOf(kGigabyte);
    for (auto _ : state) benchmark::DoNotOptimize(FileCRC(path.c_str()));
}

// Only reads, in the same steps.
void ReadOnly(benchmark::State& state) {
    const std::string path = FileOf(kGigabyte);
    constexpr std::size_t kStep = 256 * 1024;
    const auto buffer = std::make_unique<char[]>(kStep);
    for (auto _ : state) {
        std::FILE* const file = std::fopen(path.c_str(), "rb");
        std::setvbuf(file, nullptr, _IONBF, 0);
        while (std::fread(buffer.get(), 1, kStep, file) == kStep) benchmark::ClobberMemory();
        std::fclose(file);
    }
}

BENCHMARK(OfFile)->Name("FileCRC_1GB/QvCommon")->Unit(benchmark::kMillisecond);
BENCHMARK(ReadOnly)->Name("FileCRC_1GB/reading alone")->Unit(benchmark::kMillisecond);

}  // namespace
