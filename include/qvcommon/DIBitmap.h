#pragma once

/// @file Device-independent bitmaps, as they stand in Windows bitmap (BMP) files, and the palette of their colours. Numbers
/// are little-endian, as on every system of this library.

#include <memory>

#include "qvcommon/framework/DeviceContext.h"
#include "qvcommon/framework/File.h"

namespace qv::imaging {
class PlainRows;
struct NewDib;
}  // namespace qv::imaging

/// The 40-byte information header of a bitmap: the layout of the system's BITMAPINFOHEADER.
struct DibHeader {
    DWORD size;               ///< of this header: 40
    LONG width;               ///< in pixels
    LONG height;              ///< in rows; negative: the top row comes first
    std::uint16_t planes;     ///< 1
    std::uint16_t bitCount;   ///< per pixel: 1, 4, 8, 16, 24 or 32
    DWORD compression;        ///< 0 none, 1 run lengths of 8 bits, 2 of 4 bits, 3 colour masks, 6 also of alpha
    DWORD imageSize;          ///< of the rows in bytes; may be 0 without compression
    LONG horizontalPerMetre;  ///< pixels
    LONG verticalPerMetre;    ///< pixels
    DWORD coloursUsed;        ///< entries of the colour table; 0: as many as the depth has
    DWORD coloursImportant;   ///< 0: all of them; nothing here looks at it
};

/// A colour of the table: the layout of the system's RGBQUAD.
struct DibColour {
    BYTE blue, green, red, reserved;  ///< 0 to 255; the last is 0
};

/// The header and the room for what may follow it: colour masks (3 words) and colours.
struct DibInfo {
    static constexpr std::size_t capacity = 256;  ///< colours that there is room for

    DibHeader header;             ///< what the file says, with the size of this header
    DibColour colours[capacity];  ///< masks or colours
};
static_assert(sizeof(DibHeader) == 40 && sizeof(DibInfo) == 1064);

class CDIBitmap;

/// The colours of a bitmap of 8 bits per pixel or fewer, in the order of its table.
class QVCOMMON_API CBmpPalette {
public:
    /// Takes the bitmap's colours, at most 256; none from an empty bitmap.
    explicit CBmpPalette(const CDIBitmap& bitmap);

    /// The number of colours, 0 to 256.
    int GetCount() const { return m_count; }
    /// @throws CInvalidArgException* for an index outside 0 to GetCount() - 1.
    DibColour GetEntry(int index) const;

private:
    DibColour m_entries[DibInfo::capacity] = {};
    int m_count = 0;
};

/// A bitmap in memory. One object, one thread. Nothing outside the buffers is read or written, whatever a file said.
class QVCOMMON_API CDIBitmap {
public:
    CDIBitmap() = default;
    virtual ~CDIBitmap();
    CDIBitmap(const CDIBitmap&) = delete;
    CDIBitmap& operator=(const CDIBitmap&) = delete;

    /// Reads a bitmap from the file's position on.
    ///
    /// The header is that of 40 bytes; 1024 bytes behind it are taken as colours, as far as the file goes, whatever the
    /// number of colours. The pixels are as many bytes as the file header's total size less the pixels' offset, in 32-bit
    /// arithmetic, and at most what the file has there: none of it is checked, and rows may be missing. Fields that lie
    /// behind the file's end are 0.
    ///
    /// @return 1.
    /// @throws const char*, a constant text that ends with a line break: "Error:Unexpected file type, not a DIB\n" where
    /// the file does not start with "BM", "Error:OS2 PM BMP Format not supported\n" where the header has another size;
    /// CFileException*; std::bad_alloc. The object is then empty.
    virtual BOOL Load(CFile& file);
    /// Opens the file and reads it. @return 0 when it cannot be opened, the object then as before; else as above.
    virtual BOOL Load(const char* path);

    /// Writes the bitmap in the layout that older readers of 8-bit bitmaps know, at the file's position. It is whole for 8
    /// bits per pixel ONLY: use SaveWhole for everything else.
    ///
    /// Rows are padded first (PadBits), and imageSize becomes 0. The colour table has 2, 16 or 256 entries for 1, 4 or
    /// 8 bits and none for other depths, so masks are lost. The pixels written are height x bits x R / 8 bytes, R being
    /// the length of a padded row of 8 bits per pixel: fewer than there are for depths below 8, where rows are lost;
    /// for greater depths there may be more, and zero bytes fill what the buffer does not hold.
    ///
    /// Packed rows are padded in place and the padded flag stays 0, so a second Save pads them again, which shifts and
    /// loses pixels: set the flag after the first one, or use SaveWhole.
    ///
    /// @return 1; 0 with nothing written when the object is empty or lacks rows, has run lengths, PadBits fails, or the
    /// file would reach 4 GB. @throws CFileException*; how much is written is then not known.
    virtual BOOL Save(CFile& file);
    /// Makes the file anew. @return 0 also when it cannot be made; where there is nothing to save no file is touched.
    virtual BOOL Save(const char* path);

