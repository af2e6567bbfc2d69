// Other programs read the archives that the library writes, and the library reads theirs. A missing program is left out.

#include <gmock/gmock.h>

#include <cstdlib>
#include <map>

#include "platform/Path.h"
#include "qvcommon/Cabinet.h"
#include "tests/support/Noise.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Tool.h"

namespace {

namespace fs = std::filesystem;

class CabinetPeers : public ::testing::Test {
protected:
    CabinetPeers() {
        std::string text;
        for (int i = 0; i < 9000; ++i) text += "line " + std::to_string(i) + "\n";
        m_files = {
            {"empty", ""}, {"noise.bin", Noise(90000, 7)}, {"text.txt", text}, {"zeros", std::string(200000, '\0')}};
        fs::create_directory(folder.Native("in"));
        for (const auto& [name, content] : m_files) folder.Write("in/" + name, content);
    }

    CString At(const std::string& name) const { return CString(folder.Native(name).string()); }
    /// Compares the files in "out" with those in "in", and deletes them.
    void ExpectFiles(const std::string& from) {
        for (const auto& [name, content] : m_files)
            EXPECT_TRUE(folder.Read("out/" + name) == content) << from << ": " << name;
        fs::remove_all(folder.Native("out"));
    }

    TempFolder folder;
    std::map<std::string, std::string> m_files;
};

TEST_F(CabinetPeers, OtherProgramsReadWrittenCabinets) {
    class SmallCab : public CMakeCab {
        DWORD GetMediaSize() const override { return 50000; }
    };
    CMakeCab::DirectoryToCab(folder / "in", folder / "one", 1);
    SmallCab().Pack(folder / "in", folder / "set", 1);
    ASSERT_TRUE(folder.Has("set1.cab"));
    const CString one = At("one.cab"), set = At("set.cab"), out = At("out");
    int programs = 0;
    for (const auto& [program, arguments] : {std::pair<const char*, CStringArray>{"cabextract", {"-q", "-d", out, one}},
                                             {"cabextract", {"-q", "-d", out, set}},
                                             {"7zz", {"x", "-y", "-o" + out, one}},
                                             {"7zz", {"x", "-y", "-o" + out, set}},
                                             {"gcab", {"-x", "-C", out, one}}}) {
        if (!HasProgram(program)) continue;
        ++programs;
        EXPECT_EQ(RunProgram(program, arguments).status, 0) << program;
        ExpectFiles(program);
    }
    if (programs == 0) GTEST_SKIP() << "neither cabextract, 7zz nor gcab is here";
}

TEST_F(CabinetPeers, ReadsCabinetsOfOtherPrograms) {
    int programs = 0;
    for (const auto& [program, options] : {std::pair<const char*, CStringArray>{"gcab", {"-c", "-z", "-n"}},
                                           {"gcab", {"-c", "-n"}},
                                           {"cabarc", {"n"}}}) {
        const bool elsewhere = *program == 'c' && !qv::platform::HasDriveLetters();
        if (elsewhere || !HasProgram(program)) continue;
        ++programs;
        CStringArray arguments = options;
        arguments.Add(At("theirs.cab"));
        for (const auto& [name, content] : m_files) arguments.Add(At("in/" + name));
        ASSERT_EQ(RunProgram(program, arguments).status, 0) << program;
        CReadCab reader;
        reader.SetDestPath(folder / "out");
        reader.ReadCab(folder / "theirs.cab");
        ExpectFiles(program);
    }
    if (programs == 0) GTEST_SKIP() << "neither gcab nor cabarc is here";
}

TEST_F(CabinetPeers, RoundtripsThreeGigabytes) {
    if (!std::getenv("QV_TEST_LARGE")) GTEST_SKIP() << "QV_TEST_LARGE is not set";
    for (const char* const name : {"in/large 1", "in/large 2"}) {
        folder.Write(name, "start");
        fs::resize_file(folder.Native(name), std::uintmax_t{3} << 29);
    }
    CMakeCab::DirectoryToCab(folder / "in", folder / "large", 1);
    QvCabinetInfo info;
    ASSERT_NE(CReadCab().GetCabInfo(folder / "large.cab", info), 0);
    EXPECT_EQ(info.folders, 2) << "a folder ends before its blocks are 65535";
    CReadCab::CabToDirectory(folder / "out", folder / "large.cab");
    EXPECT_EQ(fs::file_size(folder.Native("out/large 2")), std::uintmax_t{3} << 29);
    if (!HasProgram("cabextract")) GTEST_SKIP() << "cabextract is not here";
    EXPECT_EQ(RunProgram("cabextract", {"-q", "-t", At("large.cab")}).status, 0);
}

}  // namespace
