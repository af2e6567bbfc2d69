#pragma once

/// @file Pictures: PNG and icon files read and written, and what is done with the pixels of bitmaps.
///
/// **Bitmaps with alpha** are those with four masks: 16 or 32 bits per pixel and compression 6. Every other bitmap is
/// opaque; the fourth byte of 32 bits without masks means nothing. Colours are not multiplied by alpha.
///
/// **Results** are bitmaps with a header of 40 bytes, padded rows, and the bottom row first: of 24 bits per pixel when
/// all pixels are opaque, else of 32 with alpha (masks 0xFF0000, 0xFF00, 0xFF, 0xFF000000); of 8 bits with 256 greys
/// where a member says so. The target may be the source. Both systems give the same bytes.
///
/// **Failures**: members that return BOOL give 0, with the target unchanged, when a source is empty or lacks rows or has a
/// depth that no bitmap has, when an argument is outside of what the member allows, or when a picture would be larger
/// than `mostPixels` or `longestSide`. Every member may raise std::bad_alloc, with the target unchanged.
///
/// **Colours** are 0x00RRGGBB; positions and sizes are in pixels from the top left corner. All members are free of state.

#include <memory>
#include <span>
#include <vector>

#include "qvcommon/DIBitmap.h"
#include "qvcommon/framework/DeviceContext.h"

/// How two pictures of one size differ.
struct QvPictureDifference {
    std::int64_t pixels = 0;  ///< that differ by more than the tolerance
    int greatest = 0;         ///< difference of a channel of any pixel, 0 to 255
};

/// Pictures from files and to files, and what is done with their pixels.
class QVCOMMON_API CImageHelper {
public:
    static constexpr std::int64_t mostPixels = 1 << 28;  ///< of a picture
    static constexpr int longestSide = 1 << 20;          ///< in pixels, width and height
    static constexpr DWORD transparent = 0xFFFFFFFF;     ///< as a background: no colour, and alpha 0

    /// Bitmaps that the holder owns.
    using Pictures = std::vector<std::unique_ptr<CDIBitmap>>;

    // Files.

    /// Reads a PNG file (ISO/IEC 15948) from the file's position; the position is then the file's end. Of an animation
    /// that is the default image.
    ///
    /// All colour types, depths and interlacing are read, and every checksum is verified. Without transparency, grey and
    /// palette pictures keep their depth of 1, 4 or 8 bits as bitmaps with a palette (2 bits become 4, 16 become 8);
    /// others get 24 bits. With transparency, of any kind, they get 32 bits. Samples of 16 bits are rounded to 8. The
    /// density in pixels per metre is kept. Gamma, colour profiles, texts and other chunks are not.
    ///
    /// @throws CVorbexException*, severity 48, code 0, not shown, whose text says what is wrong with the file: also when it
    /// ends early, or claims more pixels than its data can hold. CFileException*. `picture` is then unchanged.
    static void ReadPng(CFile& file, CDIBitmap& picture);
    static void ReadPng(const char* path, CDIBitmap& picture);

    /// Writes a PNG file at the file's position. Bitmaps of 1, 4 and 8 bits keep their depth and palette, which becomes
    /// grey where it is a scale from black to white; others are written as 8 bits a channel, with alpha only where a pixel
    /// is not opaque. A density in the header is kept. Nothing else is written: no time, no text.
    /// @throws CFileException*; how much is written is then not known.
    static BOOL WritePng(CFile& file, const CDIBitmap& picture);
    /// Saves it whole or not at all. @throws CFileException*, the file is then what it was.
    static BOOL WritePng(const char* path, const CDIBitmap& picture);

    /// Reads all pictures of an icon file (ICO), in the file's order, from the file's position; the position is then the
    /// file's end. Pictures are PNG, or bitmaps of 1, 4, 8, 16, 24 or 32 bits with a mask. Where the mask is set, pixels
    /// are transparent black: what would invert the screen is not kept. Of a bitmap of 32 bits alpha decides instead,
    /// unless it is 0 everywhere.
    /// @throws as ReadPng; also when pictures overlap, or have more than `mostPixels` pixels together.
    static Pictures ReadIcon(CFile& file);
    static Pictures ReadIcon(const char* path);

