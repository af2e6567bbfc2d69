#pragma once

#include <gtest/gtest.h>

#include <cstdio>

#include "qvcommon/framework/Exception.h"
#include "tests/support/TempFolder.h"

/// Runs an example of the documentation in a fresh folder, and compares what it prints with what its page says.
inline void Compare(void (*run)(), const std::string& page) {
    const TempFolder folder;
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder.Native());
    std::fflush(stdout);
    testing::internal::CaptureStdout();
    try {
        run();
    } catch (CException* error) {
        std::printf("raised %s\n", error->GetRuntimeClass()->m_lpszClassName);
        error->Delete();
    }
    std::fflush(stdout);
    const std::string printed = testing::internal::GetCapturedStdout();
    std::filesystem::current_path(before);
    EXPECT_EQ(printed, page);
}
