// Archives that cannot be made or read: what the error says, what is left, what is read despite it.

#include <gmock/gmock.h>

#include "cabinet/Manifest.h"
#include "platform/Path.h"
#include "qvcommon/Cabinet.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/framework/File.h"
#include "tests/support/CabinetError.h"
#include "tests/support/CabinetOf.h"
#include "tests/support/LeftOutRecorder.h"
#include "tests/support/Noise.h"
#include "tests/support/SystemFaults.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Tool.h"
#include "tests/support/Tree.h"

namespace {

namespace fs = std::filesystem;
using namespace qv::cabinet;
using ::testing::AllOf;
using ::testing::ContainsRegex;
using ::testing::HasSubstr;
using ::testing::StartsWith;

/// The line that describes a failure, its paths relative to the folder.
std::string Described(const TempFolder& folder, const std::function<void()>& action) {
    const auto error = Raised<CCabinetException>(action);
    if (!error) return "";
    std::string line = error->Describe().AsStd();
    const std::string root = CFileUtils::GetNativePath(folder / "").AsStd();
    for (std::size_t at; (at = line.find(root)) != line.npos;) line.erase(at, root.size());
    return line;
}

class SmallCab : public CMakeCab {
public:
    int placed = 0;

private:
    DWORD GetMediaSize() const override { return 8000; }
    int FilePlaced(const QvCabinetDescription&, const char*, DWORD, BOOL) override {
        ++placed;
        return 0;
    }
};

TEST(CabinetFailure, ReadsSetFromAnyPartIgnoringCase) {
    const TempFolder folder;
    fs::create_directories(folder.Native("in/sub"));
    for (const char* const name : {"a", "b", "c", "sub/d"})
        folder.Write("in/" + std::string(name), Noise(9000, name[0]));
    SmallCab maker;
    maker.Pack(folder / "in", folder / "Set", 1);
    EXPECT_GT(maker.placed, 5) << "members in two cabinets count twice";
    for (const std::string number : {"", "1", "2", "3", "4"})
        fs::rename(folder.Native("Set" + number + ".cab"), folder.Native("sET" + number + ".CAB"));
    for (const char* const part : {"sET.CAB", "sET1.CAB", "sET3.CAB", "sET4.CAB"}) {
        CReadCab::CabToDirectory(folder / "out", folder / part);
        EXPECT_EQ(ReadTree(folder.Native("out")), ReadTree(folder.Native("in"))) << part;
        fs::remove_all(folder.Native("out"));
        EXPECT_EQ(ToolStatus({"unpack", "--no-manifest", folder / part, folder / "out"}), 0);
        EXPECT_TRUE(folder.Read("out/a") == folder.Read("in/a")) << part;
        fs::remove_all(folder.Native("out"));
    }
    fs::remove(folder.Native("sET2.CAB"));
    for (const char* const part : {"sET.CAB", "sET4.CAB"})
        EXPECT_THAT(Described(folder, [&] { CReadCab::CabToDirectory(folder / "out", folder / part); }),
                    AllOf(StartsWith("Set2.cab: "), HasSubstr("Cabinet not found: ")))
            << part;
    folder.Write("sET2.CAB", folder.Read("sET3.CAB"));
    EXPECT_EQ(CabinetError([&] { CReadCab::FindFirstCabinet(folder / "sET3.CAB"); }), 10);
    EXPECT_EQ(CabinetError([&] { CReadCab::CabToDirectory(folder / "out", folder / "sET.CAB"); }), 10);
}

TEST(CabinetFailure, NamesArchiveMemberAndCause) {
    const TempFolder folder;
    MakeTree(folder.Native(), {"in/sub/file", "text"});
    CMakeCab::DirectoryToCab(folder / "in", folder / "good", 1);
    const auto unpack = [&](const char* archive) {
        return Described(folder, [&] { CReadCab::CabToDirectory(folder / "out", folder / archive); });
    };
    EXPECT_THAT(unpack("none.cab"), ContainsRegex("^none.cab: Cabinet not found: ."));
    EXPECT_EQ(unpack("text"), "text: Not a cabinet");
    {
        const SystemFaults full(SystemFaults::AlwaysNaming(qv::platform::FileCause::DiskFull));
        EXPECT_THAT(unpack("good.cab"), ContainsRegex("^good.cab: out.sub.file: Failure writing to target file: ."));
    }
    folder.Write("lzx.cab", qv::test::CabinetOf({{kStored, {"ab"}, {{"x", 2}}},
                                                 {kQuantum, {"zz"}, {{"quantum", 2}}},
                                                 {kQuantum, {"zz"}, {{"more", 2}}}}));
    Recorder recorder;
    CReadCab reader;
    reader.SetDestPath(folder / "bare");
    reader.SetLeftOut(&recorder);
    EXPECT_EQ(Described(folder, [&] { reader.ReadCab(folder / "lzx.cab"); }),
              "lzx.cab: quantum: Unknown compression type (Quantum); 1 other members as well");
    EXPECT_EQ(recorder.names, (std::vector<std::string>{"0 quantum", "0 more"}));
    EXPECT_EQ(ReadTree(folder.Native("bare")), (std::map<std::string, std::string>{{"x", "ab"}}));

    folder.Write("bare/sub", "a file where a folder is needed");
    EXPECT_THAT(Described(folder, [&] { CReadCab::CabToDirectory(folder / "bare", folder / "good.cab"); }),
                ContainsRegex("^good.cab: bare.sub.*: ."));

    CMakeCab maker;
    maker.SetDestPath(folder / "");
    maker.SetName("new");
    maker.CreateNewCab();
    EXPECT_THAT(Described(folder, [&] { maker.AddFile(folder / "in\\missing"); }),
                ContainsRegex("^new.cab: in.missing: Failure opening file to be stored in cabinet: ."));
    const auto makeWith = [&](const CStringArray& manifest) {
        maker.CreateNewCab();
        maker.AddManifest(manifest);
        maker.AddFile(folder / "in\\sub\\file");
        maker.Commit();
    };
    makeWith({"*ROOT*file", "*ROOT*sub\\missing"});
    Recorder missing;
    CReadCab unpacker;
    unpacker.SetLeftOut(&missing);
    unpacker.Unpack(folder / "less", folder / "new.cab");
    EXPECT_EQ(missing.names, std::vector<std::string>{"0 missing"});
    makeWith({"*ROOT*sub\\a:b/../c"});
    EXPECT_THAT(Described(folder, [&] { unpacker.Unpack(folder / "less", folder / "new.cab"); }),
                ContainsRegex("^new.cab: less.sub.a:b.*c: Corrupt cabinet"));
    std::error_code error;
    fs::create_symlink("nowhere", folder.Native("in/sub/dangling"), error);
    if (error) return;
    EXPECT_THAT(Described(folder, [&] { CMakeCab::DirectoryToCab(folder / "in", folder / "p", 1); }),
                ContainsRegex("^p.cab: in.sub.dangling: Failure opening file"));
}

TEST(CabinetFailure, RejectsMissingSourcesAndEmptyNames) {
    const TempFolder folder;
    MakeTree(folder.Native(), {"in/file"});
    const auto pack = [&](const CString& source, const CString& archive) {
        const auto before = ReadTree(folder.Native());
        const auto error = Raised<CFileException>([&] { CMakeCab::DirectoryToCab(source, archive, 1); });
        EXPECT_EQ(ReadTree(folder.Native()), before);
        return error ? error->m_cause : 0;
    };
    EXPECT_EQ(pack(folder / "none", folder / "a"), CFileException::badPath);
    EXPECT_EQ(pack(folder / "in\\file", folder / "a"), CFileException::badPath);
    for (const CString& name : {CString(""), folder / "o.d\\", folder / "in\\"})
        EXPECT_EQ(pack(folder / "in", name), CFileException::badPath) << name.AsStd();
    class Unnamed : public CMakeCab {
        BOOL GetNextCab(QvCabinetDescription&, DWORD) override { return 0; }
    } unnamed;
    unnamed.SetDestPath(folder / "");
    EXPECT_EQ(CabinetError([&] { unnamed.CreateNewCab(); }), 7);
    EXPECT_EQ(CabinetError([&] { unnamed.Commit(); }), 6);
    CMakeCab maker;
    maker.SetName("n");
    maker.SetDestPath(folder / "nowhere");
    EXPECT_EQ(CabinetError([&] { maker.CreateNewCab(); }), 4);
    maker.SetDestPath(folder / "");
    maker.CreateNewCab();
    EXPECT_EQ(CabinetError([&] { maker.AddFile(folder / "missing"); }), 1);
    EXPECT_FALSE(folder.Has("n.cab"));
}

/// Otherwise a damaged size would unpack as a shorter file without an error.
TEST(CabinetFailure, RejectsUnderstatedMemberSizes) {
    const TempFolder folder;
    fs::create_directories(folder.Native("in"));
    for (const char* const name : {"m1", "m2", "m3"}) folder.Write(std::string("in/") + name, std::string(40000, 'm'));
    CMakeCab::DirectoryToCab(folder / "in", folder / "whole", 1);
    const std::string whole = folder.Read("whole.cab");
    EXPECT_EQ(CabinetError([&] { CReadCab::CabToDirectory(folder / "out", folder / "whole.cab"); }), 0);
    for (const char* const name : {"m1", "m2", "m3"})
        for (const unsigned size : {0u, 1u, 39999u}) {
            std::string cut = whole;
            Put32(reinterpret_cast<unsigned char*>(&cut[cut.find(std::string(name) + '\0') - kFileSize]), size);
            folder.Write("cut.cab", cut);
            EXPECT_EQ(CabinetError([&] { CReadCab::CabToDirectory(folder / "out", folder / "cut.cab"); }), 4)
                << name << " " << size;
        }
}

TEST(CabinetFailure, DeletesStaleManifests) {
    const TempFolder folder;
    const fs::path stale = folder.Native("CabManQSTALE.xml"), fresh = folder.Native("CabManQFRESH.xml"),
                   other = folder.Native("CabManOther.xml");
    for (const fs::path& path : {stale, fresh, other}) std::ofstream(path) << "left";
    for (const fs::path& path : {stale, other})
        fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(25));
    RemoveStaleManifests(folder / "");
    EXPECT_FALSE(fs::exists(stale));
    EXPECT_TRUE(fs::exists(fresh));
    EXPECT_TRUE(fs::exists(other));
}

TEST(CabinetFailure, NewFilesRespectUmask) {
    if (qv::platform::HasDriveLetters()) GTEST_SKIP() << "access lists decide here";
    const TempFolder folder;
    MakeTree(folder.Native(), {"in/run"});
    fs::permissions(folder.Native("in/run"), fs::perms(0777));
    for (const auto& [umask, mode] : {std::pair("022", 0644), {"077", 0600}, {"002", 0664}}) {
        const std::string script =
            "cd \"$1\" && umask " + std::string(umask) + " && \"$0\" pack in p.cab && \"$0\" unpack p.cab out";
        ASSERT_EQ(RunProgram("sh", {"-c", script, ToolPath(), CString(folder.Native().string())}).status, 0);
        for (const char* const name : {"p.cab", "out/run"})  // both replace one from the second time on
            EXPECT_EQ(fs::status(folder.Native(name)).permissions(), fs::perms(mode)) << name << " " << umask;
    }
}

}  // namespace
