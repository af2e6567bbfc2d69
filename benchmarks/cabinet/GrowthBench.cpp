// Archives with more members.

#include "benchmarks/files/Scratch.h"
#include "benchmarks/support/Growth.h"
#include "qvcommon/Cabinet.h"

namespace {

namespace fs = std::filesystem;

std::string Numbered(const char* name, const benchmark::State& state) {
    return TheScratch() / (name + std::to_string(state.range()));
}

/// Many files of a few bytes, and their archive.
struct Members {
    explicit Members(const benchmark::State& state)
        : folder(Numbered("members", state)), archive(folder + ".cab"), target(Numbered("target", state)) {
        fs::create_directories(folder);
        fs::create_directories(target);
        for (std::int64_t i = 0; i < state.range(); ++i) std::ofstream(folder + "/Member " + std::to_string(i)) << i;
        Pack();
    }

    void Pack() const { CMakeCab::DirectoryToCab(folder.c_str(), archive.c_str(), 1); }

    std::string folder, archive, target;
};

void Pack(benchmark::State& state) {
    const Members members(state);
    for (auto _ : state) members.Pack();
}

void Unpack(benchmark::State& state) {
    const Members members(state);
    for (auto _ : state) CReadCab::CabToDirectory(members.target.c_str(), members.archive.c_str());
}

QV_GROWTH(PackMembers, Pack, 1000);
QV_GROWTH(UnpackMembers, Unpack, 1000);

}  // namespace
