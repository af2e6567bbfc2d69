#include "tools/qv/Documents.h"

#include <algorithm>
#include <cstring>

#include "qvcommon/SaveFile.h"
#include "qvcommon/framework/StandardStreams.h"

namespace qv::tool {
namespace {

constexpr std::size_t kPiece = 64 * 1024;

/// Buffers the output to write it in large pieces.
class WholeFile : public CSaveFile {
public:
    explicit WholeFile(const std::string& path) : CSaveFile(path.c_str()) {}

    void Write(const void* data, UINT size) override {
        if (m_gathered.size() + size > kPiece) WriteGathered();
        if (size >= kPiece)
            CSaveFile::Write(data, size);
        else
            m_gathered.append(static_cast<const char*>(data), size);
    }

    void CommitAll() {
        WriteGathered();
        Commit();
    }

private:
    void WriteGathered() {
        CSaveFile::Write(m_gathered.data(), static_cast<UINT>(m_gathered.size()));
        m_gathered.clear();
    }

    std::string m_gathered;
};

}  // namespace

bool IsStandardStream(const std::string& path) {
    return path == "-";
}

std::string ReadDocument(const std::string& path) {
    if (IsStandardStream(path)) return AfxReadStandardInput().AsStd();
    CFile file(path.c_str(), CFile::modeRead | CFile::shareDenyWrite);
    // A pipe has no length, and a file may grow.
    std::string bytes(static_cast<std::size_t>(file.GetLength()) + 1, '\0');
    std::size_t size = 0;
    for (UINT count = 1; count > 0; size += count) {
        if (size == bytes.size()) bytes.resize(size + std::max(size, kPiece));
        const auto wanted = static_cast<UINT>(std::min<std::size_t>(bytes.size() - size, 1 << 30));
        count = file.Read(bytes.data() + size, wanted);
    }
    bytes.resize(size);
    return bytes;
}

void WriteDocument(const std::string& path, const std::function<void(CFile&)>& write) {
    if (IsStandardStream(path)) {
        MemoryFile file;
        write(file);
        return AfxWriteStandardOutput(file.Bytes());
    }
    WholeFile file(path);
    write(file);
    file.CommitAll();
}

UINT MemoryFile::Read(void* buffer, UINT count) {
    const std::uint64_t left = m_bytes.size() - std::min<std::uint64_t>(m_position, m_bytes.size());
    const auto size = static_cast<UINT>(std::min<std::uint64_t>(left, count));
    if (size > 0) std::memcpy(buffer, m_bytes.data() + m_position, size);
    m_position += size;
    return size;
}

void MemoryFile::Write(const void* buffer, UINT count) {
    m_bytes.append(static_cast<const char*>(buffer), count);
    m_position = m_bytes.size();
}

std::uint64_t MemoryFile::Seek(std::int64_t offset, UINT from) {
    const std::uint64_t start = from == begin ? 0 : from == current ? m_position : m_bytes.size();
    if (offset < 0 && start < std::uint64_t{0} - static_cast<std::uint64_t>(offset))
        AfxThrowFileException(CFileException::badSeek);
    return m_position = start + static_cast<std::uint64_t>(offset);
}

}  // namespace qv::tool
