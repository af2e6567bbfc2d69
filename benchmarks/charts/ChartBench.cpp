// Draws a chart of a million points, compared with writing its numbers as text, the minimum for any other
// representation.
#include <benchmark/benchmark.h>

#include <charconv>
#include <cmath>
#include <random>

#include "qvcommon/Graph.h"

namespace {

constexpr std::size_t kCount = 1000000;

const std::vector<double>& Values() {
    static const std::vector<double> values = [] {
        std::mt19937 random(1);
        std::normal_distribution<double> noise;
        std::vector<double> made;
        for (std::size_t i = 0; i < kCount; ++i)
            made.push_back(std::sin(static_cast<double>(i) / 1e5) * 10 + noise(random));
        return made;
    }();
    return values;
}

std::vector<double> Positions() {
    std::vector<double> x;
    for (std::size_t i = 0; i < kCount; ++i) x.push_back(static_cast<double>(i));
    return x;
}

template <class GRAPH>
void Draw(benchmark::State& state) {
    GRAPH graph;
    graph.AddSeries("", Positions(), Values());
    for (auto _ : state) benchmark::DoNotOptimize(graph.GetSvg());
}

// Writes "x,y" lines with the shortest digits that read back as the same numbers.
void WriteNumbers(benchmark::State& state) {
    const std::vector<double> x = Positions();
    for (auto _ : state) {
        std::string text;
        char digits[40];
        for (std::size_t i = 0; i < kCount; ++i) {
            text.append(digits, std::to_chars(digits, std::end(digits), x[i]).ptr) += ',';
            text.append(digits, std::to_chars(digits, std::end(digits), Values()[i]).ptr) += '\n';
        }
        benchmark::DoNotOptimize(text);
    }
}

BENCHMARK(Draw<CAreaGraph>)->Name("MillionPoints/QvCommon, area");
BENCHMARK(WriteNumbers)->Name("MillionPoints/Numbers as text");
BENCHMARK(Draw<CScatterGraph>)->Name("MillionMarks/QvCommon, scatter");
BENCHMARK(WriteNumbers)->Name("MillionMarks/Numbers as text");

}  // namespace
