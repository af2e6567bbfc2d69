#include "qvcommon/ProfileStore.h"

#include <gmock/gmock.h>

#include <limits>

#include "platform/Path.h"
#include "qvcommon/framework/File.h"
#include "tests/support/Child.h"
#include "tests/support/FileFailure.h"
#include "tests/support/ScopedLocale.h"
#include "tests/support/ScopedProfile.h"
#include "tests/support/TempFolder.h"

using namespace std::string_view_literals;

namespace {

// Its key is this file's own: other tests delete theirs, perhaps while these run.
constexpr const char* kCompany = "QvCommonStores";

void ExpectTypesToComeBack(ProfileStore& store) {
    using Limits = std::numeric_limits<int>;
    for (const int value : {0, -1, Limits::max(), Limits::min()}) {
        store.SetInteger("Types", "integer", value);
        EXPECT_EQ(store.GetInteger("types", "INTEGER", 7), value);
    }
    for (const double value : {0.1, -2.5e-300, 1e22, std::numeric_limits<double>::infinity()}) {
        store.SetDouble("Types", "double", value);
        EXPECT_EQ(store.GetDouble("Types", "double", 7), value);
    }
    using List = CStringArray;
    for (const List& value : {List{}, List{""}, List{"", ""}, List{"a,b", "\"", " ", "c"}}) {
        store.SetList("Types", "list", value);
        EXPECT_EQ(store.GetList("Types", "list", {"x"}), value);
    }
    for (const BOOL value : {1, 0}) {
        store.SetBool("Types", "bool", value);
        EXPECT_EQ(store.GetBool("Types", "bool", !value), value);
    }
    const COleDateTime date(2004, 5, 5, 14, 3, 7);
    store.SetDate("Types", "date", date);
    EXPECT_EQ(store.GetDate("Types", "date"), date);
    store.SetBytes("Types", "bytes", "\0\xFFx"sv);
    EXPECT_EQ(store.GetBytes("Types", "bytes", "x"), "\0\xFFx"sv);
    EXPECT_THAT(store.GetEntries("TYPES").AsStd(),
                testing::UnorderedElementsAre("integer", "double", "list", "bool", "date", "bytes"));
    EXPECT_THAT(store.GetSections().AsStd(), testing::Contains("Types"));
    store.DeleteEntry("Types", "integer");
    EXPECT_FALSE(store.HasEntry("Types", "integer"));
    EXPECT_TRUE(store.HasEntry("Types", "double"));
    store.DeleteSection("Types");
    EXPECT_FALSE(store.HasEntry("Types", "double"));
}

TEST(ProfileStore, RoundtripsTypesInFilesAndProfiles) {
    const ScopedLocale german(GermanLocale());  // numbers with a comma
    const TempFolder folder;
    ProfileStore file(folder / "a.ini");
    ExpectTypesToComeBack(file);
    for (const char* const company : {"", kCompany}) {
        ScopedProfile app(folder.Native("new").string());
        if (*company) app.SetRegistryKey(company);
        ProfileStore profile;
        ExpectTypesToComeBack(profile);
        EXPECT_EQ(profile.GetFile().IsEmpty(), !app.IsFile());
        profile.SetString("Bar", "e", "of the bars");
        EXPECT_EQ(app.GetProfileString("Bar", "e"), "of the bars");
        profile.DeleteSection("Bar");
    }
}

TEST(ProfileStore, InvalidValuesReturnDefault) {
    const TempFolder folder;
    folder.Write("a.ini",
                 "[s]\nempty=\ntext=12a\nbig=2147483648\nhex=0x10\nodd=ABC\nword=maybe\nplus= +5 \nsign=+-5\nyes=ON\n"
                 "quoted=\" 1 \"\n");
    const ProfileStore store(folder / "a.ini");
    for (const char* const entry : {"empty", "text", "big", "hex", "odd", "word", "sign", "none"}) {
        EXPECT_EQ(store.GetInteger("s", entry, -7), -7) << entry;
        EXPECT_EQ(store.GetBool("s", entry, 7), 7) << entry;
    }
    for (const char* const entry : {"empty", "word", "none"})
        EXPECT_EQ(store.GetDate("s", entry, COleDateTime(1.0)), COleDateTime(1.0)) << entry;
    for (const char* const entry : {"text", "odd", "word", "none"}) EXPECT_EQ(store.GetDouble("s", entry, .5), .5);
    for (const char* const entry : {"text", "hex", "odd", "none"}) EXPECT_EQ(store.GetBytes("s", entry, "x"), "x");
    EXPECT_EQ(store.GetInteger("s", "plus") + store.GetInteger("s", "quoted") + store.GetBool("s", "yes"), 7);
    EXPECT_EQ(store.GetString("s", "empty", "x") + store.GetString("s", "none", "x"), "x");
}

TEST(ProfileStore, PreservesUnchangedContent) {
    const TempFolder folder;
    const std::string head = "\xEF\xBB\xBF; by hand\r\nstray\r\n\r\n[One]\r\n# first\r\nb = 1\r\n";
    const std::string tail = "\r\n[one]\r\nlater=never read\r\n[ Two ]\r\n\xFF\xFE\x01=\x02\r\n[";
    folder.Write("a.ini", head + "a=old\r\n" + tail);
    ProfileStore store(folder / "a.ini");
    EXPECT_THAT(store.GetSections().AsStd(), testing::ElementsAre("One", "Two", ""));
    EXPECT_THAT(store.GetEntries("ONE").AsStd(), testing::ElementsAre("b", "a"));
    EXPECT_EQ(store.GetString("two", "\xFF\xFE\x01"), "\x02");
    store.SetString("one", "a", "new");
    EXPECT_EQ(folder.Read("a.ini"), head + "a=new\n" + tail);
    folder.Write("a.ini", "[one]\nb=2\n");
    EXPECT_EQ(store.GetInteger("One", "b"), 2) << "another program's change is seen at once";
}

TEST(ProfileStore, RaisesWhenValueCannotBeStored) {
    const TempFolder folder;
    folder.Write("large.ini", "[s]\ne=1\n");
    std::filesystem::resize_file(folder.Native("large.ini"), (16 << 20) + 1);
    std::filesystem::create_directory(folder.Native("folder"));
    using Row = std::tuple<const char*, int>;
    for (const auto& [name, cause] :
         {Row{"large.ini", CFileException::invalidFile}, Row{"folder", CFileException::accessDenied},
          Row{"none/a.ini", CFileException::badPath}}) {
        ProfileStore store(folder / name);
        EXPECT_EQ(FileFailureOf([&] { store.SetString("s", "e", "2"); }), FileFailure(cause, folder / name));
        EXPECT_EQ(store.GetString("s", "e", "default"), "default") << name;
    }
    EXPECT_EQ(std::filesystem::file_size(folder.Native("large.ini")), (16u << 20) + 1);

    ProfileStore store(folder / "a.ini");
    EXPECT_TRUE(Raised<CInvalidArgException>([&] { store.SetDate("s", "e", COleDateTime(1e9)); }));
    EXPECT_TRUE(Raised<CException>([&] {
        store.Update([&] {
            store.SetInteger("s", "e", 1);
            AfxThrowUserException();
        });
    }));
    EXPECT_FALSE(folder.Has("a.ini"));
    store.SetInteger("s", "e", 1);  // the lock is free again
    EXPECT_EQ(store.GetInteger("s", "e"), 1);
}

QV_CHILD(ChangeSettings) {
    ProfileStore store(arguments.at(2).c_str());
    ScopedProfile app(arguments.at(0));
    app.SetRegistryKey(kCompany);
    for (int i = 0; i < 40; ++i) {
        const std::string own = arguments.at(1) + std::to_string(i);
        if (!app.WriteProfileString("Battle", own.c_str(), own.c_str())) return 1;
        store.SetInteger("Own", own, i);
        store.Update([&] {
            store.SetInteger("Shared", "count", store.GetInteger("Shared", "count") + 1);
            store.Update([&] { store.SetInteger("Shared", "again", store.GetInteger("Shared", "count")); });
        });
    }
    return 0;
}

TEST(ProfileStore, ConcurrentUpdatesAreNotLost) {
    const TempFolder folder;
    folder.Write("a.ini", "; kept\n");
    CProcess writers[3];
    for (int i = 0; i < 3; ++i)
        StartChild(writers[i], "ChangeSettings", {folder.Native().string(), &"abc"[i], folder / "a.ini"});
    for (CProcess& writer : writers) EXPECT_EQ(writer.Wait(), 0);
    const ProfileStore store(folder / "a.ini");
    EXPECT_EQ(store.GetInteger("Shared", "count"), 120);
    EXPECT_EQ(store.GetInteger("Shared", "again"), 120);
    ScopedProfile app(folder.Native().string());
    app.SetRegistryKey(kCompany);
    for (const std::string writer : {"abc", "bc", "c"})
        for (int i = 0; i < 40; ++i) {
            const std::string own = writer + std::to_string(i);
            ASSERT_EQ(store.GetInteger("Own", own, -1), i);
            ASSERT_EQ(app.GetProfileString("Battle", own.c_str()), own.c_str());
        }
    app.WriteProfileString("Battle", nullptr, nullptr);  // profiles that are no files outlive the test
    EXPECT_TRUE(folder.Read("a.ini").starts_with("; kept\n"));
}

TEST(ProfileStore, LockPermissionsFollowFolder) {
    if (qv::platform::HasDriveLetters()) GTEST_SKIP() << "folders decide by access lists";
    namespace fs = std::filesystem;
    const TempFolder folder;
    for (const auto& [mode, lockMode] : {std::pair{0700, 0644}, std::pair{0770, 0664}, std::pair{0777, 0666}}) {
        fs::permissions(folder.Native(), static_cast<fs::perms>(mode));
        fs::remove(folder.Native("a.ini.lock"));
        ProfileStore(folder / "a.ini").SetInteger("s", "mode", mode);
        EXPECT_EQ(fs::status(folder.Native("a.ini.lock")).permissions(), static_cast<fs::perms>(lockMode)) << mode;
    }
    fs::remove(folder.Native("a.ini.lock"));
    fs::create_symlink("elsewhere", folder.Native("a.ini.lock"));
    EXPECT_TRUE(Raised<CFileException>([&] { ProfileStore(folder / "a.ini").SetInteger("s", "mode", 0); }));
    EXPECT_FALSE(folder.Has("elsewhere"));
}

}  // namespace
