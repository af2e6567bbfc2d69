// What other programs make of our archives, and we of theirs. A program that is missing is left out.

#include <gmock/gmock.h>

#include <cstdlib>
#include <map>

#include "platform/Path.h"
#include "qvcommon/Cabinet.h"
#include "qvcommon/framework/File.h"
#include "qvcommon/framework/Process.h"
#include "tests/support/Noise.h"
#include "tests/support/TempFolder.h"

namespace {

namespace fs = std::filesystem;

/// -1 when there is no such program.
int StatusOf(const char* program, const CStringArray& arguments) {
    CProcess process;
    try {
        process.Start(program, arguments, CProcess::pipeOutput);
    } catch (CFileException* error) {
        error->Delete();
        return -1;
    }
    for (CString line; process.Output().ReadString(line);) continue;
    return process.Wait();
}

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

    std::string At(const std::string& name) const { return folder.Native(name).string(); }
    void ExpectFiles(const std::string& where) {
        for (const auto& [name, content] : m_files)
            EXPECT_TRUE(folder.Read(where + "/" + name) == content) << where << "/" << name;
    }

    TempFolder folder;
    std::map<std::string, std::string> m_files;
};

TEST_F(CabinetPeers, ReadWhatWeWrite) {
    class SmallCab : public CMakeCab {
        DWORD GetMediaSize() const override { return 50000; }
    };
    CMakeCab::DirectoryToCab(folder / "in", folder / "one", 1);
    SmallCab().Pack(folder / "in", folder / "set", 1);
    ASSERT_TRUE(folder.Has("set1.cab"));
    int programs = 0;
    const auto expect = [&](const char* program, const CStringArray& arguments, const char* out) {
        const int status = StatusOf(program, arguments);
        if (status == -1) return;
        ++programs;
        EXPECT_EQ(status, 0) << program << " " << arguments[0];
        if (out) ExpectFiles(out);
    };
    for (const char* const archive : {"one", "set"}) {
        const std::string cabinet = At(std::string(archive) + ".cab"), out = std::string(archive) + " ";
        expect("cabextract", {"-q", "-t", cabinet}, nullptr);
        expect("cabextract", {"-q", "-d", At(out + "ce"), cabinet}, (out + "ce").c_str());
        expect("7zz", {"t", cabinet}, nullptr);
        expect("7zz", {"x", "-y", "-o" + At(out + "7z"), cabinet}, (out + "7z").c_str());
    }
    expect("gcab", {"-t", At("one.cab")}, nullptr);
    expect("gcab", {"-x", "-C", At("gc"), At("one.cab")}, "gc");
    if (programs == 0) GTEST_SKIP() << "neither cabextract, 7zz nor gcab is here";
}

TEST_F(CabinetPeers, WriteWhatWeRead) {
    int programs = 0;
    const auto expect = [&](const char* program, CStringArray arguments, const char* cabinet) {
        for (const auto& [name, content] : m_files) arguments.Add(At("in/" + name));
        const int status = StatusOf(program, arguments);
        if (status == -1) return;
        ++programs;
        ASSERT_EQ(status, 0) << program;
        CReadCab reader;
        reader.SetDestPath(folder / (std::string(cabinet) + " out"));
        reader.ReadCab(folder / cabinet);
        ExpectFiles(std::string(cabinet) + " out");
    };
    expect("gcab", {"-c", "-z", "-n", At("zip.cab")}, "zip.cab");
    expect("gcab", {"-c", "-n", At("stored.cab")}, "stored.cab");
    if (qv::platform::HasDriveLetters()) expect("cabarc", {"n", At("arc.cab")}, "arc.cab");
    if (programs == 0) GTEST_SKIP() << "neither gcab nor cabarc is here";
}

TEST_F(CabinetPeers, HoldThreeGigabytes) {
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
    const int status = StatusOf("cabextract", {"-q", "-t", At("large.cab")});
    EXPECT_TRUE(status == 0 || status == -1);
}

}  // namespace
