#include "platform/Drawing.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "platform/DibRowReader.h"

namespace qv::platform {
namespace {

// Maps an area's pixels in one dimension to source pixels, for those within the target.
struct Span {
    Span(int position, int length, int limit, int sourceFirst, int sourceLength) : first(std::max(position, 0)) {
        const auto end = static_cast<int>(std::min<std::int64_t>(std::int64_t{position} + length, limit));
        for (std::int64_t at = first; at < end; ++at)
            from.push_back(sourceFirst +
                           static_cast<std::size_t>((2 * (at - position) + 1) * sourceLength / 2 / length));
    }

    int first;
    std::vector<std::size_t> from;
};

}  // namespace

bool DrawOnContext(void*, const DibRows&, const DrawArea&) {
    return false;
}

bool DrawOnPixels(const PixelBuffer& target, const DibRows& source, const DrawArea& area) {
    const DibRowReader reader(source.info);
    const Span columns(area.x, area.width, target.width, source.firstColumn, source.columns);
    const Span lines(area.y, area.height, target.height, 0, reader.Rows());
    std::uint32_t* out = target.pixels + static_cast<std::ptrdiff_t>(lines.first) * target.pitch + columns.first;
    for (const std::size_t line : lines.from) {
        const std::size_t row = reader.TopDown() ? line : reader.Rows() - 1 - line;
        const auto* const bytes = static_cast<const unsigned char*>(source.rows) + row * reader.RowSize();
        for (std::size_t i = 0; i < columns.from.size(); ++i) out[i] = reader.Pixel(bytes, columns.from[i]);
        out += target.pitch;
    }
    return true;
}

}  // namespace qv::platform
