#pragma once

/// @file The checksum of a file, by one thread or several.

#include <functional>

#include "qvcommon/framework/File.h"
#include "threads/Executor.h"

namespace qv {

/// An open file that is summed up. @throws CFileException* from its members.
class FileCrc {
public:
    explicit FileCrc(const CString& path);

    /// Whether it is worth several threads.
    bool IsLarge() const;
    std::uint32_t Sum();
    /// The same by the threads of the executor too. `read` is called on this thread with the bytes that were read.
    std::uint32_t Sum(Executor& executor, const std::function<void(std::uint64_t)>& read);
    /// What Sum has read.
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
