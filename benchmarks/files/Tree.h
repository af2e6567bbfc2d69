#pragma once

#include "benchmarks/files/Scratch.h"

/// A tree of 20,000 files of up to 2 kB in 1,000 folders, in the page cache.
struct Tree {
    static constexpr int kTop = 10, kBelow = 99, kFiles = 20, kAllFiles = kTop * (kBelow + 1) * kFiles;

    /// Created in the folder by the first call.
    static std::string In(const std::string& folder) {
        std::string tree = folder + "/tree";
        if (std::filesystem::exists(tree)) return tree;
        for (int i = 0; i < kTop; ++i) {
            const std::string top = tree + "/Folder " + std::to_string(i);
            MakeFiles(top);
            for (int j = 0; j < kBelow; ++j) MakeFiles(top + "/Part " + std::to_string(j));
        }
        return tree;
    }

private:
    static void MakeFiles(const std::string& folder) {
        std::filesystem::create_directories(folder);
        for (unsigned i = 0; i < kFiles; ++i)
            std::ofstream(folder + "/Document " + std::to_string(i) + ".txt") << std::string(i * 97, 'x');
    }
};
