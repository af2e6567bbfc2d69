#include "qvcommon/ImageHelper.h"

#include <cmath>
#include <limits>

#include "qvcommon/Checksum.h"
#include "tests/support/Pictures.h"
#include "tests/support/Tool.h"

namespace {

using namespace qv::test;

constexpr std::uint32_t R = 0xFFFF0000, G = 0xFF00FF00, B = 0xFF0000FF, W = 0xFFFFFFFF, K = 0xFF000000;

class ImageHelper : public testing::Test {
protected:
    template <class Change>
    PixelRows Changed(const PixelRows& rows, Change change) {
        Make(rows, m_source);
        const BOOL done = change(m_source, m_target);
        return done == 1 ? RowsOf(m_target) : PixelRows{};
    }
    CString Native(const char* name) const { return CString(m_folder.Native(name).string()); }
    /// Of middle values: others would be cut off, which the other program does once more in between.
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

using Source = const CDIBitmap&;
using Target = CDIBitmap&;

TEST_F(ImageHelper, ChangesPixelsAsItSays) {
    using Helper = CImageHelper;
    const PixelRows six = {{R, G, B}, {W, K, 0x40102030}};
    const struct {
        const char* what;
        BOOL (*change)(Source, Target);
        PixelRows from, to;
        int bits;
    } changes[] = {{"grey",
                    [](Source s, Target t) { return Helper::MakeGrey(s, t); },
                    {{R, G, B, W}},
                    {{0xFF4C4C4C, 0xFF969696, 0xFF1D1D1D, W}},
                    8},
                   {"grey with alpha",
                    [](Source s, Target t) { return Helper::MakeGrey(s, t); },
                    {{0x80FF0000, W}},
                    {{0x804C4C4C, W}},
                    32},
                   {"relief",
                    [](Source s, Target t) { return Helper::Emboss(s, t); },
                    {{K, K, K}, {K, W, W}, {K, W, W}},
                    {{0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF},
                     {0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF},
                     {0xFFFFFFFF, 0xFFFFFFFF, 0xFF808080}},
                    8},
                   {"a quarter",
                    [](Source s, Target t) { return Helper::Turn(s, t, 5); },
                    six,
                    {{W, R}, {K, G}, {0x40102030, B}},
                    32},
                   {"a half",
                    [](Source s, Target t) { return Helper::Rotate(s, t, -180); },
                    six,
                    {{0x40102030, K, W}, {B, G, R}},
                    32},
                   {"three quarters",
                    [](Source s, Target t) { return Helper::Rotate(s, t, 270, 0xFFFFFF); },
                    six,
                    {{B, 0xFFC3C7CB}, {G, K}, {R, W}},
                    24},
                   {"mirrored",
                    [](Source s, Target t) { return Helper::Mirror(s, t, Helper::horizontally); },
                    six,
                    {{B, G, R}, {0x40102030, K, W}},
                    32},
                   {"upside down",
                    [](Source s, Target t) { return Helper::Mirror(s, t, Helper::vertically); },
                    six,
                    {{W, K, 0x40102030}, {R, G, B}},
                    32},
                   {"a part", [](Source s, Target t) { return Helper::Crop(s, t, 1, 0, 2, 1); }, six, {{G, B}}, 24},
                   {"on a colour",
                    [](Source s, Target t) { return Helper::Flatten(s, t, 0x0000FF); },
                    {{0, 0x80FF0000, G}},
                    {{B, 0xFF80007F, G}},
                    24},
                   {"means",
                    [](Source s, Target t) { return Helper::Scale(s, t, 2, 1, Helper::box); },
                    {{K, W, W, W}, {W, K, W, W}},
                    {{0xFF808080, W}},
                    24},
                   {"shares of areas",
                    [](Source s, Target t) { return Helper::Scale(s, t, 2, 1, Helper::box); },
                    {{K, 0xFF1E1E1E, W}},
                    {{0xFF0A0A0A, 0xFFB4B4B4}},
                    24},
                   {"enlarged",
                    [](Source s, Target t) { return Helper::Scale(s, t, 4, 2, Helper::box); },
                    {{R, B}},
                    {{R, R, B, B}, {R, R, B, B}},
                    24},
                   {"colours of what cannot be seen stay there",
                    [](Source s, Target t) { return Helper::Scale(s, t, 1, 1); },
                    {{R, 0x0000FF00}},
                    {{0x80FF0000}},
                    32},
                   {"the same size", [](Source s, Target t) { return Helper::Scale(s, t, 3, 2); }, six, six, 32},
                   {"blended",
                    [](Source s, Target t) { return Helper::Blend(s, s, t, 1, 0); },
                    {{0x80FF0000, B, 0}},
                    {{0x80FF0000, 0xFF80007F, B}},
                    32},
                   {"blended by half, cut off",
                    [](Source s, Target t) { return Helper::Blend(s, s, t, -1, 0, 128); },
                    {{K, W}},
                    {{0xFF808080, W}},
                    24}};
    for (const auto& [what, change, from, to, bits] : changes) {
        EXPECT_EQ(Changed(from, change), to) << what;
        EXPECT_EQ(m_target.GetBitsPerPixel(), bits) << what;
        EXPECT_EQ(change(m_source, m_source), 1);
        EXPECT_EQ(RowsOf(m_source), to) << what << ", in place";
    }
}

TEST_F(ImageHelper, ScalesFlatPicturesFlat) {
    for (const int from : {1, 2, 7, 50})
        for (const int to : {1, 3, 20, 331})
            for (const auto filter : {CImageHelper::box, CImageHelper::lanczos}) {
                const PixelRows flat(static_cast<std::size_t>(from), std::vector<std::uint32_t>(3, 0xFF0A80FB));
                EXPECT_EQ(Changed(flat, [&](Source s, Target t) { return CImageHelper::Scale(s, t, to, to, filter); }),
                          PixelRows(static_cast<std::size_t>(to),
                                    std::vector<std::uint32_t>(static_cast<std::size_t>(to), 0xFF0A80FB)))
                    << from << " " << to;
            }
}

TEST_F(ImageHelper, RotatesIntoAPictureThatHoldsAll) {
    const PixelRows flat(20, std::vector<std::uint32_t>(30, R));
    for (const DWORD background : {CImageHelper::transparent, DWORD{0x0000FF}})
        for (const double degrees : {30.0, 123.0, -200.5, 750.0}) {
            const PixelRows turned =
                Changed(flat, [&](Source s, Target t) { return CImageHelper::Rotate(s, t, degrees, background); });
            const double angle = degrees * 3.14159265358979 / 180, s = std::abs(std::sin(angle)),
                         c = std::abs(std::cos(angle));
            ASSERT_EQ(turned.size(), static_cast<std::size_t>(std::ceil(20 * c + 30 * s)));
            ASSERT_EQ(turned[0].size(), static_cast<std::size_t>(std::ceil(30 * c + 20 * s)));
            EXPECT_EQ(turned[turned.size() / 2][turned[0].size() / 2], R);
            EXPECT_EQ(turned[0][0], background == CImageHelper::transparent ? 0 : B);
            double covered = 0;  // what is red, in pixels, is as large as before
            for (const auto& row : turned)
                for (const std::uint32_t pixel : row)
                    covered += (background == CImageHelper::transparent ? pixel >> 24 : pixel >> 16 & 255) / 255.0;
            EXPECT_NEAR(covered, 600, 3) << degrees;
        }
}

/// What is reckoned with fractions is the same on every system, to the last bit.
TEST_F(ImageHelper, GivesTheSameBytesEverywhere) {
    Noise(61, 47, m_source);
    const auto checksum = [&](BOOL done) { return done == 1 ? MemCRC(m_target.Bits()) : 0; };
    EXPECT_EQ(checksum(CImageHelper::Scale(m_source, m_target, 40, 90)), 2511760994u);
    EXPECT_EQ(checksum(CImageHelper::Scale(m_source, m_target, 100, 13, CImageHelper::box)), 2056708903u);
    EXPECT_EQ(checksum(CImageHelper::Rotate(m_source, m_target, 33)), 2766080550u);
    EXPECT_EQ(checksum(CImageHelper::Scale(m_target, m_target, 50, 60)), 289126677u) << "with alpha";
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
        EXPECT_EQ(CImageHelper::Compare(first, second, difference, 2, &shown), pixels >= 0);
        EXPECT_TRUE(difference.pixels == pixels && difference.greatest == greatest) << difference.greatest;
        EXPECT_EQ(CImageHelper::AreEqual(first, second, 2), pixels == 0);
        EXPECT_EQ(shown.m_info ? RowsOf(shown) : PixelRows{}, picture);
    }
}

TEST_F(ImageHelper, LeavesTheTargetWhereNothingCanBeDone) {
    using Helper = CImageHelper;
    constexpr double infinite = std::numeric_limits<double>::infinity();
    Bitmap none, target;
    Make({{R, G}, {B, W}}, m_source);
    Make({{W}}, target);
    DWORD pixels[2] = {0xAA000001, 2};
    QvPictureDifference difference;
    const BOOL done[] = {Helper::MakeGrey(none, target),
                         Helper::Emboss(none, target),
                         Helper::Scale(none, target, 1, 1),
                         Helper::Flatten(none, target, 0),
                         Helper::Blend(m_source, none, target, 0, 0),
                         Helper::Compare(none, none, difference, 0, &target),
                         Helper::Scale(m_source, target, 0, 1),
                         Helper::Scale(m_source, target, 1, -1),
                         Helper::Scale(m_source, target, Helper::longestSide + 1, 1),
                         Helper::Scale(m_source, target, 1 << 15, 1 << 15),
                         Helper::Rotate(m_source, target, infinite),
                         Helper::Crop(m_source, target, 1, 0, 2, 1),
                         Helper::Crop(m_source, target, 0, -1, 1, 1),
                         Helper::Crop(m_source, target, 0, 0, 1, 0),
                         Helper::Crop(m_source, target, INT32_MAX, 0, INT32_MAX, 1),
                         Helper::Blend(m_source, m_source, target, 0, 0, 256),
                         Helper::TakePixels({pixels, 2, 1, 1}, target),
                         Helper::TakePixels({nullptr, 1, 1, 1}, target)};
    for (const BOOL each : done) EXPECT_EQ(each, 0) << &each - done;
    EXPECT_EQ(RowsOf(target), PixelRows{{W}});
    EXPECT_EQ(Helper::Blend(target, m_source, target, INT32_MAX, INT32_MIN), 1) << "all of it is cut off";
    EXPECT_EQ(RowsOf(target), PixelRows{{W}});
    EXPECT_EQ(Helper::TakePixels({pixels, 1, 2, 1}, target), 1);
    EXPECT_EQ(RowsOf(target), (PixelRows{{0xFF000001}, {0xFF000002}}));
    int width = 0, height = 0;
    EXPECT_TRUE(Helper::GetSize(m_source, width, height) && width == 2 && height == 2 &&
                !Helper::GetSize(none, width, height));
}

/// What another program makes of the same pictures, to the rounding.
TEST_F(ImageHelper, ImageMagickScalesAlike) {
    if (!HasProgram("convert")) GTEST_SKIP() << "convert is not there";
    Noise(61, 47, m_source);
    CImageHelper::WritePng(m_folder / "in.png", m_source);
    const struct {
        std::vector<const char*> options;
        std::function<BOOL(Target)> change;
    } changes[] = {
        {{"-filter", "Lanczos", "-resize", "30x20!"},
         [&](Target t) { return CImageHelper::Scale(m_source, t, 30, 20); }},
        {{"-filter", "Lanczos", "-resize", "7x101!"},
         [&](Target t) { return CImageHelper::Scale(m_source, t, 7, 101); }},
        {{"-filter", "Lanczos", "-resize", "200x3!"},
         [&](Target t) { return CImageHelper::Scale(m_source, t, 200, 3); }},
        {{"-scale", "20x9!"}, [&](Target t) { return CImageHelper::Scale(m_source, t, 20, 9, CImageHelper::box); }},
        {{"-grayscale", "Rec601Luma"}, [&](Target t) { return CImageHelper::MakeGrey(m_source, t); }},
        {{"-rotate", "90"}, [&](Target t) { return CImageHelper::Turn(m_source, t, 1); }},
        {{"-flop"}, [&](Target t) { return CImageHelper::Mirror(m_source, t, CImageHelper::horizontally); }}};
    for (const auto& [options, change] : changes) {
        CStringArray arguments = {Native("in.png")};
        for (const char* const option : options) arguments.Add(option);
        arguments.Add("PNG24:" + Native("out.png"));
        ASSERT_EQ(RunProgram("convert", arguments).status, 0);
        Bitmap theirs;
        CImageHelper::ReadPng(m_folder / "out.png", theirs);
        ASSERT_EQ(change(m_target), 1);
        QvPictureDifference difference;
        EXPECT_EQ(CImageHelper::Compare(m_target, theirs, difference), 1) << options[0];
        EXPECT_LE(difference.greatest, 1) << options[0] << " " << options.back() << ": " << difference.pixels;
    }
}

}  // namespace
