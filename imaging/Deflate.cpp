#include "imaging/Deflate.h"

#include <algorithm>
#include <new>

namespace qv::imaging {
namespace {

// zlib counts in 32 bits.
constexpr std::size_t kMostAtOnce = 1 << 30;

Bytef* Writable(const BYTE* bytes) {
    return const_cast<Bytef*>(bytes);  // zlib's interface lacks the const, but does not write
}

}  // namespace

Inflater::Inflater(const std::vector<Bytes>& pieces) : m_pieces(pieces) {
    if (inflateInit(&m_stream) != Z_OK) throw std::bad_alloc();
}

Inflater::~Inflater() {
    inflateEnd(&m_stream);
}

/// Leaves the number of missing bytes in avail_out.
int Inflater::Inflate(BYTE* out, std::size_t size) {
    m_stream.next_out = out;
    m_stream.avail_out = static_cast<uInt>(size);
    for (;;) {
        if (m_stream.avail_in == 0 && m_next < m_pieces.size()) {
            m_stream.next_in = Writable(m_pieces[m_next].data());
            m_stream.avail_in = static_cast<uInt>(m_pieces[m_next++].size());
        }
        const int result = inflate(&m_stream, Z_NO_FLUSH);
        if (result == Z_MEM_ERROR) throw std::bad_alloc();
        const bool wantsMore = m_stream.avail_out > 0 && (m_stream.avail_in > 0 || m_next < m_pieces.size());
        if ((result != Z_OK && result != Z_BUF_ERROR) || !wantsMore) return result;
    }
}

void Inflater::Read(BYTE* out, std::size_t size) {
    for (std::size_t done = 0; done < size;) {
        const std::size_t wanted = std::min(size - done, kMostAtOnce);
        const int result = Inflate(out + done, wanted);
        if (result != Z_OK && result != Z_STREAM_END && result != Z_BUF_ERROR)
            throw PictureError{"damaged PNG picture: compressed data"};
        if (m_stream.avail_out > 0) throw PictureError{"damaged PNG picture: it ends early"};
        done += wanted;
    }
}

void Inflater::Finish() {
    BYTE more = 0;
    if (Inflate(&more, 1) != Z_STREAM_END || m_stream.avail_out == 0)
        throw PictureError{"damaged PNG picture: end of the compressed data"};
}

Deflater::Deflater(bool filtered, Write write) : m_write(std::move(write)), m_out(kPiece) {
    constexpr int window = 15, memory = 8;
    const int strategy = filtered ? Z_FILTERED : Z_DEFAULT_STRATEGY;
    if (deflateInit2(&m_stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, window, memory, strategy) != Z_OK)
        throw std::bad_alloc();
    m_stream.next_out = m_out.data();
    m_stream.avail_out = static_cast<uInt>(m_out.size());
}

Deflater::~Deflater() {
    deflateEnd(&m_stream);
}

void Deflater::Put(Bytes bytes) {
    Run(bytes, Z_NO_FLUSH);
}

void Deflater::Finish() {
    Run({}, Z_FINISH);
    WritePiece();
}

void Deflater::Run(Bytes bytes, int flush) {
    m_stream.next_in = Writable(bytes.data());
    m_stream.avail_in = static_cast<uInt>(bytes.size());
    for (;;) {
        const int result = deflate(&m_stream, flush);
        if (m_stream.avail_out > 0 && (flush == Z_NO_FLUSH || result == Z_STREAM_END)) return;
        WritePiece();
    }
}

void Deflater::WritePiece() {
    const std::size_t size = m_out.size() - m_stream.avail_out;
    if (size > 0) m_write(Bytes(m_out).first(size));
    m_stream.next_out = m_out.data();
    m_stream.avail_out = static_cast<uInt>(m_out.size());
}

}  // namespace qv::imaging
