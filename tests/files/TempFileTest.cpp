#include "qvcommon/TempFile.h"

#include <gtest/gtest.h>

#include <set>
#include <thread>

#include "qvcommon/FileUtils.h"
#include "qvcommon/framework/File.h"
#include "tests/support/FileFaults.h"
#include "tests/support/Raised.h"
#include "tests/support/TempFolder.h"

namespace {

using qv::FileCall;
using qv::platform::FileCause;
using qv::platform::FileFailure;

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
        LONG error;
        bool named;
    };
    const TempFolder folder;
    for (const Row& row : {Row{FileCause::TooManyOpenFiles, false, CFileException::tooManyOpenFiles, 5, true},
                           Row{FileCause::AccessDenied, false, CFileException::accessDenied, 5, true},
                           Row{FileCause::DirectoryFull, false, CFileException::directoryFull, 5, true},
                           Row{FileCause::DiskFull, true, CFileException::diskFull, 5, true},
                           Row{FileCause::SharingViolation, true, CFileException::accessDenied, -1, false},
                           Row{FileCause::BadPath, true, CFileException::accessDenied, -1, false}}) {
        CTempFile file;
        if (row.given) file.SetFilename(folder / "given");
        file.SetDirectory(folder / "");
        const FileFaults faults(FileFaults::Always(FileCall::Open, row.cause));
        const auto error = Raised<CFileException>([&] { file.Create(); });
        ASSERT_TRUE(error);
        EXPECT_EQ(error->m_cause, row.raised);
        EXPECT_EQ(error->m_lOsError, row.error);
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
        const FileFaults faults([&](FileCall call, const char* path) {
            const bool fails = call == FileCall::Open && tried.size() < 1500;
            if (fails) tried.insert(path);
            return fails ? FileFailure{FileCause::BadPath, 3} : FileFailure{};
        });
        file.Create();
        EXPECT_EQ(tried.size(), 1500u);
    }
    const CString before = file.GetFilename();
    int looks = 0;
    // Whatever name is looked at, it is taken in that moment.
    {
        const FileFaults faults([&](FileCall call, const char* path) {
            if (call == FileCall::Status && ++looks) std::ofstream(CFileUtils::GetNativePath(path).AsStd());
            return FileFailure{};
        });
        const auto error = Raised<CFileException>([&] { file.Create(); });
        ASSERT_TRUE(error);
        EXPECT_EQ(error->m_cause, CFileException::accessDenied);
        EXPECT_EQ(error->m_lOsError, -1);
        EXPECT_EQ(error->m_strFileName, "");
    }
    EXPECT_EQ(looks, 1000);
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
