#pragma once

/// @file Device-independent bitmaps, as stored in Windows bitmap (BMP) files, and their colour palette. Numbers are
/// little-endian, as on every system that the library supports.

#include <memory>

#include "qvcommon/framework/DeviceContext.h"
#include "qvcommon/framework/File.h"

namespace qv::imaging {
class PlainRows;
struct NewDib;
}  // namespace qv::imaging

/// The 40-byte bitmap information header: the layout of the system's BITMAPINFOHEADER.
struct DibHeader {
    DWORD size;               ///< of this header: 40
    LONG width;               ///< in pixels
    LONG height;              ///< in rows; negative: top-down
    std::uint16_t planes;     ///< 1
    std::uint16_t bitCount;   ///< per pixel: 1, 4, 8, 16, 24 or 32
    DWORD compression;        ///< 0 none, 1 RLE8, 2 RLE4, 3 colour masks, 6 colour and alpha masks
    DWORD imageSize;          ///< of the rows in bytes; may be 0 without compression
    LONG horizontalPerMetre;  ///< pixels
    LONG verticalPerMetre;    ///< pixels
    DWORD coloursUsed;        ///< entries of the colour table; 0: as many as the depth has
    DWORD coloursImportant;   ///< 0: all of them; ignored here
};

/// A colour of the table: the layout of the system's RGBQUAD.
struct DibColour {
    BYTE blue, green, red, reserved;  ///< 0 to 255; the last is 0
};

/// The header, followed by room for colour masks (3 words) and colours.
struct DibInfo {
    static constexpr std::size_t capacity = 256;  ///< number of colours

    DibHeader header;             ///< as in the file, with the size of this header
    DibColour colours[capacity];  ///< masks or colours
};
static_assert(sizeof(DibHeader) == 40 && sizeof(DibInfo) == 1064);

class CDIBitmap;

/// The colour table of a bitmap of 8 bits per pixel or fewer.
class QVCOMMON_API CBmpPalette {
public:
    /// Copies the bitmap's colours, at most 256; none from an empty bitmap.
    explicit CBmpPalette(const CDIBitmap& bitmap);

    /// Returns the number of colours, 0 to 256.
    int GetCount() const { return m_count; }
    /// Returns a colour. @throws CInvalidArgException* for an index outside 0 to GetCount() - 1.
    DibColour GetEntry(int index) const;

private:
    DibColour m_entries[DibInfo::capacity] = {};
    int m_count = 0;
};

/// A bitmap in memory. Not thread-safe. Never reads or writes outside its buffers, even for malformed files.
class QVCOMMON_API CDIBitmap {
public:
    CDIBitmap() = default;
    virtual ~CDIBitmap();
    CDIBitmap(const CDIBitmap&) = delete;
    CDIBitmap& operator=(const CDIBitmap&) = delete;

    /// Reads a bitmap starting at the file's position.
    ///
    /// The header must be the 40-byte one; the 1024 bytes after it, as far as they exist, are taken as colours
    /// regardless of the number of colours. The number of pixel bytes is the file header's total size less the pixels'
    /// offset, in 32-bit arithmetic, limited to what the file contains: none of it is checked, and rows may be missing.
    /// Fields beyond the end of the file are 0.
    ///
    /// @return 1.
    /// @throws const char*, a constant string that ends with a newline: "Error:Unexpected file type, not a DIB\n" if
    /// the file does not start with "BM", "Error:OS2 PM BMP Format not supported\n" if the header has another size;
    /// CFileException*; std::bad_alloc. The object is then empty.
    virtual BOOL Load(CFile& file);
    /// Opens and reads a file. @return 0 if it cannot be opened, leaving the object unchanged; otherwise as above.
    virtual BOOL Load(const char* path);

    /// Writes the bitmap at the file's position, in the layout that older readers of 8-bit bitmaps expect. The result
    /// is complete for 8 bits per pixel ONLY: use SaveWhole for everything else.
    ///
    /// Rows are padded first (PadBits), and imageSize becomes 0. The colour table has 2, 16 or 256 entries for 1, 4 or
    /// 8 bits and none for other depths, so masks are lost. The pixels written are height x bits x R / 8 bytes, where R
    /// is the length of a padded row of 8 bits per pixel: for depths below 8 this is too few, and rows are lost; for
    /// greater depths it may be too many, and zero bytes fill the rest.
    ///
    /// Packed rows are padded in place and the padded flag stays 0, so a second Save pads them again, which shifts and
    /// loses pixels: set the flag after the first one, or use SaveWhole.
    ///
    /// @return 1; 0 with nothing written if the object is empty or lacks rows, is run-length encoded, PadBits fails, or
    /// the file would reach 4 GB. @throws CFileException*; how much was written is then unspecified.
    virtual BOOL Save(CFile& file);
    /// Creates or truncates the file. @return 0 also if it cannot be created; no file is touched if there is nothing to
    /// save.
    virtual BOOL Save(const char* path);

