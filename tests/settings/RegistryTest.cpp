#include <gmock/gmock.h>

#include "platform/Registry.h"
#include "qvcommon/AppRegistry.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/ProfileStore.h"
#include "qvcommon/framework/File.h"
#include "tests/support/FileFailure.h"
#include "tests/support/ScopedCodePage.h"
#include "tests/support/ScopedProfile.h"

namespace {

using testing::UnorderedElementsAre;
namespace fs = std::filesystem;

/// An application whose settings are deleted afterwards.
class RegistryTest : public testing::Test {
protected:
    RegistryTest() { SetRegistryKey("QvCommonTests"); }
    ~RegistryTest() override { CRegHelper("Software\\QvCommonTests\\QvCommonTests").DeleteKey(); }

    const TempFolder m_folder;
    ScopedProfile m_app{m_folder.Native().string()};
};

TEST_F(RegistryTest, ConvertsValuesBetweenTypes) {
    CCommonAppRegistry key("Types");
    key.SetString("text", "a,\"b c\"");
    key.SetString("digits", "42");
    key.SetInteger("number", 4294967295u);
    key.SetBytes("bytes", std::string_view("\0\x42\xFF", 3));
    key.SetList("list", {"1", "b,c"});
    key.SetString("", "default");
    // The number is -1, and the bytes are null, where the value has none.
    using Row = std::tuple<const char*, const char*, std::int64_t, const char*, CStringArray>;
    for (const auto& [name, text, number, bytes, list] :
         {Row{"text", "a,\"b c\"", -1, nullptr, {"a", "b c"}}, Row{"Digits", "42", 42, "B", {"42"}},
          Row{"number", "4294967295", 4294967295, "B\x94\x96\x72\x95", {"4294967295"}},
          Row{"list", "1,\"b,c\"", -1, nullptr, {"1", "b,c"}}, Row{"", "default", -1, nullptr, {"default"}}}) {
        SCOPED_TRACE(name);
        CString readText, readBytes = "left";
        DWORD readNumber = 7;
        CStringArray readList;
        EXPECT_TRUE(key.GetString(name, readText) && key.GetList(name, readList));
        EXPECT_EQ(readText, text);
        EXPECT_EQ(readList, list);
        EXPECT_EQ(key.GetInteger(name, readNumber), number >= 0);
        EXPECT_EQ(readNumber, number >= 0 ? static_cast<DWORD>(number) : 7);
        EXPECT_EQ(key.GetBytes(name, readBytes), bytes != nullptr);
        EXPECT_EQ(readBytes, bytes ? bytes : "left");
    }
    CString bytes;
    EXPECT_TRUE(key.GetBytes("bytes", bytes));
    EXPECT_EQ(bytes, std::string_view("\0\x42\xFF", 3));
    EXPECT_TRUE(key.GetString("bytes", bytes));
    EXPECT_EQ(bytes, "0042FF");
    EXPECT_FALSE(key.GetString("none", bytes));
    EXPECT_THAT(key.GetValueNames().AsStd(), UnorderedElementsAre("text", "digits", "number", "bytes", "list", ""));
}

TEST_F(RegistryTest, SharesApplicationProfile) {
    CCommonAppRegistry("Bars").SetString("group", "a");
    EXPECT_EQ(m_app.GetProfileString("Bars", "group"), "a");
    ProfileStore().SetInteger("Bars", "size", 5);
    DWORD size = 0;
    EXPECT_TRUE(CCommonAppRegistry("bars").GetInteger("SIZE", size));
    EXPECT_EQ(size, 5u);
    CCommonAppRegistry("Bars").SetInteger("width", 640);
    CCommonAppRegistry("Bars").SetBytes("colour", "\xC0\xFE");
    EXPECT_EQ(ProfileStore().GetInteger("Bars", "width", 0), 640);
    EXPECT_EQ(m_app.GetProfileString("Bars", "colour"), "C0FE");
    EXPECT_THAT(ProfileStore().GetEntries("Bars").AsStd(), UnorderedElementsAre("group", "size", "width", "colour"));
    if (!m_app.IsFile()) GTEST_SKIP() << "access lists decide";
    CRegHelper("Software\\NewCompany\\a", CRegHelper::localMachine).SetInteger("n", 1);
    for (const auto& [name, mode] : {std::pair{"NewCompany", 0755}, {"NewCompany/a.ini", 0644}})
        EXPECT_EQ(fs::status(m_folder.Native(name)).permissions(), static_cast<fs::perms>(mode)) << "read by all users";
}

TEST_F(RegistryTest, NestedKeys) {
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

TEST_F(RegistryTest, RejectsUnstorableValues) {
    CCommonAppRegistry key("s");
    const std::string_view zero("a\0b", 3);
    CString text;
    EXPECT_FALSE(key.GetString(zero, text));
    EXPECT_TRUE(Raised<CInvalidArgException>([&] { key.SetString("n", zero); }));
    EXPECT_TRUE(Raised<CInvalidArgException>([&] { key.SetString(zero, "v"); }));
    EXPECT_TRUE(Raised<CInvalidArgException>([] { CRegHelper("").DeleteKey(); }));
    if (!m_app.IsFile()) {
        const ScopedCodePage utf8(65001);
        EXPECT_TRUE(Raised<CFileException>([&] { key.SetString("n", "\xFF"); }));
        EXPECT_TRUE(CCommonAppRegistry("").GetKeyNames().IsEmpty());
        GTEST_SKIP() << "the registry is no file";
    }
    m_folder.Write("QvCommonTests", "a file in the folder's place");
    EXPECT_EQ(FileFailureOf([&] { key.SetString("n", "v"); }).second, "Software\\QvCommonTests\\QvCommonTests\\s");
    fs::remove(m_folder.Native("QvCommonTests"));
}

TEST_F(RegistryTest, ApplicationFolders) {
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
    if (!m_app.IsFile()) GTEST_SKIP() << "these folders are the user's own";
    m_folder.Write("QvCommonTests/Other", "a file in the folder's place");
    AfxGetApp()->m_pszAppName = "Other";
    EXPECT_TRUE(Raised<CFileException>(&GetDataDirectory));
}

}  // namespace
