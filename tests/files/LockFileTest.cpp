#include <cerrno>

#include "qvcommon/MultiUserFile.h"
#include "qvcommon/NetUtils.h"
#include "tests/files/Locking.h"
#include "tests/support/FileTests.h"
#include "tests/support/RecordingClock.h"

namespace {

using Pauses = std::vector<long long>;

/// Fails every open except those of side files, and counts these: each failed attempt reads the side file.
SystemFaults::Decision OpenFails(FileCause cause, int& attempts) {
    return [fault = SystemFaults::Of(cause), &attempts](const SystemFaults::Call& call) {
        if (call.kind != CallKind::Open) return SystemFaults::Fault{};
        const bool isSideFile = call.path.ends_with(".lid");
        attempts += isSideFile;
        return isSideFile ? SystemFaults::Fault{} : fault;
    };
}

TEST(MultiUserFile, RetriesAfterSharingViolation) {
    const TempFolder folder;
    const UINT flags = CFile::modeCreate | CFile::modeReadWrite;
    const CFile holder(folder / "file", flags);
    RecordingClock clock;
    CFileException error;
    CMultiUserFile member;
    EXPECT_FALSE(member.Open(folder / "file", flags, &error));
    EXPECT_EQ(clock.pauses, Pauses(10, 500));
    EXPECT_EQ(error.m_cause, CFileException::sharingViolation);
    EXPECT_EQ(error.m_strFileName, folder / "file");
    clock.pauses.clear();
    CFile other;
    EXPECT_FALSE(CMultiUserFile::Open(other, folder / "file", flags));
    EXPECT_EQ(clock.pauses, (Pauses{500, 750, 1125, 1687, 2530, 3795, 5692, 8538}));
    clock.pauses.clear();
    EXPECT_FALSE(member.Open(folder / "no\\file", flags));
    EXPECT_FALSE(CMultiUserFile::Open(other, folder / "missing", CFile::modeRead));
    EXPECT_TRUE(CMultiUserFile::Open(other, folder / "new", flags));
    EXPECT_TRUE(Raised<CFileException>([&] { CMultiUserFile(folder / "file", flags); }));
    EXPECT_TRUE(clock.pauses.empty());
}

TEST(MultiUserFile, StopsRetryingOnSuccessOrOtherError) {
    const TempFolder folder;
    for (const FileCause last : {FileCause::None, FileCause::LockViolation}) {
        RecordingClock clock;
        CFile file(folder / "new", CFile::modeCreate | CFile::modeWrite);
        int asked = 0;
        const SystemFaults faults([&](const SystemFaults::Call& call) {
            if (call.kind != CallKind::Open) return SystemFaults::Fault{};
            const FileCause cause = ++asked < 4 ? FileCause::SharingViolation : last;
            return cause == FileCause::None ? SystemFaults::Fault{} : SystemFaults::Of(cause);
        });
        CFileException error;
        // The name is the file's own, which the first attempt clears.
        EXPECT_EQ(CMultiUserFile::Open(file, file.GetFilePath(), CFile::modeCreate | CFile::modeWrite, &error),
                  last == FileCause::None);
        EXPECT_EQ(file.GetFilePath(), last == FileCause::None ? folder / "new" : CString());
        EXPECT_EQ(clock.pauses, (Pauses{500, 750, 1125}));
        EXPECT_EQ(error.m_cause,
                  last == FileCause::None ? CFileException::sharingViolation : CFileException::lockViolation);
    }
}

TEST(LockFile, HasOneHolderAndNamesIt) {
    const TempFolder folder;
    CProcess holder;
    StartChild(holder, kLocker, {folder / "report.abc"});
    ASSERT_THAT(LineFrom(holder), testing::StartsWith("0"));
    EXPECT_EQ(folder.Read("report.lid"), CNetUtils::GetCurrentUserName().AsStd());
    EXPECT_EQ(fs::file_size(folder.Native("report.lck")), 0u);

    RecordingClock clock;
    DocumentLock lock(folder / "report.abc");
    EXPECT_FALSE(lock.Lock(3));
    EXPECT_EQ(clock.pauses, (Pauses{500, 750, 1125}));
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

TEST(LockFile, ReleasedWhenHolderIsKilled) {
    const TempFolder folder;
    CProcess holder;
    StartChild(holder, kLocker, {folder / "report"});
    ASSERT_THAT(LineFrom(holder), testing::StartsWith("0"));
    holder.Kill();
    holder.Wait();
    EXPECT_TRUE(folder.Has("report.lck"));
    folder.Write("report.lid", "another user with a long name");
    fs::permissions(folder.Native("report.lid"), fs::perms::owner_read);
    {
        CLockFile lock;
        EXPECT_EQ(lock.GetLockException().m_cause, CFileException::none);
        EXPECT_EQ(lock.GetLockException().m_lOsError, -1);
        lock.SetSourceFile(folder / "report");
        EXPECT_EQ(lock.GetFile(), folder / "report.lck");
        EXPECT_FALSE(lock.Lock(0));
        EXPECT_TRUE(lock.Lock(1));
        EXPECT_EQ(folder.Read("report.lid"), CNetUtils::GetCurrentUserName().AsStd());
        int attempts = 0;
        const SystemFaults faults(OpenFails(FileCause::Generic, attempts));
        EXPECT_TRUE(lock.Lock(5));
        EXPECT_TRUE(lock.Lock(0));
        EXPECT_EQ(attempts, 0);
    }
    EXPECT_TRUE(fs::is_empty(folder.Native()));
}

TEST(LockFile, InheritedLockOutlivesRelease) {
    const TempFolder folder;
    DocumentLock lock(folder / "report"), next(folder / "report");
    lock.SetInheritable(1);
    ASSERT_TRUE(lock.TryLock());
    CProcess heir;
    StartChild(heir, kLocker, {folder / "other"});
    ASSERT_THAT(LineFrom(heir), testing::StartsWith("0"));
    lock.Unlock();
    EXPECT_FALSE(next.TryLock());
    EXPECT_EQ(next.GetLockedBy(), CNetUtils::GetCurrentUserName());
    EXPECT_EQ(heir.Wait(), 0);
    EXPECT_TRUE(next.TryLock());
}

TEST(LockFile, RetriesDependOnFailureCause) {
    const TempFolder folder;
    folder.Write("document.lid", "holder");
    for (int cause = CFileException::generic; cause <= CFileException::endOfFile; ++cause) {
        const auto error = SystemFaults::ErrorFor(static_cast<FileCause>(cause));
        if (!error) continue;  // the system has no such error
        const bool pauses = cause == CFileException::directoryFull || cause == CFileException::sharingViolation ||
                            cause == CFileException::lockViolation || cause == CFileException::diskFull;
        RecordingClock clock;
        int attempts = 0;
        const SystemFaults faults(OpenFails(static_cast<FileCause>(cause), attempts));
        DocumentLock lock(folder / "document");
        EXPECT_FALSE(lock.Lock(3));
        EXPECT_EQ(attempts, pauses || cause == CFileException::generic ? 3 : 1) << cause;
        EXPECT_EQ(clock.pauses, pauses ? Pauses({500, 750, 1125}) : Pauses()) << cause;
        EXPECT_EQ(lock.GetLockException().m_cause, cause);
        EXPECT_EQ(lock.GetLockException().m_lOsError, static_cast<LONG>(*error));
        EXPECT_EQ(lock.GetLockedBy(), "holder");
    }
    DocumentLock lock(folder / "no\\document");
    EXPECT_FALSE(lock.Lock(1000));
    EXPECT_EQ(lock.GetLockException().m_cause, CFileException::badPath);
    EXPECT_EQ(lock.GetLockedBy(), "");
}

TEST(LockFile, IgnoresSideFileFailures) {
    const TempFolder folder;
    fs::create_directory(folder.Native("a.lid"));
    folder.Write("b.lid", std::string(1 << 20, 'x'));
    for (const char* name : {"a", "b"}) {
        DocumentLock first(folder / name), second(folder / name);
        RecordingClock clock;
        const SystemFaults faults(SystemFaults::Always(CallKind::Write, FileCause::DiskFull));
        EXPECT_TRUE(first.Lock(1));
        folder.Write("b.lid", std::string(1 << 20, 'x'));
        EXPECT_FALSE(second.Lock(1));
        EXPECT_EQ(second.GetLockedBy(), "");
    }
}

TEST(LockFile, LocksReadOnlyFiles) {
    if (qv::platform::HasDriveLetters()) GTEST_SKIP() << "access lists decide here";
    for (const int error : {EACCES, EROFS, ENXIO}) {
        const TempFolder folder;
        folder.Write("plan.lck", "");
        int opened = 0;
        const SystemFaults faults([&](const SystemFaults::Call& call) {
            const bool fails = call.kind == CallKind::Open && call.path.ends_with("plan.lck") && opened++ == 0;
            return SystemFaults::Fault{.error = fails ? static_cast<unsigned long>(error) : 0};
        });
        CLockFile lock;
        lock.SetFile(folder / "plan.lck");
        EXPECT_EQ(lock.TryLock(), error != ENXIO) << error;
    }
}

}  // namespace
