// What platform/*.h promises of the rest of the system: paths, processes, clocks, settings, watches, windows.

#include <gtest/gtest.h>

#include <iostream>
#include <set>

#include "platform/Clock.h"
#include "platform/Error.h"
#include "platform/FolderWatch.h"
#include "platform/Guid.h"
#include "platform/Locale.h"
#include "platform/MessageWindow.h"
#include "platform/Path.h"
#include "platform/Process.h"
#include "platform/RemovalWatch.h"
#include "platform/Time.h"
#include "platform/User.h"
#include "platform/Volume.h"
#include "platform/Window.h"
#include "tests/support/Child.h"
#include "tests/support/RecordingClock.h"
#include "tests/support/TempFolder.h"

namespace qv::platform {
namespace {

QV_CHILD(EchoOneLine) {
    std::string line;
    std::getline(std::cin, line);
    std::cout << line << std::flush;
    return 40 + static_cast<int>(arguments.size());
}

TEST(SystemContracts, PathsGoThereAndBack) {
    const TempFolder folder;
    const CString path = folder / "a\\b";
    EXPECT_EQ(LibraryPath(NativePath(path)), path.AsStd());
    EXPECT_EQ(LibraryPath("C:/x/a"), "C:\\x\\a");
    EXPECT_EQ(FullPath(folder / "x\\..\\a\\.\\b"), path.AsStd());
    EXPECT_EQ(TempDirectory().back(), '\\');
    EXPECT_TRUE(IsVolume(SystemFolder().substr(0, HasDriveLetters() ? 3 : 1).c_str()));
    EXPECT_FALSE(IsVolume(folder / ""));
    const std::string before = CurrentFolder();
    ChangeFolder((folder / "none").AsStd());
    EXPECT_EQ(CurrentFolder(), before);
    ChangeFolder(SystemFolder());
    EXPECT_NE(CurrentFolder(), before);
    ChangeFolder(before);
    EXPECT_EQ(CurrentFolder(), before);
}

// A wait that misses the removal lasts until the watchdog ends the test.
TEST(SystemContracts, TheRemovalOfAnOpenFileEndsTheWait) {
    const TempFolder folder;
    folder.Write("lock", "");
    EXPECT_EQ(RemovalWatch::Open(folder / "none\\lock"), nullptr);
    const auto watch = RemovalWatch::Open(folder / "lock");
    ASSERT_NE(watch, nullptr);
    CFile file;
    ASSERT_TRUE(file.Open(folder / "lock", CFile::modeRead | CFile::shareDenyNone));
    ASSERT_TRUE(file.CloseAndRemove());
    watch->WaitFor(std::chrono::hours(1));
}

TEST(SystemContracts, ProcessesTalkAndAnswer) {
    ChildProcess child;
    ASSERT_TRUE(StartProcess(CurrentProgram().c_str(), {"--child=EchoOneLine", "a", "b c"}, true, true, child).ok());
    EXPECT_TRUE(WriteToPipe(child.input, "hello\n", 6).ok());
    EXPECT_TRUE(CloseFile(child.input).ok());
    std::string text(16, '\0');
    std::size_t size = 0, count = 0;
    do {
        ASSERT_TRUE(ReadBytes(child.output, text.data() + size, text.size() - size, count).ok());
        size += count;
    } while (count > 0);
    EXPECT_TRUE(CloseFile(child.output).ok());
    EXPECT_EQ(text.substr(0, 5), "hello");
    int exitStatus = -1;
    EXPECT_TRUE(WaitForProcess(child.process, exitStatus).ok());
    EXPECT_EQ(exitStatus, 42);
    EXPECT_EQ(StartProcess("no-such-program", {}, false, false, child).cause(), FileCause::FileNotFound);
}

TEST(SystemContracts, PausesAndTimesComeFromTheClockInForce) {
    RecordingClock clock;
    const auto start = SteadyNow();
    const std::int64_t now = SecondsNow();
    Sleep(std::chrono::hours(1));
    EXPECT_EQ(clock.pauses, (std::vector<long long>{3'600'000}));
    EXPECT_GE(SteadyNow() - start, std::chrono::hours(1));
    EXPECT_GE(SecondsNow() - now, 3600);
}

TEST(SystemContracts, CalendarsAgreeWithThemselves) {
    for (const std::int64_t seconds : {std::int64_t{0}, std::int64_t{1'000'000'000}, std::int64_t{4'000'000'000}}) {
        EXPECT_EQ(ToSeconds(FromSeconds(seconds)), seconds);
        const auto local = ToLocal(seconds);
        ASSERT_TRUE(local);
        EXPECT_EQ(FromLocal(*local), seconds);
    }
    EXPECT_EQ(FromSeconds(-kSecondsFrom1601To1970), (CalendarTime{.year = 1601}));
}

TEST(SystemContracts, TellWhoAndWhatThisIs) {
    EXPECT_FALSE(UserName().empty());
    std::set<Guid> guids;
    for (int i = 0; i < 100; ++i) guids.insert(NewGuid().value());
    EXPECT_EQ(guids.size(), 100u);
    SetLastError(2);
    EXPECT_EQ(LastError(), 2u);
    EXPECT_FALSE(ErrorMessage(2).empty());
    EXPECT_TRUE(ErrorMessage(0x7FFFFFF).empty());
    EXPECT_EQ(ListSeparator(1), "");
}

TEST(SystemContracts, WatchesMissNothingOnceTheyAreArmed) {
    const TempFolder folder;
    EXPECT_FALSE(FolderWatch::Open(folder / "none", false, kFileNames));
    const auto watch = FolderWatch::Open(folder / "", false, kFileNames);
    ASSERT_TRUE(watch);
    folder.Write("made", "x");
    EXPECT_EQ(watch->Wait(), FolderWatch::Event::Change);
    EXPECT_TRUE(watch->Rearm());
    watch->Stop();
    while (watch->Wait() == FolderWatch::Event::Change) watch->Rearm();
    watch->Close();
}

TEST(SystemContracts, MessageWindowsAreFoundByName) {
    struct Receiver : MessageReceiver {
        std::string text;
        void OnMessage(WindowHandle, std::uintptr_t, std::string_view received) override { text = received; }
    } receiver;
    const std::string name = "QvContracts" + std::to_string(CurrentProcessId());
    EXPECT_FALSE(FindMessageWindow(name));
    const WindowHandle window = OpenMessageWindow(name, receiver);
    ASSERT_TRUE(window);
    EXPECT_FALSE(OpenMessageWindow(name, receiver));
    EXPECT_TRUE(SendMessageText(FindMessageWindow(name), "hello", nullptr));
    EXPECT_EQ(receiver.text, "hello");
    CloseMessageWindow(window);
    EXPECT_FALSE(FindMessageWindow(name));
}

TEST(SystemContracts, DialogsKeepTheirControls) {
    const WindowHandle dialog = MakeWindow(WindowKind::Dialog, nullptr, 0);
    if (!dialog) GTEST_SKIP() << "no windows here";
    const WindowHandle edit = MakeWindow(WindowKind::Edit, dialog, 7),
                       list = MakeWindow(WindowKind::ListBox, dialog, 8);
    EXPECT_EQ(ControlOf(dialog, 7), edit);
    EXPECT_FALSE(ControlOf(dialog, 9));
    PutText(edit, "text");
    EXPECT_EQ(TextOf(edit), "text");
    AddItem(list, WindowKind::ListBox, "one");
    EXPECT_EQ(ItemCount(list), 1);
    SetItemData(list, 0, 5);
    EXPECT_EQ(ItemData(list, 0), 5);
    EndWindow(dialog);
}

}  // namespace
}  // namespace qv::platform
