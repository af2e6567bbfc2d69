#include "benchmarks/support/Growth.h"
#include "qvcommon/StringHelper.h"

// Operations on lists, and replacements whose results match again.

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

// Fields of quotes, which need handling at every byte.
void ReadCsv(benchmark::State& state, std::string_view piece) {
    std::string text;
    while (text.size() < static_cast<std::size_t>(state.range())) text += piece;
    for (auto _ : state) benchmark::DoNotOptimize(CStringHelper::CsvToArray(text));
}

void WriteCsv(benchmark::State& state) {
    CStringArray fields;
    for (std::int64_t i = 0; i < state.range(); ++i) fields.Add("a \"quoted\" field, and more");
    for (auto _ : state) benchmark::DoNotOptimize(CStringHelper::ArrayToCsv(fields));
}

void MakeMultiLine(benchmark::State& state, char c) {
    const std::string text(static_cast<std::size_t>(state.range()), c);
    for (auto _ : state) benchmark::DoNotOptimize(CStringHelper::MakeMultiLine(text, 40));
}

void RemoveInstancesOf(benchmark::State& state) {
    const CStringArray names = Names(static_cast<int>(state.range()), 0), unwanted = Backwards(names);
    for (auto _ : state) {
        CStringArray texts = names;
        CStringHelper::RemoveInstancesOf(texts, unwanted);
        benchmark::DoNotOptimize(texts);
    }
}

void SortStringArray(benchmark::State& state) {
    const CStringArray names = Names(static_cast<int>(state.range()), 0);
    for (auto _ : state) {
        CStringArray texts = names;
        CStringHelper::SortStringArray(texts);
        benchmark::DoNotOptimize(texts);
    }
}

QV_GROWTH(EqualContents, EqualContents<0>, 10000);
QV_GROWTH(EqualContentsNoCase, EqualContents<1>, 10000);
QV_GROWTH(CompareContents, CompareContents, 10000);
QV_GROWTH(FindArrayInArray, FindArray, 10000);
QV_GROWTH(RemoveDuplicates, RemoveDuplicates, 10000);
QV_GROWTH(CollateValues, CollateValues, 10000);
QV_GROWTH(ReplaceAllBlanks, ReplaceAllBlanks, 100000);
QV_GROWTH(ReplaceAllOneByOne, ReplaceAllOneByOne, 100000);
QV_GROWTH(UnEscapeUrlChain, UnEscapeUrlChain, 100000);

QV_GROWTH(RemoveInstancesOf, RemoveInstancesOf, 10000);
QV_GROWTH(SortStringArray, SortStringArray, 10000);
QV_GROWTH_OF(CsvToArray, ReadCsv, 100000, "field, \"quoted\",");
QV_GROWTH_OF(CsvToArrayPrepared, ReadCsv, 100000, "\"");
QV_GROWTH(ArrayToCsv, WriteCsv, 10000);
QV_GROWTH_OF(MakeMultiLine, MakeMultiLine, 100000, ' ');
QV_GROWTH_OF(MakeMultiLinePrepared, MakeMultiLine, 100000, 'x');

}  // namespace