    /// Writes an icon file of these pictures, in this order, at the file's position: as bitmaps of 32 bits with a mask,
    /// which every Windows shows; those of 256 pixels in a direction as PNG, which Windows shows from version 6 on. The
    /// mask is set where alpha is 0. Pictures have 1 to 256 by 1 to 256 pixels, and are 1 to 65535 in number.
    /// @throws CFileException*; how much is written is then not known.
    static BOOL WriteIcon(CFile& file, std::span<const CDIBitmap* const> pictures);
    /// Saves it whole or not at all. @throws CFileException*, the file is then what it was.
    static BOOL WriteIcon(const char* path, std::span<const CDIBitmap* const> pictures);

    // Pixels.

    /// In pixels, whether its rows are there or not. @return 0 only when it is empty
    static BOOL GetSize(const CDIBitmap& picture, int& width, int& height);
    /// A picture of what was drawn: opaque, 24 bits per pixel.
    static BOOL TakePixels(const CPixelBuffer& drawn, CDIBitmap& target);

    /// Shades of grey by luma (ITU-R BT.601): 8 bits, or 32 where alpha is kept.
    static BOOL MakeGrey(const CDIBitmap& source, CDIBitmap& target);
    /// A relief lit from the top left: 128 and half of the difference of luma between the neighbours at the bottom right
    /// and the top left; beyond the edges counts what is at the edge. 8 bits, or 32 where alpha is kept.
    static BOOL Emboss(const CDIBitmap& source, CDIBitmap& target);

    /// How Scale finds a pixel.
    enum Filter {
        box,     ///< the mean of the area that a pixel covers, by exact shares
        lanczos  ///< three lobes: sharp; may overshoot beside hard edges
    };
    /// Transparent pixels do not bleed their colours into others.
    static BOOL Scale(const CDIBitmap& source, CDIBitmap& target, int width, int height, Filter filter = lanczos);

    /// Turns by so many quarters, clockwise; any number, also negative.
    static BOOL Turn(const CDIBitmap& source, CDIBitmap& target, int quarters);
    /// Turns by any finite angle, clockwise, into a picture that is large enough to hold all of it. Pixels are
    /// interpolated between four neighbours; the background shows at the corners, through the edges and wherever the
    /// source is not opaque. Multiples of 90 are exact.
    static BOOL Rotate(const CDIBitmap& source, CDIBitmap& target, double degrees, DWORD background = transparent);

    /// Which sides change places.
    enum Direction { horizontally, vertically };
    /// Horizontally: left becomes right.
    static BOOL Mirror(const CDIBitmap& source, CDIBitmap& target, Direction direction);
    /// The part must be within the source.
    static BOOL Crop(const CDIBitmap& source, CDIBitmap& target, int x, int y, int width, int height);

    /// Lays `over` on `under` with its top left corner at a position, by its alpha times `opacity`, 0 to 255; what is
    /// outside is cut off. The target has the size of `under`.
    static BOOL Blend(const CDIBitmap& under, const CDIBitmap& over, CDIBitmap& target, int x, int y,
                      int opacity = 255);
    /// Lays the picture on a colour, so that it is opaque.
    static BOOL Flatten(const CDIBitmap& source, CDIBitmap& target, DWORD colour);

    /// Compares what two pictures show, whatever their depths: colours times alpha, and alpha.
    /// @param picture  unless it is null gets the difference of each channel, opaque: black where the pictures are equal,
    ///     the difference of alpha where it is greater than that of the colour
    /// @return 0 also when the pictures differ in size
    static BOOL Compare(const CDIBitmap& one, const CDIBitmap& other, QvPictureDifference& difference,
                        int tolerance = 0, CDIBitmap* picture = nullptr);
    /// Whether both are pictures of one size, and no channel differs by more than the tolerance.
    static bool AreEqual(const CDIBitmap& one, const CDIBitmap& other, int tolerance = 0);
};
