#include <algorithm>
#include <array>
#include <cstring>

#include "imaging/DibFormat.h"
#include "qvcommon/DIBitmap.h"

using namespace qv::imaging;

namespace {

constexpr const char *kNotABitmap = "Error:Unexpected file type, not a DIB\n",
                     *kOtherHeader = "Error:OS2 PM BMP Format not supported\n",
                     *kUnknownHeader = "Error:Unknown bitmap header\n";

constexpr DWORD kCoreSize = 12;
/// Sizes of headers that begin with the 40 bytes: version 3, the same with masks, OS/2 2, and versions 4 and 5.
constexpr DWORD kLongHeaders[] = {40, 52, 56, 64, 108, 124};
constexpr DWORD kOs2Size = 64;
constexpr std::size_t kMaskBytes = 12, kWithAlphaBytes = 16;
constexpr DWORD kAlphaSize = 56;  // of the shortest header with an alpha mask

/// Converts the header of 12 bytes to that of 40, and its colours of 3 bytes to those of 4.
void ReadCore(CFile& file, DibInfo& info) {
    std::uint16_t fields[4] = {};  // width, height, planes, bits per pixel
    file.Read(fields, sizeof fields);
    info.header.width = fields[0];
    info.header.height = fields[1];
    info.header.planes = fields[2];
    info.header.bitCount = fields[3];
    std::array<BYTE, 3 * DibInfo::capacity> colours = {};
    const std::size_t count = fields[3] <= 8 ? std::size_t{1} << fields[3] : 0;
    file.Read(colours.data(), static_cast<UINT>(3 * count));
    for (std::size_t i = 0; i < count; ++i)
        info.colours[i] = {colours[3 * i], colours[3 * i + 1], colours[3 * i + 2], 0};
}

/// Masks are in the header if it has room for them, else after it, as with a header of 40 bytes.
void ReadRest(CFile& file, DWORD size, DibInfo& info) {
    BYTE rest[124 - sizeof(DibHeader)] = {};
    file.Read(rest, static_cast<UINT>(size - sizeof(DibHeader)));
    const bool hasMasks = size != sizeof(DibHeader) && size != kOs2Size &&
                          (info.header.compression == kMasks || info.header.compression == kMasksWithAlpha);
    if (!hasMasks) {
        file.Read(info.colours, sizeof info.colours);
        return;
    }
    DWORD alpha = 0;
    if (size >= kAlphaSize) std::memcpy(&alpha, rest + kMaskBytes, sizeof alpha);
    info.header.compression = alpha ? kMasksWithAlpha : kMasks;
    const std::size_t kept = alpha ? kWithAlphaBytes : kMaskBytes;
    std::memcpy(info.colours, rest, kept);
    file.Read(reinterpret_cast<BYTE*>(info.colours) + kept, static_cast<UINT>(sizeof info.colours - kept));
}

}  // namespace

BOOL CDIBitmap::Load(const char* path) {
    CFile file;
    if (!file.Open(path, CFile::modeRead | CFile::shareDenyWrite | CFile::modeNoInherit | CFile::typeBinary)) return 0;
    const BOOL loaded = Load(file);
    file.Close();
    return loaded;
}

BOOL CDIBitmap::Load(CFile& file) {
    LoadAs(file, false);
    return 1;
}

int CDIBitmap::LoadConverted(const char* path) {
    CFile file;
    if (!file.Open(path, CFile::modeRead | CFile::shareDenyWrite | CFile::modeNoInherit | CFile::typeBinary)) return 0;
    const int size = LoadConverted(file);
    file.Close();
    return size;
}

int CDIBitmap::LoadConverted(CFile& file) {
    return static_cast<int>(LoadAs(file, true));
}

/// Returns the size of the file's header.
DWORD CDIBitmap::LoadAs(CFile& file, bool converts) {
    m_info.reset();
    m_bits.reset();
    m_palette.reset();
    m_bitsSize = 0;
    const std::uint64_t start = file.GetPosition();

    std::array<BYTE, kFileHeaderSize> fileHeader = {};
    file.Read(fileHeader.data(), kFileHeaderSize);
    std::uint16_t type;
    std::memcpy(&type, fileHeader.data(), sizeof type);
    if (type != kBitmapType) throw kNotABitmap;

    auto info = std::make_unique<DibInfo>();
    DWORD size = 0;
    file.Read(&size, sizeof size);
    const bool isLong = std::ranges::find(kLongHeaders, size) != std::end(kLongHeaders);
    if (!converts && size != sizeof info->header) throw kOtherHeader;
    if (!isLong && size != kCoreSize) throw kUnknownHeader;
    info->header.size = sizeof info->header;
    if (isLong) {
        file.Read(&info->header.width, sizeof info->header - sizeof size);
        ReadRest(file, size, *info);
    } else {
        ReadCore(file, *info);
    }
    CDIBitmap loaded;
    loaded.ReadRows(file, start, fileHeader.data());
    loaded.m_info = std::move(info);
    loaded.m_padded = 1;
    loaded.CreatePalette();
    TakeFrom(loaded);
    return size;
}

void CDIBitmap::ReadRows(CFile& file, std::uint64_t start, const BYTE* fileHeader) {
    DWORD total, offset;
    std::memcpy(&total, fileHeader + 2, sizeof total);
    std::memcpy(&offset, fileHeader + 10, sizeof offset);
    const std::uint64_t length = file.GetLength(), rowsAt = start + offset;
    // A total below the offset wraps to a number that no file reaches; then the rows extend to the end of the file.
    const auto size = static_cast<UINT>(std::min<std::uint64_t>(total - offset, length > rowsAt ? length - rowsAt : 0));
    auto bits = std::make_unique_for_overwrite<BYTE[]>(size);
    file.Seek(static_cast<std::int64_t>(rowsAt), CFile::begin);
    m_bitsSize = file.Read(bits.get(), size);
    m_bits = std::move(bits);
}
