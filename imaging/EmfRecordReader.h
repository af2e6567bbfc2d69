#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "qvcommon/ParseEmf.h"

namespace qv::imaging {

/// Takes records off a file, which it reads in large blocks.
class EmfRecordReader {
public:
    enum class Result {
        Record,
        End,         ///< fewer than 12 bytes are left
        Unreadable,  ///< a size that cannot be, or a failed read
        NoMemory
    };

    /// The file has to outlive the reader. @throws CFileException* where the file cannot be asked for its length.
    explicit EmfRecordReader(CFile& file);

    Result Next();
    /// The record that Next found, aligned for words, until the next call.
    EmfRecord* Record() { return reinterpret_cast<EmfRecord*>(m_record.get()); }
    /// Puts the file's position behind the last record. @throws CFileException*
    void Settle();

private:
    bool Fill(std::size_t count);
    bool Reserve(std::size_t size);
    bool Take(std::size_t size);

    CFile& m_file;
    std::uint64_t m_position;   ///< of the next record in the file
    std::uint64_t m_length;     ///< of the file
    std::vector<BYTE> m_block;  ///< read, the next record at m_next
    std::size_t m_next = 0, m_end = 0;
    std::unique_ptr<BYTE[]> m_record;
    std::size_t m_room = 0;  ///< of m_record
};

}  // namespace qv::imaging
