#include "qvcommon/framework/File.h"

#include <gtest/gtest.h>

#include "platform/Path.h"
#include "tests/support/FileFailure.h"
#include "tests/support/SystemFaults.h"
#include "tests/support/TempFolder.h"

namespace {

constexpr UINT kNew = CFile::modeCreate | CFile::modeReadWrite;

std::uint64_t SizeOf(const char* path) {
    CFileStatus status;
    return CFile::GetStatus(path, status) ? status.m_size : ~std::uint64_t{};
}

TEST(File, OpensAsTheFlagsSay) {
    using Row = std::tuple<const char*, UINT, int, std::string>;
    const TempFolder folder;
    std::filesystem::create_directory(folder.Native("folder"));
    for (const auto& [name, flags, cause, content] :
         {Row{"file", CFile::modeRead, CFileException::none, "old"},
          Row{"file", CFile::modeWrite, CFileException::none, "old"},
          Row{"file", kNew | CFile::modeNoTruncate, CFileException::none, "old"},
          Row{"file", kNew, CFileException::none, ""},
          Row{"file", CFile::modeCreate | CFile::modeRead, CFileException::none, ""},
          Row{"file", CFile::modeCreate | CFile::modeWrite, CFileException::none, ""},
          Row{"missing", CFile::modeRead, CFileException::fileNotFound, ""},
          Row{"missing", CFile::modeNoTruncate | CFile::modeWrite, CFileException::fileNotFound, ""},
          Row{"no\\folder", CFile::modeRead, CFileException::badPath, ""},
          Row{"no\\folder", kNew, CFileException::badPath, ""},
          Row{"file\\below", CFile::modeRead, CFileException::badPath, ""},
          Row{"folder", CFile::modeRead, CFileException::accessDenied, ""},
          Row{"folder", kNew, CFileException::accessDenied, ""},
          Row{"folder\\new", kNew | CFile::modeNoTruncate, CFileException::none, ""}}) {
        folder.Write("file", "old");
        CFile file;
        CFileException error;
        EXPECT_EQ(file.Open(folder / name, flags, &error), cause == CFileException::none) << name;
        EXPECT_EQ(error.m_cause, cause) << name;
        EXPECT_EQ(file.IsOpen(), cause == CFileException::none);
        file.Abort();
        if (cause == CFileException::none)
            EXPECT_EQ(SizeOf(folder / name), content.size()) << flags;
        else
            EXPECT_EQ(error.m_strFileName, folder / name);
    }
    EXPECT_FALSE(folder.Has("missing"));
}

TEST(File, ReadsWritesAndSeeks) {
    const TempFolder folder;
    CFile file(folder / "file", kNew);
    file.Write("0123456789", 10);
    EXPECT_EQ(file.GetPosition(), 10u);
    EXPECT_EQ(file.Seek(-3, CFile::end), 7u);
    char bytes[8] = {};
    EXPECT_EQ(file.Read(bytes, 8), 3u);
    EXPECT_STREQ(bytes, "789");
    EXPECT_EQ(file.Read(bytes, 8), 0u);
    EXPECT_EQ(file.Seek(2, CFile::begin), 2u);
    EXPECT_EQ(FileFailureOf([&] { file.Seek(-3, CFile::current); }).first, CFileException::badSeek);
    EXPECT_EQ(file.GetPosition(), 2u);
    file.SetLength(4);
    EXPECT_EQ(file.GetPosition(), 4u);
    EXPECT_EQ(file.Seek(std::int64_t{5} << 30, CFile::begin), std::uint64_t{5} << 30);
    file.SetLength(6);
    file.Flush();
    file.Close();
    EXPECT_EQ(folder.Read("file"), std::string("0123\0\0", 6));
    EXPECT_EQ(FileFailureOf([&] { file.Write("x", 1); }).first, CFileException::invalidFile);
}

TEST(File, FailuresOfTheSystemAreRaised) {
    using qv::platform::CallKind;
    const TempFolder folder;
    struct Row {
        CallKind call;
        void (*action)(CFile&);
    };
    for (const Row& row : {Row{CallKind::Read,
                               [](CFile& file) {
                                   char c;
                                   file.Read(&c, 1);
                               }},
                           Row{CallKind::Write, [](CFile& file) { file.Write("x", 1); }},
                           Row{CallKind::Flush, [](CFile& file) { file.Flush(); }},
                           Row{CallKind::Seek, [](CFile& file) { file.Seek(0, CFile::begin); }},
                           Row{CallKind::Resize, [](CFile& file) { file.SetLength(0); }},
                           Row{CallKind::Close, [](CFile& file) { file.Close(); }}}) {
        CFile file(folder / "file", kNew);
        const SystemFaults faults(SystemFaults::Always(row.call, qv::platform::FileCause::HardIO));
        const auto error = Raised<CFileException>([&] { row.action(file); });
        ASSERT_TRUE(error);
        EXPECT_EQ(error->m_cause, CFileException::hardIO);
        EXPECT_EQ(error->m_lOsError, static_cast<LONG>(*SystemFaults::ErrorFor(qv::platform::FileCause::HardIO)));
        EXPECT_EQ(error->m_strFileName, folder / "file");
        EXPECT_EQ(file.IsOpen(), row.call != CallKind::Close);
    }
}

TEST(File, StatusHasSizeTimesAndAttributes) {
    const TempFolder folder;
    folder.Write("file", "12345");
    CFileStatus status;
    ASSERT_TRUE(CFile::GetStatus(folder / "file", status));
    EXPECT_EQ(status.m_size, 5u);
    EXPECT_EQ(status.m_szFullName, folder / "file");
    EXPECT_NEAR(static_cast<double>(status.m_mtime), static_cast<double>(std::time(nullptr)), 5);
    EXPECT_NEAR(static_cast<double>(status.m_ctime), static_cast<double>(std::time(nullptr)), 5);
    EXPECT_FALSE(status.m_attribute & (CFile::directory | CFile::readOnly));

    const auto exactly = std::filesystem::last_write_time(folder.Native("file"));
    status.m_attribute |= CFile::readOnly;
    CFile::SetStatus(folder / "file", status);
    EXPECT_EQ(std::filesystem::last_write_time(folder.Native("file")), exactly);
    CFileStatus changed;
    ASSERT_TRUE(CFile::GetStatus(folder / "file", changed));
    EXPECT_TRUE(changed.m_attribute & CFile::readOnly);

    status.m_mtime = 1'000'000'001;
    status.m_attribute = CFile::normal;
    CFile::SetStatus(folder / "file", status);
    CFile file(folder / "file", CFile::modeRead);
    ASSERT_TRUE(file.GetStatus(changed));
    EXPECT_EQ(changed.m_mtime, 1'000'000'001);
    EXPECT_FALSE(changed.m_attribute & CFile::readOnly);

    ASSERT_TRUE(CFile::GetStatus(folder / "", status));
    EXPECT_TRUE(status.m_attribute & CFile::directory);
    EXPECT_EQ(status.m_size, 0u);
    EXPECT_FALSE(CFile::GetStatus(folder / "missing", status));
    EXPECT_FALSE(CFile::GetStatus("", status));
    EXPECT_EQ(CFile::GetStatus("\\", status), !qv::platform::HasDriveLetters());
    EXPECT_TRUE(Raised<CFileException>([&] { CFile::SetStatus(folder / "missing", status); }));
}

TEST(File, RemovesAndRenames) {
    const TempFolder folder;
    folder.Write("a", "A");
    folder.Write("b", "B");
    EXPECT_EQ(FileFailureOf([&] { CFile::Rename(folder / "a", folder / "b"); }).first, CFileException::accessDenied);
    EXPECT_EQ(folder.Read("b"), "B");
    CFile::Remove(folder / "b");
    CFile::Rename(folder / "a", folder / "b");
    EXPECT_EQ(folder.Read("b"), "A");
    EXPECT_FALSE(folder.Has("a"));
    using Row = std::tuple<const char*, int>;
    for (const auto& [name, cause] : {Row{"a", CFileException::fileNotFound}, Row{"no\\a", CFileException::badPath},
                                      Row{"", CFileException::accessDenied}}) {
        const CString path = folder / name;
        EXPECT_EQ(FileFailureOf([&] { CFile::Remove(path); }).first, cause) << name;
    }
}

TEST(FileException, NamesTheFileAndTheCause) {
    const TempFolder folder;
    CFile file;
    CFileException error;
    file.Open(folder / "missing", CFile::modeRead, &error);
    char text[512];
    EXPECT_TRUE(error.GetErrorMessage(text, sizeof text));
    EXPECT_EQ(std::string(text).find(folder.Native("missing").string() + " does not exist. ("), 0u) << text;
    EXPECT_EQ(std::string(text).find_first_of("\r\n"), std::string::npos);
    EXPECT_EQ(CFileException::OsErrorToException(error.m_lOsError), CFileException::fileNotFound);
    EXPECT_TRUE(CFileException(99).GetErrorMessage(text, 8));
    EXPECT_STREQ(text, "A file ");
}

}  // namespace
