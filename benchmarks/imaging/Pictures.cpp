#include <benchmark/benchmark.h>
#include <png.h>
#include <wand/MagickWand.h>

#include <cmath>
#include <vector>

#include "benchmarks/imaging/ImagingFiles.h"
#include "benchmarks/support/Growth.h"
#include "qvcommon/ImageHelper.h"

// Reads and writes PNG files, compared with libpng, and changes pixels, compared with ImageMagick, which uses all
// cores. The picture resembles a photograph: smooth shapes, and some noise.

namespace {

struct Picture {
    explicit Picture(int side) : width(side), height(side * 3 / 4), pixels(static_cast<std::size_t>(width * height)) {
        unsigned noise = 1;
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                noise = noise * 1664525 + 1013904223;
                const auto wave = [&](double a, double b) {
                    return static_cast<unsigned>(120 + 100 * std::sin(x * a / width) * std::cos(y * b / height)) +
                           (noise >> 29);
                };
                pixels[static_cast<std::size_t>(y * width + x)] = wave(9, 4) << 16 | wave(5, 11) << 8 | wave(3, 17);
            }
        CImageHelper::TakePixels({pixels.data(), width, height, width}, bitmap);
    }

    int width, height;
    std::vector<DWORD> pixels;
    CDIBitmap bitmap;
};

const Picture& Photo() {
    static const Picture picture(2400);
    return picture;
}

const qv::bench::BenchFile& PngFile() {
    static const qv::bench::BenchFile file("photo.png");
    static const BOOL written = CImageHelper::WritePng(file.Path().c_str(), Photo().bitmap);
    benchmark::DoNotOptimize(written);
    return file;
}

const qv::bench::BenchFile& Target() {
    static const qv::bench::BenchFile file("target.png");
    return file;
}

// Copying it is free until the copy is changed.
MagickWand* PhotoWand() {
    static MagickWand* const wand = [] {
        MagickWand* const made = NewMagickWand();
        MagickReadImage(made, PngFile().Path().c_str());
        return made;
    }();
    return wand;
}

void Read(benchmark::State& state) {
    CDIBitmap read;
    for (auto _ : state) CImageHelper::ReadPng(PngFile().Path().c_str(), read);
    if (!CImageHelper::AreEqual(read, Photo().bitmap)) state.SkipWithError("other pixels");
}

void ReadLibpng(benchmark::State& state) {
    std::vector<png_byte> pixels;
    for (auto _ : state) {
        png_image image = {};
        image.version = PNG_IMAGE_VERSION;
        if (!png_image_begin_read_from_file(&image, PngFile().Path().c_str())) state.SkipWithError("not read");
        image.format = PNG_FORMAT_BGR;
        pixels.resize(PNG_IMAGE_SIZE(image));
        if (!png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr)) state.SkipWithError("not read");
    }
}

void ReadMagick(benchmark::State& state) {
    for (auto _ : state) {
        MagickWand* const wand = NewMagickWand();
        if (!MagickReadImage(wand, PngFile().Path().c_str())) state.SkipWithError("not read");
        DestroyMagickWand(wand);
    }
}

void Write(benchmark::State& state) {
    for (auto _ : state)
        if (!CImageHelper::WritePng(Target().Path().c_str(), Photo().bitmap)) state.SkipWithError("not written");
}

void WriteLibpng(benchmark::State& state) {
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(Photo().width);
    image.height = static_cast<png_uint_32>(Photo().height);
    image.format = PNG_FORMAT_BGR;
    std::vector<png_byte> pixels;
    for (const DWORD pixel : Photo().pixels)
        for (const int shift : {0, 8, 16}) pixels.push_back(static_cast<png_byte>(pixel >> shift));
    for (auto _ : state)
        if (!png_image_write_to_file(&image, Target().Path().c_str(), 0, pixels.data(), 0, nullptr))
            state.SkipWithError("not written");
}

