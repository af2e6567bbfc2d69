#pragma once

#include <array>

#include "imaging/PngChunks.h"
#include "imaging/Raster.h"

namespace qv::imaging {

/// Turns the samples of a row into pixels, or into indices where the picture becomes a bitmap with a palette.
class PngSamples {
public:
    /// The file has to outlive the object.
    explicit PngSamples(const PngFile& file);

    void Read(const BYTE* samples, int count, Pixel* out) const { (this->*m_read)(samples, count, out); }

private:
    void ReadTable(const BYTE* samples, int count, Pixel* out) const;
    template <int Channels, int Size>
    void ReadChannels(const BYTE* samples, int count, Pixel* out) const;
    void ReadGrey16(const BYTE* samples, int count, Pixel* out) const;

    void FillTable(const PngFile& file);

    int m_depth;
    std::array<Pixel, 256> m_table = {};  // for each sample of at most 8 bits: a pixel or an index
    const BYTE* m_key = nullptr;          // the samples, of 16 bits, that are transparent
    void (PngSamples::*m_read)(const BYTE* samples, int count, Pixel* out) const;
};

}  // namespace qv::imaging
