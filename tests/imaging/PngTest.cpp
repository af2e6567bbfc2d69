#include "tests/support/PngMaker.h"

#include "qvcommon/Exceptions.h"
#include "tests/support/Damage.h"
#include "tests/support/Pictures.h"
#include "tests/support/Raised.h"
#include "tests/support/SystemFaults.h"
#include "tests/support/Tool.h"

namespace {

using namespace qv::test;

class Png : public DIBitmapTest {
protected:
    void Read(const std::string& bytes, CDIBitmap& picture) { CImageHelper::ReadPng(FileOf(bytes), picture); }
    std::string TextOf(const std::string& bytes) {
        const auto error = Raised<CVorbexException>([&] { Read(bytes, bitmap); });
        if (!error) return "accepted";
        EXPECT_TRUE(error->GetSeverity() == 48 && error->GetCode() == 0 && !error->GetReportErrorCode());
        const std::string text = error->GetText().AsStd(), place = m_folder.Native("open.bmp").string() + ": ";
        return text.starts_with(place) ? text.substr(place.size()) : "does not name the file: " + text;
    }
    std::string Written(const CDIBitmap& picture) {
        EXPECT_EQ(CImageHelper::WritePng(m_folder / "w.png", picture), 1);
        return m_folder.Read("w.png");
    }
};

/// A kind of picture, and what its samples mean.
struct Kind {
    int colour, depth;
    bool transparency;
    int bits;  // of the bitmap that is read

