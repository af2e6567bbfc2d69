#include "qvcommon/DllLoader.h"

#include "platform/Library.h"
#include "qvcommon/AppRegistry.h"
#include "qvcommon/Exceptions.h"
#include "tests/support/FileTests.h"

namespace {

constexpr CDllFunction<int()> kVersion{"PluginVersion"};
constexpr CDllFunction<int(int, int)> kAdd{"Add"};
constexpr CDllFunction<void()> kMissing{"NoSuchFunction"};

/// The plug-in that is built beside the tests.
CString Sample() {
    return GetApplicationDirectory() + "test-plugins\\" + qv::platform::LibraryFileNames("SamplePlugin").front();
}

template <class Action>
std::string Refused(Action action) {
    const auto error = Raised<CVorbexException>(action);
    if (!error) return "not refused";
    EXPECT_TRUE(error->GetSeverity() == 48 && error->GetCode() == 0 && !error->GetReportErrorCode());
    return error->GetText().AsStd();
}

TEST(DllInstance, CallsFunctionsByName) {
    CDllInstance first(Sample());
    EXPECT_EQ(first.GetPath(), Sample());
    EXPECT_EQ(first.Get(kAdd)(2, 3), 5);
    EXPECT_EQ(first.Find(kMissing), nullptr);
    EXPECT_EQ(Refused([&] { first.Get(kMissing); }), Sample().AsStd() + ": The function NoSuchFunction is missing.");
    first.CheckVersion(kVersion, 2, 2);
    for (const auto& versions : {std::pair(1, 1), std::pair(3, 9)})
        EXPECT_THAT(Refused([&] { first.CheckVersion(kVersion, versions.first, versions.second); }),
                    testing::HasSubstr("The version 2 is not supported"));
    CDllInstance second(std::move(first));
    EXPECT_FALSE(first.IsLoaded());
    first = std::move(second);
    first.Unload();
    EXPECT_EQ(first.Find(kAdd), nullptr);
}

TEST(DllInstance, RejectsNonLibraryFiles) {
    const TempFolder folder;
    const std::string whole = CFileUtils::ReadFile(Sample()).AsStd();
    ASSERT_GT(whole.size(), 1000u);
    folder.Write("empty", "");
    folder.Write("text", std::string(5000, 'x'));
    folder.Write("head", whole.substr(0, 200));
    fs::create_directory(folder.Native("folder"));
    CDllInstance library(Sample());
    for (const char* const name : {"empty", "text", "head", "folder", "none"}) {
        const CString path = folder / name;
        const std::string refused = Refused([&] { library.Load(path); });
        EXPECT_TRUE(refused.starts_with(path.AsStd() + ": ")) << refused;
        EXPECT_GT(refused.size(), path.AsStd().size() + 4) << "gives a reason";
        EXPECT_FALSE(library.IsLoaded());
    }
}

TEST(DllLoader, SearchesItsOwnFoldersOnly) {
    const TempFolder folder;
    const std::string file = qv::platform::LibraryFileNames("SamplePlugin").back();
    fs::copy_file(qv::platform::NativePath(Sample()), folder.Native(file));
    folder.Write(qv::platform::LibraryFileNames("text").front(), "no library");
    folder.Write("readme.txt", "");
    if (!qv::platform::HasDriveLetters())
        for (const char* const name : {"text.SO", "a:b.so"}) folder.Write(name, "no name for Load");
    const fs::path before = fs::current_path();
    fs::current_path(folder.Native());
    DllLoader loader;
    EXPECT_NE(Refused([&] { loader.Load("SamplePlugin"); }), "not refused") << "not from the current folder";
    EXPECT_NE(Refused([&] { CDllInstance(file.c_str()); }), "not refused");
    EXPECT_TRUE(Raised<CInvalidArgException>([&] { loader.AddFolder("plugins"); }));
    fs::current_path(before);

    loader.AddFolder(folder / "none");
    loader.AddFolder(folder / "");
    EXPECT_THAT(loader.GetNames().AsStd(), testing::Contains("text"));
    EXPECT_THAT(loader.GetNames().AsStd(), testing::SizeIs(2));
    for (const char* const name : {"", "a/b", "..\\a", "c:a"})
        EXPECT_TRUE(Raised<CInvalidArgException>([&] { loader.Load(name); })) << name;
    EXPECT_NE(Refused([&] { loader.Load("text"); }), "not refused");
    loader.SetVersion(kVersion, 5, 6);
    EXPECT_NE(Refused([&] { loader.Load("SamplePlugin"); }), "not refused");
    loader.SetVersion(kVersion, 1, 2);
    CDllInstance& plugin = loader.Load("SamplePlugin");
    EXPECT_EQ(&loader.Load("SamplePlugin"), &plugin);
    EXPECT_EQ(plugin.Get(kAdd)(1, 1), 2);
}

}  // namespace
