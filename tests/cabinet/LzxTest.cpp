// LZX data. tests/data/lzx/README.md says what the cabinets hold; other programs confirm them.

#include <gmock/gmock.h>

#include "tests/support/CabinetOf.h"
#include "tests/support/MemoryCabinets.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Tool.h"

namespace {

using namespace qv::cabinet;
using qv::test::CabinetOf;

class Lzx : public testing::Test {
protected:
    void SetUp() override {
        if (!exists(m_data)) GTEST_SKIP() << "the source tree is not at " << QV_SOURCE_DIR;
    }
    std::string Read(const std::string& name) const {
        std::ostringstream bytes;
        bytes << std::ifstream(m_data / name, std::ios::binary).rdbuf();
        return bytes.str();
    }
    std::map<std::string, std::string> Members() const {
        MemoryReader reader;
        reader.files["set0"] = Read("folders.cab");
        EXPECT_EQ(reader.Copy(), 0);
        return reader.members;
    }

    const std::filesystem::path m_data = std::filesystem::path(QV_SOURCE_DIR) / "tests/data/lzx";
};

TEST_F(Lzx, ReadsAllBlocksAndWindows) {
    const auto members = Members();
    ASSERT_EQ(members.size(), 12u);
    const std::string& content = members.at("content");
    EXPECT_EQ(content.size(), 785002u);
    for (const auto& [name, bytes] : members) {
        EXPECT_GE(bytes.size(), 33001u) << name;
        EXPECT_TRUE(content.starts_with(bytes)) << name;
    }
}

TEST_F(Lzx, MatchesOtherPrograms) {
    const TempFolder folder;
    const CString out(folder.Native("out").string()), cabinet((m_data / "folders.cab").string());
    int programs = 0;
    for (const auto& [program, arguments] :
         {std::pair<const char*, CStringArray>{"cabextract", {"-q", "-d", out, cabinet}},
          {"7zz", {"x", "-y", "-o" + out, cabinet}}}) {
        if (!HasProgram(program)) continue;
        ++programs;
        EXPECT_EQ(RunProgram(program, arguments).status, 0) << program;
        for (const auto& [name, bytes] : Members())
            EXPECT_TRUE(folder.Read("out/" + name) == bytes) << program << " " << name;
        std::filesystem::remove_all(folder.Native("out"));
    }
    if (programs == 0) GTEST_SKIP() << "neither cabextract nor 7zz is here";
}

TEST_F(Lzx, RejectsMalformedData) {
    const auto error = [](const std::string& frame, unsigned window = 15) {
        return ErrorOf(CabinetOf({{kLzx | window << 8, {frame}, {{"a", 3}}}}));
    };
    // One bit for no translation, 3 of the block's type, 24 of its size: words with the highest bit first.
    const auto head = [](unsigned type, unsigned size) {
        const std::uint32_t bits = type << 28 | size << 4;
        return std::string{char(bits >> 16), char(bits >> 24), char(bits), char(bits >> 8)};
    };
    const std::string ones(8, '\1'), offsets("\1\0\0\0\1\0\0\0\1\0\0\0", 12), good = head(3, 3) + offsets + "abc";
    EXPECT_EQ(error(good), 0);
    const std::pair<const char*, std::string> cases[] = {
        {"nothing", ""},
        {"one byte", "a"},
        {"type 0", head(0, 3) + ones},
        {"type 7", head(7, 3) + ones},
        {"block of no size", head(3, 0) + std::string(2, '\0') + offsets + "abc"},
        {"bytes are missing", head(3, 3) + offsets + "ab"},
        {"offsets are missing", head(3, 3) + "abcd"},
        {"lengths of no code", head(1, 3) + std::string(200, '\x11')},
        {"no lengths at all", head(1, 3) + std::string(200, '\0')}};
    for (const auto& [defect, frame] : cases) EXPECT_EQ(error(frame), 7) << defect;
    for (const unsigned window : {14u, 22u, 0u}) EXPECT_EQ(error(good, window), 6) << window;
}

/// Every flip of one bit and every cut of a frame. The checksums are right, so the decoder sees the damage.
TEST_F(Lzx, SurvivesTruncationAndBitFlips) {
    for (const char* const kind : {"verbatim.cab", "aligned.cab", "uncompressed.cab"}) {
        const std::string whole = Read(kind).substr(70);
        const auto error = [](const std::string& frame) {
            return ErrorOf(CabinetOf({{kLzx | 15 << 8, {frame}, {{"a", 1500}}}}));
        };
        EXPECT_EQ(error(whole), 0) << kind;
        int refused = 0;
        for (std::size_t bit = 0; bit < 8 * whole.size(); ++bit) {
            std::string bent = whole;
            bent[bit / 8] = static_cast<char>(bent[bit / 8] ^ 1 << bit % 8);
            const int result = error(bent);
            EXPECT_TRUE(result == 0 || result == 7) << result;
            refused += result != 0;
        }
        EXPECT_GT(refused, 10) << kind;
        for (std::size_t size = 0; size + 1 < whole.size(); ++size) EXPECT_EQ(error(whole.substr(0, size)), 7) << size;
    }
}

}  // namespace
