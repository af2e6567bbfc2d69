#include "tests/support/DIBitmapTest.h"

#include "tests/support/Bitmap.h"
#include "tests/support/Damage.h"

namespace {

using namespace qv::test;

using HostileBitmap = DIBitmapTest;

// Calls every operation of a bitmap.
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

TEST_F(HostileBitmap, PictureLargerThanTheAddressSpaceIsNotDrawn) {
    if (sizeof(void*) > 4) GTEST_SKIP() << "64-bit programs can hold it";
    const BitmapRecipe runs = {.width = 65536, .height = 65537, .bits = 8, .compression = 1};
    std::string file = BitmapFile(runs).replace(2, 4, Words({0xFFFFFFFF}));
    for (int i = 0; i < 1 << 20; ++i) file.append("\0\0\xFF\1", 4);  // a run in each row
    ASSERT_EQ(Load(file), 1);
    std::vector<DWORD> pixels(4);
    EXPECT_EQ(bitmap.DrawDIB(CDC(CPixelBuffer{pixels.data(), 2, 2, 2}), 0, 0, 2, 2), 0);
}

TEST_F(HostileBitmap, BoundsDeclaredValues) {
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

TEST_F(HostileBitmap, SurvivesTruncationAndBitFlips) {
    const std::string masks = Words({0xF800, 0x7E0, 0x1F}), runs("\5\x10\0\3\x11\x10\0\2\1\1\3\1\0\1", 14);
    for (const BitmapRecipe& recipe :
         {BitmapRecipe{.width = 11, .height = 2, .bits = 1},
          {.width = 3, .height = -2, .bits = 4, .coloursUsed = 3},
          {.width = 3, .height = 3, .bits = 24},
          {.width = 3, .height = 2, .bits = 16, .compression = 3, .table = masks},
          {.width = 9, .height = 3, .bits = 4, .compression = 2, .coloursUsed = 2, .rows = runs}}) {
        const std::string good = BitmapFile(recipe);
        CFile out(m_folder / "b.bmp", CFile::modeCreate | CFile::modeWrite);
        int loaded = 0;
        ForEachDamage(m_file, good, [&] {
            try {
                loaded += bitmap.LoadConverted(m_file) != 0;
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
