#pragma once

#include <functional>
#include <string>

#include "qvcommon/framework/File.h"

/// Files that commands read or write as a whole. "-" means standard input or output.
namespace qv::tool {

bool IsStandardStream(const std::string& path);

/// Returns all bytes. @throws CFileException*
std::string ReadDocument(const std::string& path);

/// Writes a new version of a file, which replaces the old one only when it is complete: the old one may be its source.
/// If `write` raises, the file is unchanged.
/// @throws CFileException*, and what `write` raises.
void WriteDocument(const std::string& path, const std::function<void(CFile&)>& write);

/// A file in memory, for functions that only accept files: read from its start, written at its end.
class MemoryFile : public CFile {
public:
    explicit MemoryFile(std::string bytes = {}) : m_bytes(std::move(bytes)) {}

    const std::string& Bytes() const { return m_bytes; }

    UINT Read(void* buffer, UINT count) override;
    void Write(const void* buffer, UINT count) override;
    /// @throws CFileException* (badSeek) before the start.
    std::uint64_t Seek(std::int64_t offset, UINT from) override;
    std::uint64_t GetPosition() const override { return m_position; }
    std::uint64_t GetLength() const override { return m_bytes.size(); }

private:
    std::string m_bytes;
    std::uint64_t m_position = 0;
};

}  // namespace qv::tool
