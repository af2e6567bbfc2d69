#include <SDL.h>
#include <benchmark/benchmark.h>
#include <wand/MagickWand.h>

#include <memory>

#include "benchmarks/imaging/ImagingFiles.h"
#include "qvcommon/DIBitmap.h"
#include "tests/support/Bitmap.h"

// Loads and saves a large bitmap of 24 bits per pixel, compared with plain reads and writes of as many bytes.

namespace {

struct Magick {
    Magick() { MagickWandGenesis(); }
    ~Magick() { MagickWandTerminus(); }
} const g_magick;

constexpr int kWidth = 5824, kHeight = qv::bench::kFileSize / (3 * kWidth);

const qv::bench::BenchFile& Picture() {
    static const qv::bench::BenchFile file("large.bmp", qv::test::BitmapFile({.width = kWidth, .height = kHeight}));
    return file;
}

const qv::bench::BenchFile& Target() {
    static const qv::bench::BenchFile file("target.bmp");
    return file;
}

constexpr UINT kFresh = CFile::modeCreate | CFile::modeWrite;

std::unique_ptr<char[]> Bytes(UINT& size) {
    CFile file(Picture().Path().c_str(), CFile::modeRead);
    size = static_cast<UINT>(file.GetLength());
    auto bytes = std::make_unique_for_overwrite<char[]>(size);
    file.Read(bytes.get(), size);
    return bytes;
}

void Load(benchmark::State& state) {
    for (auto _ : state) {
        CDIBitmap bitmap;
        benchmark::DoNotOptimize(bitmap.Load(Picture().Path().c_str()));
    }
}

void LoadBare(benchmark::State& state) {
    UINT size = 0;
    for (auto _ : state) benchmark::DoNotOptimize(Bytes(size));
}

void LoadSdl(benchmark::State& state) {
    for (auto _ : state) {
        SDL_Surface* const surface = SDL_LoadBMP(Picture().Path().c_str());
        if (!surface) state.SkipWithError("not loaded");
        SDL_FreeSurface(surface);
    }
}

void LoadMagick(benchmark::State& state) {
    for (auto _ : state) {
        MagickWand* const wand = NewMagickWand();
        if (!MagickReadImage(wand, Picture().Path().c_str())) state.SkipWithError("not loaded");
        DestroyMagickWand(wand);
    }
}

void Save(benchmark::State& state) {
    CDIBitmap bitmap;
    bitmap.Load(Picture().Path().c_str());
    for (auto _ : state)
        if (!bitmap.SaveWhole(Target().Path().c_str())) state.SkipWithError("not saved");
}

void SaveBare(benchmark::State& state) {
    UINT size = 0;
    const auto bytes = Bytes(size);
    for (auto _ : state) {
        CFile file(Target().Path().c_str(), kFresh);
        file.Write(bytes.get(), size);
        file.Close();
    }
}

void SaveSdl(benchmark::State& state) {
    SDL_Surface* const surface = SDL_LoadBMP(Picture().Path().c_str());
    for (auto _ : state)
        if (SDL_SaveBMP(surface, Target().Path().c_str())) state.SkipWithError("not saved");
    SDL_FreeSurface(surface);
}

void SaveMagick(benchmark::State& state) {
    MagickWand* const wand = NewMagickWand();
    MagickReadImage(wand, Picture().Path().c_str());
    for (auto _ : state)
        if (!MagickWriteImage(wand, ("BMP3:" + Target().Path()).c_str())) state.SkipWithError("not saved");
    DestroyMagickWand(wand);
}

#define QV_BITMAP(function, name) BENCHMARK(function)->Name(name)->UseRealTime()
QV_BITMAP(Load, "LoadBitmap_100MB/QvCommon");
QV_BITMAP(LoadBare, "LoadBitmap_100MB/reading alone");
QV_BITMAP(LoadSdl, "LoadBitmap_100MB/SDL");
QV_BITMAP(LoadMagick, "LoadBitmap_100MB/ImageMagick");
QV_BITMAP(Save, "SaveBitmap_100MB/QvCommon");
QV_BITMAP(SaveBare, "SaveBitmap_100MB/writing alone");
QV_BITMAP(SaveSdl, "SaveBitmap_100MB/SDL");
QV_BITMAP(SaveMagick, "SaveBitmap_100MB/ImageMagick");

}  // namespace
