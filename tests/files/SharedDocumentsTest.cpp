// What users, machines and programs that share documents may rely on: locks, and saving.

#include <algorithm>
#include <cerrno>
#include <iostream>
#include <numeric>

#include "platform/Process.h"
#include "qvcommon/ProfileStore.h"
#include "qvcommon/SaveFile.h"
#include "tests/files/Locking.h"
#include "tests/support/FileTests.h"
#include "tests/support/RecordingClock.h"

namespace {

using ::testing::HasSubstr;

QV_CHILD(TakeTheLock) {
    DocumentLock lock(arguments.at(0).c_str());
    lock.TryLock();
    std::cout << (lock.IsLocked() ? 0 : lock.GetLockException().m_cause) << ' ' << lock.GetLockedBy() << std::endl;
    std::cin.get();
    return 0;
}

/// Another user of a document. False where this program may not become one.
bool TryAs(const char* user, const CString& document, CProcess& child) {
    return StartAs(user, child, {CString(qv::platform::CurrentProgram()), CString("--child=") + kLocker, document});
}

TEST(SharedDocuments, EveryUserOfFolderCanLock) {
    const TempFolder folder;
    const CString document = folder / "report.abc";
    for (const fs::perms sticky : {fs::perms::none, fs::perms::sticky_bit}) {
        fs::permissions(folder.Native(), fs::perms::all | sticky);
        CProcess first, second;
        if (!TryAs("4711", document, first)) GTEST_SKIP() << "setpriv is missing";
        const std::string held = LineFrom(first);
        if (held.empty()) GTEST_SKIP() << "this program may not become another user, or that one not run it";
        EXPECT_THAT(held, ::testing::StartsWith("0"));
        ASSERT_TRUE(TryAs("4712", document, second));
        EXPECT_THAT(LineFrom(second), ::testing::StartsWith("11 "));
        second.Wait();
        first.Kill();
        first.Wait();
        ASSERT_TRUE(folder.Has("report.lck"));
        folder.Write("report.lid", "a killed holder");
        fs::permissions(folder.Native("report.lid"), fs::perms::all);
        ASSERT_TRUE(TryAs("4712", document, second));
        EXPECT_THAT(LineFrom(second), ::testing::StartsWith("0")) << "a leftover keeps no one out";
        EXPECT_NE(folder.Read("report.lid"), "a killed holder");
        second.Wait();
        for (const char* const name : {"report.lck", "report.lid"}) fs::remove(folder.Native(name));
    }
}

TEST(SharedDocuments, DoesNotFollowLinkedSideFiles) {
    const TempFolder folder;
    folder.Write("secret", "kept");
    fs::permissions(folder.Native("secret"), fs::perms::owner_read);
    if (!folder.Link("secret", "report.lid")) GTEST_SKIP() << "no links here";
    DocumentLock lock(folder / "report");
    EXPECT_TRUE(lock.TryLock());
    EXPECT_EQ(folder.Read("secret"), "kept");
    EXPECT_EQ(fs::status(folder.Native("secret")).permissions(), fs::perms::owner_read);
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(folder.Native("report.lid"))));

    folder.Link("secret", "other.lck");
    DocumentLock other(folder / "other");
    EXPECT_FALSE(other.TryLock());
    EXPECT_TRUE(folder.Has("secret"));
}

TEST(SharedDocuments, WaitEndsOnTimeoutOrByObserver) {
    struct Observer : ILockObserver {
        BOOL OnLockHeld(const CString& holder, std::int64_t since) override {
            EXPECT_FALSE(holder.IsEmpty());
            EXPECT_GT(since, 0);
            return ++asked < most;
        }
        int asked = 0, most = 1000;
    };
    const TempFolder folder;
    DocumentLock holder(folder / "document"), lock(folder / "document");
    ASSERT_TRUE(holder.TryLock());
    RecordingClock clock;
    Observer patient, impatient;
    EXPECT_FALSE(lock.LockFor(1000, &patient));
    EXPECT_LE(std::accumulate(clock.pauses.begin(), clock.pauses.end(), 0LL), 1000);
    EXPECT_EQ(*std::ranges::max_element(clock.pauses), 250);
    EXPECT_EQ(lock.GetLockException().m_cause, CFileException::sharingViolation);
    clock.pauses.clear();
    EXPECT_FALSE(lock.TryLock());
    EXPECT_TRUE(clock.pauses.empty());
    impatient.most = 3;
    EXPECT_FALSE(lock.LockFor(100000, &impatient));
    EXPECT_EQ(impatient.asked, 3);
    holder.Unlock();
    EXPECT_TRUE(lock.LockFor(0));
}

