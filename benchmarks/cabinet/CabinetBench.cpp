// Packs and unpacks 60 MB of source text, binaries and pictures of this machine; unpacks LZX data, and a cabinet of
// very many folders, which must not take quadratic time. All are programs: the tool compared with gcab, cabextract and
// 7zz. Prints the sizes of the archives and the peak memory of packing.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>

#include "benchmarks/files/Scratch.h"
#include "benchmarks/support/RunBenchmarks.h"
#include "fuzz/LzxMaker.h"
#include "qvcommon/Cabinet.h"
#include "qvcommon/framework/Process.h"

namespace {

namespace fs = std::filesystem;

const fs::path g_folder = TheScratch() / "archives";

/// Copies files until they have this many bytes.
void Gather(const char* name, std::initializer_list<const char*> roots, std::initializer_list<const char*> extensions,
            std::uintmax_t bytes) {
    int count = 0;
    for (const char* const root : roots)
        for (const fs::directory_entry& entry :
             fs::recursive_directory_iterator(root, fs::directory_options::skip_permission_denied)) {
            std::error_code error;
            if (bytes == 0 || entry.is_symlink(error) || !entry.is_regular_file(error)) continue;
            const std::string extension = entry.path().extension().string();
            const bool wanted = extensions.size() == 0 ||
                                std::find(extensions.begin(), extensions.end(), extension) != extensions.end();
            if (!wanted || entry.file_size() == 0 || entry.file_size() > bytes) continue;
            const fs::path to = g_folder / "in" / name / std::to_string(count / 100);
            fs::create_directories(to);
            fs::copy_file(entry.path(), to / (std::to_string(count++) + extension), error);
            if (!error) bytes -= entry.file_size();
        }
}

int Run(const char* program, const CStringArray& arguments) {
    CProcess process;
    process.Start(program, arguments, CProcess::pipeOutput);
    for (CString line; process.Output().ReadString(line);) continue;
    return process.Wait();
}

std::string At(const char* name) {
    return (g_folder / name).string();
}

void Measure(const char* name, std::function<int()> action, const std::string& out) {
    benchmark::RegisterBenchmark(name,
                                 [=](benchmark::State& state) {
                                     for (auto _ : state) {
                                         state.PauseTiming();
                                         fs::remove_all(g_folder / out);
                                         if (!fs::path(out).has_extension()) fs::create_directory(g_folder / out);
                                         state.ResumeTiming();
                                         if (action() != 0) state.SkipWithError("failed, or not installed");
                                     }
                                 })
        ->UseRealTime()
        ->Iterations(1);
}

int WithGcab() {
    CStringArray arguments = {"-c", "-z", At("gcab.cab")};
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(g_folder / "in"))
        if (entry.is_regular_file()) arguments.Add(entry.path().string());
    return Run("gcab", arguments);
}

void Write(const char* name, const std::string& bytes) {
    std::ofstream(g_folder / name, std::ios::binary) << bytes;
}

/// Packs 16 MB of the collected files as one member.
void MakeLzx() {
    std::string data;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(g_folder / "in")) {
        if (!entry.is_regular_file() || data.size() > 16'000'000) continue;
        std::ifstream file(entry.path(), std::ios::binary);
        data.append(std::istreambuf_iterator<char>(file), {});
    }
    using enum qv::test::LzxBlock;
    Write("lzx.cab",
          qv::test::LzxCabinet(
              {{"data", std::move(data)}},
              {.windowBits = 21, .blocks = {{Verbatim, 1 << 18}, {Aligned, 1 << 18}}, .translationSize = 1 << 26}));
}

void MakeFolders() {
    std::vector<qv::test::FolderOf> folders;
    for (int i = 0; i < 16000; ++i) folders.push_back({0, {"x"}, {{std::to_string(i), 1}}});
    Write("folders.cab", qv::test::CabinetOf(folders));
}

/// Registers a cabinet whose members have their own names, and the programs that read it.
void RegisterBare(const std::string& group, const std::string& cabinet) {
    const std::string out = "out " + cabinet;
    Measure((group + "/QvCommon").c_str(),
            [=] {
                return Run(QV_TOOL,
                           {"unpack", "--quiet", "--no-manifest", At((cabinet + ".cab").c_str()), At(out.c_str())});
            },
            out);
    Measure((group + "/cabextract").c_str(),
            [=] {
                return Run("cabextract", {"-q", "-d", At(out.c_str()), At((cabinet + ".cab").c_str())});
            },
            out);
    Measure((group + "/7zz").c_str(),
            [=] {
                return Run("7zz", {"x", "-y", "-o" + At(out.c_str()), At((cabinet + ".cab").c_str())});
            },
            out);
}

/// Lists an archive of 16,000 members, each in its own folder.
void RegisterList() {
    const std::string cabinet = At("folders.cab");
    Measure(
        "List/QvCommon",
        [=] {
            return Run(QV_TOOL, {"list", cabinet.c_str()});
        },
        "none");
    Measure(
        "List/gcab",
        [=] {
            return Run("gcab", {"-t", cabinet.c_str()});
        },
        "none");
    Measure(
        "List/cabextract",
        [=] {
            return Run("cabextract", {"-q", "-l", cabinet.c_str()});
        },
        "none");
    Measure(
        "List/7zz",
        [=] {
            return Run("7zz", {"l", cabinet.c_str()});
        },
        "none");
}

void Register() {
    Measure(
        "Pack/QvCommon",
        [] {
            return Run(QV_TOOL, {"pack", "--quiet", At("in"), At("ours.cab")});
        },
        "ours.cab");
    Measure("Pack/gcab", &WithGcab, "gcab.cab");
    RegisterList();
    Measure(
        "Unpack/QvCommon",
        [] {
            return Run(QV_TOOL, {"unpack", "--quiet", At("ours.cab"), At("out")});
        },
        "out");
    Measure(
        "Unpack/gcab",
        [] {
            return Run("gcab", {"-x", "-C", At("out gcab"), At("gcab.cab")});
        },
        "out gcab");
    Measure(
        "Unpack/cabextract",
        [] {
            return Run("cabextract", {"-q", "-d", At("out ce"), At("gcab.cab")});
        },
        "out ce");
    Measure(
        "Unpack/7zz",
        [] {
            return Run("7zz", {"x", "-y", "-o" + At("out 7z"), At("gcab.cab")});
        },
        "out 7z");
    RegisterBare("UnpackLzx", "lzx");
    RegisterBare("UnpackFolders", "folders");
}

std::string MostMemory() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("VmHWM")) return line;
    return "not known here";
}

}  // namespace

int main(int argc, char** argv) {
    Gather("text", {"/usr/include"}, {".h", ".hpp", ".ipp"}, 30'000'000);
    Gather("binaries", {"/usr/bin", "/usr/lib"}, {"", ".so", ".a"}, 22'000'000);
    Gather("pictures", {"/usr/share"}, {".png", ".jpg", ".gif", ".ico", ".bmp"}, 8'000'000);
    CMakeCab::DirectoryToCab(At("in").c_str(), At("ours.cab").c_str(), 1);
    std::printf("memory of packing: %s (bound: 32768 kB)\n", MostMemory().c_str());
    if (WithGcab() == 0)
        std::printf("size: ours %ju, gcab %ju bytes\n", fs::file_size(g_folder / "ours.cab"),
                    fs::file_size(g_folder / "gcab.cab"));
    MakeLzx();
    MakeFolders();
    Register();
    return RunBenchmarks(argc, argv);
}
