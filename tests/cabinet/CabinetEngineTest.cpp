#include <gmock/gmock.h>

#include <functional>

#include "tests/support/MemoryCabinets.h"
#include "tests/support/Noise.h"

namespace {

using namespace qv::cabinet;
using Files = std::map<std::string, std::string>;
using ::testing::AllOf;
using ::testing::Ge;
using ::testing::Le;

std::string Prose(std::size_t size) {
    std::string text;
    for (unsigned i = 0; text.size() < size; ++i) text += "line " + std::to_string(i * i) + " of a text\n";
    return text.substr(0, size);
}

/// Sizes around the borders of blocks, compressible and not; empty members first, between and last.
Files Members() {
    return {{"a", ""},
            {"b", Prose(32767)},
            {"c", "x"},
            {"d", ""},
            {"e", Noise(32768, 1)},
            {"f", Prose(100000) + Noise(40000, 2)},
            {"g", std::string(70000, '\0')},
            {"h", Noise(1, 3)},
            {"i", ""}};
}

TEST(CabinetEngine, RoundtripsAllSizesWithAndWithoutReserves) {
    for (const int compression : {kStored, kMszip})
        for (const std::uint32_t size : {0x7FFFFFFFu, 60000u, 40000u, 5000u, 800u})
            for (const bool reserves : {false, true}) {
                SCOPED_TRACE(std::to_string(size) + (reserves ? " with reserves" : ""));
                MemoryMaker maker;
                QvCabinetDescription cabinet = {.maximumSize = size};
                if (reserves) {
                    cabinet = {
                        .maximumSize = size + 1000, .headerReserve = 777, .folderReserve = 255, .dataReserve = 9};
                    maker.changeNext = [](QvCabinetDescription& next) { next.headerReserve = next.folderReserve = 5; };
                }
                ASSERT_TRUE(Make(maker, Members(), cabinet, compression).done);
                for (const auto& [name, bytes] : maker.files)
                    EXPECT_TRUE(!name.starts_with("set") || bytes.size() <= cabinet.maximumSize) << name;
                EXPECT_EQ(maker.files.contains("set1"), size <= 60000) << "a set when one cabinet is too small";
                MemoryReader reader;
                reader.files = maker.files;
                ASSERT_EQ(reader.Copy(), 0);
                EXPECT_EQ(reader.members, Members());
            }
}

TEST(CabinetEngine, WritesTheSameBytesWithAnyNumberOfThreads) {
    std::string one;
    for (const unsigned threads : {1u, 2u, 5u, 16u}) {
        MemoryMaker maker;
        ASSERT_TRUE(Make(maker, Members(), {}, kMszip, threads).done);
        if (one.empty()) one = maker.files["set0"];
        EXPECT_EQ(maker.files["set0"], one) << threads;
    }
}

TEST(CabinetEngine, StartsNewCabinetAtMemberLimit) {
    MemoryMaker maker;
    QvCabinetError error;
    const auto writer = CabinetWriter::Create(maker, {.cabinetName = "set0"}, error, 1);
    for (const auto& [source, content] : {std::pair<const char*, const char*>{"m", "member"}, {"e", ""}})
        maker.files[source] = content;
    for (int i = 0; i < 70000; ++i)
        ASSERT_TRUE(writer->AddFile(i < 10000 ? "m" : "e", CString(std::to_string(i)), false, kMszip));
    ASSERT_TRUE(writer->FlushCabinet(false));
    EXPECT_TRUE(maker.files.contains("set1"));
    MemoryReader reader;
    reader.files = maker.files;
    ASSERT_EQ(reader.Copy(), 0);
    EXPECT_EQ(reader.members.size(), 70000u);
    EXPECT_EQ(reader.members["9999"], "member");
}

TEST(CabinetEngine, NotifiesOfTheNextCabinetAndOfPartialFiles) {
    MemoryMaker maker;
    const QvCabinetDescription cabinet = {.maximumSize = 100000};
    ASSERT_TRUE(Make(maker, {{"a", Prose(9000)}, {"f", Noise(150000, 2)}, {"z", "end"}}, cabinet).done);
    MemoryReader whole, second, lost, passing;
    whole.files = second.files = lost.files = passing.files = maker.files;
    EXPECT_EQ(whole.Copy(), 0);
    // Head; a; f, which needs the next cabinet; end of the list; the second list, with z.
    EXPECT_EQ(whole.notified, "02324035235");
    EXPECT_EQ(second.Copy("set1"), 0);
    EXPECT_EQ(second.notified, "01235") << "f is named, z is copied";
    passing.passOver = true;
    EXPECT_EQ(passing.Copy(), 0);
    lost.files.erase("set1");
    EXPECT_EQ(lost.Copy(), 1);
    EXPECT_EQ(lost.members.count("f"), 0u);
    lost.files["set1"] = maker.files["set0"];
    EXPECT_EQ(lost.Copy(), 10);
    EXPECT_EQ(maker.placed, "a0 f0 f+1 z1 ");
    MemoryMaker three;
    ASSERT_TRUE(Make(three, {{"f", Noise(250000, 2)}}, cabinet).done);
    EXPECT_EQ(three.placed, "f0 f+1 f+2 ");
}

/// Whichever call fails, the engine reports it, releases everything and leaves no incomplete cabinet.
TEST(CabinetEngine, ReportsFailureOfEachCallback) {
    const Files members = {{"a", Prose(50000)}, {"b", ""}, {"c", Noise(40000, 5)}};
    const QvCabinetDescription cabinet = {.maximumSize = 30000};
    long call = 0;
    for (bool done = false; !done && call < 1000; ++call) {
        MemoryMaker maker;
        maker.failingCall = call;
        const Made made = Make(maker, members, cabinet);
        done = made.done && maker.calls <= call;
        EXPECT_THAT(made.error.error, AllOf(Ge(made.done ? 0 : 1), Le(made.done ? 0 : 8))) << call;
        EXPECT_FALSE(made.done && maker.failed) << call;
        EXPECT_EQ(maker.allocated + maker.opened, 0) << call;
        EXPECT_FALSE(maker.files.contains("store")) << call;
        for (const auto& [name, bytes] : maker.files)
            EXPECT_TRUE(!name.starts_with("set") ||
                        bytes.size() == Get32(reinterpret_cast<const unsigned char*>(&bytes[8])));
    }
    EXPECT_THAT(call, AllOf(Ge(41), Le(999)));
    MemoryMaker maker;
    ASSERT_TRUE(Make(maker, members, cabinet).done);
    call = 0;
    for (bool done = false; !done && call < 1000; ++call) {
        MemoryReader reader;
        reader.files = maker.files;
        reader.failingCall = call;
        const int error = reader.Copy();
        done = reader.calls <= call;
        EXPECT_THAT(error, AllOf(Ge(reader.failed ? 1 : 0), Le(done ? 0 : 11))) << call;
        EXPECT_EQ(reader.allocated + reader.opened, 0) << call;
        for (const auto& [name, content] : reader.members) EXPECT_EQ(content, members.at(name)) << call;
    }
    EXPECT_LE(call, 999);
}

TEST(CabinetEngine, RejectsInvalidMembers) {
    MemoryMaker maker;
    maker.files["a"] = "x";
    QvCabinetError error;
    const std::pair<int, std::function<bool(CabinetWriter&)>> cases[] = {
        {5, [](CabinetWriter& writer) { return writer.AddFile("a", "a", false, 3); }},
        {1, [](CabinetWriter& writer) { return writer.AddFile("missing", "a", false, kMszip); }},
        {8, [](CabinetWriter& writer) { return writer.AddFile("a", CString('n', 256), false, kMszip); }}};
    for (const auto& [number, action] : cases) {
        const auto writer = CabinetWriter::Create(maker, {}, error, 1);
        EXPECT_FALSE(action(*writer));
        EXPECT_EQ(error.error, number);
        EXPECT_FALSE(writer->FlushCabinet(false)) << "a failed writer refuses further calls";
    }
    EXPECT_EQ(Make(maker, {{"b", "y"}}, {.maximumSize = 40}).error.error, 6);
    EXPECT_EQ(Make(maker, {{"n", Noise(40000, 1)}}, {.failOnIncompressible = 1}).error.error, 8);
    maker.changeNext = [](QvCabinetDescription& next) { next.dataReserve = 1; };
    EXPECT_EQ(Make(maker, {{"n", Noise(40000, 1)}}, {.maximumSize = 30000}).error.error, 6);
}

}  // namespace
