#pragma once

/// @file The checksum of a file, computed by one or several threads.

#include <functional>

#include "qvcommon/framework/File.h"
#include "threads/Executor.h"

namespace qv {

/// An open file to be summed. Its members raise CFileException*.
class FileCrc {
public:
    explicit FileCrc(const CString& path);

    /// Returns whether several threads are worthwhile.
    bool IsLarge() const;
    std::uint32_t Sum();
    /// Does the same, also on the threads of the executor. `read` is called on this thread with the number of bytes
    /// read.
    std::uint32_t Sum(Executor& executor, const std::function<void(std::uint64_t)>& read);
    /// Returns the number of bytes read by Sum.
    std::uint64_t Length() const { return m_length; }

private:
    struct Piece {
        std::uint32_t crc = 0;
        std::uint64_t length = 0;
    };

    Piece SumPiece(std::uint64_t position) const;

    CFile m_file;
    std::uint64_t m_length = 0;
};

}  // namespace qv
