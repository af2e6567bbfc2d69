// What platform/*.h promises of files and folders, alike on every system. What only one system can do is probed for.

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/AtomicFile.h"
#include "platform/FileCopy.h"
#include "platform/FileOpen.h"
#include "platform/FileSearch.h"
#include "platform/FileStatus.h"
#include "platform/FolderFiles.h"
#include "platform/Path.h"
#include "tests/support/SystemFaults.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Tree.h"

namespace qv::platform {
namespace {

class FileContracts : public ::testing::Test {
protected:
    FileHandle Open(const char* name, const OpenRequest& request) {
        FileHandle handle = kNoFile;
        EXPECT_TRUE(OpenFile(m_folder / name, request, handle).ok()) << name;
        return handle;
    }
    FileCause CauseOfOpening(const char* name, const OpenRequest& request) {
        FileHandle handle = kNoFile;
        const Status status = OpenFile(m_folder / name, request, handle);
        EXPECT_EQ(status.ok(), handle != kNoFile);
        EXPECT_TRUE(!status.ok() || CloseFile(handle).ok());
        return status.cause();
    }
    std::map<std::string, std::string> Tree() const { return ReadTree(m_folder.Native()); }

    const TempFolder m_folder;
};

TEST_F(FileContracts, StatusesKeepTheFirstFailure) {
    const Status full(FileCause::DiskFull, 28), refused(FileCause::AccessDenied, 13);
    EXPECT_TRUE(Status().ok());
    EXPECT_EQ(full.Or(refused).cause(), FileCause::DiskFull);
    EXPECT_EQ(Status().Or(refused).cause(), FileCause::AccessDenied);
    EXPECT_EQ(Status::OfError(0).cause(), FileCause::Generic);
    for (const FileCause cause : {FileCause::FileNotFound, FileCause::BadPath, FileCause::AccessDenied,
                                  FileCause::SharingViolation, FileCause::LockViolation, FileCause::DiskFull})
        EXPECT_EQ(Status::OfError(SystemFaults::ErrorFor(cause).value()).cause(), cause);
}

TEST_F(FileContracts, OpeningAnswersWithTheCause) {
    m_folder.Write("there", "text");
    std::filesystem::create_directory(m_folder.Native("folder"));
    const struct {
        const char* name;
        OpenRequest request;
        FileCause cause;
    } cases[] = {{"there", {.read = true}, FileCause::None},
                 {"none", {.read = true}, FileCause::FileNotFound},
                 {"none\\none", {.read = true}, FileCause::BadPath},
                 {"none\\none", {.write = true, .create = true}, FileCause::BadPath},
                 {"folder", {.read = true}, FileCause::AccessDenied},
                 {"folder", {.write = true, .create = true}, FileCause::AccessDenied}};
    for (const auto& c : cases) EXPECT_EQ(CauseOfOpening(c.name, c.request), c.cause) << c.name;
    const FileHandle held = Open("there", {.read = true, .denyWrite = true});
    EXPECT_EQ(CauseOfOpening("there", {.write = true, .create = true, .truncate = true}), FileCause::SharingViolation);
    EXPECT_EQ(CauseOfOpening("there", {.read = true, .denyRead = true}), FileCause::SharingViolation);
    EXPECT_EQ(CauseOfOpening("there", {.read = true}), FileCause::None);
    EXPECT_TRUE(CloseFile(held).ok());
    EXPECT_EQ(m_folder.Read("there"), "text");
    EXPECT_FALSE(m_folder.Has("none"));
}

TEST_F(FileContracts, BytesGoWhereTheyAreSent) {
    const FileHandle file = Open("file", {.read = true, .write = true, .create = true});
    std::uint64_t position = 0;
    char buffer[16];
    std::size_t count = 99;
    EXPECT_TRUE(WriteBytes(file, "0123456789", 10).ok());
    EXPECT_TRUE(ReadBytes(file, buffer, sizeof buffer, count).ok());
    EXPECT_EQ(count, 0u);
    EXPECT_TRUE(SeekTo(file, -4, SeekFrom::End, position).ok());
    EXPECT_EQ(position, 6u);
    EXPECT_TRUE(SeekTo(file, 1, SeekFrom::Current, position).ok());
    EXPECT_TRUE(ReadBytes(file, buffer, sizeof buffer, count).ok());
    EXPECT_EQ(std::string_view(buffer, count), "789");
    EXPECT_EQ(SeekTo(file, -1, SeekFrom::Begin, position).cause(), FileCause::BadSeek);
    EXPECT_TRUE(Resize(file, 3).ok());
    EXPECT_TRUE(WriteBytes(file, "x", 1).ok());
    EXPECT_TRUE(FlushToDisk(file).ok());
    EXPECT_TRUE(LengthOf(file, position).ok());
    EXPECT_EQ(position, 4u);
    EXPECT_TRUE(CloseFile(file).ok());
    EXPECT_EQ(m_folder.Read("file"), "012x");
}

TEST_F(FileContracts, TransfersGoOnWhereTheSystemMovesAByteOnly) {
    m_folder.Write("from", std::string(70'000, 'x') + "end");
    const SystemFaults faults([](const SystemFaults::Call&) { return SystemFaults::Fault{.shorten = true}; });
    const FileHandle file = Open("file", {.write = true, .create = true});
    EXPECT_TRUE(WriteBytes(file, "0123456789", 10).ok());
    EXPECT_TRUE(CloseFile(file).ok());
    EXPECT_EQ(m_folder.Read("file"), "0123456789");
    EXPECT_TRUE(CopyWholeFile(m_folder / "from", m_folder / "to").ok());
    EXPECT_EQ(m_folder.Read("to"), m_folder.Read("from"));
}

TEST_F(FileContracts, NamesComeAndGo) {
    m_folder.Write("a", "1");
    m_folder.Write("b", "2");
    FileInfo info;
    EXPECT_EQ(RenameFile(m_folder / "a", m_folder / "b").cause(), FileCause::AccessDenied);
    EXPECT_TRUE(RenameFile(m_folder / "a", m_folder / "c").ok());
    EXPECT_EQ(StatusOf(m_folder / "a", info).cause(), FileCause::FileNotFound);
    EXPECT_EQ(RemoveFile(m_folder / "a").cause(), FileCause::FileNotFound);
    EXPECT_TRUE(CreateFolder(m_folder / "d").ok());
    EXPECT_TRUE(CreateFolder(m_folder / "d").ok());
    EXPECT_EQ(CreateFolder(m_folder / "e\\f").cause(), FileCause::BadPath);
    m_folder.Write("d/x", "");
    EXPECT_FALSE(RemoveFolder(m_folder / "d").ok());
    EXPECT_TRUE(RemoveFile(m_folder / "d\\x").ok());
    EXPECT_TRUE(RemoveFolder(m_folder / "d\\").ok());
    EXPECT_TRUE(ChangeStatus(m_folder / "c", 1'000'000'000, kReadOnly).ok());
    EXPECT_TRUE(StatusOf(m_folder / "c", info).ok());
    EXPECT_EQ(info.modified, 1'000'000'000);
    EXPECT_EQ(info.attributes & kReadOnly, unsigned{kReadOnly});
    EXPECT_TRUE(ChangeStatus(m_folder / "c", -1, 0).ok());
    EXPECT_TRUE(IsSame(m_folder / "c", m_folder / "d\\..\\c") || !m_folder.Has("d"));
    EXPECT_FALSE(IsSame(m_folder / "b", m_folder / "c"));
}

TEST_F(FileContracts, FoldersAreWorkedInWithoutPaths) {
    MakeTree(m_folder.Native(), {"top/file", "top/sub/inner", "outside"});
    Folder top, sub, none;
    ASSERT_TRUE(top.Open(m_folder / "top", LastName::NoLink).ok());
    EXPECT_FALSE(none.OpenIn(top, "file").ok());
    EXPECT_FALSE(none.OpenIn(top, "missing").ok());
    ASSERT_TRUE(sub.OpenIn(top, "sub").ok());
    std::vector<FolderEntry> entries;
    EXPECT_TRUE(top.List(entries).ok());
    std::sort(entries.begin(), entries.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0].kind, EntryKind::File);
    EXPECT_EQ(entries[1].kind, EntryKind::Folder);
    EXPECT_FALSE(top.Remove(entries[1]).ok());
    EXPECT_TRUE(sub.Remove({"inner", EntryKind::File}).ok());
    sub.Close();
    EXPECT_TRUE(top.Remove(entries[1]).ok());
    EXPECT_TRUE(MakeFolderIn(top, "new").ok());
    EXPECT_TRUE(MakeFolderIn(top, "new").ok());
    FileHandle handle = kNoFile;
    EXPECT_FALSE(CreateFileIn(top, "file", handle).ok());
    EXPECT_TRUE(CreateFileIn(top, "made", handle).ok());
    EXPECT_TRUE(WriteBytes(handle, "x", 1).ok());
    EXPECT_TRUE(CloseFile(handle).ok());
    EXPECT_TRUE(MoveOverIn(top, "made", "file").ok());
    EXPECT_FALSE(MoveOverIn(top, "file", "new").ok());
    EXPECT_TRUE(RemoveFileIn(top, "file").ok());
    EXPECT_EQ(Tree(), (std::map<std::string, std::string>{{"outside", "outside"}, {"top/", ""}, {"top/new/", ""}}));
}

TEST_F(FileContracts, FailedChangesLeaveFilesReadOnly) {
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
        FileInfo info;
        EXPECT_TRUE(StatusOf(m_folder / "kept", info).ok());
        EXPECT_TRUE(info.attributes & kReadOnly);
    }
    EXPECT_TRUE(MoveOverIn(folder, "new", "kept").ok());
    EXPECT_TRUE(RemoveFileIn(folder, "kept").ok());
}

TEST_F(FileContracts, SearchesGiveWhatTheMaskMeans) {
    MakeTree(m_folder.Native(), {"a.txt", "B.TXT", "c", "d.txt/x"});
    const struct {
        const char* mask;
        std::vector<std::string> names;
    } cases[] = {{"*.txt", {"a.txt", "B.TXT", "d.txt"}},
                 {"*.*", {".", "..", "a.txt", "B.TXT", "c", "d.txt"}},
                 {"?.txt", {"a.txt", "B.TXT", "d.txt"}},
                 {"C", {"c"}},
                 {"none*", {}}};
    for (const auto& c : cases) {
        FileSearch search;
        ASSERT_TRUE(search.Start(m_folder / c.mask).ok());
        std::vector<std::string> names;
        for (FoundEntry entry; search.Next(entry);) {
            names.push_back(entry.name);
            EXPECT_EQ(entry.IsFolder(), entry.IsDots() || entry.name == "d.txt");
        }
        EXPECT_TRUE(search.LeftOut().ok());
        EXPECT_TRUE(std::is_permutation(names.begin(), names.end(), c.names.begin(), c.names.end()))
            << c.mask << ::testing::PrintToString(names);
    }
    FileSearch search;
    EXPECT_FALSE(search.Start(m_folder / "none\\*").ok());
}

TEST_F(FileContracts, AnAtomicFileTakesItsPlaceWholeOrNotAtAll) {
    m_folder.Write("x", "old");
    const auto before = Tree();
    const auto write = [](AtomicFile& file) { return WriteBytes(file.Handle(), "new", 3); };
    {
        AtomicFile dropped;
        ASSERT_TRUE(dropped.Create(m_folder / "x").ok());
        EXPECT_TRUE(write(dropped).ok());
    }
    EXPECT_EQ(Tree(), before);
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
    EXPECT_EQ(Tree(), (std::map<std::string, std::string>{{"x", "new"}, {"y", "new"}}));
}

TEST_F(FileContracts, TemporaryNamesThatNoProcessHoldsAreFreeAgain) {
    // Opening a folder makes a file without a name: no file system has them here.
    const SystemFaults faults([](const SystemFaults::Call& call) {
        const bool unnamed = call.kind == CallKind::Open && call.path.ends_with('/');
        return unnamed ? SystemFaults::Of(FileCause::AccessDenied) : SystemFaults::Fault{};
    });
    m_folder.Write(".qv1.tmp", "of a process that died");
    MakeTree(m_folder.Native(), {".qv2.tmp/is a folder"});
    AtomicFile first, second;
    ASSERT_TRUE(first.Create(m_folder / "x").ok());
    ASSERT_TRUE(second.Create(m_folder / "x").ok());
    EXPECT_EQ(m_folder.Read(".qv1.tmp"), "");
    EXPECT_TRUE(WriteBytes(first.Handle(), "first", 5).ok());
    EXPECT_TRUE(second.Commit(IfExists::Fail, Durability::Deferred).ok());
    EXPECT_TRUE(first.Commit(IfExists::Replace, Durability::Deferred).ok());
    EXPECT_EQ(Tree(), (std::map<std::string, std::string>{
                          {".qv2.tmp/", ""}, {".qv2.tmp/is a folder", ".qv2.tmp/is a folder"}, {"x", "first"}}));
}

TEST_F(FileContracts, CopiesKeepTimesAndAttributesAndReplaceFilesOnly) {
    m_folder.Write("from", "text");
    m_folder.Write("to", "old");
    std::filesystem::create_directory(m_folder.Native("folder"));
    EXPECT_TRUE(ChangeStatus(m_folder / "from", 1'000'000'000, kReadOnly).ok());
    EXPECT_TRUE(CopyWholeFile(m_folder / "from", m_folder / "new").ok());
    EXPECT_TRUE(CopyWholeFile(m_folder / "from", m_folder / "to").ok());
    for (const char* const name : {"new", "to"}) {
        FileInfo info;
        EXPECT_EQ(m_folder.Read(name), "text");
        EXPECT_TRUE(StatusOf(m_folder / name, info).ok());
        EXPECT_EQ(info.modified, 1'000'000'000);
        // Wine leaves a file that it replaces its attributes.
        EXPECT_TRUE((info.attributes & kReadOnly) || (HasDriveLetters() && name == std::string_view("to")));
        EXPECT_TRUE(ChangeStatus(m_folder / name, -1, 0).ok());
    }
    EXPECT_EQ(CopyWholeFile(m_folder / "folder", m_folder / "other").cause(), FileCause::AccessDenied);
    EXPECT_EQ(CopyWholeFile(m_folder / "from", m_folder / "folder").cause(), FileCause::AccessDenied);
    EXPECT_EQ(CopyWholeFile(m_folder / "none", m_folder / "to").cause(), FileCause::FileNotFound);
    EXPECT_TRUE(ChangeStatus(m_folder / "from", -1, 0).ok());
}

}  // namespace
}  // namespace qv::platform
