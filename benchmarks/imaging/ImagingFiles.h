#pragma once

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

namespace qv::bench {

constexpr std::size_t kFileSize = 100 << 20;

/// A temporary file of the benchmarks, deleted at the end of the program.
class BenchFile {
public:
    explicit BenchFile(const std::string& name, const std::string& bytes = {})
        : m_path(std::filesystem::temp_directory_path() / ("qv-bench-" + name)) {
        std::ofstream(m_path, std::ios::binary) << bytes;
    }
    ~BenchFile() {
        std::error_code ignored;
        std::filesystem::remove(m_path, ignored);
    }
    BenchFile(const BenchFile&) = delete;
    BenchFile& operator=(const BenchFile&) = delete;

    std::string Path() const { return m_path.string(); }

private:
    std::filesystem::path m_path;
};

}  // namespace qv::bench
