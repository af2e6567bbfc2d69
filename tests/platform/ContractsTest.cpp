// What platform/*.h promises on every system and no test of a class above it covers.

#include "platform/AtomicFile.h"
#include "platform/FileCopy.h"
#include "platform/FileOpen.h"
#include "platform/FileStatus.h"
#include "platform/FolderFiles.h"
#include "platform/RemovalWatch.h"
#include "tests/support/FileTests.h"

namespace qv::platform {
namespace {

class PlatformContracts : public ::testing::Test {
protected:
    FileInfo InfoOf(const char* name) const {
        FileInfo info;
        EXPECT_TRUE(StatusOf(m_folder / name, info).ok()) << name;
        return info;
    }

    const TempFolder m_folder;
};

TEST_F(PlatformContracts, StatusesKeepTheFirstFailure) {
    const Status full(FileCause::DiskFull, 28), refused(FileCause::AccessDenied, 13);
    EXPECT_EQ(full.Or(refused).cause(), FileCause::DiskFull);
    EXPECT_EQ(Status().Or(refused).cause(), FileCause::AccessDenied);
    EXPECT_EQ(Status::OfError(0).cause(), FileCause::Generic);
}

TEST_F(PlatformContracts, FolderOperationsUseHandles) {
    MakeTree(m_folder.Native(), {"top/file", "top/sub/inner", "outside"});
    Folder top, sub, none;
    ASSERT_TRUE(top.Open(m_folder / "top", LastName::NoLink).ok());
    EXPECT_FALSE(none.OpenIn(top, "file").ok());
    EXPECT_FALSE(none.OpenIn(top, "missing").ok());
    ASSERT_TRUE(sub.OpenIn(top, "sub").ok());
    const FolderEntry entry{"sub", EntryKind::Folder};
    EXPECT_FALSE(top.Remove(entry).ok());
    EXPECT_TRUE(sub.Remove({"inner", EntryKind::File}).ok());
    sub.Close();
    EXPECT_TRUE(top.Remove(entry).ok());
    for (int again = 0; again < 2; ++again) EXPECT_TRUE(MakeFolderIn(top, "new").ok());
    FileHandle handle = kNoFile;
    EXPECT_FALSE(CreateFileIn(top, "file", handle).ok());
    EXPECT_TRUE(CreateFileIn(top, "made", handle).ok());
    EXPECT_TRUE(WriteBytes(handle, "x", 1).ok());
    EXPECT_TRUE(CloseFile(handle).ok());
    EXPECT_TRUE(MoveOverIn(top, "made", "file").ok());
    EXPECT_FALSE(MoveOverIn(top, "file", "new").ok());
    EXPECT_TRUE(RemoveFileIn(top, "file").ok());
    EXPECT_EQ(m_folder.Tree(), "outside top/ top/new/");
}

TEST_F(PlatformContracts, FailedChangesLeaveFilesReadOnly) {
    m_folder.Write("kept", "text");
    m_folder.Write("new", "text");
    ASSERT_TRUE(ChangeStatus(m_folder / "kept", -1, kReadOnly).ok());
    Folder folder;
    ASSERT_TRUE(folder.Open(m_folder / "", LastName::NoLink).ok());
    for (const CallKind kind : {CallKind::Remove, CallKind::Rename}) {
        const SystemFaults faults(SystemFaults::Always(kind, FileCause::SharingViolation));
        const bool removes = kind == CallKind::Remove;
        EXPECT_TRUE(!removes || !RemoveFileIn(folder, "kept").ok());
        EXPECT_TRUE(!removes || !folder.Remove({"kept", EntryKind::File}).ok());
        EXPECT_TRUE(removes || !MoveOverIn(folder, "new", "kept").ok());
        EXPECT_TRUE(InfoOf("kept").attributes & kReadOnly);
    }
    EXPECT_TRUE(MoveOverIn(folder, "new", "kept").ok());
    EXPECT_TRUE(RemoveFileIn(folder, "kept").ok());
}

TEST_F(PlatformContracts, AtomicFileCommitsAllOrNothing) {
    m_folder.Write("x", "old");
    const auto write = [](AtomicFile& file) { return WriteBytes(file.Handle(), "new", 3); };
    {
        AtomicFile dropped;
        ASSERT_TRUE(dropped.Create(m_folder / "x").ok());
        EXPECT_TRUE(write(dropped).ok());
    }
    EXPECT_EQ(m_folder.Tree(), "x=old");
    AtomicFile file;
    EXPECT_EQ(file.Create(m_folder / "none\\x").cause(), FileCause::BadPath);
    ASSERT_TRUE(file.Create(m_folder / "x").ok());
    EXPECT_TRUE(write(file).ok());
    EXPECT_EQ(file.Commit(IfExists::Fail, Durability::Deferred).cause(), FileCause::AccessDenied);
    EXPECT_EQ(m_folder.Read("x"), "old");
    EXPECT_TRUE(file.Commit(IfExists::Replace, Durability::Synced).ok());
    EXPECT_EQ(file.Handle(), kNoFile);
    Folder folder;
    ASSERT_TRUE(folder.Open(m_folder / "", LastName::NoLink).ok());
    ASSERT_TRUE(file.CreateIn(folder, "y").ok());
    EXPECT_TRUE(write(file).ok());
    EXPECT_TRUE(file.Commit(IfExists::Fail, Durability::Deferred).ok());
    ASSERT_TRUE(file.Create(m_folder / "x").ok());
    EXPECT_TRUE(StampFile(file.Handle(), {.time = -1, .attributes = kReadOnly}).ok());
    const SystemFaults faults(SystemFaults::AlwaysNaming(FileCause::SharingViolation));
    EXPECT_FALSE(file.Commit(IfExists::Replace, Durability::Deferred).ok());
    EXPECT_EQ(m_folder.Tree(), "x=new y=new");
}

TEST_F(PlatformContracts, ReusesStaleTemporaryNames) {
    // Opening a folder makes a file without a name: no file system has them here.
    const SystemFaults faults(SystemFaults::Always(CallKind::Open, FileCause::AccessDenied, "/"));
    m_folder.Write(".qv1.tmp", "of a process that died");
    ASSERT_TRUE(ChangeStatus(m_folder / ".qv1.tmp", -1, kReadOnly).ok());
    MakeTree(m_folder.Native(), {".qv2.tmp/is a folder"});
    AtomicFile first, second;
    ASSERT_TRUE(first.Create(m_folder / "x").ok());
    ASSERT_TRUE(second.Create(m_folder / "x").ok());
    EXPECT_EQ(m_folder.Read(".qv1.tmp"), "");
    EXPECT_TRUE(WriteBytes(first.Handle(), "first", 5).ok());
    EXPECT_TRUE(second.Commit(IfExists::Fail, Durability::Deferred).ok());
    EXPECT_TRUE(first.Commit(IfExists::Replace, Durability::Deferred).ok());
    EXPECT_EQ(m_folder.Tree(), ".qv2.tmp/ .qv2.tmp/is a folder x=first");
}

// Windows refuses to overwrite such files unless the request has the same attributes. Wine does not.
TEST_F(PlatformContracts, OverwritesHiddenAndSystemFiles) {
    if (!HasDriveLetters()) GTEST_SKIP() << "files have no such attributes here";
    MakeTree(m_folder.Native(), {"from", "old"});
    ASSERT_TRUE(ChangeStatus(m_folder / "old", -1, kHidden | kSystem).ok());
    int refusals = 2;
    const SystemFaults faults([&](const SystemFaults::Call& call) {
        const bool overwrites = call.kind == CallKind::Copy || call.kind == CallKind::Open;
        return overwrites && refusals-- > 0 ? SystemFaults::Of(FileCause::AccessDenied) : SystemFaults::Fault{};
    });
    EXPECT_FALSE(CopyWholeFile(m_folder / "from", m_folder / "old").ok());
    FileHandle handle = kNoFile;
    refusals = 1;
    ASSERT_TRUE(OpenFile(m_folder / "old", {.write = true, .create = true, .truncate = true}, handle).ok());
    EXPECT_TRUE(CloseFile(handle).ok());
    refusals = 1;  // the file has its attributes again
    EXPECT_TRUE(CopyWholeFile(m_folder / "from", m_folder / "old").ok());
    EXPECT_EQ(InfoOf("old").attributes & kHidden, 0u);
    EXPECT_EQ(m_folder.Read("old"), "from");
}

TEST_F(PlatformContracts, CopyPreservesMetadataReplacesFilesOnly) {
    MakeTree(m_folder.Native(), {"from", "to", "folder/"});
    EXPECT_TRUE(ChangeStatus(m_folder / "from", 1'000'000'000, kReadOnly).ok());
    for (const char* const name : {"new", "to"}) {
        EXPECT_TRUE(CopyWholeFile(m_folder / "from", m_folder / name).ok());
        EXPECT_EQ(m_folder.Read(name), "from");
        const FileInfo info = InfoOf(name);
        EXPECT_EQ(info.modified, 1'000'000'000);
        // Wine keeps the attributes of a file that a copy replaces.
        EXPECT_TRUE((info.attributes & kReadOnly) || (HasDriveLetters() && name == std::string_view("to")));
        EXPECT_TRUE(ChangeStatus(m_folder / name, -1, 0).ok());
        EXPECT_FALSE(IsSame(m_folder / "from", m_folder / name));
    }
    EXPECT_EQ(CopyWholeFile(m_folder / "folder", m_folder / "other").cause(), FileCause::AccessDenied);
    EXPECT_EQ(CopyWholeFile(m_folder / "from", m_folder / "folder").cause(), FileCause::AccessDenied);
    EXPECT_EQ(CopyWholeFile(m_folder / "none", m_folder / "to").cause(), FileCause::FileNotFound);
    EXPECT_TRUE(ChangeStatus(m_folder / "from", -1, 0).ok());
}

// A wait that misses the removal lasts until the watchdog ends the test.
TEST_F(PlatformContracts, TheRemovalOfAnOpenFileEndsTheWait) {
    m_folder.Write("lock", "");
    EXPECT_EQ(RemovalWatch::Open(m_folder / "none\\lock"), nullptr);
    const auto watch = RemovalWatch::Open(m_folder / "lock");
    ASSERT_NE(watch, nullptr);
    CFile file;
    ASSERT_TRUE(file.Open(m_folder / "lock", CFile::modeRead | CFile::shareDenyNone));
    ASSERT_TRUE(file.CloseAndRemove());
    watch->WaitFor(std::chrono::hours(1));
}

}  // namespace
}  // namespace qv::platform
