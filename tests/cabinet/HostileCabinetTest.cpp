#include <gmock/gmock.h>

#include "tests/support/CabinetOf.h"
#include "tests/support/MemoryCabinets.h"

namespace {

using namespace qv::cabinet;
using ::testing::AllOf;
using ::testing::Ge;
using ::testing::Le;

/// A cabinet by its parts: one stored folder of one block, "hello", with one member, unless the recipe says otherwise.
struct Recipe {
    struct Member {
        std::string name{};
        std::uint32_t size = 5, offset = 0;
        unsigned folder = 0;
    };

    std::uint32_t signature = kSignature;
    unsigned minor = 3, flags = 0, folders = 1, blocks = 1, compression = kStored;
    std::uint32_t dataPlace = 0, filesPlace = 0, size = 0;  // 0: the right one
    std::string reserves{};
    std::vector<Member> members = {{.name = "a"}};
    std::string data = "hello";
    unsigned dataSize = 0, uncompressed = 5;
    std::uint32_t checksum = 0;
    bool hasChecksum = false;

    std::string Build() const {
        std::string list;
        for (const Member& member : members) {
            Add32(list, member.size);
            Add32(list, member.offset);
            Add16(list, member.folder);
            list += std::string(6, '\0') + member.name + '\0';
        }
        const std::size_t head = kHeaderSize + reserves.size(), place = head + kFolderSize * folders;
        std::string block, cabinet;
        Add32(block, hasChecksum ? checksum : 0);
        Add16(block, dataSize ? dataSize : static_cast<unsigned>(data.size()));
        Add16(block, uncompressed);
        block += data;
        const std::size_t all = place + list.size() + block.size();
        Add32(cabinet, signature);
        Add32(cabinet, 0);
        Add32(cabinet, size ? size : static_cast<std::uint32_t>(all));
        Add32(cabinet, 0);
        Add32(cabinet, filesPlace ? filesPlace : static_cast<std::uint32_t>(place));
        Add32(cabinet, 0);
        Add16(cabinet, minor | 1 << 8);
        Add16(cabinet, folders);
        Add16(cabinet, static_cast<unsigned>(members.size()));
        Add16(cabinet, flags);
        Add16(cabinet, 0);
        Add16(cabinet, 0);
        cabinet += reserves;
        for (unsigned i = 0; i < folders; ++i) {
            Add32(cabinet, dataPlace ? dataPlace : static_cast<std::uint32_t>(place + list.size()));
            Add16(cabinet, blocks);
            Add16(cabinet, compression);
        }
        return cabinet + list + block;
    }

private:
    static void Add16(std::string& to, unsigned value) {
        to += static_cast<char>(value & 255);
        to += static_cast<char>(value >> 8 & 255);
    }
    static void Add32(std::string& to, std::uint32_t value) {
        Add16(to, value & 0xFFFF);
        Add16(to, value >> 16);
    }
};

TEST(HostileCabinet, EndsInTheErrorOfItsDefect) {
    const std::string ownReserves("\xFF\xFF\xFF\xFF", 4);
    const std::tuple<const char*, int, Recipe> cases[] = {
        {"whole", 0, {}},
        {"missing signature", 2, {.signature = 1}},
        {"unknown version", 3, {.minor = 4}},
        {"size beyond the end", 4, {.size = 1000}},
        {"folder index out of range", 4, {.members = {{.name = "a", .folder = 1}}}},
        {"continued from nowhere", 4, {.members = {{.name = "a", .folder = kFromPrevious}}}},
        {"going on nowhere", 4, {.members = {{.name = "a", .folder = kToNext}}}},
        {"no folders", 4, {.folders = 0}},
        {"data beyond the end", 4, {.dataPlace = 5000}},
        {"list of members beyond the end", 4, {.filesPlace = 5000}},
        {"list of members in the head", 4, {.filesPlace = 8}},
        {"folder with zero blocks", 4, {.blocks = 0}},
        {"member longer than its folder", 4, {.members = {{.name = "a", .size = 6}}}},
        {"member behind its folder", 4, {.members = {{.name = "a", .offset = 6}}}},
        {"member past four gigabytes", 4, {.members = {{.name = "a", .size = 0xFFFFFFFF, .offset = 2}}}},
        {"overlapping members", 4, {.members = {{.name = "a"}, {.name = "b", .size = 2, .offset = 3}}}},
        {"folders that share their data",
         4,
         {.folders = 4,
          .members = {{.name = "a", .folder = 0}, {.name = "b", .folder = 1}, {.name = "c", .folder = 2}},
          .data = std::string(200, 'd'),
          .uncompressed = 200}},
        {"block larger than 32 KB", 4, {.uncompressed = 32769}},
        {"block shorter than it says", 4, {.dataSize = 6}},
        {"stored block of another size", 4, {.uncompressed = 4}},
        {"wrong checksum", 4, {.checksum = 77, .hasChecksum = true}},
        {"name without end", 4, {.members = {{.name = std::string(300, 'n')}}}},
        {"member to the end of the file", 4, {.filesPlace = 60}},
        {"maximum reserves, none there", 4, {.flags = kHasReserve, .reserves = ownReserves}},
        {"maximum reserves", 4, {.flags = kHasReserve, .reserves = ownReserves + std::string(0xFFFF, 'r')}},
        {"next cabinet without a name", 4, {.flags = kHasNext}},
        {"Quantum", 6, {.compression = kQuantum}},
        {"LZX of a window that is too small", 6, {.compression = kLzx | 14 << 8}},
        {"LZX of nothing", 7, {.compression = kLzx | 15 << 8}},
        {"MSZIP without its mark", 7, {.compression = kMszip}},
        {"MSZIP that ends early", 7, {.compression = kMszip, .data = std::string("CK\x03\0", 4)}}};
    for (const auto& [name, error, recipe] : cases) EXPECT_EQ(ErrorOf(recipe.Build()), error) << name;
    EXPECT_EQ(ErrorOf(""), 2);
    MemoryReader none;
    EXPECT_EQ(none.Copy(), 1);
}

/// Its time is in line with their number: the cabinet is opened for its members, and once for their data.
TEST(HostileCabinet, OpensACabinetOfManyFoldersOnce) {
    Recipe recipe{.folders = 3000, .members = {}, .data = "", .uncompressed = 0};
    for (unsigned i = 0; i < recipe.folders; ++i)
        recipe.members.push_back({.name = std::to_string(i), .size = i % 2, .folder = i});
    recipe.data = "x";
    recipe.uncompressed = 1;
    MemoryReader reader;
    reader.files["set0"] = recipe.Build();
    EXPECT_EQ(reader.Copy(), 0);
    EXPECT_EQ(reader.members.size(), 3000u);
    EXPECT_EQ(reader.opens, 2);
}

/// The other folders are copied; the error tells of the first that was not.
TEST(HostileCabinet, PassesOverQuantum) {
    MemoryReader reader;
    const auto folder = [](unsigned compression, const std::string& data) {
        return qv::test::FolderOf{compression, {data}, {{"m" + data, 5}}};
    };
    reader.files["set0"] = qv::test::CabinetOf({folder(kStored, "hello"), folder(kQuantum | 10 << 8, "zzzzz"),
                                                folder(kQuantum, "yyyyy"), folder(kStored, "there")});
    QvCabinetError error;
    CabinetReader engine(reader, error);
    EXPECT_FALSE(engine.Copy("set0", "", {10, 1000, 10}));
    EXPECT_EQ(error.error, 6);
    EXPECT_EQ(reader.members, (std::map<std::string, std::string>{{"mhello", "hello"}, {"mthere", "there"}}));
    EXPECT_EQ(engine.Where().member, "mzzzzz");
    EXPECT_EQ(engine.Where().method, kQuantum);
    EXPECT_EQ(engine.Where().others, 1);
    EXPECT_EQ(reader.opened, 0);
}

TEST(HostileCabinet, StaysWithinItsLimits) {
    MemoryReader reader;
    reader.files["set0"] = Recipe{.members = {{.name = "a", .size = 2}, {.name = "b", .size = 3, .offset = 2}}}.Build();
    EXPECT_EQ(reader.Copy("set0", {2, 5, 1}), 0);
    EXPECT_EQ(reader.Copy("set0", {1, 5, 1}), 4);
    EXPECT_EQ(reader.Copy("set0", {2, 4, 1}), 4);
    // An expansion bomb: refused by what it says of itself, before a byte is written.
    reader.members.clear();
    reader.files["set0"] = Recipe{.members = {{.name = "bomb", .size = 0x7FFFFFFF}}}.Build();
    EXPECT_EQ(reader.Copy(), 4);
    EXPECT_FALSE(reader.files.contains("target bomb"));
}

/// Every archive that was cut, and every archive with one wrong bit.
TEST(HostileCabinet, NeverBreaksTheReader) {
    MemoryMaker maker;
    maker.files = {
        {"a", "some words, and the same words, and the same words"}, {"b", ""}, {"c", std::string(33000, 'z')}};
    QvCabinetDescription cabinet;
    cabinet.cabinetName = "set0";
    cabinet.dataReserve = 3;
    QvCabinetError error;
    const auto writer = CabinetWriter::Create(maker, cabinet, error, 1);
    for (const char* const name : {"a", "b", "c"})
        ASSERT_TRUE(writer->AddFile(name, name, false, name[0] == 'b' ? 0 : 1));
    ASSERT_TRUE(writer->FlushCabinet(false));
    const std::string whole = maker.files["set0"], data = maker.files["a"] + maker.files["c"];
    ASSERT_EQ(ErrorOf(whole, &data), 0);
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_THAT(ErrorOf(whole.substr(0, length), &data), AllOf(Ge(1), Le(11))) << length;
    for (std::size_t bit = 0; bit < 8 * whole.size(); ++bit) {
        std::string bent = whole;
        bent[bit / 8] = static_cast<char>(bent[bit / 8] ^ 1 << bit % 8);
        EXPECT_THAT(ErrorOf(bent, &data), AllOf(Ge(0), Le(11))) << bit;
    }
}

}  // namespace
