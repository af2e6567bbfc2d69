// Sorting by the rules of a UTF-8 locale beside std::sort over strcoll.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <clocale>
#include <cstring>
#include <random>

#include "qvcommon/StringHelper.h"

namespace {

constexpr int kCount = 100'000;

// Names as a report lists them: few first letters, many that begin alike, some with letters beyond ASCII.
CStringArray Names(bool accented) {
    constexpr const char* folders[] = {"Invoices", "invoices", "Letters", "Photos", "\u00DCbersicht", "\u00E9t\u00E9"};
    std::mt19937 random(7);
    CStringArray names;
    for (int i = 0; i < kCount; ++i) {
        CString name;
        name.Format("%s %u/Document %u.html", folders[random() % (accented ? 6 : 4)], random() % 100,
                    random() % 1000000);
        names.Add(std::move(name));
    }
    return names;
}

bool InUtf8Locale(benchmark::State& state) {
    const bool set = std::setlocale(LC_ALL, "en_US.UTF-8") != nullptr;
    if (!set) state.SkipWithError("no locale en_US.UTF-8");
    return set;
}

template <class Sort>
void Sorted(benchmark::State& state, bool accented, Sort sort) {
    if (!InUtf8Locale(state)) return;
    const CStringArray names = Names(accented);
    for (auto _ : state) {
        state.PauseTiming();
        CStringArray copy = names;
        state.ResumeTiming();
        sort(copy);
        benchmark::DoNotOptimize(copy);
    }
}

void Ours(benchmark::State& state, bool accented) {
    Sorted(state, accented, [](CStringArray& names) { CStringHelper::SortStringArray(names, 0); });
}

void Strcoll(benchmark::State& state, bool accented) {
    Sorted(state, accented, [](CStringArray& names) {
        std::sort(names.begin(), names.end(),
                  [](const CString& a, const CString& b) { return std::strcoll(a, b) < 0; });
    });
}

#define QV_SORT(group, accented)                                           \
    BENCHMARK_CAPTURE(Ours, group##1, accented)->Name(#group "/QvCommon"); \
    BENCHMARK_CAPTURE(Strcoll, group##2, accented)->Name(#group "/std::sort by strcoll")

QV_SORT(SortStringArray, false);
QV_SORT(SortStringArrayAccented, true);

}  // namespace