    unsigned Sample(int x, int y, int c) const {
        const auto mixed = static_cast<unsigned>(x * 7919 + y * 104729 + c * 1299709 + x * y * 31);
        return (mixed >> 3 ^ mixed) & ((1u << depth) - 1);
    }
    unsigned Wide(unsigned sample) const {
        return depth == 16 ? (sample + 128) / 257 : sample * 255 / ((1u << depth) - 1);
    }
    std::string Before() const {
        std::string chunks, key;
        if (colour == 3) {
            for (unsigned i = 0; i < 3u << depth; ++i) key += static_cast<char>(i * 5);
            chunks = Chunk("PLTE", key);
            return transparency ? chunks + Chunk("tRNS", std::string("\x00\x80", 2)) : chunks;
        }
        for (int c = 0; c < (colour == 2 ? 3 : 1); ++c) key += BigEndian(Sample(1, 1, c)).substr(2);
        return transparency ? Chunk("tRNS", key) : "";
    }
    std::uint32_t Pixel(int x, int y) const {
        const auto wide = [&](int c) { return Wide(Sample(x, y, c)); };
        bool isKey = transparency;
        for (int c = 0; c < (colour == 2 ? 3 : 1); ++c) isKey = isKey && Sample(x, y, c) == Sample(1, 1, c);
        if (colour == 3) {
            const unsigned i = Sample(x, y, 0), alpha = !transparency || i > 1 ? 255 : i * 128;
            return alpha << 24 | (i * 15 & 255) << 16 | ((i * 15 + 5) & 255) << 8 | ((i * 15 + 10) & 255);
        }
        const unsigned alpha = isKey ? 0 : colour == 4 ? wide(1) : colour == 6 ? wide(3) : 255;
        if (colour % 4 == 0) return alpha << 24 | wide(0) * 0x010101;
        return alpha << 24 | wide(0) << 16 | wide(1) << 8 | wide(2);
    }
};

TEST_F(Png, ReadsEveryKind) {
    const Kind kinds[] = {{0, 1, false, 1},  {0, 2, false, 4},   {0, 4, false, 4},  {0, 8, false, 8},
                          {0, 16, false, 8}, {0, 1, true, 32},   {0, 2, true, 32},  {0, 16, true, 32},
                          {2, 8, false, 24}, {2, 16, false, 24}, {2, 8, true, 32},  {2, 16, true, 32},
                          {3, 1, false, 1},  {3, 2, false, 4},   {3, 4, false, 4},  {3, 8, false, 8},
                          {3, 2, true, 32},  {3, 8, true, 32},   {4, 8, false, 32}, {4, 16, false, 32},
                          {6, 8, false, 32}, {6, 16, false, 32}};
    for (const Kind& kind : kinds)
        for (const auto& [width, height] : {std::pair{1, 1}, {2, 7}, {5, 5}, {8, 8}, {9, 10}, {33, 3}})
            for (const bool interlaced : {false, true}) {
                Read(PngBytes({width, height, kind.depth, kind.colour, interlaced,
                               [&](int x, int y, int c) { return kind.Sample(x, y, c); }, kind.Before()}),
                     bitmap);
                PixelRows expected(static_cast<std::size_t>(height));
                for (int y = 0; y < height; ++y)
                    for (int x = 0; x < width; ++x) expected[static_cast<std::size_t>(y)].push_back(kind.Pixel(x, y));
                EXPECT_EQ(bitmap.GetBitsPerPixel(), kind.bits);
                EXPECT_TRUE(RowsOf(bitmap) == expected) << kind.colour << " " << kind.depth << " " << kind.transparency
                                                        << " " << width << " by " << height << " " << interlaced;
            }
}

TEST_F(Png, WritesEveryDepth) {
    const std::string masks565 = Words({0xF800, 0x7E0, 0x1F});
    std::string greys;
    for (std::uint32_t i = 0; i < 16; ++i) greys += Words({i * 0x111111});
    const struct {
        BitmapRecipe recipe;
        int colour, depth;  // of the file
    } kinds[] = {{{.bits = 1}, 3, 1},
                 {{.bits = 4}, 3, 4},
                 {{.bits = 4, .table = greys}, 0, 4},
                 {{.bits = 8}, 3, 8},
                 {{.bits = 8, .coloursUsed = 3}, 3, 8},  // with pixels outside the palette
                 {{.bits = 16, .compression = 3, .table = masks565}, 2, 8},
                 {{.bits = 24}, 2, 8},
                 {{.bits = 32}, 2, 8},
                 {{.bits = 32, .compression = 6, .table = Words({0xFF0000, 0xFF00, 0xFF, 0xFF000000})}, 6, 8}};
    for (auto [recipe, colour, depth] : kinds)
        for (int width = 1; width < 40; width += 3) {
            recipe.width = width;
            recipe.height = width % 2 ? 3 : -3;
            Load(BitmapFile(recipe));
            const std::string bytes = Written(bitmap);
            EXPECT_TRUE(bytes[24] == depth && bytes[25] == colour) << int{bytes[24]} << " " << int{bytes[25]};
            Bitmap again;
            Read(bytes, again);
            EXPECT_TRUE(CImageHelper::AreEqual(bitmap, again)) << recipe.bits << " " << width;
            EXPECT_EQ(again.m_info->header.verticalPerMetre, 2836);
        }
    Load(BitmapFile({.width = 4, .height = 2, .bits = 8, .compression = 1, .rows = {"\4\1\0\1", 4}}));
    EXPECT_EQ(Written(bitmap)[24], 8) << "run lengths";
    const std::string before = m_folder.Read("w.png");
    Load(BitmapFile({.width = 4, .height = 2, .rows = "too few"}));
    EXPECT_EQ(CImageHelper::WritePng(m_folder / "w.png", bitmap) + CImageHelper::WritePng(m_folder / "w.png", Bitmap()),
              0);
    Load(BitmapFile({.width = 4, .height = 2}));
    const SystemFaults faults(SystemFaults::Always(qv::platform::CallKind::Write, qv::platform::FileCause::DiskFull));
    EXPECT_TRUE(Raised<CFileException>([&] { CImageHelper::WritePng(m_folder / "w.png", bitmap); }));
    EXPECT_TRUE(m_folder.Read("w.png") == before);
}

TEST_F(Png, RejectsMalformedFiles) {
    const PngRecipe two = {.width = 2, .height = 2, .colour = 2};
    const std::string data = Chunk("IDAT", StoredStream(PngData(two))), end = Chunk("IEND", "");
    const auto with = [&](const std::string& rest) { return kPngStart + Chunk("IHDR", PngHead(two)) + rest; };
    const auto head = [&](PngRecipe recipe) { return kPngStart + Chunk("IHDR", PngHead(recipe)) + data + end; };
    const auto stream = [&](const std::string& pixels) { return with(Chunk("IDAT", StoredStream(pixels)) + end); };
    const std::string good = with(data + end), damaged = "damaged PNG picture: ";
    Read(good, bitmap);
    const std::pair<std::string, std::vector<std::string>> refused[] = {
        {"not a PNG picture", {"", "BM" + good}},
        {damaged + "no pixels", {kPngStart + end, with(end)}},
        {damaged + "header",
         {kPngStart + data + end, with(Chunk("IHDR", PngHead(two)) + data + end),
          head({.width = 2, .height = 2, .depth = 4, .colour = 2}), head({.width = 2, .height = 2, .colour = 5})}},
        {damaged + "it ends early",
         {with(data), head({.width = 1 << 14, .height = 1 << 14}), stream(PngData(two).substr(1))}},
        {damaged + "order of chunks", {with(data + Chunk("tEXt", "a") + data + end)}},
        {"a PNG picture with an unknown critical chunk", {with(Chunk("CRIT", "a") + data + end)}},
        {damaged + "palette", {with(Chunk("PLTE", "four") + data + end), head({.width = 2, .height = 2, .colour = 3})}},
        {damaged + "transparency", {with(Chunk("tRNS", "four") + data + end)}},
        {damaged + "density", {with(Chunk("pHYs", "four") + data + end)}},
        {"a PNG picture of 0 by 2 pixels is not read", {head({.width = 0, .height = 2})}},
        {"a PNG picture of 65536 by 65536 pixels is not read", {head({.width = 1 << 16, .height = 1 << 16})}},
        {damaged + "end of the compressed data", {stream(PngData(two) + "x")}},
        {damaged + "unknown filter", {stream("\5" + PngData(two).substr(1))}},
        {damaged + "compressed data", {with(Chunk("IDAT", "no stream at all") + end)}}};
    for (const auto& [text, files] : refused)
        for (const std::string& bytes : files) EXPECT_EQ(TextOf(bytes), text);
    // Pieces may be empty, and unknown chunks that are not critical are passed over.
    Bitmap again;
    const std::string whole = StoredStream(PngData(two));
    Read(with(Chunk("teXt", "a") + Chunk("IDAT", "") + Chunk("IDAT", whole.substr(0, 3)) + Chunk("IDAT", "") +
              Chunk("IDAT", whole.substr(3)) + end + "what follows"),
         again);
    EXPECT_TRUE(CImageHelper::AreEqual(bitmap, again));
    ForEachDamage(m_file, good, [&] {
        EXPECT_TRUE(Raised<CVorbexException>([&] { CImageHelper::ReadPng(m_file, bitmap); }));
        EXPECT_TRUE(CImageHelper::AreEqual(bitmap, again)) << "it is unchanged";
    });
    EXPECT_TRUE(Raised<CFileException>([&] { CImageHelper::ReadPng(m_folder / "none.png", bitmap); }));
    struct : CFile {
        std::uint64_t GetLength() const override { return 1ull << 63; }
    } endless;
    m_folder.Write("endless.png", good);
    ASSERT_TRUE(endless.Open(m_folder / "endless.png", CFile::modeRead));
    EXPECT_THROW(CImageHelper::ReadPng(endless, bitmap), std::bad_alloc);
}

/// Another program writes pictures of all kinds, and reads them as written again. It is asked for 16 bits a sample, since
/// it does not round to 8.
TEST_F(Png, ImageMagickSeesTheSamePixels) {
    if (!HasProgram("convert")) GTEST_SKIP() << "convert is not there";
    const auto seen = [&](const char* file) {
        const CString path(m_folder.Native(file).string());
        const std::string bytes = RunProgram("convert", {path, "-depth", "16", "-endian", "LSB", "RGBA:-"}).output;
        std::vector<std::uint16_t> samples(bytes.size() / 2);
        std::memcpy(samples.data(), bytes.data(), 2 * samples.size());
        return samples;
    };
    const std::string shapes = " ( +clone -crop 11x9+0+0 -alpha set -channel A -evaluate set 40% ) -composite";
    for (const std::string kind : {"PNG00:", "PNG8:", "PNG24:", "PNG32:", "PNG48:", "PNG64:"})
        for (const std::string look : {"-colorspace sRGB -interlace none", "-colorspace Gray -interlace PNG"}) {
            CStringArray make = CommandLine("-limit thread 1 -size 37x23 -seed 7 plasma: " + look +
                                            (kind == "PNG8:" ? " -colors 100" : shapes));
            make.Add(kind + m_folder.Native("theirs.png").string());
            ASSERT_EQ(RunProgram("convert", make).status, 0);
            CImageHelper::ReadPng(m_folder / "theirs.png", bitmap);
            CImageHelper::WritePng(m_folder / "ours.png", bitmap);
            const std::vector<std::uint16_t> theirs = seen("theirs.png"), ours = seen("ours.png");
            ASSERT_EQ(theirs.size(), 37u * 23 * 4);
            ASSERT_EQ(ours.size(), theirs.size());
            int greatest = 0;
            for (std::size_t i = 0; i < ours.size(); ++i) greatest = std::max(greatest, std::abs(ours[i] - theirs[i]));
            EXPECT_LE(greatest, 128) << kind << " " << look;
        }
}

}  // namespace
