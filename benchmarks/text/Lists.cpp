// Lines, splitting, joining and CSV, compared with the same into owned strings.
#include <absl/strings/str_join.h>
#include <absl/strings/str_split.h>
#include <benchmark/benchmark.h>

#include <boost/tokenizer.hpp>

#include "qvcommon/StringHelper.h"

namespace {

using Strings = std::vector<std::string>;

// A megabyte of fields of 4 to 36 bytes.
Strings Fields() {
    constexpr std::string_view words = "Total of the quarter by region and product line";
    Strings fields;
    for (std::size_t size = 0; size < 1 << 20; size += fields.back().size() + 1)
        fields.emplace_back(words.substr(0, 4 + fields.size() * 7 % 33));
    return fields;
}

CStringArray Array(const Strings& strings) {
    CStringArray array;
    for (const std::string& text : strings) array.Add(std::string_view(text));
    return array;
}

const Strings kFields = Fields();
const CStringArray kArray = Array(kFields);
const std::string kText = absl::StrJoin(kFields, ","), kWide = absl::StrJoin(kFields, ", ");

// A megabyte of lines of 20 to 100 bytes.
std::string Lines() {
    std::string text;
    for (std::size_t i = 0; text.size() < 1 << 20; ++i) text += std::string(20 + i * 7 % 81, 'x') + '\n';
    return text;
}

// Every fourth field is quoted.
std::string QuotedText() {
    Strings fields = kFields;
    for (std::size_t i = 0; i < fields.size(); i += 4) fields[i] = '"' + fields[i] + ", \"\"net\"\"\"";
    return absl::StrJoin(fields, ",");
}

const std::string kLines = Lines(), kQuoted = QuotedText();

template <class Parse>
void Parsed(benchmark::State& state, Parse parse) {
    for (auto _ : state) {
        CStringArray pieces;
        parse(pieces);
        benchmark::DoNotOptimize(pieces);
    }
}

void Split(benchmark::State& state) {
    Parsed(state, [](CStringArray& pieces) { CStringHelper::SplitString(kText, ",", pieces, 1); });
}
void SplitAtPair(benchmark::State& state) {
    Parsed(state, [](CStringArray& pieces) { CStringHelper::SplitString(kWide, ", ", pieces, 0); });
}
void ReadCsv(benchmark::State& state) {
    Parsed(state, [](CStringArray& pieces) { CStringHelper::CsvToArray(kText, pieces); });
}
void SplitLines(benchmark::State& state) {
    Parsed(state, [](CStringArray& pieces) { CStringHelper::SplitString(kLines, "\n", pieces, 1); });
}
void ReadQuotedCsv(benchmark::State& state) {
    Parsed(state, [](CStringArray& pieces) { CStringHelper::CsvToArray(kQuoted, pieces); });
}
void Join(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(CStringHelper::MakeString(kArray, ",", -1, 1));
}
void WriteCsv(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(CStringHelper::ArrayToCsv(kArray));
}

void AbslSplit(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(Strings(absl::StrSplit(kText, ',')));
}
void AbslSplitAtPair(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(Strings(absl::StrSplit(kWide, ", ", absl::SkipEmpty())));
}
void AbslSplitLines(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(Strings(absl::StrSplit(kLines, '\n')));
}
void BoostReadQuotedCsv(benchmark::State& state) {
    for (auto _ : state) {
        const boost::tokenizer<boost::escaped_list_separator<char>> fields(
            kQuoted, boost::escaped_list_separator<char>('\0', ',', '"'));
        benchmark::DoNotOptimize(Strings(fields.begin(), fields.end()));
    }
}
void AbslJoin(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(absl::StrJoin(kFields, ","));
}

#define QV_BESIDE_PEER(group, ours, name, peer) \
    BENCHMARK(ours)->Name(#group "/QvCommon");  \
    BENCHMARK(peer)->Name(#group "/" name)
#define QV_BESIDE(group, ours, peer) QV_BESIDE_PEER(group, ours, "Abseil", peer)

QV_BESIDE(SplitLines, SplitLines, AbslSplitLines);
QV_BESIDE(SplitString, Split, AbslSplit);
QV_BESIDE(SplitStringAtPair, SplitAtPair, AbslSplitAtPair);
QV_BESIDE(CsvToArray, ReadCsv, AbslSplit);
QV_BESIDE_PEER(CsvToArrayQuoted, ReadQuotedCsv, "Boost", BoostReadQuotedCsv);
QV_BESIDE(MakeString, Join, AbslJoin);
QV_BESIDE(ArrayToCsv, WriteCsv, AbslJoin);

}  // namespace
