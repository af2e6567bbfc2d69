#include <benchmark/benchmark.h>
#include <uemf.h>
#include <uemf_endian.h>

#include <memory>

#include "benchmarks/imaging/ImagingFiles.h"
#include "qvcommon/ParseEmf.h"
#include "tests/support/Metafile.h"

// Walks a large metafile of short records with clean-ups, compared with plain reading and with another library's walk,
// which reads the whole file first and only checks sizes.

namespace {

using namespace qv::test;

const qv::bench::BenchFile& Metafile() {
    static const qv::bench::BenchFile file("large.emf", [] {
        const std::string some = Record(54, Words({1, 2})) + Record(3, std::string(60, 'p')) + FontRecord('#') +
                                 TextRecord(u"some text", '#') + PenRecord(0, 9) + Record(27, Words({3, 4}));
        std::string all = HeaderRecord();
        while (all.size() < qv::bench::kFileSize) all += some;
        return all + EndRecord();
    }());
    return file;
}

class Counter : public CParseEmf {
public:
    void ParseGenericMetafileRecord(EmfRecord* record) override {
        ++count;
        CParseEmf::ParseGenericMetafileRecord(record);
    }
    std::size_t count = 0;
};

std::size_t Count() {
    Counter counter;
    return counter.ProcessFile(Metafile().Path().c_str()) == 1 ? counter.count : 0;
}

std::size_t PeerCount() {
    char* contents = nullptr;
    std::size_t length = 0, count = 0;
    if (emf_readdata(Metafile().Path().c_str(), &contents, &length)) return 0;
    std::uint32_t size = 0, type = 0;
    for (const char* record = contents; type != U_EMR_EOF; record += size, ++count)
        if (!U_emf_record_sizeok(record, contents + length, &size, &type, 1)) break;
    std::free(contents);
    return count;
}

void Walk(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(Count());
}

void Peer(benchmark::State& state) {
    if (PeerCount() != Count()) state.SkipWithError("the walks differ");
    for (auto _ : state) benchmark::DoNotOptimize(PeerCount());
}

void ReadOnly(benchmark::State& state) {
    for (auto _ : state) {
        CFile file(Metafile().Path().c_str(), CFile::modeRead);
        const auto size = static_cast<UINT>(file.GetLength());
        const auto bytes = std::make_unique_for_overwrite<char[]>(size);
        benchmark::DoNotOptimize(file.Read(bytes.get(), size));
    }
}

BENCHMARK(Walk)->Name("Metafile_100MB/QvCommon")->UseRealTime();
BENCHMARK(ReadOnly)->Name("Metafile_100MB/reading alone")->UseRealTime();
BENCHMARK(Peer)->Name("Metafile_100MB/libUEMF")->UseRealTime();

}  // namespace
