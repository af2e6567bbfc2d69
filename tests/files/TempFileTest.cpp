#include "qvcommon/TempFile.h"

#include <gtest/gtest.h>

#include <set>
#include <thread>

#include "qvcommon/FileUtils.h"
#include "qvcommon/framework/File.h"
#include "tests/support/Raised.h"
#include "tests/support/SystemFaults.h"
#include "tests/support/TempFolder.h"

namespace {

using qv::platform::CallKind;
using qv::platform::FileCause;

bool Exists(const CString& path) {
    CFileStatus status;
    return CFile::GetStatus(path, status);
}

TEST(TempFile, MakesAFileOfAFreshNameAndTakesItAway) {
    CString first;
    {
        CTempFile file;
        EXPECT_EQ(file.GetFilename(), "");
        file.Create();
        first = file.GetFilename();
        const CString name = first.Mid(file.GetDirectory().GetLength());
        ASSERT_EQ(name.GetLength(), 9);
        EXPECT_EQ(name.Left(2), "QV");
        for (int i = 2; i < 8; ++i) EXPECT_TRUE(name[i] >= 'A' && name[i] <= 'Z');
        EXPECT_EQ(name[8], '.');
        EXPECT_TRUE(Exists(first));
        file.Create();
        EXPECT_NE(file.GetFilename(), first);
        EXPECT_FALSE(Exists(first));
        first = file.GetFilename();
    }
    EXPECT_FALSE(Exists(first));
}

TEST(TempFile, GivenNamesAreAdopted) {
    const TempFolder folder;
    folder.Write("given", "content");
    CString own;
    {
        CTempFile file;
        file.SetDirectory(folder / "");
        file.SetPrefix("p");
        file.SetExtension("tmp");
        file.Create();
        own = file.GetFilename();
        EXPECT_TRUE(own.AsStd().ends_with(".tmp"));
        file.SetFilename(folder / "given");
        EXPECT_FALSE(Exists(own));
        file.Create();
        EXPECT_EQ(file.GetFilename(), folder / "given");
        EXPECT_EQ(folder.Read("given"), "");
    }
    EXPECT_FALSE(folder.Has("given"));
    {
        CTempFile kept;
        kept.SetDirectory(folder / "");
        kept.Create();
        own = kept.GetFilename();
        kept.Create(1);
        EXPECT_EQ(kept.GetFilename(), own);
        kept.SetDeleteOnDtor(0);
    }
    EXPECT_TRUE(Exists(own));
}

TEST(TempFile, FailuresByCause) {
    struct Row {
        FileCause cause;
        bool given;
        int raised;
        bool named;
    };
    const TempFolder folder;
    for (const Row& row : {Row{FileCause::TooManyOpenFiles, false, CFileException::tooManyOpenFiles, true},
                           Row{FileCause::AccessDenied, false, CFileException::accessDenied, true},
                           Row{FileCause::DirectoryFull, false, CFileException::directoryFull, true},
                           Row{FileCause::DiskFull, true, CFileException::diskFull, true},
                           Row{FileCause::SharingViolation, true, CFileException::accessDenied, false},
                           Row{FileCause::BadPath, true, CFileException::accessDenied, false}}) {
        CTempFile file;
        if (row.given) file.SetFilename(folder / "given");
        file.SetDirectory(folder / "");
        const SystemFaults faults(SystemFaults::Always(qv::platform::CallKind::Open, row.cause));
        const auto error = Raised<CFileException>([&] { file.Create(); });
        ASSERT_TRUE(error);
        EXPECT_EQ(error->m_cause, row.raised);
        EXPECT_EQ(error->m_lOsError, row.named ? static_cast<LONG>(*SystemFaults::ErrorFor(row.cause)) : -1);
        EXPECT_EQ(!error->m_strFileName.IsEmpty(), row.named);
        EXPECT_EQ(file.GetFilename(), row.given ? folder / "given" : CString());
    }
}

TEST(TempFile, OtherFailuresDrawNewNamesAndTakenOnesCount) {
    const TempFolder folder;
    CTempFile file;
    file.SetDirectory(folder / "");
    std::set<std::string> tried;
    {
        const SystemFaults faults([&](const SystemFaults::Call& call) {
            const bool fails = call.kind == CallKind::Open && tried.size() < 1500;
            if (fails) tried.insert(std::string(call.path));
            return fails ? SystemFaults::Of(FileCause::BadPath) : SystemFaults::Fault{};
        });
        file.Create();
        EXPECT_EQ(tried.size(), 1500u);
    }
    const CString before = file.GetFilename();
    std::set<std::string> taken;
    // Whatever name is free, another program takes it just before the file is made.
    {
        const SystemFaults faults([&](const SystemFaults::Call& call) {
            if (call.kind == CallKind::Open) std::ofstream(*taken.emplace(call.path).first) << "theirs";
            return SystemFaults::Fault{};
        });
        const auto error = Raised<CFileException>([&] { file.Create(); });
        ASSERT_TRUE(error);
        EXPECT_EQ(error->m_cause, CFileException::accessDenied);
        EXPECT_EQ(error->m_lOsError, -1);
        EXPECT_EQ(error->m_strFileName, "");
    }
    EXPECT_EQ(taken.size(), 1000u);
    for (const std::string& name : taken) EXPECT_EQ(std::filesystem::file_size(name), 6u) << name;
    EXPECT_FALSE(Exists(before));
}

TEST(TempFile, ManyThreadsDrawNamesAtOnce) {
    const TempFolder folder;
    const auto create = [&] {
        for (int i = 0; i < 20; ++i) {
            CTempFile file;
            file.SetDirectory(folder / "");
            file.Create();
        }
    };
    std::thread threads[] = {std::thread(create), std::thread(create), std::thread(create)};
    for (std::thread& thread : threads) thread.join();
    EXPECT_TRUE(std::filesystem::is_empty(folder.Native()));
}

}  // namespace
