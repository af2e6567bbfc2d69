#pragma once

#include <array>

#include "imaging/PngChunks.h"
#include "imaging/Raster.h"

namespace qv::imaging {

/// Converts the samples of a row to pixels, or to indices for a bitmap with a palette.
class PngSamples {
public:
    /// The file must outlive the object.
    explicit PngSamples(const PngFile& file);

    void Read(const BYTE* samples, int count, Pixel* out) const { (this->*m_read)(samples, count, out); }

private:
    void ReadTable(const BYTE* samples, int count, Pixel* out) const;
    template <int Channels, int Size>
    void ReadChannels(const BYTE* samples, int count, Pixel* out) const;
    void ReadGrey16(const BYTE* samples, int count, Pixel* out) const;

    void FillTable(const PngFile& file);

    int m_depth;
    std::array<Pixel, 256> m_table = {};  // a pixel or an index for each sample of at most 8 bits
    const BYTE* m_key = nullptr;          // the 16-bit samples that are transparent
    void (PngSamples::*m_read)(const BYTE* samples, int count, Pixel* out) const;
};

}  // namespace qv::imaging
