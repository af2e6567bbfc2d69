#include "qvcommon/framework/StdioFile.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "framework/WriteInParts.h"
#include "platform/File.h"

IMPLEMENT_DYNAMIC(CStdioFile, CFile)

namespace {

constexpr std::size_t kBufferSize = 32 * 1024;

}  // namespace

CStdioFile::CStdioFile() = default;

CStdioFile::CStdioFile(const char* fileName, UINT openFlags) {
    CFileException error;
    if (!CStdioFile::Open(fileName, openFlags, &error))
        AfxThrowFileException(error.m_cause, error.m_lOsError, error.m_strFileName);
}

CStdioFile::~CStdioFile() {
    try {
        CStdioFile::Close();
    } catch (CFileException* error) {
        error->Delete();
    }
}

void CStdioFile::Attach(Handle handle) {
    Abort();
    m_hFile = handle;
    m_text = true;
}

BOOL CStdioFile::Open(const char* fileName, UINT openFlags, CFileException* error) {
    if (!CFile::Open(fileName, openFlags, error)) return 0;
    m_text = !(openFlags & typeBinary);
    return 1;
}

void CStdioFile::Close() {
    try {
        if (m_use == Buffered::Writing) WriteBuffer();
    } catch (...) {
        Abort();
        throw;
    }
    Drop();
    CFile::Close();
}

void CStdioFile::Abort() {
    Drop();
    CFile::Abort();
}

bool CStdioFile::CloseAndRemove() {
    Drop();
    return CFile::CloseAndRemove();
}

UINT CStdioFile::Read(void* buffer, UINT count) {
    StartReading();
    UINT total = 0;
    while (total < count && (Unread() > 0 || Fill())) {
        if (m_text && SkipsCarriageReturn()) ++m_next;
        std::string_view part = std::string_view(m_buffer).substr(m_next, count - total);
        if (m_text) part = part.substr(0, part.find('\r', 1));  // nothing before it needs a check
        std::memcpy(static_cast<char*>(buffer) + total, part.data(), part.size());
        m_next += part.size();
        total += static_cast<UINT>(part.size());
    }
    return total;
}

void CStdioFile::Write(const void* buffer, UINT count) {
    WriteString({static_cast<const char*>(buffer), count});
}

void CStdioFile::Flush() {
    Settle();
    CFile::Flush();
}

std::uint64_t CStdioFile::Seek(std::int64_t offset, UINT from) {
    Settle();
    return CFile::Seek(offset, from);
}

std::uint64_t CStdioFile::GetPosition() const {
    const std::size_t unwritten = m_use == Buffered::Writing ? m_buffer.size() : 0;
    return CFile::GetPosition() - Unread() + unwritten;
}

std::uint64_t CStdioFile::GetLength() const {
    return m_use == Buffered::Writing ? std::max(CFile::GetLength(), GetPosition()) : CFile::GetLength();
}

void CStdioFile::SetLength(std::uint64_t length) {
    Settle();
    CFile::SetLength(length);
}

bool CStdioFile::ReadString(CString& line) {
    StartReading();
    std::string& text = line.AsStd();
    text.clear();
    while (Unread() > 0 || Fill()) {
        const std::string_view rest = std::string_view(m_buffer).substr(m_next);
        const std::size_t lineEnd = rest.find('\n');
        text += rest.substr(0, lineEnd);
        m_next = lineEnd == rest.npos ? m_buffer.size() : m_next + lineEnd + 1;
        if (lineEnd == rest.npos) continue;
        if (m_text && text.ends_with('\r')) text.pop_back();
        return true;
    }
    return !text.empty();
}

void CStdioFile::WriteString(std::string_view text) {
    StartWriting();
    const std::string_view lineEnd = qv::platform::TextLineEnd();
    if (!m_text || lineEnd == "\n") return Put(text);
    for (std::size_t line = text.find('\n'); line != text.npos; line = text.find('\n')) {
        Put(text.substr(0, line));
        Put(lineEnd);
        text.remove_prefix(line + 1);
    }
    Put(text);
}

/// Reads more data after the unread part; returns false at the end of the file.
bool CStdioFile::Fill() {
    m_buffer.erase(0, std::exchange(m_next, 0));
    const std::size_t kept = m_buffer.size();
    m_buffer.resize(kept + kBufferSize);
    UINT got = 0;
    try {
        got = ReadSome(m_buffer.data() + kept, kBufferSize);
    } catch (...) {
        m_buffer.resize(kept);
        throw;
    }
    m_buffer.resize(kept + got);
    return got > 0;
}

/// Returns true if the next byte is a carriage return before a line feed.
bool CStdioFile::SkipsCarriageReturn() {
    if (m_buffer[m_next] != '\r') return false;
    if (Unread() == 1) Fill();
    return Unread() > 1 && m_buffer[m_next + 1] == '\n';
}

void CStdioFile::StartReading() {
    if (m_use == Buffered::Writing) WriteBuffer();
    m_use = Buffered::Reading;
}

void CStdioFile::StartWriting() {
    if (m_use == Buffered::Reading) Settle();
    m_use = Buffered::Writing;
}

/// Moves the system's position to the caller's, and empties the buffer.
void CStdioFile::Settle() {
    if (m_use == Buffered::Writing) WriteBuffer();
    const auto unread = static_cast<std::int64_t>(Unread());
    Drop();
    if (unread > 0) CFile::Seek(-unread, current);
}

void CStdioFile::WriteBuffer() {
    // Moved out first: after a failure nothing remains that a later call could write twice.
    std::string bytes;
    bytes.swap(m_buffer);
    Drop();
    WriteThrough(bytes);
    bytes.clear();
    m_buffer.swap(bytes);
}

void CStdioFile::WriteThrough(std::string_view bytes) {
    qv::WriteInParts(bytes, [this](const char* data, UINT size) { CFile::Write(data, size); });
}

void CStdioFile::Put(std::string_view bytes) {
    if (m_buffer.size() + bytes.size() > kBufferSize) {
        WriteBuffer();
        m_use = Buffered::Writing;
    }
    if (bytes.size() < kBufferSize)
        m_buffer += bytes;
    else
        WriteThrough(bytes);
}

void CStdioFile::Drop() {
    m_buffer.clear();
    m_next = 0;
    m_use = Buffered::Nothing;
}