    /// Draws the bitmap with its top left corner at a position, in its own size, or stretched into an area; or a part of it
    /// into an area.
    ///
    /// Areas are in pixels, or in logical units of a device context, from the top left corner. Where pixels become fewer or
    /// more, the nearest one is taken. What lies outside the target is cut off. Pixels of 16 and 32 bits follow their
    /// masks; indices without a colour are black. Run lengths that end early leave black.
    ///
    /// @return 1; 0 with nothing drawn when the object is empty or lacks rows, has a depth that no bitmap has, an area is
    /// empty, the part lies outside the bitmap, or the system cannot draw on the target (on Linux: on a device context).
    virtual BOOL DrawDIB(const CDC& target, int x, int y);
    virtual BOOL DrawDIB(const CDC& target, int x, int y, int width, int height);
    virtual BOOL DrawDIB(const CDC& target, int x, int y, int width, int height, int partX, int partY, int partWidth,
                         int partHeight);

    /// Reads a bitmap with any header that files of today and yesterday have, and gives it that of 40 bytes: the OS/2
    /// headers of 12 and 64 bytes, and those of 52, 56, 108 (version 4) and 124 bytes (version 5). Masks of the header
    /// follow it, and with a mask of alpha the compression is 6. Colour spaces and embedded profiles are not kept.
    /// Otherwise as Load.
    /// @return the size of the header in the file; for a path 0 when the file cannot be opened, the object then as before.
    /// @throws as Load, with "Error:Unknown bitmap header\n" for other sizes.
    int LoadConverted(CFile& file);
    int LoadConverted(const char* path);

    /// Writes what the format asks for, at every depth: the header with its masks and its colour table as long as
    /// coloursUsed or the depth says (at most 256), then all rows, padded, in the order that they have (a negative
    /// height is kept). Run lengths are written as they were read. With a mask of alpha (compression 6) the header is that
    /// of version 4, which LoadConverted reads and Load does not. imageSize is set to what is written; the object stays
    /// as it is.
    ///
    /// @return 1; 0 with nothing written when the object is empty or lacks rows, has a depth or compression that no bitmap
    /// has, or the file would reach 4 GB. @throws CFileException*; how much is written is then not known.
    BOOL SaveWhole(CFile& file);
    /// Makes the file anew. @return 0 also when it cannot be made; where there is nothing to save no file is touched.
    BOOL SaveWhole(const char* path);

    /// Rows from packed, one behind the other by whole bytes, to padded, each a whole number of 32-bit words; the padding
    /// becomes zero. Nothing moves when the padded flag is set. The flag stays as it is, and the buffer too: it has to hold
    /// all padded rows.
    /// @return 1; 0 with nothing moved when there is no bitmap or its buffer is too small.
    BOOL PadBits();
    /// The reverse, when the padded flag is set.
    BOOL UnPadBits();

    /// Null for an empty bitmap and one of more than 8 bits per pixel. Lives until the next Load.
    const CBmpPalette* GetPalette() const { return m_palette.get(); }

protected:
    friend class CBmpPalette;
    friend class qv::imaging::PlainRows;
    friend struct qv::imaging::NewDib;

    /// Each: From the header; 0 when empty.
    int GetWidth() const { return m_info ? m_info->header.width : 0; }
    int GetHeight() const { return m_info ? m_info->header.height : 0; }
    int GetBitsPerPixel() const { return m_info ? m_info->header.bitCount : 0; }
    /// 2, 16 and 256 for 1, 4 and 8 bits per pixel, else 0.
    int GetColorCount() const;
    /// The header's number of used colours, else 2 to the power of its depth; 0 where that exceeds 32 bits.
    static DWORD GetPalEntries(const DibHeader& header);
    /// Each: Bytes of a packed and of a padded row; 0 for a negative width.
    static std::int64_t LastByte(int bitsPerPixel, int width);
    static std::int64_t GetBytesPerLine(int bitsPerPixel, int width);
    /// Replaces the palette by one of the present colours. @return whether there is one now.
    BOOL CreatePalette();

    std::unique_ptr<DibInfo> m_info;  ///< null when empty
    std::unique_ptr<BYTE[]> m_bits;   ///< the rows, the bottom one first unless the height is negative; null when empty
    std::unique_ptr<CBmpPalette> m_palette;  ///< null where GetPalette gives null
    BOOL m_padded = 0;                       ///< the flag of PadBits and UnPadBits
    std::size_t m_bitsSize = 0;              ///< bytes of m_bits

private:
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
    bool CanSaveWhole() const;
    std::size_t WholeTableSize(DibHeader& header) const;
};
