#include "benchmarks/support/RatioReporter.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace {

using Times = std::vector<double>;

// The runs come interleaved; this is the order in which they were registered.
using Place = std::pair<std::int64_t, std::int64_t>;

struct Group {
    std::map<Place, std::string> order;
    std::map<std::string, Times> times;
    std::map<std::string, Times> rates;  // MB a second, of those who count bytes
};

class RatioReporter : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context&) override { return true; }

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs)
            if (run.run_type == Run::RT_Iteration) Keep(run);
    }

    void Finalize() override {
        std::map<Place, std::string> order;
        for (const auto& [name, group] : m_groups) order[group.order.begin()->first] = name;
        for (const auto& [place, name] : order) Print(name, m_groups[name]);
    }

private:
    void Keep(const Run& run) {
        if (run.error_occurred) {
            std::printf("%s: %s\n", run.benchmark_name().c_str(), run.error_message.c_str());
            return;
        }
        const std::string& name = run.run_name.function_name;
        const std::size_t slash = name.find('/');
        const std::string groupName = name.substr(0, slash), who = name.substr(slash + 1) + Suffix(run.run_name.args);
        Group& group = m_groups[groupName];
        group.order[{run.family_index, run.per_family_instance_index}] = who;
        group.times[who].push_back(run.real_accumulated_time / static_cast<double>(run.iterations) * 1e9);
        if (const auto rate = run.counters.find("bytes_per_second"); rate != run.counters.end())
            group.rates[who].push_back(rate->second.value / 1e6);
    }

    static std::string Suffix(const std::string& args) { return args.empty() ? "" : "/" + args; }

    static double Median(Times values) {
        std::sort(values.begin(), values.end());
        return values[values.size() / 2];
    }

    static void Print(const std::string& name, const Group& group) {
        std::printf("%s\n", name.c_str());
        const Times& ours = group.times.at(group.order.begin()->second);
        for (const auto& [place, who] : group.order) {
            const Times& theirs = group.times.at(who);
            Times ratios;
            for (std::size_t i = 0; i < std::min(ours.size(), theirs.size()); ++i)
                ratios.push_back(theirs[i] / ours[i]);
            std::printf("    %-44s %12.0f ns  %8.2f x", who.c_str(), Median(theirs), Median(ratios));
            if (const auto rates = group.rates.find(who); rates != group.rates.end())
                std::printf("  %7.0f MB/s", Median(rates->second));
            std::printf("\n");
        }
    }

    std::map<std::string, Group> m_groups;
};

}  // namespace

int RunWithRatios(int argc, char** argv) {
    std::setlocale(LC_ALL, "");
    std::vector<char*> arguments(argv, argv + argc);
    char repetitions[] = "--benchmark_repetitions=7", interleaving[] = "--benchmark_enable_random_interleaving=true";
    arguments.insert(arguments.begin() + 1, {repetitions, interleaving});
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}
