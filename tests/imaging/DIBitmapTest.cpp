#include "qvcommon/DIBitmap.h"

#include <gtest/gtest.h>

#include "tests/support/Bitmap.h"
#include "tests/support/Damage.h"
#include "tests/support/FileFaults.h"
#include "tests/support/Raised.h"
#include "tests/support/TempFolder.h"

namespace {

using namespace qv::test;

// Shows what applications that derive see.
class Bitmap : public CDIBitmap {
public:
    using CDIBitmap::GetBitsPerPixel;
    using CDIBitmap::GetBytesPerLine;
    using CDIBitmap::GetColorCount;
    using CDIBitmap::GetHeight;
    using CDIBitmap::GetPalEntries;
    using CDIBitmap::GetWidth;
    using CDIBitmap::LastByte;
    using CDIBitmap::m_bits;
    using CDIBitmap::m_bitsSize;
    using CDIBitmap::m_info;
    using CDIBitmap::m_padded;

    std::string Bits() const { return {reinterpret_cast<const char*>(m_bits.get()), m_bitsSize}; }
};

class DIBitmap : public testing::Test {
protected:
    BOOL Load(const std::string& bytes) {
        m_file.SetLength(0);
        m_file.Write(bytes.data(), static_cast<UINT>(bytes.size()));
        m_file.Seek(0, CFile::begin);
        return bitmap.Load(m_file);
    }
    // The text that loading raises.
    std::string Refusal(const std::string& bytes) {
        try {
            Load(bytes);
        } catch (const char* text) {
            return text;
        }
        return "";
    }
    std::string SavedWhole() {
        m_file.SetLength(0);
        EXPECT_EQ(bitmap.SaveWhole(m_file), 1);
        std::string saved(static_cast<std::size_t>(m_file.GetPosition()), '\0');
        m_file.Seek(0, CFile::begin);
        EXPECT_EQ(m_file.Read(saved.data(), static_cast<UINT>(saved.size())), saved.size());
        return saved;
    }
    // A 4 by 3 target of 9s, drawn on by the action, a line a row.
    template <class Draw>
    std::string Drawn(Draw draw) {
        std::vector<DWORD> pixels(5 * 3, 9);
        draw(CDC(CPixelBuffer{pixels.data(), 4, 3, 5}));
        std::string shown;
        for (std::size_t i = 0; i < pixels.size(); ++i) {
            char text[12];
            std::snprintf(text, sizeof text, "%X", static_cast<unsigned>(pixels[i]));
            if (i % 5 < 4)
                shown += text + std::string(i % 5 == 3 ? "\n" : " ");
            else
                EXPECT_EQ(pixels[i], 9u);
        }
        return shown;
    }

