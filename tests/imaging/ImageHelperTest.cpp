#include "qvcommon/ImageHelper.h"

#include <cmath>
#include <limits>

#include "qvcommon/Checksum.h"
#include "tests/support/Pictures.h"
#include "tests/support/Tool.h"

namespace {

using namespace qv::test;

constexpr std::uint32_t R = 0xFFFF0000, G = 0xFF00FF00, B = 0xFF0000FF, W = 0xFFFFFFFF, K = 0xFF000000;

using Helper = CImageHelper;
using Source = const CDIBitmap&;
using Target = CDIBitmap&;

class ImageHelper : public testing::Test {
protected:
    template <class Change>
    PixelRows Changed(const PixelRows& rows, Change change) {
        Make(rows, m_source);
        const BOOL done = change(m_source, m_target);
        return done == 1 ? RowsOf(m_target) : PixelRows{};
    }
    void Expect(const char* what, const PixelRows& from, const PixelRows& to, int bits,
                BOOL (*change)(Source, Target)) {
        EXPECT_EQ(Changed(from, change), to) << what;
        EXPECT_EQ(m_target.GetBitsPerPixel(), bits) << what;
        EXPECT_EQ(change(m_source, m_source), 1);
        EXPECT_EQ(RowsOf(m_source), to) << what << ", in place";
    }
    /// All values are in the middle: ImageMagick clamps others between the two directions.
    void Noise(int width, int height, CDIBitmap& picture) const {
        PixelRows rows(static_cast<std::size_t>(height));
        std::uint32_t value = 1;
        for (auto& row : rows)
            for (int x = 0; x < width; ++x)
                row.push_back(((value = value * 1664525 + 1013904223) >> 8 & 0x3F3F3F) + (K | 0x606060));
        Make(rows, picture);
    }

