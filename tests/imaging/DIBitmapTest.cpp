#include "tests/support/DIBitmapTest.h"

#include "tests/support/Bitmap.h"
#include "tests/support/Raised.h"
#include "tests/support/SystemFaults.h"

namespace {

using namespace qv::test;

class DIBitmap : public DIBitmapTest {
protected:
    std::string SavedWhole() {
        m_file.SetLength(0);
        EXPECT_EQ(bitmap.SaveWhole(m_file), 1);
        std::string saved(static_cast<std::size_t>(m_file.GetPosition()), '\0');
        m_file.Seek(0, CFile::begin);
        EXPECT_EQ(m_file.Read(saved.data(), static_cast<UINT>(saved.size())), saved.size());
        return saved;
    }
};

TEST_F(DIBitmap, RejectsOtherFilesAcceptsTruncated) {
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
        EXPECT_EQ(Refusal([&, &file = bytes] { Load(file); }), text);
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

    // From the middle of a file.
    m_folder.Write("a.bmp", "before" + good + "after");
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
        const std::string runs("\0\3abc\0\0\0\0\3def\0\0\0\0\3", 18);
        Load(BitmapFile({.width = 3, .height = 3, .bits = 8, .compression = 1, .rows = runs}));
        bitmap.m_padded = padded;
        EXPECT_EQ(bitmap.UnPadBits() + bitmap.PadBits(), 0);
        EXPECT_EQ(bitmap.Bits(), runs);
    }
}

