#include <benchmark/benchmark.h>

#include "qvcommon/StringHelper.h"

// What ten times the input costs: the second line of each group is to stay near 10 times the first.

namespace {

CStringArray Names(int count, int first) {
    CStringArray names;
    for (int i = 0; i < count; ++i) {
        CString name;
        name.Format("Folder\\Document number %d.html", (i * 7919LL + first) % 1000003);
        names.Add(std::move(name));
    }
    return names;
}

CStringArray Backwards(const CStringArray& texts) {
    CStringArray result;
    for (int i = texts.GetUpperBound(); i >= 0; --i) result.Add(std::string_view(texts[i]));
    return result;
}

template <int NoCase>
void EqualContents(benchmark::State& state) {
    const CStringArray a = Names(static_cast<int>(state.range()), 0), b = Backwards(a);
    for (auto _ : state) benchmark::DoNotOptimize(CStringHelper::EqualContents(a, b, NoCase));
}

void CompareContents(benchmark::State& state) {
    const int count = static_cast<int>(state.range());
    const CStringArray a = Names(count, 0), b = Names(count, 5 * 7919);
    for (auto _ : state) {
        CUIntArray removed, keptOld, keptNew, added;
        CStringHelper::CompareContents(a, b, removed, keptOld, keptNew, added);
        benchmark::DoNotOptimize(added);
    }
}

void FindArray(benchmark::State& state) {
    const int count = static_cast<int>(state.range());
    const CStringArray a = Names(count, 0);
    CStringArray b;
    for (int i = 0; i < count; ++i) b.Add(CString("absent ") + std::string_view(a[i]));
    for (auto _ : state) benchmark::DoNotOptimize(CStringHelper::Find(a, b, 0));
}

void RemoveDuplicates(benchmark::State& state) {
    const CStringArray names = Names(static_cast<int>(state.range()), 0);
    for (auto _ : state) {
        CStringArray texts = names;
        CStringHelper::RemoveDuplicates(texts, 0);
        benchmark::DoNotOptimize(texts);
    }
}

void CollateValues(benchmark::State& state) {
    const CStringArray all = Names(static_cast<int>(state.range()), 0);
    for (auto _ : state) {
        CStringArray names = all;
        CDoubleArray values;
        values.SetSize(names.GetSize());
        CStringHelper::CollateValues(names, values);
        benchmark::DoNotOptimize(values);
    }
}

void ReplaceAllBlanks(benchmark::State& state) {
    const CString blanks(' ', static_cast<int>(state.range()));
    for (auto _ : state) {
        CString text = blanks;
        CStringHelper::ReplaceAll(text, "  ", " ");
        benchmark::DoNotOptimize(text);
    }
}

void ReplaceAllOneByOne(benchmark::State& state) {
    const CString chain = "a" + CString('b', static_cast<int>(state.range()));
    for (auto _ : state) {
        CString text = chain;
        CStringHelper::ReplaceAll(text, "ab", "a");
        benchmark::DoNotOptimize(text);
    }
}

void UnEscapeUrlChain(benchmark::State& state) {
    std::string chain = "%";
    while (chain.size() < static_cast<std::size_t>(state.range())) chain += "25";
    for (auto _ : state) benchmark::DoNotOptimize(CStringHelper::UnEscapeUrl(chain));
}

#define QV_GROWTH(group, function, size) \
    BENCHMARK(function)->Name("Growth_" #group "/qvcommon")->Arg(size)->Arg(10 * size)

QV_GROWTH(EqualContents, EqualContents<0>, 10000);
QV_GROWTH(EqualContentsNoCase, EqualContents<1>, 10000);
QV_GROWTH(CompareContents, CompareContents, 10000);
QV_GROWTH(FindArrayInArray, FindArray, 10000);
QV_GROWTH(RemoveDuplicates, RemoveDuplicates, 10000);
QV_GROWTH(CollateValues, CollateValues, 10000);
QV_GROWTH(ReplaceAllBlanks, ReplaceAllBlanks, 100000);
QV_GROWTH(ReplaceAllOneByOne, ReplaceAllOneByOne, 100000);
QV_GROWTH(UnEscapeUrlChain, UnEscapeUrlChain, 100000);

}  // namespace
