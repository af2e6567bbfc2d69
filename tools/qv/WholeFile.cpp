#include "tools/qv/WholeFile.h"

namespace qv::tool {
namespace {

constexpr std::size_t kPiece = 64 * 1024;

}  // namespace

WholeFile::WholeFile(const std::string& path) : CSaveFile(path.c_str()) {}

void WholeFile::Write(const void* data, UINT size) {
    if (m_gathered.size() + size > kPiece) WriteGathered();
    if (size >= kPiece)
        CSaveFile::Write(data, size);
    else
        m_gathered.append(static_cast<const char*>(data), size);
}

void WholeFile::Commit() {
    WriteGathered();
    CSaveFile::Commit();
}

void WholeFile::WriteGathered() {
    CSaveFile::Write(m_gathered.data(), static_cast<UINT>(m_gathered.size()));
    m_gathered.clear();
}

}  // namespace qv::tool
