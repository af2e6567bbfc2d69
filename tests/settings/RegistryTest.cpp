#include <gmock/gmock.h>

#include "platform/Registry.h"
#include "qvcommon/AppRegistry.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/ProfileStore.h"
#include "qvcommon/framework/File.h"
#include "tests/support/FileFailure.h"
#include "tests/support/ScopedProfile.h"

namespace {

using testing::UnorderedElementsAre;

/// An application of its own, whose settings are gone afterwards.
class RegistryTest : public testing::Test {
protected:
    RegistryTest() { SetRegistryKey("QvCommonTests"); }
    ~RegistryTest() override { CRegHelper("Software\\QvCommonTests\\QvCommonTests").DeleteKey(); }

    const TempFolder m_folder;
    ScopedProfile m_app{m_folder.Native().string()};
};

TEST_F(RegistryTest, ValuesAreReadAsEveryTypeThatTheyAre) {
    CCommonAppRegistry key("Types");
    key.SetString("text", "a,\"b c\"");
    key.SetString("digits", "42");
    key.SetInteger("number", 4294967295u);
    key.SetBytes("bytes", std::string_view("\0\x42\xFF", 3));
    key.SetList("list", {"1", "b,c"});
    key.SetString("", "default");
    const struct {
        const char *name, *text;
        std::int64_t number;  // -1 for none
        const char* bytes;    // null for none
        CStringArray list;
    } cases[] = {{"text", "a,\"b c\"", -1, nullptr, {"a", "b c"}},
                 {"Digits", "42", 42, "B", {"42"}},
                 {"number", "4294967295", 4294967295, "B\x94\x96\x72\x95", {"4294967295"}},
                 {"list", "1,\"b,c\"", -1, nullptr, {"1", "b,c"}},
                 {"", "default", -1, nullptr, {"default"}}};
    for (const auto& c : cases) {
        CString text = "left", bytes = "left";
        DWORD number = 7;
        CStringArray list;
        EXPECT_TRUE(key.GetString(c.name, text));
        EXPECT_EQ(text, c.text);
        EXPECT_EQ(key.GetInteger(c.name, number), c.number >= 0) << c.name;
        EXPECT_EQ(number, c.number >= 0 ? static_cast<DWORD>(c.number) : 7) << c.name;
        EXPECT_EQ(key.GetBytes(c.name, bytes), c.bytes != nullptr) << c.name;
        EXPECT_EQ(bytes, c.bytes ? c.bytes : "left") << c.name;
        EXPECT_TRUE(key.GetList(c.name, list));
        EXPECT_EQ(list, c.list) << c.name;
    }
    CString bytes;
    EXPECT_TRUE(key.GetBytes("bytes", bytes));
    EXPECT_EQ(bytes, std::string_view("\0\x42\xFF", 3));
    EXPECT_TRUE(key.GetString("bytes", bytes));
    EXPECT_EQ(bytes, "0042FF");
    EXPECT_FALSE(key.GetString("none", bytes));
    EXPECT_THAT(key.GetValueNames().AsStd(), UnorderedElementsAre("text", "digits", "number", "bytes", "list", ""));
}

TEST_F(RegistryTest, IsTheProfileOfTheApplication) {
    CCommonAppRegistry("Bars").SetString("group", "a");
    EXPECT_EQ(m_app.GetProfileString("Bars", "group"), "a");
    ProfileStore().SetInteger("Bars", "size", 5);
    DWORD size = 0;
    EXPECT_TRUE(CCommonAppRegistry("bars").GetInteger("SIZE", size));
    EXPECT_EQ(size, 5u);
}

TEST_F(RegistryTest, KeysHoldKeys) {
    for (const char* const name : {"A", "A\\B", "A\\B\\C", "AB"}) CCommonAppRegistry(name).SetInteger("n", 1);
    EXPECT_THAT(CCommonAppRegistry("").GetKeyNames().AsStd(), UnorderedElementsAre("A", "AB"));
    EXPECT_THAT(CCommonAppRegistry("a").GetKeyNames().AsStd(), UnorderedElementsAre("B"));
    CCommonAppRegistry("A\\B\\").DeleteValue("n");
    EXPECT_THAT(CCommonAppRegistry("A\\B").GetValueNames().AsStd(), UnorderedElementsAre());
    for (int again = 0; again < 2; ++again) CCommonAppRegistry("A").DeleteKey();
    EXPECT_THAT(CCommonAppRegistry("").GetKeyNames().AsStd(), UnorderedElementsAre("AB"));

    CRegHelper other("Software\\QvCommonTests.other");  // of no application
    other.SetString("e", "v");
    CString text;
    EXPECT_TRUE(CRegHelper("software\\qvcommontests.OTHER").GetString("E", text));
    EXPECT_EQ(text, "v");
    other.DeleteKey();
    EXPECT_FALSE(other.GetString("e", text));
}

TEST_F(RegistryTest, RefusesWhatItCannotKeep) {
    CCommonAppRegistry key("s");
    const std::string_view zero("a\0b", 3);
    CString text;
    EXPECT_FALSE(key.GetString(zero, text));
    EXPECT_TRUE(Raised<CInvalidArgException>([&] { key.SetString("n", zero); }));
    EXPECT_TRUE(Raised<CInvalidArgException>([&] { key.SetString(zero, "v"); }));
    EXPECT_TRUE(Raised<CInvalidArgException>([] { CRegHelper("").DeleteKey(); }));
    if (!m_app.IsFile()) GTEST_SKIP() << "the registry is no file";
    m_folder.Write("QvCommonTests", "a file in the folder's place");
    EXPECT_EQ(FileFailureOf([&] { key.SetString("n", "v"); }).second, "Software\\QvCommonTests\\QvCommonTests\\s");
    std::filesystem::remove(m_folder.Native("QvCommonTests"));
}

TEST_F(RegistryTest, FoldersAreTheApplicationsOwn) {
    EXPECT_EQ(GetFriendlyName(), "QvCommonTests");
    SetFriendlyName("Tests & more");
    EXPECT_EQ(GetFriendlyName(), "Tests & more");
    SetFriendlyName("");
    EXPECT_TRUE(CFileUtils::IsDirectory(GetApplicationDirectory()));
    EXPECT_TRUE(CFileUtils::IsDirectory(GetTemporaryDirectory()));
    for (const auto folder : {&GetDataDirectory, &GetSettingsDirectory, &GetCacheDirectory}) {
        const CString path = folder();
        EXPECT_TRUE(CFileUtils::IsDirectory(path)) << path.AsStd();
        EXPECT_EQ(path.Right(29), "\\QvCommonTests\\QvCommonTests\\");
    }
}

}  // namespace
