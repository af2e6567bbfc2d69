#include "imaging/RunLength.h"

#include <algorithm>

namespace qv::imaging {
namespace {

class Decoder {
public:
    Decoder(bool nibbles, std::int64_t width, std::int64_t rows, std::int64_t pitch, BYTE* out)
        : m_nibbles(nibbles), m_width(width), m_rows(rows), m_pitch(pitch), m_out(out) {}

    void Run(std::span<const BYTE> data) {
        while (data.size() >= 2 && m_y < m_rows) {
            const BYTE count = data[0], value = data[1];
            data = data.subspan(2);
            if (count) {
                for (int i = 0; i < count; ++i) Put(m_nibbles ? (i % 2 ? value & 15 : value >> 4) : value);
            } else if (!Escape(value, data)) {
                return;
            }
        }
    }

private:
    static constexpr BYTE kEndOfRow = 0, kEndOfBitmap = 1, kMove = 2;

    bool Escape(BYTE code, std::span<const BYTE>& data) {
        if (code == kEndOfBitmap) return false;
        if (code == kEndOfRow) {
            m_x = 0;
            ++m_y;
        } else if (code != kMove) {
            Literals(code, data);
        } else if (data.size() >= 2) {
            m_x += data[0];
            m_y += data[1];
            data = data.subspan(2);
        }
        return true;
    }

    // Literal pixels, padded to an even number of bytes.
    void Literals(std::size_t count, std::span<const BYTE>& data) {
        const std::size_t bytes = m_nibbles ? (count + 1) / 2 : count;
        for (std::size_t i = 0; i < count && (m_nibbles ? i / 2 : i) < data.size(); ++i)
            Put(m_nibbles ? (i % 2 ? data[i / 2] & 15 : data[i / 2] >> 4) : data[i]);
        data = data.subspan(std::min(bytes + bytes % 2, data.size()));
    }

    void Put(int value) {
        if (m_x < m_width && m_y < m_rows) m_out[m_y * m_pitch + m_x] = static_cast<BYTE>(value);
        ++m_x;
    }

    bool m_nibbles;
    std::int64_t m_width, m_rows, m_pitch;
    BYTE* m_out;
    std::int64_t m_x = 0, m_y = 0;
};

}  // namespace

void DecodeRunLengths(std::span<const BYTE> data, bool nibbles, std::int64_t width, std::int64_t rows,
                      std::int64_t pitch, BYTE* out) {
    Decoder(nibbles, width, rows, pitch, out).Run(data);
}

}  // namespace qv::imaging
