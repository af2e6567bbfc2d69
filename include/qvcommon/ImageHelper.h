#pragma once

/// @file Pictures: reading and writing PNG and icon files, and operations on the pixels of bitmaps.
///
/// **Bitmaps with alpha** are those with four masks: 16 or 32 bits per pixel and compression 6. Every other bitmap is
/// opaque; the fourth byte of 32 bits without masks is ignored. Colours are not premultiplied.
///
/// **Results** are bitmaps with a header of 40 bytes, padded rows, bottom-up: of 24 bits per pixel if all pixels are
/// opaque, else of 32 with alpha (masks 0xFF0000, 0xFF00, 0xFF, 0xFF000000); of 8 bits with 256 greys where a member
/// says so. The target may be the source. Both systems produce the same bytes.
///
/// **Failures**: members that return BOOL return 0, leaving the target unchanged, if a source is empty, lacks rows or
/// has an invalid depth, if an argument is out of range, or if a picture would be larger than `mostPixels` or
/// `longestSide`. Every member may raise std::bad_alloc, leaving the target unchanged.
///
/// **Colours** are 0x00RRGGBB; positions and sizes are in pixels from the top left corner. All members are stateless.

#include <memory>
#include <span>
#include <vector>

#include "qvcommon/DIBitmap.h"
#include "qvcommon/framework/DeviceContext.h"

/// The difference of two pictures of the same size.
struct QvPictureDifference {
    std::int64_t pixels = 0;  ///< number of pixels that differ by more than the tolerance
    int greatest = 0;         ///< greatest difference of a channel of any pixel, 0 to 255
};

/// Reading, writing and transforming pictures.
class QVCOMMON_API CImageHelper {
public:
    static constexpr std::int64_t mostPixels = 1 << 28;  ///< maximum per picture
    static constexpr int longestSide = 1 << 20;          ///< maximum width and height in pixels
    static constexpr DWORD transparent = 0xFFFFFFFF;     ///< as a background: no colour, and alpha 0

    /// Owned bitmaps.
    using Pictures = std::vector<std::unique_ptr<CDIBitmap>>;

    // Files.

    /// Reads a PNG file (ISO/IEC 15948) from the file's position, and leaves the position at the end of the file. For
    /// an animation this is the default image.
    ///
    /// All colour types, depths and interlacing are supported, and every checksum is verified. Without transparency,
    /// grey and palette pictures keep their depth of 1, 4 or 8 bits as bitmaps with a palette (2 bits become 4, 16
    /// become 8); others get 24 bits. With transparency of any kind they get 32 bits. Samples of 16 bits are rounded to
    /// 8. The density in pixels per metre is kept. Gamma, colour profiles, texts and other chunks are dropped.
    ///
    /// @throws CVorbexException*, severity 48, code 0, not shown, whose text describes the error in the file: also if
    /// it is truncated, or claims more pixels than its data can contain. CFileException*. `picture` is then unchanged.
    static void ReadPng(CFile& file, CDIBitmap& picture);
    static void ReadPng(const char* path, CDIBitmap& picture);

    /// Writes a PNG file at the file's position. Bitmaps of 1, 4 and 8 bits keep their depth and palette, which becomes
    /// grey if it is a ramp from black to white; run lengths are written with 8 bits per pixel. Others are written with
    /// 8 bits per channel, with alpha only if a pixel is not opaque. A density in the header is kept. Nothing else is
    /// written: no time, no text.
    /// @throws CFileException*; how much was written is then unspecified.
    static BOOL WritePng(CFile& file, const CDIBitmap& picture);
    /// Saves it atomically. @throws CFileException*, leaving the file unchanged.
    static BOOL WritePng(const char* path, const CDIBitmap& picture);

    /// Reads all pictures of an icon file (ICO), in file order, from the file's position, and leaves the position at
    /// the end of the file. Pictures are PNG, or bitmaps of 1, 4, 8, 16, 24 or 32 bits with a mask. Pixels whose mask
    /// is set become transparent black: inversion of the screen is not supported. A bitmap of 32 bits uses its alpha
    /// instead, unless it is 0 everywhere.
    /// @throws as ReadPng; also if the pictures together are longer than the file or have more than `mostPixels`
    /// pixels.
    static Pictures ReadIcon(CFile& file);
    static Pictures ReadIcon(const char* path);

