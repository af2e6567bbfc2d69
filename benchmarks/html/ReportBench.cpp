// Writes a report of 10,000 files after the search: the page compared with the same bytes written in one piece.
#include <benchmark/benchmark.h>

#include <filesystem>

#include "qvcommon/framework/File.h"
#include "tools/qv/report/ReportPage.h"

namespace {

using namespace qv::tool;

FolderTree Tree() {
    FolderTree tree{{{.path = ""}}, {}};
    for (int i = 0; i < 100; ++i) {
        FolderEntry folder{.path = "Folder " + std::to_string(i), .depth = 1};
        for (int j = 0; j < 100; ++j)
            folder.files.push_back({"Report of the day " + std::to_string(j) + (j % 9 ? ".txt" : ".png"),
                                    static_cast<std::uintmax_t>(j) * 7919, 1700000000 + 60 * j});
        folder.own = folder.overall = {100, 39199050};
        tree.folders.front().overall.Add(folder.own);
        tree.folders.push_back(std::move(folder));
    }
    return tree;
}

const FolderTree kTree = Tree();
const std::string kPath = (std::filesystem::temp_directory_path() / "qv-report-bench.html").string();

void WritePage() {
    const ReportHeader header{"Report", "folder", 1800000000, "../folder/"};
    ReportPage page(header, kTree);
    page.SetFilename(kPath.c_str());
    page.Write();
    page.CommitFile();
}

void Report(benchmark::State& state) {
    for (auto _ : state) WritePage();
    state.SetBytesProcessed(static_cast<std::int64_t>(std::filesystem::file_size(kPath)) *
                            static_cast<std::int64_t>(state.iterations()));
}

void OnePiece(benchmark::State& state) {
    WritePage();
    const std::string bytes(std::filesystem::file_size(kPath), 'x');
    for (auto _ : state) {
        CFile file(kPath.c_str(), CFile::modeCreate | CFile::modeWrite);
        file.Write(bytes.data(), static_cast<UINT>(bytes.size()));
        file.Close();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(bytes.size()) * static_cast<std::int64_t>(state.iterations()));
}

BENCHMARK(Report)->Name("Report10000/Written");
BENCHMARK(OnePiece)->Name("Report10000/The same bytes in one piece");

}  // namespace
