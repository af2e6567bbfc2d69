#pragma once

#include <filesystem>
#include <fstream>
#include <string>

/// A temporary folder of the benchmarks, deleted at the end of the program. It is in a memory file system if there is
/// one, so that programs are compared rather than disks.
class Scratch {
public:
    Scratch() : m_path(Base() / ("qvbench" + std::to_string(::time(nullptr)))) {
        std::filesystem::create_directories(m_path);
    }
    ~Scratch() { std::filesystem::remove_all(m_path); }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    std::string Path() const { return m_path.string(); }
    std::string operator/(const std::string& name) const { return (m_path / name).string(); }

private:
    static std::filesystem::path Base() {
        const std::filesystem::path memory = "/dev/shm";
        return std::filesystem::exists(memory) ? memory : std::filesystem::temp_directory_path();
    }

    std::filesystem::path m_path;
};

inline const Scratch& TheScratch() {
    static const Scratch scratch;
    return scratch;
}

/// Returns a file of `size` bytes without repetition, created on first use and then in the page cache.
inline std::string FileOf(std::size_t size) {
    const std::string path = TheScratch() / ("file" + std::to_string(size));
    if (std::filesystem::exists(path)) return path;
    std::string block(1 << 20, '\0');
    unsigned value = 1;
    for (char& c : block) c = static_cast<char>((value = value * 1664525 + 1013904223) >> 24);
    std::ofstream file(path, std::ios::binary);
    for (std::size_t written = 0; written < size; written += block.size()) file << block;
    return path;
}