TEST(SharedDocuments, ReportsMissingLockSupport) {
    const TempFolder folder;
    int locks = 0;
    RecordingClock clock;
    const SystemFaults faults([&](const SystemFaults::Call& call) {
        if (call.kind != CallKind::Lock) return SystemFaults::Fault{};
        ++locks;
        return SystemFaults::Fault{.error = EOPNOTSUPP};
    });
    DocumentLock lock(folder / "document");
    const bool locked = lock.Lock(5);
    if (locks == 0) GTEST_SKIP() << "this system opens files without separate locks";
    EXPECT_FALSE(locked);
    EXPECT_TRUE(clock.pauses.empty());
    CFileException error = lock.GetLockException();
    EXPECT_EQ(error.m_cause, CFileException::invalidFile);
    char text[512];
    error.GetErrorMessage(text, sizeof text);
    EXPECT_THAT(text, HasSubstr("cannot be locked"));
    CFile file;
    EXPECT_FALSE(file.Open(folder / "new", CFile::modeCreate | CFile::modeWrite));
    EXPECT_TRUE(fs::is_empty(folder.Native())) << "a failed open leaves no file";
    for (int value = 1; value < 3; ++value) ProfileStore(folder / "a.ini").SetInteger("s", "e", value);
    EXPECT_EQ(ProfileStore(folder / "a.ini").GetInteger("s", "e", 0), 2) << "settings need no locks";
}

TEST(SharedDocuments, AtomicSavePreservesModeAndLinks) {
    const TempFolder folder;
    folder.Write("document", "old");
    const auto mode = fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read;
    fs::permissions(folder.Native("document"), mode);
    const auto kept = fs::status(folder.Native("document")).permissions();
    {
        CSaveFile dropped(folder / "document");
        dropped.Write("half", 4);
    }
    EXPECT_EQ(folder.Read("document"), "old");
    const bool linked = folder.Link("document", "link");
    CFileUtils::SaveFile(folder / (linked ? "link" : "document"), "new");
    EXPECT_EQ(fs::status(folder.Native("document")).permissions(), kept);
    CFileUtils::SaveFile(folder / "fresh", "first");
    const RecordingClock clock;
    const CFile reader(folder / "document", CFile::modeRead | CFile::shareDenyWrite);
    const auto error = Raised<CFileException>([&] { CFileUtils::SaveFile(folder / "document", "never"); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->m_cause, CFileException::sharingViolation);
    EXPECT_EQ(folder.Tree(), linked ? "document=new fresh=first link@" : "document=new fresh=first");
}

TEST(SharedDocuments, InPlaceSavePreservesHardLinks) {
    const TempFolder folder;
    const auto save = [&] {
        CSaveFile file(folder / "document");
        file.Write("new", 3);
        file.CommitInPlace();
    };
    save();
    EXPECT_EQ(folder.Read("document"), "new");
    std::error_code refused;
    fs::create_hard_link(folder.Native("document"), folder.Native("link"), refused);
    if (refused) GTEST_SKIP() << refused.message();
    folder.Write("document", "the old content");
    for (const int failures : {1, 1000}) {
        // Once there is a backup, the file takes the new bytes, but not the new length.
        int left = failures;
        const SystemFaults faults([&](const SystemFaults::Call& call) {
            const bool fails = call.kind == CallKind::Resize && folder.Has("document.qvold") && left-- > 0;
            return fails ? SystemFaults::Of(FileCause::DiskFull) : SystemFaults::Fault{};
        });
        const auto error = Raised<CFileException>(save);
        ASSERT_TRUE(error);
        EXPECT_EQ(error->m_cause, CFileException::diskFull);
        EXPECT_EQ(error->m_strFileName, folder / (failures == 1 ? "document" : "document.qvold"));
        EXPECT_EQ(folder.Has("document.qvold"), failures > 1);
        EXPECT_EQ(folder.Read("link"), "the old content");
    }
    folder.Write("document", "a part");
    EXPECT_TRUE(CSaveFile::Recover(folder / "document"));
    EXPECT_EQ(folder.Read("link"), "the old content");
    EXPECT_FALSE(CSaveFile::Recover(folder / "document"));

    folder.Write("document.qvold", "what a killed program left");
    CFileUtils::SaveFile(folder / "document", "a file of its own");
    EXPECT_EQ(folder.Read("link"), "what a killed program left");
    EXPECT_FALSE(CSaveFile::Recover(folder / "document"));
    EXPECT_EQ(folder.Read("document"), "a file of its own");
}

// A descriptor that only reads cannot empty the file: its name is opened again.
TEST(SharedDocuments, CreateForReadingDoesNotTruncateReplacement) {
    for (int swapped = 1; swapped <= 3; ++swapped) {
        const TempFolder folder;
        const RecordingClock clock;
        folder.Write("document", "first");
        folder.Write("second", "second");
        const CFile holder(folder / "second", CFile::modeRead | CFile::shareExclusive);
        int opens = 0;
        std::error_code refused;
        const SystemFaults faults([&](const SystemFaults::Call& call) {
            if (call.kind == CallKind::Open && LastName(call) == "document" && ++opens == swapped)
                fs::rename(folder.Native("second"), folder.Native("document"), refused);
            return SystemFaults::Fault{};
        });
        CFile file;
        CFileException error;
        const bool opened = file.Open(folder / "document", CFile::modeCreate | CFile::modeRead, &error);
        if (refused) GTEST_SKIP() << "an open file cannot be renamed here: " << refused.message();
        ASSERT_GE(opens, swapped);
        EXPECT_FALSE(opened);
        EXPECT_EQ(error.m_cause, CFileException::sharingViolation);
        EXPECT_EQ(folder.Read("document"), "second") << "swapped before open " << swapped;
    }
}

}  // namespace
