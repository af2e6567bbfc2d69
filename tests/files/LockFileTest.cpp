#include "qvcommon/LockFile.h"

#include <gtest/gtest.h>

#include <iostream>

#include "qvcommon/MultiUserFile.h"
#include "qvcommon/NetUtils.h"
#include "tests/support/Child.h"
#include "tests/support/FileFaults.h"
#include "tests/support/Raised.h"
#include "tests/support/RecordingPause.h"
#include "tests/support/TempFolder.h"

namespace {

using Pauses = std::vector<unsigned long long>;
using qv::FileCall;
using qv::platform::FileCause;
using qv::platform::FileFailure;

/// Fails the opening of every file that is not a side file, and counts how often that was asked.
FileFaults::Decision OpenFails(FileCause cause, int& asked) {
    return [cause, &asked](FileCall call, const char* path) {
        const bool fails = call == FileCall::Open && !std::string_view(path).ends_with(".lid");
        asked += fails;
        return fails ? FileFailure{cause, 32} : FileFailure{};
    };
}

TEST(MultiUserFile, TriesAgainAfterSharingViolations) {
    const TempFolder folder;
    const UINT flags = CFile::modeCreate | CFile::modeReadWrite;
    const CFile holder(folder / "file", flags);
    RecordingPause pause;
    CFileException error;
    CMultiUserFile member;
    EXPECT_FALSE(member.Open(folder / "file", flags, &error));
    EXPECT_EQ(pause.pauses, Pauses(10, 500));
    EXPECT_EQ(error.m_cause, CFileException::sharingViolation);
    EXPECT_EQ(error.m_strFileName, folder / "file");
    pause.pauses.clear();
    CFile other;
    EXPECT_FALSE(CMultiUserFile::Open(other, folder / "file", flags));
    EXPECT_EQ(pause.pauses, (Pauses{500, 750, 1125, 1687, 2530, 3795, 5692, 8538}));
    pause.pauses.clear();
    EXPECT_FALSE(member.Open(folder / "no\\file", flags));
    EXPECT_FALSE(CMultiUserFile::Open(other, folder / "missing", CFile::modeRead));
    EXPECT_TRUE(CMultiUserFile::Open(other, folder / "new", flags));
    EXPECT_TRUE(Raised<CFileException>([&] { CMultiUserFile(folder / "file", flags); }));
    EXPECT_TRUE(pause.pauses.empty());
}

TEST(MultiUserFile, TriesStopAtTheFirstSuccessOrOtherFailure) {
    const TempFolder folder;
    for (const FileCause last : {FileCause::None, FileCause::LockViolation}) {
        RecordingPause pause;
        int asked = 0;
        const FileFaults faults([&](FileCall call, const char*) {
            if (call != FileCall::Open) return FileFailure{};
            return FileFailure{++asked < 4 ? FileCause::SharingViolation : last, 1};
        });
        CFileException error;
        CFile file;
        EXPECT_EQ(CMultiUserFile::Open(file, folder / "new", CFile::modeCreate | CFile::modeWrite, &error),
                  last == FileCause::None);
        EXPECT_EQ(pause.pauses, (Pauses{500, 750, 1125}));
        EXPECT_EQ(error.m_cause,
                  last == FileCause::None ? CFileException::sharingViolation : CFileException::lockViolation);
    }
}

/// Holds the lock on a document for as long as its input lasts, or dies with it.
QV_CHILD(HoldLock) {
    CLockFile lock;
    lock.SetSourceFile(arguments.at(0).c_str());
    std::cout << lock.Lock(1) << std::endl;
    std::cin.get();
    lock.Unlock();
    return 0;
}

TEST(LockFile, IsHeldByOneAndNamesIt) {
    const TempFolder folder;
    CProcess holder;
    StartChild(holder, "HoldLock", {folder / "report.abc"});
    ASSERT_EQ(LineFrom(holder), "1");
    EXPECT_EQ(folder.Read("report.lid"), CNetUtils::GetCurrentUserName().AsStd());
    EXPECT_EQ(std::filesystem::file_size(folder.Native("report.lck")), 0u);

    RecordingPause pause;
    CLockFile lock;
    lock.SetSourceFile(folder / "report.abc");
    EXPECT_FALSE(lock.Lock(3));
    EXPECT_EQ(pause.pauses, (Pauses{500, 750, 1125}));
    EXPECT_EQ(lock.GetLockedBy(), CNetUtils::GetCurrentUserName());
    EXPECT_EQ(lock.GetLockException().m_cause, CFileException::sharingViolation);
    EXPECT_EQ(lock.GetLockException().m_strFileName, folder / "report.lck");
    lock.Unlock();
    EXPECT_TRUE(folder.Has("report.lck"));

    EXPECT_EQ(holder.Wait(), 0);
    EXPECT_FALSE(folder.Has("report.lck"));
    EXPECT_FALSE(folder.Has("report.lid"));
    EXPECT_TRUE(lock.Lock(1));
}

TEST(LockFile, OneLeftBehindIsNoLock) {
    const TempFolder folder;
    CProcess holder;
    StartChild(holder, "HoldLock", {folder / "report"});
    ASSERT_EQ(LineFrom(holder), "1");
    holder.Kill();
    holder.Wait();
    EXPECT_TRUE(folder.Has("report.lck"));
    folder.Write("report.lid", "someone with a long name");
    std::filesystem::permissions(folder.Native("report.lid"), std::filesystem::perms::owner_read);
    {
        CLockFile lock;
        EXPECT_EQ(lock.GetLockException().m_cause, CFileException::none);
        EXPECT_EQ(lock.GetLockException().m_lOsError, -1);
        lock.SetSourceFile(folder / "report");
        EXPECT_EQ(lock.GetFile(), folder / "report.lck");
        EXPECT_FALSE(lock.Lock(0));
        EXPECT_TRUE(lock.Lock(1));
        EXPECT_EQ(folder.Read("report.lid"), CNetUtils::GetCurrentUserName().AsStd());
        int asked = 0;
        const FileFaults faults(OpenFails(FileCause::Generic, asked));
        EXPECT_TRUE(lock.Lock(5));
        EXPECT_TRUE(lock.Lock(0));
        EXPECT_EQ(asked, 0);
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder.Native()));
}

