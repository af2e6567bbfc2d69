#include "imaging/Compositing.h"

namespace qv::imaging {

Pixel Over(Pixel upper, Pixel lower, int opacity) {
    // In units of 1 / 65025; their sum is the result's alpha.
    const unsigned above = static_cast<unsigned>((AlphaOf(upper) * opacity + 127) / 255) * 255;
    const unsigned below = (65025 - above) / 255 * static_cast<unsigned>(AlphaOf(lower)), sum = above + below;
    if (sum == 0) return 0;
    Pixel result = (sum + 127) / 255 << 24;
    for (int channel = 0; channel < 3; ++channel)
        result |= (above * static_cast<unsigned>(ChannelOf(upper, channel)) +
                   below * static_cast<unsigned>(ChannelOf(lower, channel)) + sum / 2) /
                      sum
                  << (8 * channel);
    return AlphaOf(result) ? result : 0;
}

void FlattenPixels(Raster& pixels, DWORD colour) {
    for (Pixel& pixel : pixels)
        if (AlphaOf(pixel) != 255) pixel = Over(pixel, colour | kOpaque);
}

}  // namespace qv::imaging
