#include <gmock/gmock.h>

#include "tests/support/CabinetOf.h"
#include "tests/support/MemoryCabinets.h"

namespace {

using namespace qv::cabinet;
using namespace std::literals;
using qv::test::CabinetOf;
using ::testing::AllOf;
using ::testing::Ge;
using ::testing::Le;

std::string With(std::string cabinet, std::size_t at, std::string_view bytes) {
    return cabinet.replace(at, bytes.size(), bytes);
}

/// A stored folder of one block without a checksum. The folder's entry is at 36, the first member's at 44.
std::string Stored(std::vector<std::pair<std::string, std::size_t>> members) {
    const std::string cabinet = CabinetOf({{kStored, {"hello"}, std::move(members)}});
    return With(cabinet, cabinet.size() - 13, "\0\0\0\0"sv);
}

TEST(HostileCabinet, ReportsErrorForEachDefect) {
    const std::string hello = Stored({{"a", 5}});  // its block is at 62
    const struct {
        const char* defect;
        int error;
        std::size_t at;
        std::string_view bytes;
    } cases[] = {{"none", 0, 0, ""},
                 {"missing signature", 2, 0, "x"},
                 {"unknown version", 3, 24, "\4"},
                 {"size beyond the end", 4, 8, "\xE8\3"},
                 {"list of members beyond the end", 4, 16, "\x88\x13"},
                 {"list of members in the head", 4, 16, "\b"},
                 {"list of members that runs into the end", 4, 16, "<"},
                 {"no folders", 4, 26, "\0"sv},
                 {"next cabinet without a name", 4, 30, "\2"},
                 {"data beyond the end", 4, 36, "\x88\x13"},
                 {"folder without blocks", 4, 40, "\0"sv},
                 {"Quantum", 6, 42, "\2"},
                 {"LZX of a window that is too small", 6, 42, "\3\x0E"},
                 {"LZX of nothing", 7, 42, "\3\x0F"},
                 {"MSZIP without its mark", 7, 42, "\1"},
                 {"member longer than its folder", 4, 44, "\6"},
                 {"member after the end of its folder", 4, 48, "\6"},
                 {"member past four gigabytes", 4, 44, "\xFF\xFF\xFF\xFF\2"},
                 {"folder index out of range", 4, 52, "\1"},
                 {"member continued from no cabinet", 4, 52, "\xFD\xFF"},
                 {"member continued in no cabinet", 4, 52, "\xFE\xFF"},
                 {"wrong checksum", 4, 62, "M"},
                 {"block shorter than its header says", 4, 66, "\6"},
                 {"block larger than 32 KB", 4, 68, "\1\x80"},
                 {"stored block of another size", 4, 68, "\4"}};
    for (const auto& [defect, error, at, bytes] : cases) EXPECT_EQ(ErrorOf(With(hello, at, bytes)), error) << defect;

    EXPECT_EQ(ErrorOf(With(Stored({{"a", 3}, {"b", 2}}), 44, "\5")), 4) << "overlapping members";
    EXPECT_EQ(ErrorOf(Stored({{std::string(300, 'n'), 5}})), 4) << "name without end";
    EXPECT_EQ(ErrorOf(CabinetOf({{kMszip, {"CK\3\0"s}, {{"a", 5}}}})), 7) << "MSZIP that ends early";
    for (const std::size_t size : {0u, 0xFFFFu}) {
        const std::string reserves = "\xFF\xFF\xFF\xFF" + std::string(size, 'r');
        EXPECT_EQ(ErrorOf(With(hello, 30, "\4").insert(36, reserves)), 4) << size << " bytes of the largest reserves";
    }
    // Four folders whose entries, from 36, name one block. The cabinet ends after it.
    const qv::test::FolderOf folder{kStored, {std::string(200, 'd')}, {{"m", 200}}};
    std::string shared = With(CabinetOf({folder, folder, folder, folder}), 8, "\x5C\1");
    for (const std::size_t at : {44u, 52u, 60u}) shared.replace(at, 4, shared, 36, 4);
    EXPECT_EQ(ErrorOf(shared), 4) << "folders that share their data";
    EXPECT_EQ(ErrorOf(""), 2);
    EXPECT_EQ(MemoryReader().Copy(), 1);
}

/// The time is linear in the number of folders: the cabinet is opened once for the members and once for their data.
TEST(HostileCabinet, ManyFoldersTakeLinearTime) {
    std::vector<qv::test::FolderOf> folders;
    for (unsigned i = 0; i < 3000; ++i) folders.push_back({kStored, {"x"}, {{std::to_string(i), 1}}});
    MemoryReader reader;
    reader.files["set0"] = CabinetOf(folders);
    EXPECT_EQ(reader.Copy(), 0);
    EXPECT_EQ(reader.members.size(), 3000u);
    EXPECT_EQ(reader.opens, 2);
}

/// The other folders are copied; the error names the first member that was not.
TEST(HostileCabinet, SkipsQuantumFolders) {
    MemoryReader reader;
    const auto folder = [](unsigned compression, const std::string& data) {
        return qv::test::FolderOf{compression, {data}, {{"m" + data, 5}}};
    };
    reader.files["set0"] = CabinetOf({folder(kStored, "hello"), folder(kQuantum | 10 << 8, "zzzzz"),
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
    reader.files["set0"] = Stored({{"a", 2}, {"b", 3}});
    EXPECT_EQ(reader.Copy("set0", {2, 5, 1}), 0);
    EXPECT_EQ(reader.Copy("set0", {1, 5, 1}), 4);
    EXPECT_EQ(reader.Copy("set0", {2, 4, 1}), 4);
    // An expansion bomb is refused for the size that it declares, before a byte is written.
    reader.members.clear();
    reader.files["set0"] = With(Stored({{"bomb", 5}}), 44, "\xFF\xFF\xFF\x7F");
    EXPECT_EQ(reader.Copy(), 4);
    EXPECT_FALSE(reader.files.contains("target bomb"));
    // All cabinets of the set count, not only the one in which the member begins.
    MemoryMaker maker;
    std::size_t total = 2'000'000, size = 0;
    ASSERT_TRUE(Make(maker, {{"f", std::string(total, '\0')}, {"z", ""}}, {.maximumSize = 1000}).done);
    for (const auto& [name, bytes] : maker.files) size += name.starts_with("set") ? bytes.size() : 0;
    reader.files = maker.files;
    EXPECT_EQ(reader.Copy("set0", {2, total, total / size - 1}), 4);
    EXPECT_FALSE(reader.files.contains("target f"));
    EXPECT_EQ(reader.Copy("set0", {2, total, total / size + 1}), 0);
    EXPECT_EQ(reader.members.size(), 2u);
}

/// Every cut of an archive, and every flip of one bit.
TEST(HostileCabinet, SurvivesTruncationAndBitFlips) {
    MemoryMaker maker;
    const std::map<std::string, std::string> members = {
        {"a", "some words, and the same words, and the same words"}, {"c", ""}, {"d", std::string(33000, 'z')}};
    ASSERT_TRUE(Make(maker, members, {.dataReserve = 3}).done);
    const std::string whole = maker.files["set0"], data = maker.files["a"] + maker.files["d"];
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
