#include "benchmarks/support/RunBenchmarks.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <clocale>
#include <iostream>
#include <string_view>
#include <vector>

namespace {

class ErrorReporter : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs)
            if (run.error_occurred) std::cerr << run.benchmark_name() << ": " << run.error_message << '\n';
    }
};

}  // namespace

int RunBenchmarks(int argc, char** argv) {
    std::setlocale(LC_ALL, "");
    std::vector<char*> arguments(argv, argv + argc);
    char repetitions[] = "--benchmark_repetitions=7", interleaving[] = "--benchmark_enable_random_interleaving=true";
    arguments.insert(arguments.begin() + 1, {repetitions, interleaving});
    const bool toFile = std::any_of(arguments.begin(), arguments.end(), [](const char* argument) {
        return std::string_view(argument).starts_with("--benchmark_out=");
    });
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    ErrorReporter errors;
    benchmark::RunSpecifiedBenchmarks(toFile ? &errors : nullptr);
    return 0;
}
