#include "core/FileCrc.h"

#include <memory>
#include <vector>

#include "core/Crc32.h"
#include "framework/FileErrors.h"
#include "platform/File.h"

namespace qv {
namespace {

/// Fits into the processor's cache between reading and summing, with few system calls.
constexpr std::size_t kStep = 256 * 1024;
/// The unit of work of a thread in a large file.
constexpr std::uint64_t kPiece = 4 << 20;
constexpr std::uint64_t kLarge = 4 * kPiece;

}  // namespace

FileCrc::FileCrc(const CString& path) : m_file(path, CFile::modeRead | CFile::shareDenyNone) {}

bool FileCrc::IsLarge() const {
    std::uint64_t length = 0;
    return platform::LengthOf(m_file.GetHandle(), length).ok() && length >= kLarge;
}

std::uint32_t FileCrc::Sum() {
    std::uint32_t crc = 0;
    const auto buffer = std::make_unique_for_overwrite<char[]>(kStep);
    while (const UINT count = m_file.Read(buffer.get(), kStep)) {
        crc = Crc32(crc, buffer.get(), count);
        m_length += count;
    }
    return crc;
}

/// The piece is shorter only at the end of the file.
FileCrc::Piece FileCrc::SumPiece(std::uint64_t position) const {
    const auto buffer = std::make_unique_for_overwrite<char[]>(kStep);
    Piece piece;
    while (piece.length < kPiece) {
        std::size_t count = 0;
        const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(kStep, kPiece - piece.length));
        const auto read =
            platform::ReadBytesAt(m_file.GetHandle(), position + piece.length, buffer.get(), wanted, count);
        if (!read.ok()) ThrowIfFailed(read, m_file.GetFilePath());
        if (count == 0) break;
        piece.crc = Crc32(piece.crc, buffer.get(), count);
        piece.length += count;
    }
    return piece;
}

std::uint32_t FileCrc::Sum(Executor& executor, const std::function<void(std::uint64_t)>& read) {
    constexpr std::size_t kPiecesEach = 4;
    std::vector<Piece> pieces((executor.Threads() + 1) * kPiecesEach);
    std::uint32_t crc = 0;
    bool ended = false;
    while (!ended) {
        executor.ForEach(pieces.size(), [&](std::size_t i) { pieces[i] = SumPiece(m_length + i * kPiece); });
        const std::uint64_t before = m_length;
        for (const Piece& piece : pieces) {
            crc = JoinedCrc32(crc, piece.crc, piece.length);
            m_length += piece.length;
            ended = piece.length < kPiece;
            if (ended) break;
        }
        read(m_length - before);
    }
    return crc;
}

}  // namespace qv
