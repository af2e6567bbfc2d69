#include "qvcommon/Exceptions.h"
#include "tests/support/Damage.h"
#include "tests/support/Pictures.h"
#include "tests/support/PngMaker.h"
#include "tests/support/Raised.h"
#include "tests/support/Tool.h"

namespace {

using namespace qv::test;

std::string Little16(unsigned number) {
    return {static_cast<char>(number), static_cast<char>(number >> 8)};
}

std::string IconFile(const std::vector<std::string>& pictures) {
    const auto count = static_cast<unsigned>(pictures.size());
    std::string head = Little16(0) + Little16(1) + Little16(count), rest;
    for (const std::string& picture : pictures) {
        head += std::string(4, '\0') + Little16(1) + Little16(0) +
                Words({static_cast<std::uint32_t>(picture.size()),
                       static_cast<std::uint32_t>(6 + 16 * count + rest.size())});
        rest += picture;
    }
    return head + rest;
}

/// The pictures of icons have no file header, and count the rows of the mask.
std::string IconBitmap(const BitmapRecipe& recipe, const std::string& mask) {
    std::string bytes = BitmapFile(recipe).substr(14);
    bytes[8] = static_cast<char>(bytes[8] * 2);
    return bytes + mask;
}

class Icon : public DIBitmapTest {
protected:
    CImageHelper::Pictures Read(const std::string& bytes) { return CImageHelper::ReadIcon(FileOf(bytes)); }
    PixelRows Seen(const CDIBitmap& picture) {
        int width = 0, height = 0;
        CImageHelper::GetSize(picture, width, height);
        CImageHelper::Crop(picture, bitmap, 0, 0, width, height);
        return RowsOf(bitmap);
    }
};

TEST_F(Icon, ReadsEveryKindOfPicture) {
    const std::string colours = Words({0x112233, 0x445566}), sixteen = colours + std::string(14 * 4, '\0');
    const std::uint32_t one = 0xFF112233, two = 0xFF445566;
    const std::string left("\x80\0\0\0", 4), none(4, '\0');
    const auto recipe = [](int bits, const std::string& table, const std::string& rows) {
        return BitmapRecipe{.width = 2, .height = 1, .bits = bits, .table = table, .rows = rows};
    };
    const PngRecipe png = {
        .width = 2, .height = 1, .colour = 6, .sample = [](int x, int, int c) { return 16u * c + x; }};
    const struct {
        std::string bytes;
        PixelRows pixels;
    } kinds[] = {{IconBitmap(recipe(1, colours, "\x40zzz"), none), {{one, two}}},
                 {IconBitmap(recipe(1, colours, "\x40zzz"), left), {{0, two}}},
                 {IconBitmap(recipe(4, sixteen, {"\1\0\0\0", 4}), left), {{0, two}}},
                 {IconBitmap(recipe(8, ColourTable(256), {"\0\1\0\0", 4}), none), {{0xFF102030, 0xFF45914B}}},
                 {IconBitmap(recipe(24, "", "\1\2\3\4\5\6zz"), left), {{0, 0xFF060504}}},
                 {IconBitmap(recipe(32, "", Words({0x80010203, 0x00040506})), left), {{0x80010203, 0x00040506}}},
                 {IconBitmap(recipe(32, "", Words({0x010203, 0x040506})), left), {{0, 0xFF040506}}},
                 {IconBitmap(recipe(32, "", Words({0x010203, 0x040506})), ""), {{0xFF010203, 0xFF040506}}},
                 {PngBytes(png), {{0x30001020, 0x31011121}}}};
    std::vector<std::string> all;
    for (const auto& [bytes, pixels] : kinds) all.push_back(bytes);
    const CImageHelper::Pictures pictures = Read(IconFile(all));
    ASSERT_EQ(pictures.size(), std::size(kinds));
    for (std::size_t i = 0; i < pictures.size(); ++i) EXPECT_EQ(Seen(*pictures[i]), kinds[i].pixels) << i;
}

TEST_F(Icon, Roundtrip) {
    Bitmap small, tiny, large;
    Make({{0xFF102030, 0x00405060, 0x01FFFFFF}, {0, 0, 0}}, small);
    Make({{0}}, tiny);
    CImageHelper::Scale(small, large, 256, 100);
    const CDIBitmap* const all[] = {&small, &large, &tiny};
    ASSERT_EQ(CImageHelper::WriteIcon(m_folder / "a.ico", all), 1);
    const std::string bytes = m_folder.Read("a.ico");
    EXPECT_EQ(bytes.substr(0, 10), std::string("\0\0\1\0\3\0\3\2\0\0", 10));
    EXPECT_EQ(bytes.substr(22, 2), std::string("\0\x64", 2));
    // 40 bytes of header, 2 rows of 3 pixels, the lower row first, and a mask of words.
    EXPECT_EQ(bytes.substr(54 + 40, 24 + 8), std::string(12, '\0') + Words({0xFF102030, 0x00405060, 0x01FFFFFF}) +
                                                 std::string("\xE0\0\0\0\x40\0\0\0", 8));
    const CImageHelper::Pictures pictures = CImageHelper::ReadIcon(m_folder / "a.ico");
    ASSERT_EQ(pictures.size(), 3u);
    for (std::size_t i = 0; i < 3; ++i) EXPECT_TRUE(CImageHelper::AreEqual(*pictures[i], *all[i])) << i;
    const CImageHelper::Pictures alone = Read(bytes);
    EXPECT_TRUE(CImageHelper::AreEqual(*alone[2], tiny)) << "nothing but transparent pixels";

    CImageHelper::Scale(small, large, 257, 1);
    EXPECT_EQ(CImageHelper::WriteIcon(m_folder / "a.ico", all) + CImageHelper::WriteIcon(m_folder / "a.ico", {}), 0);
    EXPECT_TRUE(m_folder.Read("a.ico") == bytes);
}

TEST_F(Icon, RejectsMalformedFiles) {
    const std::string picture = IconBitmap({.width = 5, .height = 3, .bits = 4}, std::string(12, '\0'));
    const std::string good = IconFile({picture, PngBytes({.width = 2, .height = 2})});
    const auto with = [&](std::size_t at, const std::string& bytes) {
        return std::string(good).replace(at, bytes.size(), bytes);
    };
    const auto overlapping =
        IconFile({picture, picture}).replace(14, 8, Words({250, 0})).replace(30, 8, Words({250, 0}));
    const std::pair<std::string, std::vector<std::string>> refusals[] = {
        {"not an icon", {"", with(2, "\2"), with(4, std::string("\0", 1))}},
        {"directory", {good.substr(0, 20)}},
        {"a picture beyond the end", {with(14, Words({0x7FFFFFFF})), with(18, Words({0xFFFFFFFF}))}},
        {"overlap", {overlapping}},
        {"header of a picture",
         {with(38, Words({12})), with(42, Words({0})), with(46, Words({7})), with(46, Words({0x7FFFFFFE})),
          with(52, "\7"), with(54, Words({1}))}},
        {"colours of a picture", {with(70, Words({300}))}},
        {"rows", {with(46, Words({600}))}},
        {"mask", {IconFile({picture.substr(0, picture.size() - 1)})}}};
    for (const auto& [text, files] : refusals)
        for (const std::string& bytes : files) {
            const auto error = Raised<CVorbexException>([&] { Read(bytes); });
            ASSERT_TRUE(error) << text;
            EXPECT_TRUE(error->GetText().AsStd().ends_with(text)) << error->GetText().AsStd() << ", not " << text;
        }
    int read = 0, refused = 0;
    ForEachDamage(m_file, good, [&] {
        const auto error = Raised<CVorbexException>([&] { read += !CImageHelper::ReadIcon(m_file).empty(); });
        refused += error != nullptr;
    });
    EXPECT_EQ(read + refused, static_cast<int>(9 * good.size()));
    EXPECT_GT(read, 0);
}

TEST_F(Icon, ImageMagickSeesTheSamePixels) {
    if (!HasProgram("convert")) GTEST_SKIP() << "convert is not there";
    const CString theirs(m_folder.Native("theirs.ico").string()), ours(m_folder.Native("ours.ico").string());
    const auto seen = [](const CString& file) { return RunProgram("convert", {file, "-depth", "8", "RGBA:-"}).output; };
    for (const char* const kind : {"TrueColor", "TrueColorAlpha", "Palette", "Bilevel"}) {
        const std::string alpha = kind == std::string("TrueColorAlpha") ? "40%" : "100%";
        CStringArray make = CommandLine(
            "-seed 7 -size 48x48 plasma: ( +clone -crop 11x9+0+0 -alpha set -channel A"
            " -evaluate set " +
            alpha + " ) -composite -define icon:auto-resize=48,31,16");
        make.Append({"-type", kind, theirs});
        ASSERT_EQ(RunProgram("convert", make).status, 0);
        const CImageHelper::Pictures pictures = CImageHelper::ReadIcon(theirs);
        ASSERT_EQ(pictures.size(), 3u);
        std::vector<const CDIBitmap*> all;
        for (const auto& picture : pictures) all.push_back(picture.get());
        ASSERT_EQ(CImageHelper::WriteIcon(ours, all), 1);
        const std::string pixels = seen(theirs);
        EXPECT_EQ(pixels.size(), 4u * (48 * 48 + 31 * 31 + 16 * 16)) << kind;
        EXPECT_TRUE(seen(ours) == pixels) << kind;
    }
}

}  // namespace
