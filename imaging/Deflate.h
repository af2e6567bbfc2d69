#pragma once

#include <zlib.h>

#include <functional>
#include <vector>

#include "imaging/Bytes.h"

/// @file The zlib streams in PNG files.

namespace qv::imaging {

/// Decompresses a stream that consists of several pieces.
class Inflater {
public:
    /// The pieces must outlive the object. @throws std::bad_alloc
    explicit Inflater(const std::vector<Bytes>& pieces);
    ~Inflater();
    Inflater(const Inflater&) = delete;
    Inflater& operator=(const Inflater&) = delete;

    /// @throws PictureError if the stream is damaged or too short; std::bad_alloc
    void Read(BYTE* out, std::size_t size);
    /// Checks that the stream ends here. @throws PictureError
    void Finish();

private:
    int Inflate(BYTE* out, std::size_t size);

    z_stream m_stream{};
    const std::vector<Bytes>& m_pieces;
    std::size_t m_next = 0;
};

/// Compresses bytes and passes the stream on in pieces.
class Deflater {
public:
    /// The maximum size of a piece.
    static constexpr std::size_t kPiece = 64 * 1024;
    using Write = std::function<void(Bytes)>;

    /// @param filtered  whether the bytes are small differences @throws std::bad_alloc
    Deflater(bool filtered, Write write);
    ~Deflater();
    Deflater(const Deflater&) = delete;
    Deflater& operator=(const Deflater&) = delete;

    void Put(Bytes bytes);
    void Finish();

private:
    void Run(Bytes bytes, int flush);
    void WritePiece();

    z_stream m_stream{};
    Write m_write;
    std::vector<BYTE> m_out;
};

}  // namespace qv::imaging
