#include "imaging/EmfRecordReader.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace qv::imaging {
namespace {

constexpr std::size_t kBlock = 256 * 1024;
// The minimum size of a record: type, size and the first parameter.
constexpr std::size_t kStart = 12;
constexpr DWORD kSmallestSize = 8;
constexpr UINT kLargestRead = 1 << 30;

}  // namespace

void EmfRecordReader::Begin() {
    m_position = m_file.GetPosition();
    m_length = m_file.GetLength();
    m_block.resize(kBlock);
}

EmfRecordReader::Result EmfRecordReader::Next() try {
    if (m_block.empty()) Begin();
    if (!Fill(kStart)) return Result::End;
    DWORD size = 0;
    std::memcpy(&size, m_block.data() + m_next + offsetof(EmfRecord, size), sizeof size);
    if (size < kSmallestSize || size > m_length - m_position) return Result::Unreadable;
    if (!Reserve(size)) return Result::NoMemory;
    return Take(size) ? Result::Record : Result::Unreadable;
} catch (CFileException* failed) {
    failed->Delete();
    return Result::Unreadable;
} catch (const std::bad_alloc&) {
    return Result::NoMemory;
}

bool EmfRecordReader::Settle() try {
    m_file.Seek(static_cast<std::int64_t>(m_position), CFile::begin);
    return true;
} catch (CFileException* failed) {
    failed->Delete();
    return false;
}

// Makes `count` bytes, at most a block, available at m_next; false if the file ends before.
bool EmfRecordReader::Fill(std::size_t count) {
    if (m_end - m_next >= count) return true;
    std::memmove(m_block.data(), m_block.data() + m_next, m_end - m_next);
    m_end -= m_next;
    m_next = 0;
    m_end += m_file.Read(m_block.data() + m_end, static_cast<UINT>(m_block.size() - m_end));
    // If the file grows while it is read, use its current length.
    m_length = std::max(m_length, m_position + m_end);
    return m_end >= count;
}

bool EmfRecordReader::Reserve(std::size_t size) {
    if (size <= m_room) return true;
    m_room = 0;
    m_record.reset();
    m_record.reset(new (std::nothrow) BYTE[size]);
    if (m_record) m_room = size;
    return m_record != nullptr;
}

bool EmfRecordReader::Take(std::size_t size) {
    const std::size_t here = std::min(size, m_end - m_next);
    std::memcpy(m_record.get(), m_block.data() + m_next, here);
    m_next += here;
    for (std::size_t done = here; done < size;) {
        const UINT wanted = static_cast<UINT>(std::min<std::size_t>(size - done, kLargestRead));
        if (m_file.Read(m_record.get() + done, wanted) != wanted) return false;
        done += wanted;
    }
    m_position += size;
    return true;
}

}  // namespace qv::imaging
