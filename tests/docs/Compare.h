#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "qvcommon/framework/Exception.h"
#include "tests/support/TempFolder.h"

/// Runs an example of the documentation in a fresh folder and calls `look` there. Returns what it prints.
template <class Look>
std::string RunInFreshFolder(void (*run)(), Look look) {
    const TempFolder folder;
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder.Native());
    std::fflush(stdout);
    testing::internal::CaptureStdout();
    try {
        run();
        look();
    } catch (CException* error) {
        std::printf("raised %s\n", error->GetRuntimeClass()->m_lpszClassName);
        error->Delete();
    }
    std::fflush(stdout);
    const std::string printed = testing::internal::GetCapturedStdout();
    std::filesystem::current_path(before);
    return printed;
}

/// Compares what an example prints with what its page says.
inline void Compare(void (*run)(), const std::string& page) {
    EXPECT_EQ(RunInFreshFolder(run, [] {}), page);
}

/// Compares the file that an example writes with the page's picture, which has its name. With QV_TAKE_PICTURES in the
/// environment the picture is replaced by it.
inline void ComparePicture(void (*run)(), const std::filesystem::path& picture) {
    const auto read = [](const std::filesystem::path& path) {
        std::ifstream file(path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    };
    std::string drawn;
    EXPECT_EQ(RunInFreshFolder(run, [&] { drawn = read(picture.filename()); }), "");
    EXPECT_FALSE(drawn.empty());
    if (std::getenv("QV_TAKE_PICTURES")) std::ofstream(picture, std::ios::binary) << drawn;
    EXPECT_TRUE(drawn == read(picture)) << picture << " is not what the example draws: run with QV_TAKE_PICTURES=1";
}
