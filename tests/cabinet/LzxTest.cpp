// LZX data, made by a small encoder whose archives other programs confirm.

#include <gmock/gmock.h>

#include <random>

#include "tests/support/LzxMaker.h"
#include "tests/support/MemoryCabinets.h"
#include "tests/support/Noise.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Tool.h"

namespace {

using namespace qv::cabinet;
using namespace qv::test;

/// Texts, calls of near and far targets, noise, and repetitions from far away; an odd size.
std::string Mixture(std::size_t size) {
    std::minstd_rand random(5);
    std::string data;
    for (unsigned i = 0; data.size() < size; ++i) {
        data += "line " + std::to_string(i * i % 9973) + " of a text\r\n";
        const unsigned place = random();
        if (i % 3 == 0)
            data += {'\xE8', char(place), char(place >> 8), char(i % 2 ? place >> 24 : 0), char(i % 5 ? 0 : -1)};
        if (i % 64 == 0) data += Noise(40, i);
        if (i % 100 == 99) data += data.substr(random() % data.size(), 3000);
    }
    return data.substr(0, size);
}

using enum LzxBlock;
const std::vector<std::pair<LzxBlock, std::size_t>> kAllKinds = {
    {Verbatim, 40001}, {Uncompressed, 50001}, {Aligned, 70000}, {Uncompressed, 25533}, {Uncompressed, 1}, {Aligned, 3}};

const std::vector<std::pair<std::string, std::string>>& MembersToPack() {
    static const std::vector<std::pair<std::string, std::string>> members = {{"first", Mixture(300001)},
                                                                             {"zeros", std::string(100000, '\0')},
                                                                             {"noise", Noise(70000, 1)},
                                                                             {"empty", ""},
                                                                             {"again", Mixture(310000)}};
    return members;
}

/// Cabinets of all windows and kinds of blocks, by what they are.
const std::map<std::string, std::string>& Cabinets() {
    static const auto cabinets = [] {
        std::map<std::string, LzxRecipe> recipes = {
            {"plain", {}},
            {"aligned", {.blocks = {{Aligned, 1 << 23}}, .translationSize = 12345}},
            {"frames", {.blocks = {{Uncompressed, 32768}, {Verbatim, 32768}}}},
            {"odd", {.blocks = {{Uncompressed, 32767}, {Uncompressed, 1}}}}};
        for (unsigned window = kSmallestLzxWindow; window <= kLargestLzxWindow; ++window)
            recipes["window" + std::to_string(window)] = {window, kAllKinds, window % 2 ? 300000u : 0u};
        std::map<std::string, std::string> made;
        for (const auto& [name, recipe] : recipes) made[name] = LzxCabinet(MembersToPack(), recipe);
        return made;
    }();
    return cabinets;
}

TEST(Lzx, ReadsAllBlocksAndWindows) {
    for (const auto& [name, cabinet] : Cabinets()) {
        MemoryReader reader;
        reader.files["set0"] = cabinet;
        EXPECT_EQ(reader.Copy(), 0) << name;
        for (const auto& [member, content] : MembersToPack()) EXPECT_TRUE(reader.members[member] == content) << name;
    }
}

TEST(Lzx, OtherProgramsReadTheSame) {
    const TempFolder folder;
    const CString out(folder.Native("out").string());
    int programs = 0;
    for (const auto& [name, bytes] : Cabinets()) {
        folder.Write(name, bytes);
        const CString cabinet(folder.Native(name).string());
        for (const auto& [program, arguments] :
             {std::pair<const char*, CStringArray>{"cabextract", {"-q", "-d", out, cabinet}},
              {"7zz", {"x", "-y", "-o" + out, cabinet}}}) {
            std::filesystem::remove_all(folder.Native("out"));
            try {
                EXPECT_EQ(RunProgram(program, arguments).status, 0) << program << " " << name;
            } catch (CException* missing) {
                missing->Delete();
                continue;
            }
            ++programs;
            for (const auto& [member, content] : MembersToPack())
                EXPECT_TRUE(folder.Read("out/" + member) == content) << program << " " << name << " " << member;
        }
    }
    if (programs == 0) GTEST_SKIP() << "neither cabextract nor 7zz is here";
}

TEST(Lzx, RefusesWhatIsNoLzx) {
    const auto damaged = [](auto damage, std::size_t size = 3) {
        std::vector<std::string> frames = {std::string(200, '\0')};
        damage(frames);
        return ErrorOf(CabinetOf({{kLzx | 15 << 8, frames, {{"a", size}}}}));
    };
    // One bit for no translation, 3 of the block's type, 24 of its size: words with the highest bit first.
    const auto head = [](unsigned type, unsigned size) {
        const std::uint32_t bits = type << 28 | size << 4;
        return std::string{char(bits >> 16), char(bits >> 24), char(bits), char(bits >> 8)};
    };
    const std::string ones(8, '\1'), offsets = std::string("\0\0", 2) + std::string("\1\0\0\0\1\0\0\0\1\0\0\0", 12);
    EXPECT_EQ(damaged([&](auto& frames) { frames = {head(3, 3) + offsets.substr(2) + "abc"}; }), 0);
    const struct {
        const char* defect;
        std::string frame;
    } cases[] = {{"nothing", ""},
                 {"one byte", "a"},
                 {"type 0", head(0, 3) + ones},
                 {"type 7", head(7, 3) + ones},
                 {"block of no size", head(3, 0) + offsets + "abc"},
                 {"bytes are missing", head(3, 3) + offsets.substr(2) + "ab"},
                 {"offsets are missing", head(3, 3) + "abcd"},
                 {"lengths of no code", head(1, 3) + std::string(200, '\x11')},
                 {"no lengths at all", head(1, 3) + std::string(200, '\0')}};
    for (const auto& [defect, frame] : cases)
        EXPECT_EQ(damaged([&, only = frame](auto& frames) { frames = {only}; }), 7) << defect;
    for (const unsigned window : {14u, 22u, 0u})
        EXPECT_EQ(ErrorOf(CabinetOf({{kLzx | window << 8, {head(3, 3) + offsets + "abc"}, {{"a", 3}}}})), 6) << window;
}

/// Every bit of what the encoder makes, and every cut; the checksums are made again, so that the decoder sees it.
TEST(Lzx, SurvivesEveryDamage) {
    const std::string data = Mixture(1500);
    for (const LzxBlock kind : {Verbatim, Aligned, Uncompressed}) {
        const std::vector<std::string> whole =
            LzxMaker::Frames(data, {.blocks = {{kind, 900}}, .translationSize = 999});
        int refused = 0;
        for (std::size_t bit = 0; bit < 8 * whole[0].size(); ++bit) {
            std::vector<std::string> bent = whole;
            bent[0][bit / 8] = static_cast<char>(bent[0][bit / 8] ^ 1 << bit % 8);
            const int error = ErrorOf(CabinetOf({{kLzx | 15 << 8, bent, {{"a", data.size()}}}}));
            EXPECT_TRUE(error == 0 || error == 7) << error;
            refused += error != 0;
        }
        EXPECT_GT(refused, 10);
        for (std::size_t size = 0; size + 1 < whole[0].size(); ++size)
            EXPECT_EQ(ErrorOf(CabinetOf({{kLzx | 15 << 8, {whole[0].substr(0, size)}, {{"a", data.size()}}}})), 7);
    }
}

}  // namespace