    TempFolder m_folder;
    CFile m_file{m_folder / "open.bmp", CFile::modeCreate | CFile::modeReadWrite};
    Bitmap bitmap;
};

TEST_F(DIBitmap, RefusesOtherFilesAndTakesCutOnes) {
    const std::string notBitmap = "Error:Unexpected file type, not a DIB\n",
                      old = "Error:OS2 PM BMP Format not supported\n";
    const std::string good = BitmapFile({.width = 2, .height = 2, .bits = 8});
    for (const auto& [bytes, text] : {std::pair<std::string, std::string>{"", notBitmap},
                                      {"MB" + good.substr(2), notBitmap},
                                      {"BM", old},
                                      {std::string(good).replace(14, 1, "\x0C"), old},
                                      {std::string(good).replace(14, 1, "\x6C"), old},
                                      {good.substr(0, 14), old}}) {
        EXPECT_EQ(Load(good), 1);
        EXPECT_EQ(Refusal(bytes), text);
        EXPECT_TRUE(!bitmap.m_info && !bitmap.m_bits && !bitmap.GetPalette());
    }
    EXPECT_EQ(Load(good.substr(0, 19)), 1);
    EXPECT_EQ(bitmap.GetWidth(), 2);
    EXPECT_EQ(bitmap.GetHeight(), 0);
    EXPECT_EQ(Load(good.substr(0, 54 + 6)), 1);
    EXPECT_EQ(bitmap.GetPalette()->GetCount(), 256);
    EXPECT_EQ(bitmap.GetPalette()->GetEntry(1).blue, BYTE(good[58]));
    EXPECT_EQ(bitmap.GetPalette()->GetEntry(2).blue, 0);
    EXPECT_TRUE(Raised<CInvalidArgException>([&] { bitmap.GetPalette()->GetEntry(256); }));
    EXPECT_EQ(Bitmap().Load(m_folder / "none.bmp"), 0);

    // In the middle of a file.
    m_folder.Write("a.bmp", "before" + good + "behind");
    CFile file(m_folder / "a.bmp", CFile::modeRead);
    file.Seek(6, CFile::begin);
    EXPECT_EQ(bitmap.Load(file), 1);
    EXPECT_EQ(bitmap.Bits(), good.substr(54 + 1024));
    EXPECT_EQ(file.GetPosition(), 6 + good.size());
}

TEST_F(DIBitmap, MeasuresRowsAndColours) {
    const struct {
        int bits, width;
        std::int64_t packed, padded;
    } rows[] = {{1, 1, 1, 4},  {1, 33, 5, 8},   {4, 3, 2, 4},    {8, 5, 5, 8},
                {16, 3, 6, 8}, {24, 5, 15, 16}, {32, 7, 28, 28}, {32, INT32_MAX, 0x1FFFFFFFCLL, 0x1FFFFFFFCLL},
                {8, 0, 0, 0},  {8, -5, 0, 0}};
    for (const auto& [bits, width, packed, padded] : rows) {
        EXPECT_EQ(Bitmap::LastByte(bits, width), packed) << bits << " " << width;
        EXPECT_EQ(Bitmap::GetBytesPerLine(bits, width), padded) << bits << " " << width;
    }
    const struct {
        int bits;
        std::uint32_t used;
        int colours;
        DWORD entries;
        int palette;
    } depths[] = {{1, 0, 2, 2, 2},         {4, 0, 16, 16, 16},      {8, 0, 256, 256, 256},
                  {8, 3, 256, 3, 3},       {8, 300, 256, 300, 256}, {16, 0, 0, 65536, -1},
                  {24, 0, 0, 1 << 24, -1}, {32, 7, 0, 7, -1},       {32, 0, 0, 0, -1}};
    for (const auto& [bits, used, colours, entries, palette] : depths) {
        EXPECT_EQ(Load(BitmapFile({.bits = bits, .coloursUsed = used})), 1);
        EXPECT_EQ(bitmap.GetBitsPerPixel(), bits);
        EXPECT_EQ(bitmap.GetColorCount(), colours) << bits;
        EXPECT_EQ(Bitmap::GetPalEntries(bitmap.m_info->header), entries) << bits;
        EXPECT_EQ(bitmap.GetPalette() ? bitmap.GetPalette()->GetCount() : -1, palette) << bits;
    }
}

TEST_F(DIBitmap, PadsAndUnpadsRowsInPlace) {
    EXPECT_EQ(Bitmap().PadBits() + Bitmap().UnPadBits(), 0);
    Load(BitmapFile({.width = 5, .height = -3, .bits = 8, .rows = "abcde...fghij...klmno..."}));
    EXPECT_EQ(bitmap.PadBits(), 1);  // is padded already
    EXPECT_EQ(bitmap.Bits(), "abcde...fghij...klmno...");
    EXPECT_EQ(bitmap.UnPadBits(), 1);
    EXPECT_EQ(bitmap.Bits().substr(0, 15), "abcdefghijklmno");
    bitmap.m_padded = 0;
    EXPECT_EQ(bitmap.UnPadBits(), 1);
    EXPECT_EQ(bitmap.PadBits(), 1);
    EXPECT_EQ(bitmap.Bits(), std::string("abcde\0\0\0fghij\0\0\0klmno\0\0\0", 24));
    for (const BOOL padded : {0, 1}) {
        Load(BitmapFile({.width = 5, .height = 3, .bits = 8, .rows = "abcde...fghij...klmno.."}));
        bitmap.m_padded = padded;
        EXPECT_EQ(padded ? bitmap.UnPadBits() : bitmap.PadBits(), 0);
        EXPECT_EQ(bitmap.Bits(), "abcde...fghij...klmno..");
    }
}

TEST_F(DIBitmap, SavesTheLayoutOf8BitBitmaps) {
    const struct {
        int width, height, bits;
        std::size_t total, offset, written;  // the fields of the file header, and the bytes of pixels behind it
    } layouts[] = {{5, 3, 8, 1078 + 24, 1078, 24}, {5, -3, 8, 1078 + 24, 1078, 24}, {5, 3, 24, 54 + 48, 54, 72},
                   {10, 2, 1, 62 + 8, 62, 3},      {9, 3, 4, 118 + 3 * 4, 118, 18}, {3, 2, 32, 54 + 24, 54, 32}};
    for (const auto& [width, height, bits, total, offset, written] : layouts) {
        const std::string file = BitmapFile({.width = width, .height = height, .bits = bits});
        ASSERT_EQ(Load(file), 1);
        ASSERT_EQ(bitmap.Save(m_folder / "b.bmp"), 1);
        const std::string saved = m_folder.Read("b.bmp"), rows = file.substr(offset);
        std::string expected = "BM" +
                               Words({static_cast<std::uint32_t>(total), 0, static_cast<std::uint32_t>(offset)}) +
                               file.substr(14, offset - 14) + rows.substr(0, written);
        expected.replace(34, 4, 4, '\0').resize(offset + written);
        EXPECT_TRUE(saved == expected) << bits << " " << saved.size();
    }
    EXPECT_EQ(Bitmap().Save(m_folder / "c.bmp"), 0);
    EXPECT_FALSE(m_folder.Has("c.bmp"));
    EXPECT_EQ(bitmap.Save(m_folder / "none/c.bmp") + bitmap.SaveWhole(m_folder / "none/c.bmp"), 0);
    const FileFaults faults(FileFaults::Always(qv::FileCall::Write, qv::platform::FileCause::DiskFull));
    EXPECT_TRUE(Raised<CFileException>([&] { bitmap.Save(m_folder / "c.bmp"); }));
    EXPECT_TRUE(Raised<CFileException>([&] { bitmap.SaveWhole(m_folder / "c.bmp"); }));
}

TEST_F(DIBitmap, SavesEveryDepthAndWidthWhole) {
    const std::string masks565 = Words({0xF800, 0x7E0, 0x1F}), masks32 = Words({0xFF, 0xFF00, 0xFF0000, 0xFF000000});
    for (int width = 1; width <= 70; ++width)
        for (BitmapRecipe recipe : {BitmapRecipe{.bits = 1},
                                    {.bits = 4},
                                    {.bits = 8},
                                    {.bits = 16},
                                    {.bits = 24},
                                    {.bits = 32},
                                    {.bits = 4, .coloursUsed = 3},
                                    {.bits = 16, .compression = 3, .table = masks565},
                                    {.bits = 32, .compression = 6, .table = masks32},
                                    {.bits = 24, .coloursUsed = 5, .table = ColourTable(5)}}) {
            recipe.width = width;
            recipe.height = width % 3 ? 1 + width % 4 : -4;
            const std::string file = BitmapFile(recipe);
            ASSERT_EQ(Load(file), 1);
            EXPECT_TRUE(SavedWhole() == file) << recipe.bits << " " << width;
            // Packed rows are padded on the way, with zeroes.
            bitmap.UnPadBits();
            bitmap.m_padded = 0;
            const std::string again = SavedWhole();
            EXPECT_EQ(bitmap.PadBits(), 1);
            EXPECT_TRUE(again == file.substr(0, file.size() - bitmap.m_bitsSize) + bitmap.Bits()) << recipe.bits;
        }
    const std::string runs =
        BitmapFile({.width = 4, .height = 2, .bits = 8, .compression = 1, .rows = {"\4\1\0\1", 4}});
    Load(runs);
    EXPECT_TRUE(SavedWhole() == runs);
}

TEST_F(DIBitmap, DrawsEveryDepth) {
    const auto one = [](int bits, const std::string& row, std::uint32_t compression = 0,
                        const std::string& table = {}) {
        return BitmapRecipe{
            .width = 2, .height = 1, .bits = bits, .compression = compression, .table = table, .rows = row};
    };
    const std::string colours = Words({0xFF112233, 0x445566, 0x778899}), m565 = Words({0xF800, 0x7E0, 0x1F}),
                      swapped = Words({0xFF, 0xFF00, 0xFF0000}), runs = colours + std::string(13 * 4, 'z');
    BitmapRecipe few = one(8, {"\1\3\0\0", 4}, 0, colours + "junk");
    few.coloursUsed = 3;
    const struct {
        const char* what;
        BitmapRecipe recipe;
        const char* pixels;
    } pictures[] = {{"1 bit", one(1, "\x40zzz", 0, colours.substr(0, 8)), "112233 445566"},
                    {"4 bits", one(4, "\x21zzz", 0, colours + std::string(52, 'z')), "778899 445566"},
                    {"an index without a colour", few, "445566 0"},
                    {"16 bits", one(16, Words({0x04217C00})), "FF0000 80808"},
                    {"masks of 5, 6 and 5 bits", one(16, Words({0x08411FE0}), 3, m565), "18FF00 80808"},
                    {"24 bits", one(24, "\1\2\3\4\5\6zz"), "30201 60504"},
                    {"32 bits", one(32, Words({0xFF010203, 0x040506})), "10203 40506"},
                    {"masks of 32 bits", one(32, Words({0xFF010203, 0x040506}), 3, swapped), "30201 60504"},
                    {"runs of 8 bits", one(8, {"\1\2\0\2\0\0\0\1", 8}, 1, runs), "778899 112233"},
                    {"literals of 4 bits", one(4, {"\0\3\x12\x10\0\1", 6}, 2, runs), "445566 778899"},
                    {"runs that end early", one(4, "\1\x20\1", 2, runs), "778899 112233"}};
    for (const auto& [what, recipe, pixels] : pictures) {
        ASSERT_EQ(Load(BitmapFile(recipe)), 1) << what;
        BOOL done = 0;
        EXPECT_EQ(Drawn([&](const CDC& dc) { done = bitmap.DrawDIB(dc, 1, 2); }),
                  "9 9 9 9\n9 9 9 9\n9 " + std::string(pixels) + " 9\n")
            << what;
        EXPECT_EQ(done, 1) << what;
    }
}

TEST_F(DIBitmap, DrawsPartsStretchedAndCutOff) {
    for (const bool topDown : {false, true}) {
        const std::string upper("\1\0\0\2\0\0\3\0\0zzz", 12), lower("\4\0\0\5\0\0\6\0\0zzz", 12);
        Load(BitmapFile({.width = 3, .height = topDown ? -2 : 2, .rows = topDown ? upper + lower : lower + upper}));
        EXPECT_EQ(Drawn([&](const CDC& dc) { bitmap.DrawDIB(dc, 0, 0); }), "1 2 3 9\n4 5 6 9\n9 9 9 9\n");
        EXPECT_EQ(Drawn([&](const CDC& dc) { bitmap.DrawDIB(dc, -1, -1, 6, 4); }), "1 2 2 3\n4 5 5 6\n4 5 5 6\n");
        EXPECT_EQ(Drawn([&](const CDC& dc) { bitmap.DrawDIB(dc, 2, 1, 4, 4, 1, 1, 2, 1); }),
                  "9 9 9 9\n9 9 5 5\n9 9 5 5\n");
        EXPECT_EQ(Drawn([&](const CDC& dc) { bitmap.DrawDIB(dc, 9, 9); }), "9 9 9 9\n9 9 9 9\n9 9 9 9\n");
        bitmap.UnPadBits();
        bitmap.m_padded = 0;
        EXPECT_EQ(Drawn([&](const CDC& dc) { bitmap.DrawDIB(dc, 0, 0); }), "1 2 3 9\n4 5 6 9\n9 9 9 9\n");
        const auto nothing = [&](const CDC& dc) {
            EXPECT_EQ(bitmap.DrawDIB(dc, 0, 0, 0, 1) + bitmap.DrawDIB(dc, 0, 0, 1, -1), 0);
            EXPECT_EQ(bitmap.DrawDIB(dc, 0, 0, 1, 1, 2, 0, 2, 1) + bitmap.DrawDIB(dc, 0, 0, 1, 1, 0, -1, 1, 1), 0);
            EXPECT_EQ(bitmap.DrawDIB(dc, 0, 0, 1, 1, INT32_MAX, 0, INT32_MAX, 1) + Bitmap().DrawDIB(dc, 0, 0), 0);
        };
        EXPECT_EQ(Drawn(nothing), "9 9 9 9\n9 9 9 9\n9 9 9 9\n");
        EXPECT_EQ(bitmap.DrawDIB(CDC(HDC{}), 0, 0), 0);
    }
}

// Everything that can be done to a bitmap, whatever it holds.
void UseAll(Bitmap& bitmap, CFile& out) {
    std::vector<DWORD> pixels(16 * 16);
    const CDC target(CPixelBuffer{pixels.data(), 16, 16, 16});
    bitmap.DrawDIB(target, 0, 0);
    bitmap.DrawDIB(target, -3, 2, 20, 20);
    out.Seek(0, CFile::begin);
    bitmap.SaveWhole(out);
    bitmap.Save(out);
    bitmap.UnPadBits();
    bitmap.m_padded = 0;
    bitmap.DrawDIB(target, 0, 0, 7, 7, 1, 1, 2, 2);
    bitmap.SaveWhole(out);
    bitmap.PadBits();
}

TEST_F(DIBitmap, BoundsWhatAFileSays) {
    const BitmapRecipe five = {.width = 5, .height = 3, .bits = 8};
    const auto with = [&](std::size_t at, std::uint32_t word) {
        return BitmapFile(five).replace(at, 4, Words({word}));
    };
    const std::size_t size = BitmapFile(five).size();
    const struct {
        const char* defect;
        std::string bytes;
        std::size_t bits;
        BOOL whole;
    } files[] = {{"good", BitmapFile(five), 24, 1},
                 {"width times depth overflows", with(18, 0x20000001), 24, 0},
                 {"billions of rows without a width", with(18, 0).replace(22, 4, Words({0x7FFFFFFF})), 24, 1},
                 {"width negative", with(18, 0xFFFFFFFB), 24, 0},
                 {"height negative", with(22, 0xFFFFFFFD), 24, 1},
                 {"height of the least number", with(22, 0x80000000), 24, 0},
                 {"a row more than there is", with(22, 4), 24, 0},
                 {"pixels inside the header", with(10, 20), size - 20, 1},
                 {"pixels beyond the end", with(10, 0x7FFFFFFF), 0, 0},
                 {"size below the offset", with(2, 100), 24, 1},
                 {"size far beyond the end", with(2, 0xFFFFFFFF), 24, 1},
                 {"size that cuts a row", with(2, static_cast<std::uint32_t>(size - 1)), 23, 0},
                 {"more than 256 colours", with(46, 0xFFFFFFFF), 24, 1},
                 {"depth 5", with(26, 0x50001), 24, 0},
                 {"depth 65535", with(26, 0xFFFF0001), 24, 0},
                 {"picture of another format", with(30, 5), 24, 0}};
    for (const auto& [defect, bytes, bits, whole] : files) {
        EXPECT_EQ(Load(bytes), 1) << defect;
        EXPECT_EQ(bitmap.m_bitsSize, bits) << defect;
        EXPECT_EQ(bitmap.SaveWhole(m_folder / "b.bmp"), whole) << defect;
        CFile out(m_folder / "c.bmp", CFile::modeCreate | CFile::modeWrite);
        UseAll(bitmap, out);
    }
}

TEST_F(DIBitmap, SurvivesEveryCutAndFlip) {
    const std::string masks = Words({0xF800, 0x7E0, 0x1F});
    for (const BitmapRecipe& recipe : {BitmapRecipe{.width = 11, .height = 2, .bits = 1},
                                       {.width = 3, .height = -2, .bits = 4, .coloursUsed = 3},
                                       {.width = 3, .height = 3, .bits = 24},
                                       {.width = 3, .height = 2, .bits = 16, .compression = 3, .table = masks},
                                       {.width = 9,
                                       .height = 3,
                                       .bits = 4,
                                       .compression = 2,
                                       .coloursUsed = 2,
                                       .rows = {"\5\x10\0\3\x11\x10\0\2\1\1\3\1\0\1", 14}}}) {
        const std::string good = BitmapFile(recipe);
        CFile out(m_folder / "b.bmp", CFile::modeCreate | CFile::modeWrite);
        int loaded = 0;
        ForEachDamage(m_file, good, [&] {
            try {
                loaded += bitmap.Load(m_file);
                EXPECT_LE(bitmap.m_bitsSize, good.size());
                UseAll(bitmap, out);
            } catch (const char*) {
                EXPECT_FALSE(bitmap.m_info);
            }
        });
        EXPECT_GT(loaded, 7 * static_cast<int>(good.size())) << recipe.bits;
    }
}

}  // namespace
