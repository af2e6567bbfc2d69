#include "qvcommon/Checksum.h"

#include <gtest/gtest.h>

#include "core/Crc32.h"
#include "qvcommon/FileUtils.h"
#include "tests/support/SystemFaults.h"
#include "tests/support/TempFolder.h"

namespace {

// Bit by bit, as the standard defines it.
unsigned long PlainCrc(std::string_view data) {
    std::uint32_t crc = 0xFFFFFFFF;
    for (const char c : data) {
        crc ^= static_cast<unsigned char>(c);
        for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ (crc & 1 ? 0xEDB88320 : 0);
    }
    return ~crc;
}

std::string Bytes(std::size_t size) {
    std::string bytes;
    for (std::size_t i = 0; i < size; ++i) bytes += static_cast<char>(i * i * 31 + (i >> 5));
    return bytes;
}

TEST(Checksum, MatchesReferenceCrc32) {
    EXPECT_EQ(MemCRC("123456789", 9), 0xCBF43926u);
    EXPECT_EQ(MemCRC("x", 0), 0u);
    EXPECT_EQ(MemCRC("x", -1), 0u);
    // Lengths and places around each step of the fast ways.
    const std::string bytes = Bytes(5000);
    for (std::size_t size = 1; size < 1100; ++size)
        for (const std::size_t at : {0, 1, 13}) {
            const std::string_view part = std::string_view(bytes).substr(at, size);
            const unsigned long crc = PlainCrc(part);
            ASSERT_EQ(MemCRC(part.data(), static_cast<int>(size)), crc) << size;
            ASSERT_EQ(qv::Crc32ByTables(0, part.data(), size), crc) << size;
            ASSERT_EQ(qv::Crc32(qv::Crc32(0, part.data(), size / 3), part.data() + size / 3, size - size / 3), crc)
                << size;
        }
}

TEST(Checksum, FileCrcMatchesContentOrIsZero) {
    const TempFolder folder;
    for (const std::size_t size : {std::size_t{0}, std::size_t{9}, std::size_t{300001}, std::size_t{9 << 20}}) {
        const std::string bytes = Bytes(size);
        folder.Write("x", bytes);
        EXPECT_EQ(FileCRC(folder / "x"), MemCRC(bytes.data(), static_cast<int>(size))) << size;
        const std::string_view first = std::string_view(bytes).substr(0, size / 3);
        EXPECT_EQ(ContinueCRC(MemCRC(first), std::string_view(bytes).substr(first.size())), MemCRC(bytes)) << size;
    }
    for (const char* const path : {"none", "", "none\\x"}) EXPECT_EQ(FileCRC(folder / path), 0u);
    int reads = 0;
    const SystemFaults faults([&](const SystemFaults::Call& call) {
        const bool fails = call.kind == qv::platform::CallKind::Read && ++reads == 3;
        return fails ? SystemFaults::Of(qv::platform::FileCause::HardIO) : SystemFaults::Fault{};
    });
    EXPECT_EQ(FileCRC(folder / "x"), 0u);
    EXPECT_EQ(reads, 3);
}

TEST(Checksum, ManyFilesAreReportedInOrder) {
    struct Log : IChecksums {
        std::vector<unsigned long> crcs;
        std::string failures;
        std::uint64_t bytes = 0;
        void OnBytes(std::uint64_t count) override { bytes += count; }
        void OnChecksum(int index, unsigned long crc, CFileException* failure) override {
            EXPECT_EQ(index, static_cast<int>(crcs.size()));
            crcs.push_back(crc);
            if (failure) failures += CFileUtils::GetFilenameFromPath(failure->m_strFileName).AsStd() + ";";
        }
    } log;
    const TempFolder folder;
    CStringArray paths;
    std::vector<unsigned long> expected;
    std::uint64_t bytes = 0;
    // Two of them are large enough for several threads, with and without a piece that is not whole.
    for (const std::size_t size : {1u, 32u << 20, 0u, 70000u, (37u << 20) + 13, 5u}) {
        const std::string name = std::to_string(size), content = Bytes(size);
        folder.Write(name, content);
        for (int i = 0; i < (size < 100 ? 20 : 1); ++i) {
            paths.Add(folder / name.c_str());
            expected.push_back(MemCRC(content));
            bytes += size;
        }
        paths.Add(folder / "none");
        expected.push_back(0);
    }
    FileCRCs(paths, log);
    EXPECT_EQ(log.crcs, expected);
    EXPECT_EQ(log.bytes, bytes);
    EXPECT_EQ(log.failures, "none;none;none;none;none;none;");
}

}  // namespace