    /// Draws the bitmap with its top left corner at a position, in its own size or stretched to an area; or draws a
    /// part of it to an area.
    ///
    /// Areas are in pixels, or in logical units of a device context, from the top left corner. Scaling uses the nearest
    /// pixel. The output is clipped to the target. Pixels of 16 and 32 bits are decoded with their masks; indices
    /// without a colour are black. Pixels that run lengths skip or do not reach have colour 0.
    ///
    /// @return 1; 0 with nothing drawn if the object is empty or lacks rows, has an invalid depth, an area is empty,
    /// the part is outside the bitmap, or the system cannot draw on the target (on Linux: on a device context).
    /// @throws std::bad_alloc, with nothing drawn, if packed rows or run lengths cannot be converted.
    virtual BOOL DrawDIB(const CDC& target, int x, int y);
    virtual BOOL DrawDIB(const CDC& target, int x, int y, int width, int height);
    virtual BOOL DrawDIB(const CDC& target, int x, int y, int width, int height, int partX, int partY, int partWidth,
                         int partHeight);

    /// Reads a bitmap with any known header and converts it to the 40-byte one: the OS/2 headers of 12 and 64 bytes,
    /// and those of 52, 56, 108 (version 4) and 124 bytes (version 5). Masks of the header follow it, and with an alpha
    /// mask the compression is 6. Colour spaces and embedded profiles are dropped. Otherwise as Load.
    /// @return the size of the header in the file; for a path 0 if the file cannot be opened, leaving the object
    /// unchanged.
    /// @throws as Load, with "Error:Unknown bitmap header\n" for other sizes.
    int LoadConverted(CFile& file);
    int LoadConverted(const char* path);

    /// Writes a complete bitmap file at every depth: the header with its masks and its colour table with coloursUsed
    /// entries or as many as the depth allows (at most 256), then all rows, padded, in their order (a negative height
    /// is kept). Run lengths are written as they were read. With an alpha mask (compression 6) the header is that of
    /// version 4, which LoadConverted reads and Load does not. imageSize is set to what is written; the object is
    /// unchanged.
    ///
    /// @return 1; 0 with nothing written if the object is empty or lacks rows, has an invalid depth or compression, or
    /// the file would reach 4 GB. @throws CFileException*; how much was written is then unspecified. std::bad_alloc,
    /// with nothing written, if packed rows cannot be padded.
    BOOL SaveWhole(CFile& file);
    /// Creates or truncates the file. @return 0 also if it cannot be created; no file is touched if there is nothing to
    /// save or memory is short.
    BOOL SaveWhole(const char* path);

    /// Converts rows from packed, each a whole number of bytes, to padded, each a whole number of 32-bit words; the
    /// padding is zero. No-op if the padded flag is set. Neither the flag nor the buffer changes: the buffer must have
    /// room for all padded rows.
    /// @return 1; 0 with nothing moved if there is no bitmap, its buffer is too small, or it is run-length encoded and
    /// thus has no rows.
    BOOL PadBits();
    /// Converts padded rows to packed, if the padded flag is set.
    BOOL UnPadBits();

    /// Returns the palette; null for an empty bitmap and one of more than 8 bits per pixel. Valid until this object is
    /// loaded again or receives another picture from CImageHelper.
    const CBmpPalette* GetPalette() const { return m_palette.get(); }

protected:
    friend class CBmpPalette;
    friend class qv::imaging::PlainRows;
    friend struct qv::imaging::NewDib;

    /// Each: Returns the value in the header; 0 if empty.
    int GetWidth() const { return m_info ? m_info->header.width : 0; }
    int GetHeight() const { return m_info ? m_info->header.height : 0; }
    int GetBitsPerPixel() const { return m_info ? m_info->header.bitCount : 0; }
    /// Returns 2, 16 and 256 for 1, 4 and 8 bits per pixel, else 0.
    int GetColorCount() const;
    /// Returns the header's number of used colours, else 2 to the power of its depth; 0 if that exceeds 32 bits.
    static DWORD GetPalEntries(const DibHeader& header);
    /// Each: Returns the number of bytes of a packed and of a padded row; 0 for a negative width.
    static std::int64_t LastByte(int bitsPerPixel, int width);
    static std::int64_t GetBytesPerLine(int bitsPerPixel, int width);
    /// Replaces the palette by the current colours. @return whether there is one now.
    BOOL CreatePalette();

    std::unique_ptr<DibInfo> m_info;         ///< null when empty
    std::unique_ptr<BYTE[]> m_bits;          ///< rows, bottom-up unless the height is negative; null when empty
    std::unique_ptr<CBmpPalette> m_palette;  ///< null if GetPalette returns null
    BOOL m_padded = 0;                       ///< the flag of PadBits and UnPadBits
    std::size_t m_bitsSize = 0;              ///< size of m_bits in bytes

private:
    void TakeFrom(CDIBitmap& other) noexcept;
    DWORD LoadAs(CFile& file, bool converts);
    void ReadRows(CFile& file, std::uint64_t start, const BYTE* fileHeader);
    std::int64_t RowCount() const;
    bool HoldsRows(std::int64_t rowSize) const;
    std::int64_t PresentRowSize() const;
    std::unique_ptr<BYTE[]> CopyPaddedRows() const;
    std::unique_ptr<BYTE[]> DecodedRows(DibInfo& info) const;
    std::int64_t SavedSize() const;
    bool CanSave() const;
    std::int64_t WholeSize() const;
    std::unique_ptr<BYTE[]> PaddedRowsToSave() const;
    BOOL WriteWhole(CFile& file, const BYTE* padded) const;
    bool CanSaveWhole() const;
    std::size_t WholeTableSize(DibHeader& header) const;
};