    /// Writes an icon file of these pictures, in this order, at the file's position: as bitmaps of 32 bits with a mask,
    /// which every Windows supports; those with a side of 256 pixels as PNG, which Windows supports since version 6.
    /// The mask is set where alpha is 0. Pictures have 1 to 256 by 1 to 256 pixels; their number is 1 to 65535.
    /// @throws CFileException*; how much was written is then unspecified.
    static BOOL WriteIcon(CFile& file, std::span<const CDIBitmap* const> pictures);
    /// Saves it atomically. @throws CFileException*, leaving the file unchanged.
    static BOOL WriteIcon(const char* path, std::span<const CDIBitmap* const> pictures);

    // Pixels.

    /// Stores the size in pixels, even if rows are missing. @return 0 only if it is empty
    static BOOL GetSize(const CDIBitmap& picture, int& width, int& height);
    /// Creates a picture of what was drawn: opaque, 24 bits per pixel.
    static BOOL TakePixels(const CPixelBuffer& drawn, CDIBitmap& target);

    /// Converts to shades of grey by luma (ITU-R BT.601): 8 bits, or 32 if there is alpha.
    static BOOL MakeGrey(const CDIBitmap& source, CDIBitmap& target);
    /// Creates a relief lit from the top left: 128 plus half the difference of luma between the neighbours at the
    /// bottom right and the top left; edge pixels are repeated. 8 bits, or 32 if there is alpha.
    static BOOL Emboss(const CDIBitmap& source, CDIBitmap& target);

    /// The resampling filter of Scale.
    enum Filter {
        box,     ///< mean of the covered area, with exact weights
        lanczos  ///< three lobes: sharp; may overshoot beside hard edges
    };
    /// Scales. Colours of transparent pixels do not bleed into others.
    static BOOL Scale(const CDIBitmap& source, CDIBitmap& target, int width, int height, Filter filter = lanczos);

    /// Rotates clockwise by a number of quarter turns, which may be negative.
    static BOOL Turn(const CDIBitmap& source, CDIBitmap& target, int quarters);
    /// Rotates clockwise by any finite angle, into a picture large enough to contain all of it. Pixels are interpolated
    /// between four neighbours; the background shows at the corners, through the edges and wherever the source is not
    /// opaque. Multiples of 90 are exact.
    static BOOL Rotate(const CDIBitmap& source, CDIBitmap& target, double degrees, DWORD background = transparent);

    /// The axis of Mirror.
    enum Direction { horizontally, vertically };
    /// Flips the picture. Horizontally: left becomes right.
    static BOOL Mirror(const CDIBitmap& source, CDIBitmap& target, Direction direction);
    /// Cuts out a part, which must be within the source.
    static BOOL Crop(const CDIBitmap& source, CDIBitmap& target, int x, int y, int width, int height);

    /// Draws `over` on `under` with its top left corner at a position, by its alpha times `opacity`, 0 to 255; it is
    /// clipped. The target has the size of `under`.
    static BOOL Blend(const CDIBitmap& under, const CDIBitmap& over, CDIBitmap& target, int x, int y,
                      int opacity = 255);
    /// Draws the picture on a colour, so that it becomes opaque.
    static BOOL Flatten(const CDIBitmap& source, CDIBitmap& target, DWORD colour);

    /// Compares two pictures as displayed, regardless of their depths: colours times alpha, and alpha.
    /// @param picture  if not null, receives the difference of each channel, opaque: black where the pictures are
    ///     equal, the difference of alpha where it is greater than that of the colour
    /// @return 0 also if the pictures differ in size
    static BOOL Compare(const CDIBitmap& one, const CDIBitmap& other, QvPictureDifference& difference,
                        int tolerance = 0, CDIBitmap* picture = nullptr);
    /// Returns whether both are pictures of the same size, and no channel differs by more than the tolerance.
    static bool AreEqual(const CDIBitmap& one, const CDIBitmap& other, int tolerance = 0);
};
