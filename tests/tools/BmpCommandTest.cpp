#include <gtest/gtest.h>

#include <set>

#include "qvcommon/DIBitmap.h"
#include "qvcommon/framework/Exception.h"
#include "tests/support/Pictures.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Tool.h"

namespace {

using namespace qv::test;

TEST(BmpCommand, PrintsAndConverts) {
    const TempFolder folder;
    const std::string good = BitmapFile({.width = 5, .height = -3, .bits = 8, .coloursUsed = 7});
    // The sizes are missing, and there is a gap between colours and rows.
    std::string odd = good.substr(0, 54 + 28) + "gap." + good.substr(54 + 28);
    odd.replace(2, 4, Words({0})).replace(10, 4, Words({54 + 28 + 4})).replace(34, 4, Words({0}));
    folder.Write("odd.bmp", odd);
    EXPECT_EQ(RunTool({"bmp", "info", folder / "odd.bmp"}).output,
              "format\tBMP\nheader size\t40\nwidth\t5\nheight\t-3\nplanes\t1\nbits per pixel\t8\ncompression\t0\n"
              "image size\t0\nhorizontal pixels per metre\t2835\nvertical pixels per metre\t2836\ncolours used\t7\n"
              "colours important\t0\npacked row\t5\npadded row\t8\npixel bytes\t24\npalette\t7\n");
    EXPECT_EQ(ToolStatus({"bmp", "convert", folder / "odd.bmp", folder / "odd.bmp"}), 0);
    EXPECT_EQ(folder.Read("odd.bmp"), good);
    EXPECT_EQ(RunTool({"bmp", "convert", "-", "-"}, odd).output, good);
    EXPECT_EQ(RunTool({"bmp", "info", "-", "--json"}, odd).output.substr(0, 42),
              "{\"format\":\"BMP\",\"headerSize\":40,\"width\":5,");
    EXPECT_EQ(RunTool({"bmp", "convert", "-", "-"}, good.substr(0, 50)).output, "");
    folder.Write("cut.bmp", good.substr(0, good.size() - 1));
    folder.Write("text.bmp", "no bitmap");
    for (const char* const broken : {"cut.bmp", "text.bmp", "none.bmp"})
        EXPECT_EQ(ToolStatus({"bmp", "convert", folder / broken, folder / "odd.bmp"}), 1) << broken;
    EXPECT_EQ(folder.Read("odd.bmp"), good);
}

TEST(BmpCommand, ConvertsBetweenFormats) {
    const TempFolder folder;
    Bitmap picture, read;
    Make({{0xFF102030, 0x80FF0000, 0}, {0xFFFFFFFF, 0xFF000000, 0xFF808080}}, picture);
    picture.SaveWhole(folder / "a.bmp");
    const auto convert = [&](const char* from, const char* to, const CStringArray& options = {}) {
        CStringArray words = {"bmp", "convert", folder / from, folder / to};
        words.Append(options);
        EXPECT_EQ(ToolStatus(words), 0) << from << " " << to;
    };
    convert("a.bmp", "a.PNG");
    convert("a.PNG", "a.ico");
    convert("a.ico", "b.bmp");
    EXPECT_EQ(read.LoadConverted(folder / "b.bmp"), 108);
    EXPECT_TRUE(CImageHelper::AreEqual(picture, read));
    EXPECT_TRUE(RunTool({"bmp", "convert", "-", "-", "--format", "png"}, folder.Read("a.bmp")).output ==
                folder.Read("a.PNG"));
    EXPECT_EQ(RunTool({"bmp", "info", folder / "a.PNG"}).output.substr(0, 11), "format\tPNG\n");

    convert("a.PNG", "sizes.ico", {"--size", "1", "--size", "256", "--size", "30"});
    const auto pictures = CImageHelper::ReadIcon(folder / "sizes.ico");
    ASSERT_EQ(pictures.size(), 3u);
    for (const auto& [place, wanted] : {std::pair{0, 1}, {1, 256}, {2, 30}}) {
        int width = 0, height = 0;
        CImageHelper::GetSize(*pictures[static_cast<std::size_t>(place)], width, height);
        EXPECT_EQ(width, wanted);
        EXPECT_EQ(height, std::max(1, (wanted * 2 + 1) / 3));
    }
    EXPECT_EQ(RunTool({"bmp", "info", folder / "sizes.ico"}).output.substr(26, 10), "width\t256\n");
    convert("a.PNG", "flat.png", {"--background", "0000fF"});
    CImageHelper::ReadPng(folder / "flat.png", read);
    EXPECT_EQ(RowsOf(read)[0], (std::vector<std::uint32_t>{0xFF102030, 0xFF80007F, 0xFF0000FF}));
}

// Pictures of another program, as the tool converts them and the program reads them again.
TEST(BmpCommand, ImageMagickSeesTheSamePixels) {
    if (!HasProgram("convert")) GTEST_SKIP() << "convert is not there";
    const TempFolder folder;
    const std::string before = folder.Native("a.bmp").string(), after = folder.Native("b.bmp").string();
    std::set<int> depths, headers;
    for (const std::string kind :
         {"-monochrome -type bilevel BMP3:", "-colors 13 -type palette BMP3:", "-colors 200 -type palette BMP3:",
          "-colors 200 -type palette -compress RLE BMP3:", "-define bmp:subtype=RGB555 BMP3:",
          "-define bmp:subtype=RGB565 BMP3:", "-type truecolor BMP3:", "-type truecolor BMP2:",
          "-colors 13 -type palette BMP2:", "-type truecolor BMP:", "-define bmp:subtype=RGB565 BMP:",
          "-alpha set -channel A -evaluate set 50% +channel BMP:", "-alpha set -define bmp:subtype=ARGB4444 BMP:"})
        for (const std::string width : {"1", "31", "70"}) {
            const std::string make = "-size " + width + "x5 -seed 7 plasma: -depth 8 " + kind + before;
            ASSERT_EQ(RunProgram("convert", CommandLine(make)).status, 0);
            ASSERT_EQ(ToolStatus({"bmp", "convert", folder / "a.bmp", folder / "b.bmp"}), 0);
            Bitmap bitmap;
            headers.insert(bitmap.LoadConverted(folder / "a.bmp"));
            depths.insert(bitmap.GetBitsPerPixel());
            const std::string seen = RunProgram("identify", {"-format", "%# ", before, after}).output;
            EXPECT_EQ(seen.size(), 2u * 65) << seen;
            EXPECT_EQ(seen.substr(0, 65), seen.substr(65)) << kind << " " << width;
        }
    EXPECT_EQ(depths, (std::set<int>{1, 4, 8, 16, 24, 32}));
    EXPECT_GE(headers.size(), 3u) << "headers of 12 and 40 bytes, and of version 4 or 5";
}

TEST(BmpCommand, NetpbmSeesTheSamePixels) {
    if (!HasProgram("ppmtobmp")) GTEST_SKIP() << "ppmtobmp is not there";
    const TempFolder folder;
    for (const char* const bits : {"1", "4", "8", "24"})
        for (int width = 1; width <= 70; ++width) {
            std::string picture = "P6 " + std::to_string(width) + " 3 255\n";
            for (int i = 0; i < width * 3; ++i)
                picture.append(3, static_cast<char>(*bits == '1' ? 255 * (i % 3 % 2) : i % 15 * 17));
            folder.Write("a.bmp", RunProgram("ppmtobmp", {"-quiet", "-windows", "-bpp", bits}, picture).output);
            Bitmap bitmap;
            EXPECT_EQ(bitmap.Load(folder / "a.bmp"), 1);
            EXPECT_EQ(bitmap.GetBitsPerPixel(), std::atoi(bits));
            EXPECT_EQ(bitmap.SaveWhole(folder / "b.bmp"), 1);
            const auto seen = [&](const char* name) {
                return RunProgram("bmptopnm", {"-quiet", folder.Native(name).string()}).output;
            };
            EXPECT_EQ(seen("a.bmp").substr(0, 1), "P");
            EXPECT_TRUE(seen("a.bmp") == seen("b.bmp")) << bits << " " << width;
        }
}

}  // namespace