TEST(LockFile, WhatFollowsAFailureDependsOnItsCause) {
    const TempFolder folder;
    folder.Write("document.lid", "holder");
    for (int cause = CFileException::generic; cause <= CFileException::endOfFile; ++cause) {
        const bool pauses = cause == CFileException::directoryFull || cause == CFileException::sharingViolation ||
                            cause == CFileException::lockViolation || cause == CFileException::diskFull;
        RecordingPause pause;
        int asked = 0;
        const FileFaults faults(OpenFails(static_cast<FileCause>(cause), asked));
        CLockFile lock;
        lock.SetSourceFile(folder / "document");
        EXPECT_FALSE(lock.Lock(3));
        EXPECT_EQ(asked, pauses || cause == CFileException::generic ? 3 : 1) << cause;
        EXPECT_EQ(pause.pauses, pauses ? Pauses({500, 750, 1125}) : Pauses()) << cause;
        EXPECT_EQ(lock.GetLockException().m_cause, cause);
        EXPECT_EQ(lock.GetLockException().m_lOsError, 32);
        EXPECT_EQ(lock.GetLockedBy(), "holder");
    }
    CLockFile lock;
    lock.SetSourceFile(folder / "no\\document");
    EXPECT_FALSE(lock.Lock(1000));
    EXPECT_EQ(lock.GetLockException().m_cause, CFileException::badPath);
    EXPECT_EQ(lock.GetLockedBy(), "");
}

TEST(LockFile, SideFilesNeverMakeALockFail) {
    const TempFolder folder;
    std::filesystem::create_directory(folder.Native("a.lid"));
    folder.Write("b.lid", std::string(1 << 20, 'x'));
    for (const char* name : {"a", "b"}) {
        CLockFile first, second;
        first.SetSourceFile(folder / name);
        second.SetSourceFile(folder / name);
        RecordingPause pause;
        const FileFaults faults(FileFaults::Always(FileCall::Write, FileCause::DiskFull));
        EXPECT_TRUE(first.Lock(1));
        folder.Write("b.lid", std::string(1 << 20, 'x'));
        EXPECT_FALSE(second.Lock(1));
        EXPECT_EQ(second.GetLockedBy(), "");
    }
}

}  // namespace
