#include "qvcommon/TempFile.h"

#include <set>
#include <thread>

#include "tests/support/FileTests.h"

namespace {

/// A temporary file in a folder.
struct FileIn : CTempFile {
    explicit FileIn(const TempFolder& folder) { SetDirectory(folder / ""); }
};

TEST(TempFile, CreatesUniqueFileAndRemovesIt) {
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
        EXPECT_TRUE(CFileUtils::IsExist(first));
        file.Create();
        EXPECT_NE(file.GetFilename(), first);
        EXPECT_FALSE(CFileUtils::IsExist(first));
        first = file.GetFilename();
    }
    EXPECT_FALSE(CFileUtils::IsExist(first));
}

TEST(TempFile, AdoptsGivenName) {
    const TempFolder folder;
    folder.Write("given", "content");
    CString own;
    {
        FileIn file(folder);
        file.SetPrefix("p");
        file.SetExtension("tmp");
        file.Create();
        own = file.GetFilename();
        EXPECT_TRUE(own.AsStd().ends_with(".tmp"));
        file.SetFilename(folder / "given");
        EXPECT_FALSE(CFileUtils::IsExist(own));
        file.Create();
        EXPECT_EQ(file.GetFilename(), folder / "given");
        EXPECT_EQ(folder.Read("given"), "");
    }
    EXPECT_FALSE(folder.Has("given"));
    {
        FileIn kept(folder);
        kept.Create();
        own = kept.GetFilename();
        kept.Create(1);
        EXPECT_EQ(kept.GetFilename(), own);
        kept.SetDeleteOnDtor(0);
    }
    EXPECT_TRUE(CFileUtils::IsExist(own));
}

TEST(TempFile, NeverTruncatesFileOfAnotherWithoutGivenName) {
    const TempFolder folder;
    FileIn first(folder), second(folder);
    first.Create();
    std::srand(7);
    first.Create();
    std::ofstream(fs::path(CFileUtils::GetNativePath(first.GetFilename()).AsStd())) << "content";
    std::srand(7);
    second.Create(1);
    EXPECT_NE(second.GetFilename(), first.GetFilename());
    EXPECT_EQ(CFileUtils::ReadFile(first.GetFilename()), "content");
}

TEST(TempFile, FailuresByCause) {
    struct Row {
        FileCause cause;
        bool given;
        bool named;  ///< with its cause, else access was denied
    };
    const TempFolder folder;
    for (const Row& row : {Row{FileCause::TooManyOpenFiles, false, true}, Row{FileCause::AccessDenied, false, true},
                           Row{FileCause::DirectoryFull, false, true}, Row{FileCause::DiskFull, true, true},
                           Row{FileCause::SharingViolation, true, false}, Row{FileCause::BadPath, true, false}}) {
        FileIn file(folder);
        if (row.given) file.SetFilename(folder / "given");
        const SystemFaults faults(SystemFaults::Always(CallKind::Open, row.cause));
        const auto error = Raised<CFileException>([&] { file.Create(); });
        ASSERT_TRUE(error);
        EXPECT_EQ(error->m_cause, row.named ? static_cast<int>(row.cause) : CFileException::accessDenied);
        EXPECT_EQ(error->m_lOsError, row.named ? static_cast<LONG>(*SystemFaults::ErrorFor(row.cause)) : -1);
        EXPECT_EQ(!error->m_strFileName.IsEmpty(), row.named);
        EXPECT_EQ(file.GetFilename(), row.given ? folder / "given" : CString());
    }
}

TEST(TempFile, RetriesNewNamesAndLimitsCollisions) {
    const TempFolder folder;
    FileIn file(folder);
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
    // Another program takes each free name just before the file is made.
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
    for (const std::string& name : taken) EXPECT_EQ(fs::file_size(name), 6u) << name;
    EXPECT_FALSE(CFileUtils::IsExist(before));
}

TEST(TempFile, ConcurrentCreation) {
    const TempFolder folder;
    const auto create = [&] {
        for (int i = 0; i < 20; ++i) {
            FileIn file(folder);
            file.Create();
        }
    };
    { const std::jthread threads[] = {std::jthread(create), std::jthread(create), std::jthread(create)}; }
    EXPECT_TRUE(fs::is_empty(folder.Native()));
}

}  // namespace
