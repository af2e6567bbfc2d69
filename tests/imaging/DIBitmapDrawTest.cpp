#include "tests/support/DIBitmapTest.h"

#include <sstream>

#include "tests/support/Bitmap.h"

namespace {

using namespace qv::test;

class DIBitmapDraw : public DIBitmapTest {
protected:
    // Draws on a target of 4 by 3 pixels of value 9. Returns a line for each row.
    template <class Draw>
    std::string Drawn(Draw draw) {
        std::vector<DWORD> pixels(5 * 3, 9);
        draw(CDC(CPixelBuffer{pixels.data(), 4, 3, 5}));
        std::ostringstream shown;
        shown << std::hex << std::uppercase;
        for (std::size_t i = 0; i < pixels.size(); ++i)
            if (i % 5 < 4)
                shown << pixels[i] << (i % 5 == 3 ? "\n" : " ");
            else
                EXPECT_EQ(pixels[i], 9u);
        return shown.str();
    }
};

TEST_F(DIBitmapDraw, DrawsEveryDepth) {
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
                    {"green of 7 bits", one(32, Words({0x017F02, 0}), 3, Words({0xFF0000, 0x7F00, 0xFF})), "1FF02 0"},
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

TEST_F(DIBitmapDraw, DrawsPartsStretchedAndCutOff) {
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

}  // namespace
