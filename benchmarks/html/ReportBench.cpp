// Writing a report of 10,000 files after its search: the bytes of the pages beside the same bytes written in one piece.
#include <benchmark/benchmark.h>

#include <filesystem>

#include "qvcommon/framework/File.h"
#include "tools/qv/report/ReportPage.h"

namespace {

using namespace qv::tool;

std::vector<FolderEntry> Folders() {
    std::vector<FolderEntry> folders{{.path = ""}};
    for (int i = 0; i < 100; ++i) {
        FolderEntry folder{.path = "Folder " + std::to_string(i), .depth = 1};
        for (int j = 0; j < 100; ++j)
            folder.files.push_back({"Report of the day " + std::to_string(j) + (j % 9 ? ".txt" : ".png"),
                                    static_cast<std::uintmax_t>(j) * 7919, 1700000000 + 60 * j});
        folder.own = {100, 39199050};
        folders.front().overall.Add(folder.own);
        folders.push_back(std::move(folder));
    }
    return folders;
}

const std::vector<FolderEntry> kFolders = Folders();
const std::string kPath = (std::filesystem::temp_directory_path() / "qv-report-bench.html").string();

// As the tool does it: the rows once, then a page for each order.
void WritePages() {
    std::vector<FolderRows> rows = MakeRows(kFolders, "../folder/");
    const CString menu = FolderMenu(kFolders, "folder");
    for (const FileOrder order : {FileOrder::Name, FileOrder::Size, FileOrder::Date}) {
        for (FolderRows& folder : rows) Sort(folder, order);
        const ReportHeader header{"Report", "folder", 0};
        ReportPage page(header, {}, order);
        page.SetFilename(kPath.c_str());
        page.Write(rows, menu);
        page.CommitFile();
    }
}

void Report(benchmark::State& state) {
    for (auto _ : state) WritePages();
    const auto bytes = 3 * static_cast<std::int64_t>(std::filesystem::file_size(kPath));
    state.SetBytesProcessed(bytes * static_cast<std::int64_t>(state.iterations()));
}

void OnePiece(benchmark::State& state) {
    WritePages();
    const std::string bytes(std::filesystem::file_size(kPath), 'x');
    for (auto _ : state)
        for (int page = 0; page < 3; ++page) {
            CFile file(kPath.c_str(), CFile::modeCreate | CFile::modeWrite);
            file.Write(bytes.data(), static_cast<UINT>(bytes.size()));
            file.Close();
        }
    state.SetBytesProcessed(3 * static_cast<std::int64_t>(bytes.size()) *
                            static_cast<std::int64_t>(state.iterations()));
}

BENCHMARK(Report)->Name("Report10000/Written");
BENCHMARK(OnePiece)->Name("Report10000/The same bytes in one piece");

}  // namespace