    TempFolder m_folder;
    Bitmap m_source, m_target;
};

TEST_F(ImageHelper, ChangesPixels) {
    const PixelRows corner = {{K, K, K}, {K, W, W}, {K, W, W}}, six = {{R, G, B}, {W, K, 0x40102030}};
    const auto grey = [](Source s, Target t) { return Helper::MakeGrey(s, t); };
    Expect("grey", {{R, G, B, W}}, {{0xFF4C4C4C, 0xFF969696, 0xFF1D1D1D, W}}, 8, grey);
    Expect("grey with alpha", {{0x80FF0000, W}}, {{0x804C4C4C, W}}, 32, grey);
    Expect("relief", corner, {{W, W, W}, {W, W, W}, {W, W, 0xFF808080}}, 8,
           [](Source s, Target t) { return Helper::Emboss(s, t); });
    Expect("a quarter", six, {{W, R}, {K, G}, {0x40102030, B}}, 32,
           [](Source s, Target t) { return Helper::Turn(s, t, 5); });
    Expect("a half", six, {{0x40102030, K, W}, {B, G, R}}, 32,
           [](Source s, Target t) { return Helper::Rotate(s, t, -180); });
    Expect("three quarters", six, {{B, 0xFFC3C7CB}, {G, K}, {R, W}}, 24,
           [](Source s, Target t) { return Helper::Rotate(s, t, 270, 0xFFFFFF); });
    Expect("mirrored", six, {{B, G, R}, {0x40102030, K, W}}, 32,
           [](Source s, Target t) { return Helper::Mirror(s, t, Helper::horizontally); });
    Expect("upside down", six, {{W, K, 0x40102030}, {R, G, B}}, 32,
           [](Source s, Target t) { return Helper::Mirror(s, t, Helper::vertically); });
    Expect("a part", six, {{G, B}}, 24, [](Source s, Target t) { return Helper::Crop(s, t, 1, 0, 2, 1); });
    Expect("on a colour", {{0, 0x80FF0000, G}}, {{B, 0xFF80007F, G}}, 24,
           [](Source s, Target t) { return Helper::Flatten(s, t, 0x0000FF); });
    const auto twoByOne = [](Source s, Target t) { return Helper::Scale(s, t, 2, 1, Helper::box); };
    Expect("means", {{K, W, W, W}, {W, K, W, W}}, {{0xFF808080, W}}, 24, twoByOne);
    Expect("shares of areas", {{K, 0xFF1E1E1E, W}}, {{0xFF0A0A0A, 0xFFB4B4B4}}, 24, twoByOne);
    Expect("enlarged", {{R, B}}, {{R, R, B, B}, {R, R, B, B}}, 24,
           [](Source s, Target t) { return Helper::Scale(s, t, 4, 2, Helper::box); });
    Expect("transparent pixels add no colour", {{R, 0x0000FF00}}, {{0x80FF0000}}, 32,
           [](Source s, Target t) { return Helper::Scale(s, t, 1, 1); });
    Expect("the same size", six, six, 32, [](Source s, Target t) { return Helper::Scale(s, t, 3, 2); });
    Expect("blended", {{0x80FF0000, B, 0}}, {{0x80FF0000, 0xFF80007F, B}}, 32,
           [](Source s, Target t) { return Helper::Blend(s, s, t, 1, 0); });
    Expect("blended by half, cut off", {{K, W}}, {{0xFF808080, W}}, 24,
           [](Source s, Target t) { return Helper::Blend(s, s, t, -1, 0, 128); });
}

TEST_F(ImageHelper, RotationEnlargesPicture) {
    const PixelRows flat(20, std::vector<std::uint32_t>(30, R));
    for (const DWORD background : {Helper::transparent, DWORD{0x0000FF}})
        for (const double degrees : {30.0, 123.0, -200.5, 750.0}) {
            const PixelRows turned =
                Changed(flat, [&](Source s, Target t) { return Helper::Rotate(s, t, degrees, background); });
            const double angle = degrees * 3.14159265358979 / 180, s = std::abs(std::sin(angle)),
                         c = std::abs(std::cos(angle));
            ASSERT_EQ(turned.size(), static_cast<std::size_t>(std::ceil(20 * c + 30 * s)));
            ASSERT_EQ(turned[0].size(), static_cast<std::size_t>(std::ceil(30 * c + 20 * s)));
            EXPECT_EQ(turned[turned.size() / 2][turned[0].size() / 2], R);
            EXPECT_EQ(turned[0][0], background == Helper::transparent ? 0 : B);
            double covered = 0;  // the red area, in pixels, stays the same
            for (const auto& row : turned)
                for (const std::uint32_t pixel : row) covered += (pixel >> 24) * (pixel >> 16 & 255) / 65025.0;
            EXPECT_NEAR(covered, 600, 3) << degrees;
        }
}

/// Results of fractions are the same on every system, to the last bit.
TEST_F(ImageHelper, DeterministicOnEverySystem) {
    Noise(61, 47, m_source);
    const auto checksum = [&](BOOL done) { return done == 1 ? MemCRC(m_target.Bits()) : 0; };
    EXPECT_EQ(checksum(Helper::Scale(m_source, m_target, 40, 90)), 2511760994u);
    EXPECT_EQ(checksum(Helper::Scale(m_source, m_target, 100, 13, Helper::box)), 2056708903u);
    EXPECT_EQ(checksum(Helper::Rotate(m_source, m_target, 33)), 2766080550u);
    EXPECT_EQ(checksum(Helper::Scale(m_target, m_target, 50, 60)), 289126677u) << "with alpha";
}

TEST_F(ImageHelper, Compares) {
    const struct {
        PixelRows one, other;
        std::int64_t pixels;
        int greatest;
        PixelRows picture;
    } pairs[] = {{{{R, G}}, {{R, G}}, 0, 0, {{K, K}}},
                 {{{R, G}}, {{R, 0xFF03FA00}}, 1, 5, {{K, 0xFF030500}}},
                 {{{0x00123456, W}}, {{0, W}}, 0, 0, {{K, K}}},
                 {{{0x80000000}}, {{K}}, 1, 127, {{0xFF7F7F7F}}},
                 {{{R, G}}, {{R}}, -1, 0, {}},
                 {{{0xFF000002, 0xFF000003}}, {{K, K}}, 1, 3, {{0xFF000002, 0xFF000003}}}};
    for (const auto& [one, other, pixels, greatest, picture] : pairs) {
        Bitmap first, second, shown;
        Make(one, first);
        Make(other, second);
        QvPictureDifference difference{-1, 0};
        EXPECT_EQ(Helper::Compare(first, second, difference, 2, &shown), pixels >= 0);
        EXPECT_TRUE(difference.pixels == pixels && difference.greatest == greatest) << difference.greatest;
        EXPECT_EQ(Helper::AreEqual(first, second, 2), pixels == 0);
        EXPECT_EQ(shown.m_info ? RowsOf(shown) : PixelRows{}, picture);
    }
}

TEST_F(ImageHelper, FailurePreservesTarget) {
    constexpr double infinite = std::numeric_limits<double>::infinity();
    Bitmap none, target;
    Make({{R, G}, {B, W}}, m_source);
    Make({{W}}, target);
    DWORD pixels[2] = {0xAA000001, 2};
    QvPictureDifference difference;
    EXPECT_EQ(Helper::MakeGrey(none, target) + Helper::Emboss(none, target) + Helper::Flatten(none, target, 0), 0);
    EXPECT_EQ(Helper::Scale(none, target, 1, 1) + Helper::Blend(m_source, none, target, 0, 0), 0);
    EXPECT_EQ(Helper::Compare(none, none, difference, 0, &target), 0);
    for (const auto& [width, height] : {std::pair{0, 1}, {1, -1}, {Helper::longestSide + 1, 1}, {1 << 15, 1 << 15}})
        EXPECT_EQ(Helper::Scale(m_source, target, width, height), 0) << width << " " << height;
    EXPECT_EQ(Helper::Rotate(m_source, target, infinite), 0);
    EXPECT_EQ(Helper::Crop(m_source, target, 1, 0, 2, 1) + Helper::Crop(m_source, target, 0, -1, 1, 1), 0);
    EXPECT_EQ(Helper::Crop(m_source, target, 0, 0, 1, 0), 0);
    EXPECT_EQ(Helper::Crop(m_source, target, INT32_MAX, 0, INT32_MAX, 1), 0);
    EXPECT_EQ(Helper::Blend(m_source, m_source, target, 0, 0, 256), 0);
    EXPECT_EQ(Helper::TakePixels({pixels, 2, 1, 1}, target) + Helper::TakePixels({nullptr, 1, 1, 1}, target), 0);
    EXPECT_EQ(RowsOf(target), PixelRows{{W}});
    EXPECT_EQ(Helper::Blend(target, m_source, target, INT32_MAX, INT32_MIN), 1) << "all of it is cut off";
    EXPECT_EQ(RowsOf(target), PixelRows{{W}});
    EXPECT_EQ(Helper::TakePixels({pixels, 1, 2, 1}, target), 1);
    EXPECT_EQ(RowsOf(target), (PixelRows{{0xFF000001}, {0xFF000002}}));
    int width = 0, height = 0;
    EXPECT_TRUE(Helper::GetSize(m_source, width, height) && width == 2 && height == 2 &&
                !Helper::GetSize(none, width, height));
}

/// Compares with another program's results, to the rounding.
TEST_F(ImageHelper, ImageMagickScalesAlike) {
    if (!HasProgram("convert")) GTEST_SKIP() << "convert is not there";
    Noise(61, 47, m_source);
    Helper::WritePng(m_folder / "in.png", m_source);
    const std::pair<std::string, BOOL (*)(Source, Target)> changes[] = {
        {"-filter Lanczos -resize 30x20!", [](Source s, Target t) { return Helper::Scale(s, t, 30, 20); }},
        {"-filter Lanczos -resize 7x101!", [](Source s, Target t) { return Helper::Scale(s, t, 7, 101); }},
        {"-filter Lanczos -resize 200x3!", [](Source s, Target t) { return Helper::Scale(s, t, 200, 3); }},
        {"-scale 20x9!", [](Source s, Target t) { return Helper::Scale(s, t, 20, 9, Helper::box); }},
        {"-grayscale Rec601Luma", [](Source s, Target t) { return Helper::MakeGrey(s, t); }},
        {"-rotate 90", [](Source s, Target t) { return Helper::Turn(s, t, 1); }},
        {"-flop", [](Source s, Target t) { return Helper::Mirror(s, t, Helper::horizontally); }}};
    for (const auto& [options, change] : changes) {
        const std::string folder = m_folder.Native().string();
        const CStringArray words = CommandLine(folder + "/in.png " + options + " PNG24:" + folder + "/out.png");
        ASSERT_EQ(RunProgram("convert", words).status, 0);
        Bitmap theirs;
        Helper::ReadPng(m_folder / "out.png", theirs);
        ASSERT_EQ(change(m_source, m_target), 1);
        QvPictureDifference difference;
        EXPECT_EQ(Helper::Compare(m_target, theirs, difference), 1) << options;
        EXPECT_LE(difference.greatest, 1) << options << ": " << difference.pixels;
    }
}

}  // namespace