void WriteMagick(benchmark::State& state) {
    for (auto _ : state)
        if (!MagickWriteImage(PhotoWand(), ("PNG24:" + Target().Path()).c_str())) state.SkipWithError("not written");
}

template <class Change>
void Ours(benchmark::State& state, Change change) {
    CDIBitmap target;
    for (auto _ : state)
        if (!change(Photo().bitmap, target)) state.SkipWithError("not done");
}

template <class Change>
void Magicks(benchmark::State& state, Change change) {
    for (auto _ : state) {
        MagickWand* const wand = CloneMagickWand(PhotoWand());
        if (!change(wand)) state.SkipWithError("not done");
        DestroyMagickWand(wand);
    }
}

#define QV_PICTURE(function, name) BENCHMARK(function)->Name(name)->UseRealTime()
QV_PICTURE(Read, "ReadPng/QvCommon");
QV_PICTURE(ReadLibpng, "ReadPng/libpng");
QV_PICTURE(ReadMagick, "ReadPng/ImageMagick");
QV_PICTURE(Write, "WritePng/QvCommon");
QV_PICTURE(WriteLibpng, "WritePng/libpng");
QV_PICTURE(WriteMagick, "WritePng/ImageMagick");

#define QV_CHANGE(group, ours, theirs)                                                                      \
    BENCHMARK_CAPTURE(Ours, group, [](const CDIBitmap& from, CDIBitmap& to) { return CImageHelper::ours; }) \
        ->Name(#group "/QvCommon")                                                                          \
        ->UseRealTime();                                                                                    \
    BENCHMARK_CAPTURE(Magicks, group, [](MagickWand* wand) { return theirs; })                              \
        ->Name(#group "/ImageMagick")                                                                       \
        ->UseRealTime()
QV_CHANGE(ScaleToThird_Lanczos, Scale(from, to, 800, 600), MagickResizeImage(wand, 800, 600, LanczosFilter, 1));
QV_CHANGE(ScaleToDouble_Lanczos, Scale(from, to, 4800, 3600), MagickResizeImage(wand, 4800, 3600, LanczosFilter, 1));
QV_CHANGE(ScaleToThird_Box, Scale(from, to, 800, 600, CImageHelper::box), MagickScaleImage(wand, 800, 600));
QV_CHANGE(Grey, MakeGrey(from, to), MagickTransformImageColorspace(wand, GRAYColorspace));
QV_CHANGE(Emboss, Emboss(from, to), MagickEmbossImage(wand, 1, 0.5));
QV_CHANGE(QuarterTurn, Turn(from, to, 1), MagickRotateImage(wand, NewPixelWand(), 90));
QV_CHANGE(Rotate33, Rotate(from, to, 33, 0), MagickRotateImage(wand, NewPixelWand(), 33));
QV_CHANGE(Mirror, Mirror(from, to, CImageHelper::horizontally), MagickFlopImage(wand));

// Time is O(pixels), even if a side becomes very short or very long.
template <class Change>
void Growth(benchmark::State& state, Change change) {
    const Picture picture(static_cast<int>(std::lround(std::sqrt(state.range() * 4 / 3))));
    CDIBitmap target;
    for (auto _ : state)
        if (!change(picture.bitmap, target)) state.SkipWithError("not done");
}

constexpr auto kToOnePixel = [](const CDIBitmap& from, CDIBitmap& to) { return CImageHelper::Scale(from, to, 1, 1); };
constexpr auto kToOneRow = [](const CDIBitmap& from, CDIBitmap& to) {
    return CImageHelper::Scale(from, to, 1 << 16, 1);
};
constexpr auto kRotate = [](const CDIBitmap& from, CDIBitmap& to) { return CImageHelper::Rotate(from, to, 45); };

QV_GROWTH_OF(ScaleToOnePixel, Growth, 1 << 20, kToOnePixel);
QV_GROWTH_OF(ScaleToOneRow, Growth, 1 << 20, kToOneRow);
QV_GROWTH_OF(Rotate, Growth, 1 << 20, kRotate);

}  // namespace
