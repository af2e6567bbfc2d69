#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

#include "imaging/DibFormat.h"
#include "qvcommon/DIBitmap.h"

using namespace qv::imaging;

namespace {

/// The fields of a version 4 header after its masks.
struct Version4Rest {
    DWORD colourSpace, endPoints[9], gamma[3];
};
constexpr Version4Rest kVersion4Rest = {0x73524742, {}, {}};  // sRGB

constexpr std::int64_t kLargestFile = std::numeric_limits<DWORD>::max();
// The part before the pixels.
constexpr std::int64_t kLargestHead = kFileHeaderSize + sizeof(DibInfo) + sizeof(Version4Rest);

// The size in bytes of the rows that Save writes, which assumes 8 bits per pixel for every bitmap.
std::int64_t RowOfBytes(int width) {
    return (std::int64_t{width} * 8 + 31) / 32 * 4;
}

// The row size that the file header of that layout counts.
std::int64_t CountedRow(int bitsPerPixel, int width) {
    const std::int64_t wholeBytes = std::int64_t{width} * bitsPerPixel / 8 * 8;
    return (wholeBytes + 31) / 8 / 4 * 4;
}

void WriteFileHeader(CFile& file, std::int64_t total, std::int64_t offset) {
    const auto total32 = static_cast<DWORD>(total), offset32 = static_cast<DWORD>(offset);
    std::array<BYTE, kFileHeaderSize> bytes = {};
    std::memcpy(bytes.data(), &kBitmapType, sizeof kBitmapType);
    std::memcpy(bytes.data() + 2, &total32, sizeof total32);
    std::memcpy(bytes.data() + 10, &offset32, sizeof offset32);
    file.Write(bytes.data(), kFileHeaderSize);
}

void WriteZeroes(CFile& file, std::int64_t count) {
    static const std::array<BYTE, 4096> zeroes = {};
    for (; count > 0; count -= static_cast<std::int64_t>(zeroes.size()))
        file.Write(zeroes.data(), static_cast<UINT>(std::min(count, static_cast<std::int64_t>(zeroes.size()))));
}

/// Not every reader expects an alpha mask after the header of 40 bytes; version 4 has one.
/// Returns false for a bitmap without alpha.
bool ToVersion4(DibHeader& header) {
    if (header.compression != kMasksWithAlpha) return false;
    header.size = sizeof header + sizeof kAlphaMasks + sizeof(Version4Rest);
    header.compression = kMasks;
    return true;
}

template <class SaveTo>
BOOL SaveAs(const char* path, SaveTo saveTo) {
    CFile file;
    constexpr UINT fresh = CFile::modeCreate | CFile::modeWrite | CFile::modeNoInherit | CFile::typeBinary;
    if (!file.Open(path, fresh)) return 0;
    const BOOL saved = saveTo(file);
    file.Close();
    return saved;
}

}  // namespace

// No product here exceeds 64 bits: the rows in the buffer bound all of them.
std::int64_t CDIBitmap::SavedSize() const {
    return RowCount() * GetBitsPerPixel() * RowOfBytes(GetWidth()) / 8;
}

bool CDIBitmap::CanSave() const {
    if (!HoldsRows(GetBytesPerLine(GetBitsPerPixel(), GetWidth()))) return false;
    const std::int64_t counted = RowCount() * CountedRow(GetBitsPerPixel(), GetWidth());
    return std::max(SavedSize(), counted) <= kLargestFile - kLargestHead;
}

BOOL CDIBitmap::Save(const char* path) {
    return CanSave() && SaveAs(path, [this](CFile& file) { return Save(file); });
}

BOOL CDIBitmap::Save(CFile& file) {
    if (!CanSave() || !PadBits()) return 0;
    const std::int64_t table = std::int64_t{GetColorCount()} * static_cast<std::int64_t>(sizeof(DibColour));
    const std::int64_t offset = static_cast<std::int64_t>(kFileHeaderSize + sizeof(DibHeader)) + table;
    WriteFileHeader(file, offset + RowCount() * CountedRow(GetBitsPerPixel(), GetWidth()), offset);
    m_info->header.imageSize = 0;
    file.Write(&m_info->header, sizeof m_info->header);
    file.Write(m_info->colours, static_cast<UINT>(table));

    const std::int64_t count = SavedSize();
    const std::int64_t held = std::min(count, static_cast<std::int64_t>(m_bitsSize));
    file.Write(m_bits.get(), static_cast<UINT>(held));
    WriteZeroes(file, count - held);
    return 1;
}

bool CDIBitmap::CanSaveWhole() const {
    if (!m_info || !IsFormat(m_info->header)) return false;
    return (HasRunLengths(m_info->header) || HoldsRows(PresentRowSize())) && WholeSize() <= kLargestFile - kLargestHead;
}

// The size of the pixels in bytes.
std::int64_t CDIBitmap::WholeSize() const {
    if (HasRunLengths(m_info->header)) return static_cast<std::int64_t>(m_bitsSize);
    return RowCount() * GetBytesPerLine(GetBitsPerPixel(), GetWidth());
}

// The size of masks and colours in bytes; sets the number of colours in the header.
std::size_t CDIBitmap::WholeTableSize(DibHeader& header) const {
    const std::size_t masks = header.compression == kMasks ? 3 : header.compression == kMasksWithAlpha ? 4 : 0;
    const std::size_t colours = GetColorCount() ? GetPalEntries(header) : header.coloursUsed;
    const std::size_t kept = std::min(colours, DibInfo::capacity - masks);
    if (header.coloursUsed) header.coloursUsed = static_cast<DWORD>(kept);
    return (masks + kept) * sizeof(DibColour);
}

BOOL CDIBitmap::SaveWhole(const char* path) {
    if (!CanSaveWhole()) return 0;
    const auto padded = PaddedRowsToSave();  // before the file loses its content
    return SaveAs(path, [&](CFile& file) { return WriteWhole(file, padded.get()); });
}

BOOL CDIBitmap::SaveWhole(CFile& file) {
    return CanSaveWhole() && WriteWhole(file, PaddedRowsToSave().get());
}

// Null if the bitmap's own bytes are written.
std::unique_ptr<BYTE[]> CDIBitmap::PaddedRowsToSave() const {
    return m_padded || HasRunLengths(m_info->header) ? nullptr : CopyPaddedRows();
}

BOOL CDIBitmap::WriteWhole(CFile& file, const BYTE* padded) const {
    DibHeader header = m_info->header;
    const std::size_t table = WholeTableSize(header);
    const std::int64_t size = WholeSize();
    const std::size_t inHeader = ToVersion4(header) ? sizeof kAlphaMasks : 0;
    const std::int64_t offset = static_cast<std::int64_t>(kFileHeaderSize + header.size + table - inHeader);
    header.imageSize = static_cast<DWORD>(size);
    WriteFileHeader(file, offset + size, offset);
    file.Write(&header, sizeof header);
    const auto* const masksAndColours = reinterpret_cast<const BYTE*>(m_info->colours);
    file.Write(masksAndColours, static_cast<UINT>(inHeader));
    if (inHeader) file.Write(&kVersion4Rest, sizeof kVersion4Rest);
    file.Write(masksAndColours + inHeader, static_cast<UINT>(table - inHeader));
    file.Write(padded ? padded : m_bits.get(), static_cast<UINT>(size));
    return 1;
}
