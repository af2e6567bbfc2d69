#pragma once

#include <cstddef>
#include <filesystem>
#include <random>
#include <string>

#include "qvcommon/framework/File.h"

/// A file for the inputs of parsers that read from files. Deleted when the program ends normally.
class FuzzFile {
public:
    explicit FuzzFile(const std::string& name)
        : m_path(std::filesystem::temp_directory_path() / ("qvfuzz-" + name + std::to_string(std::random_device()()))),
          m_file(m_path.string().c_str(), CFile::modeCreate | CFile::modeReadWrite) {}
    ~FuzzFile() { m_file.CloseAndRemove(); }
    FuzzFile(const FuzzFile&) = delete;
    FuzzFile& operator=(const FuzzFile&) = delete;

    /// Returns the file with these bytes, positioned at its start.
    CFile& Holding(const void* bytes, std::size_t size) {
        m_file.SetLength(0);
        m_file.Write(bytes, static_cast<UINT>(size));
        m_file.Seek(0, CFile::begin);
        return m_file;
    }

private:
    std::filesystem::path m_path;
    CFile m_file;
};