TEST_F(DIBitmap, SavesTheLayoutOf8BitBitmaps) {
    const struct {
        int width, height, bits;
        std::size_t total, offset, written;  // the fields of the file header, and the bytes of pixels after it
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
    const SystemFaults faults(SystemFaults::Always(qv::platform::CallKind::Write, qv::platform::FileCause::DiskFull));
    EXPECT_TRUE(Raised<CFileException>([&] { bitmap.Save(m_folder / "c.bmp"); }));
    EXPECT_TRUE(Raised<CFileException>([&] { bitmap.SaveWhole(m_folder / "c.bmp"); }));
}

/// Every other header is converted to what a header of 40 bytes gives.
TEST_F(DIBitmap, ConvertsOtherHeaders) {
    const std::string masks = Words({0xF800, 0x7E0, 0x1F});
    const struct {
        BitmapRecipe recipe;
        std::size_t colours;
    } kinds[] = {{{.width = 5, .height = -3, .bits = 8, .coloursUsed = 3}, 3},
                 {{.width = 9, .height = 3, .bits = 1}, 2},
                 {{.width = 7, .height = 2, .bits = 24}, 0},
                 {{.width = 3, .height = 2, .bits = 16, .compression = 3, .table = masks}, 0}};
    for (const auto& [recipe, colours] : kinds) {
        const bool hasMasks = recipe.compression != 0;
        const std::string plain = BitmapFile(recipe), header = plain.substr(18, 36),
                          table = plain.substr(54, 4 * colours),
                          rows = plain.substr(54 + recipe.table.size() + table.size());
        for (const std::uint32_t size : {40u, 52u, 56u, 64u, 108u, 124u}) {
            if (size == 64 && hasMasks) continue;
            // Without alpha, with colour space and profile.
            std::string own = recipe.table;
            if (size > 40) own.append(4, '\0').append(80, 'p').resize(size - 40);
            const auto offset = static_cast<std::uint32_t>(54 + own.size() + table.size());
            const std::string file = "BM" + Words({static_cast<std::uint32_t>(offset + rows.size()), 0, offset, size}) +
                                     header + own + table + rows;
            EXPECT_EQ(bitmap.LoadConverted(FileOf(file + "profile")), static_cast<int>(size));
            EXPECT_TRUE(SavedWhole() == plain) << size << " " << recipe.bits;
        }
        if (recipe.height < 0 || hasMasks) continue;
        std::string triples;
        for (std::size_t i = 0; i < colours; ++i) triples += table.substr(4 * i, 3);
        const auto offset = static_cast<std::uint32_t>(26 + triples.size());
        const std::string core = "BM" + Words({0, 0, offset, 12}) + header.substr(0, 2) + header.substr(4, 2) +
                                 header.substr(8, 4) + triples + rows;
        EXPECT_EQ(bitmap.LoadConverted(FileOf(core)), 12);
        EXPECT_TRUE(SavedWhole() == std::string(plain).replace(38, 8, 8, '\0')) << recipe.bits;
    }
    for (const std::uint32_t size : {0u, 16u, 41u, 0xFFFFFFFFu}) {
        const std::string odd = "BM" + Words({0, 0, 54, size}) + std::string(200, 'x');
        EXPECT_EQ(Refusal([&] { bitmap.LoadConverted(FileOf(odd)); }), "Error:Unknown bitmap header\n") << size;
    }
    EXPECT_EQ(bitmap.LoadConverted(m_folder / "none.bmp"), 0);
}

TEST_F(DIBitmap, SavesEveryDepthAndWidthWhole) {
    const std::string masks565 = Words({0xF800, 0x7E0, 0x1F});
    for (int width = 1; width <= 70; ++width)
        for (BitmapRecipe recipe : {BitmapRecipe{.bits = 1},
                                    {.bits = 4},
                                    {.bits = 8},
                                    {.bits = 16},
                                    {.bits = 24},
                                    {.bits = 32},
                                    {.bits = 4, .coloursUsed = 3},
                                    {.bits = 16, .compression = 3, .table = masks565},
                                    {.bits = 24, .coloursUsed = 5, .table = ColourTable(5)}}) {
            recipe.width = width;
            recipe.height = width % 3 ? 1 + width % 4 : -4;
            const std::string file = BitmapFile(recipe);
            ASSERT_EQ(Load(file), 1);
            EXPECT_TRUE(SavedWhole() == file) << recipe.bits << " " << width;
            // Packed rows are padded with zeroes.
            bitmap.UnPadBits();
            bitmap.m_padded = 0;
            const std::string again = SavedWhole();
            EXPECT_EQ(bitmap.PadBits(), 1);
            EXPECT_TRUE(again == file.substr(0, file.size() - bitmap.m_bitsSize) + bitmap.Bits()) << recipe.bits;
        }
    // Alpha is kept, in a header that other programs know.
    for (const BitmapRecipe& alpha : {BitmapRecipe{.bits = 32, .table = Words({0xFF, 0xFF00, 0xFF0000, 0xFF000000})},
                                      {.bits = 16, .table = Words({0x7C00, 0x3E0, 0x1F, 0x8000})}}) {
        BitmapRecipe recipe = alpha;
        recipe.width = 3;
        recipe.compression = 6;
        Load(BitmapFile(recipe));
        const std::string rows = bitmap.Bits(), saved = SavedWhole();
        EXPECT_EQ(saved.substr(10, 8), Words({14 + 108, 108}));
        EXPECT_EQ(saved.substr(30, 4) + saved.substr(54, 16), Words({3}) + recipe.table);
        EXPECT_EQ(bitmap.LoadConverted(FileOf(saved)), 108);
        EXPECT_TRUE(bitmap.Bits() == rows && SavedWhole() == saved);
    }
    const std::string runs =
        BitmapFile({.width = 4, .height = 2, .bits = 8, .compression = 1, .rows = {"\4\1\0\1", 4}});
    Load(runs);
    EXPECT_TRUE(SavedWhole() == runs);
    // The layout of 8-bit bitmaps cannot hold the length of compressed rows.
    Load(BitmapFile({.width = 4, .height = 2, .bits = 8, .compression = 1, .rows = std::string(30, '\1')}));
    EXPECT_EQ(bitmap.Save(m_folder / "runs.bmp"), 0);
    EXPECT_FALSE(m_folder.Has("runs.bmp"));
}

}  // namespace
