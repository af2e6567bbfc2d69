#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "qvcommon/ParseEmf.h"

namespace qv::imaging {

/// Reads the records of a file, in large blocks.
class EmfRecordReader {
public:
    enum class Result {
        Record,
        End,         ///< fewer than 12 bytes are left
        Unreadable,  ///< an impossible size, or a failed read
        NoMemory     ///< for the record, or to read at all
    };

    /// The file must outlive the reader.
    explicit EmfRecordReader(CFile& file) : m_file(file) {}

    Result Next();
    /// The record that Next found, word-aligned; valid until the next call.
    EmfRecord* Record() { return reinterpret_cast<EmfRecord*>(m_record.get()); }
    /// Sets the file's position to the end of the last record; false if the file cannot seek.
    bool Settle();

private:
    void Begin();
    bool Fill(std::size_t count);
    bool Reserve(std::size_t size);
    bool Take(std::size_t size);

    CFile& m_file;
    std::uint64_t m_position = 0;  ///< of the next record in the file
    std::uint64_t m_length = 0;    ///< of the file
    std::vector<BYTE> m_block;     ///< the current block, with the next record at m_next; empty before the first record
    std::size_t m_next = 0, m_end = 0;
    std::unique_ptr<BYTE[]> m_record;
    std::size_t m_room = 0;  ///< the capacity of m_record
};

}  // namespace qv::imaging
