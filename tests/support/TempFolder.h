#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>

#include "qvcommon/framework/String.h"
#include "tests/support/Tree.h"

/// A fresh folder, removed with everything in it at the end of its scope.
class TempFolder {
public:
    TempFolder()
        : m_path(std::filesystem::temp_directory_path() / ("qvtest" + std::to_string(std::random_device()()))) {
        std::filesystem::create_directory(m_path);
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    /// The path of a file in the folder, in the library's form.
    CString operator/(const std::string& name) const {
        CString path((m_path / name).string());
        path.Replace('/', '\\');
        return path;
    }
    /// The same in the system's own form.
    std::filesystem::path Native(const std::string& name = "") const { return m_path / name; }

    /// Makes the folders above the file too.
    void Write(const std::string& name, const std::string& bytes) const {
        std::filesystem::create_directories(Native(name).parent_path());
        std::ofstream(Native(name), std::ios::binary) << bytes;
    }
    std::string Read(const std::string& name) const {
        std::ostringstream bytes;
        bytes << std::ifstream(Native(name), std::ios::binary).rdbuf();
        return bytes.str();
    }
    bool Has(const std::string& name) const { return std::filesystem::exists(Native(name)); }
    std::string Tree(const std::string& name = "") const { return ShowTree(ReadTree(Native(name))); }
    /// False where the system or this user has no links. `target` is relative to the link's folder.
    bool Link(const std::string& target, const std::string& name) const {
        std::error_code refused;
        if (std::filesystem::is_directory(Native(name).parent_path() / target))
            std::filesystem::create_directory_symlink(target, Native(name), refused);
        else
            std::filesystem::create_symlink(target, Native(name), refused);
        return !refused;
    }

private:
    std::filesystem::path m_path;
};
