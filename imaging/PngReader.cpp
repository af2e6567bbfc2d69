#include <algorithm>
#include <vector>

#include "imaging/Deflate.h"
#include "imaging/PixelRows.h"
#include "imaging/Png.h"
#include "imaging/PngChunks.h"
#include "imaging/PngFilter.h"
#include "imaging/PngSamples.h"

namespace qv::imaging {
namespace {

int BitsFor(const PngFile& file) {
    if (file.HasAlpha()) return 32;
    if (file.header.HasColours() && file.header.colour != kPngPalette) return 24;
    return file.header.depth == 2 ? 4 : std::min(file.header.depth, 8);
}

void SetColours(const PngFile& file, NewDib& dib) {
    if (file.header.colour != kPngPalette) return dib.SetGreyColours();
    const std::size_t count = file.palette.size() / 3;
    for (std::size_t i = 0; i < count; ++i)
        dib.info->colours[i] = {file.palette[3 * i + 2], file.palette[3 * i + 1], file.palette[3 * i], 0};
    dib.info->header.coloursUsed = static_cast<DWORD>(count);
}

class PngDecoder {
public:
    explicit PngDecoder(const PngFile& file)
        : m_header(file.header),
          m_inflater(file.data),
          m_samples(file),
          m_dib(file.header.width, file.header.height, BitsFor(file)),
          m_pixels(static_cast<std::size_t>(file.header.width)) {
        if (Bits() <= 8) SetColours(file, m_dib);
        m_dib.info->header.horizontalPerMetre = file.horizontalPerMetre;
        m_dib.info->header.verticalPerMetre = file.verticalPerMetre;
    }

    NewDib Decode() {
        for (const PngPass& pass : PassesOf(m_header))
            if (pass.x < m_header.width && pass.y < m_header.height) DecodePass(pass);
        m_inflater.Finish();
        return std::move(m_dib);
    }

private:
    int Bits() const { return m_dib.info->header.bitCount; }

    void DecodePass(const PngPass& pass) {
        const int columns = pass.Columns(m_header.width);
        PngRows rows(m_header.RowBytes(columns), m_header.FilterStep());
        for (int y = pass.y; y < m_header.height; y += pass.stepY) {
            BYTE filter = 0;
            m_inflater.Read(&filter, 1);
            m_inflater.Read(rows.Row(), rows.Size());
            if (!Unfilter(filter, rows)) throw PictureError{"damaged PNG picture: unknown filter"};
            Put(rows.Row(), columns, pass, m_dib.Row(y));
            rows.Advance();
        }
    }

    void Put(const BYTE* samples, int columns, const PngPass& pass, BYTE* row) {
        if (m_header.depth == Bits() && pass.stepX == 1) {  // same packing
            std::copy_n(samples, m_header.RowBytes(columns), row);
            return;
        }
        m_samples.Read(samples, columns, m_pixels.data());
        if (pass.stepX == 1)
            PutPixels(m_pixels.data(), columns, Bits(), row);
        else
            PutEachPixel(m_pixels.data(), columns, Bits(), row, pass.x, pass.stepX);
    }

    const PngHeader& m_header;
    Inflater m_inflater;
    PngSamples m_samples;
    NewDib m_dib;
    std::vector<Pixel> m_pixels;
};

}  // namespace

NewDib DecodePng(const PngFile& file) {
    return PngDecoder(file).Decode();
}

}  // namespace qv::imaging
