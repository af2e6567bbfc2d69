#include <algorithm>

#include "imaging/DibFormat.h"
#include "imaging/Icon.h"
#include "imaging/Png.h"
#include "imaging/Raster.h"

namespace qv::imaging {
namespace {

constexpr int kLargest = 256;

template <class Record>
void Append(std::vector<BYTE>& bytes, const Record& record) {
    bytes.resize(bytes.size() + sizeof record);
    std::memcpy(bytes.data() + bytes.size() - sizeof record, &record, sizeof record);
}

/// Returns pixels with alpha, and a mask for readers that ignore alpha.
std::vector<BYTE> BitmapOf(const Raster& pixels) {
    const int width = pixels.Width(), height = pixels.Height();
    DibHeader header = {sizeof header, width, 2 * height, 1, 32, kNoCompression, 0, 0, 0, 0, 0};
    std::vector<BYTE> bytes;
    Append(bytes, header);
    for (int y = height; y-- > 0;)
        for (int x = 0; x < width; ++x) Append(bytes, pixels.Row(y)[x]);
    const std::size_t pitch = (static_cast<std::size_t>(width) + 31) / 32 * 4;
    for (int y = height; y-- > 0;) {
        std::vector<BYTE> mask(pitch);
        for (int x = 0; x < width; ++x)
            if (AlphaOf(pixels.Row(y)[x]) == 0)
                mask[static_cast<std::size_t>(x / 8)] |= static_cast<BYTE>(128 >> x % 8);
        bytes.insert(bytes.end(), mask.begin(), mask.end());
    }
    return bytes;
}

std::vector<BYTE> PngOf(const Raster& pixels) {
    CDIBitmap bitmap;
    pixels.StoreIn(bitmap);
    std::vector<BYTE> bytes;
    EncodePng(*PlainRows::Of(bitmap), [&](Bytes piece) { bytes.insert(bytes.end(), piece.begin(), piece.end()); });
    return bytes;
}

struct Picture {
    int width, height;
    std::vector<BYTE> bytes;
};

/// Returns an empty vector if one of the pictures does not fit into an icon.
std::vector<Picture> Encoded(std::span<const CDIBitmap* const> pictures) {
    std::vector<Picture> encoded;
    for (const CDIBitmap* const picture : pictures) {
        const std::optional<Raster> pixels = Raster::Of(*picture);
        if (!pixels) return {};
        const int longer = std::max(pixels->Width(), pixels->Height());
        if (longer > kLargest) return {};
        encoded.push_back({pixels->Width(), pixels->Height(), longer == kLargest ? PngOf(*pixels) : BitmapOf(*pixels)});
    }
    return encoded;
}

}  // namespace

bool EncodeIcon(std::span<const CDIBitmap* const> pictures, const std::function<void(Bytes)>& write) {
    if (pictures.size() > UINT16_MAX) return false;
    const std::vector<Picture> encoded = Encoded(pictures);
    if (encoded.empty()) return false;
    std::vector<BYTE> head;
    Append(head, IconHead{0, kIconType, static_cast<std::uint16_t>(encoded.size())});
    std::uint64_t offset = sizeof(IconHead) + encoded.size() * sizeof(IconEntry);
    for (const Picture& picture : encoded) {
        const auto size = static_cast<std::uint32_t>(picture.bytes.size());
        // 256 becomes 0, as the format requires.
        Append(head, IconEntry{static_cast<BYTE>(picture.width), static_cast<BYTE>(picture.height), 0, 0, 1, 32, size,
                               static_cast<std::uint32_t>(offset)});
        offset += size;
    }
    if (offset > UINT32_MAX) return false;
    write(head);
    for (const Picture& picture : encoded) write(picture.bytes);
    return true;
}

}  // namespace qv::imaging
