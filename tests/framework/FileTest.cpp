#include "qvcommon/framework/File.h"

#include <gtest/gtest.h>

#include <functional>

#include "platform/Path.h"
#include "tests/support/FileFailure.h"
#include "tests/support/SystemFaults.h"
#include "tests/support/TempFolder.h"

namespace {

constexpr UINT kNew = CFile::modeCreate | CFile::modeReadWrite;

TEST(File, OpensAccordingToFlags) {
    using F = CFile;
    using E = CFileException;
    constexpr int kKept = -1, kEmptied = -2;  // opened, and what becomes of the old content
    const TempFolder folder;
    std::filesystem::create_directory(folder.Native("folder"));
    using Row = std::tuple<const char*, UINT, int>;
    for (const auto& [name, flags, expected] :
         {Row{"file", F::modeRead, kKept}, Row{"file", F::modeWrite, kKept},
          Row{"file", kNew | F::modeNoTruncate, kKept}, Row{"file", kNew, kEmptied},
          Row{"file", F::modeCreate | F::modeRead, kEmptied}, Row{"file", F::modeCreate | F::modeWrite, kEmptied},
          Row{"folder\\new", kNew | F::modeNoTruncate, kEmptied}, Row{"missing", F::modeRead, E::fileNotFound},
          Row{"missing", F::modeNoTruncate | F::modeWrite, E::fileNotFound}, Row{"no\\folder", F::modeRead, E::badPath},
          Row{"no\\folder", kNew, E::badPath}, Row{"file\\below", F::modeRead, E::badPath},
          Row{"folder", F::modeRead, E::accessDenied}, Row{"folder", kNew, E::accessDenied}}) {
        folder.Write("file", "old");
        CFile file;
        CFileException error;
        const bool opens = expected < 0;
        EXPECT_EQ(file.Open(folder / name, flags, &error), opens) << name;
        EXPECT_EQ(error.m_cause, opens ? E::none : expected) << name;
        EXPECT_EQ(error.m_strFileName, opens ? CString() : folder / name);
        EXPECT_EQ(file.IsOpen(), opens);
        file.Abort();
        if (!opens) continue;
        CFileStatus status;
        EXPECT_TRUE(F::GetStatus(folder / name, status));
        EXPECT_EQ(status.m_size, expected == kKept ? 3u : 0u) << flags;
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

TEST(File, RaisesSystemFailures) {
    using qv::platform::CallKind;
    const TempFolder folder;
    const auto readByte = [](CFile& file) {
        char byte;
        file.Read(&byte, 1);
    };
    using Row = std::tuple<CallKind, void (*)(CFile&)>;
    for (const auto& [call, action] :
         {Row{CallKind::Read, readByte}, Row{CallKind::Write, [](CFile& file) { file.Write("x", 1); }},
          Row{CallKind::Flush, [](CFile& file) { file.Flush(); }},
          Row{CallKind::Seek, [](CFile& file) { file.Seek(0, CFile::begin); }},
          Row{CallKind::Resize, [](CFile& file) { file.SetLength(0); }},
          Row{CallKind::Close, [](CFile& file) { file.Close(); }}}) {
        CFile file(folder / "file", kNew);
        const SystemFaults faults(SystemFaults::Always(call, qv::platform::FileCause::HardIO));
        const auto error = Raised<CFileException>(std::bind(action, std::ref(file)));
        ASSERT_TRUE(error);
        EXPECT_EQ(error->m_cause, CFileException::hardIO);
        EXPECT_EQ(error->m_lOsError, static_cast<LONG>(*SystemFaults::ErrorFor(qv::platform::FileCause::HardIO)));
        EXPECT_EQ(error->m_strFileName, folder / "file");
        EXPECT_EQ(file.IsOpen(), call != CallKind::Close);
    }
}

TEST(File, StatusHasSizeTimesAndAttributes) {
    const TempFolder folder;
    folder.Write("file", "12345");
    CFileStatus status, changed;
    ASSERT_TRUE(CFile::GetStatus(folder / "file", status));
    EXPECT_EQ(status.m_size, 5u);
    EXPECT_EQ(status.m_szFullName, folder / "file");
    for (const auto time : {status.m_mtime, status.m_ctime})
        EXPECT_NEAR(static_cast<double>(time), static_cast<double>(std::time(nullptr)), 5);
    EXPECT_FALSE(status.m_attribute & (CFile::directory | CFile::readOnly));

    const auto exactly = std::filesystem::last_write_time(folder.Native("file"));
    status.m_attribute |= CFile::readOnly;
    CFile::SetStatus(folder / "file", status);
    EXPECT_EQ(std::filesystem::last_write_time(folder.Native("file")), exactly);
    ASSERT_TRUE(CFile::GetStatus(folder / "file", changed));
    EXPECT_TRUE(changed.m_attribute & CFile::readOnly);

    status.m_mtime = 1'000'000'001;
    status.m_attribute = CFile::normal;
    CFile::SetStatus(folder / "file", status);
    ASSERT_TRUE(CFile(folder / "file", CFile::modeRead).GetStatus(changed));
    EXPECT_EQ(changed.m_mtime, 1'000'000'001);
    EXPECT_FALSE(changed.m_attribute & CFile::readOnly);

    ASSERT_TRUE(CFile::GetStatus(folder / "", status));
    EXPECT_TRUE(status.m_attribute & CFile::directory);
    EXPECT_EQ(status.m_size, 0u);
    EXPECT_FALSE(CFile::GetStatus(folder / "missing", status) || CFile::GetStatus("", status));
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
