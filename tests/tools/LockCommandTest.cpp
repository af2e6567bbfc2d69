#include <gtest/gtest.h>

#include <iostream>

#include "platform/Process.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/LockFile.h"
#include "tests/support/Child.h"
#include "tests/support/RecordingClock.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Tool.h"

namespace {

/// Exits with 10 when the lock on the document is free, with 11 when it is held.
QV_CHILD(LookAtLock) {
    const RecordingClock clock;
    CLockFile lock;
    lock.SetSourceFile(arguments.at(0).c_str());
    return lock.Lock(1) ? 10 : 11;
}

TEST(LockCommand, RunsTheCommandUnderTheLockAndGivesItsStatus) {
    const TempFolder folder;
    const CString document = folder / "a document", self(qv::platform::CurrentProgram());
    EXPECT_EQ(ToolStatus({"lock", document, "--", self, "--child=LookAtLock", document}), 11);
    EXPECT_EQ(ToolStatus({"lock", folder / "other", "--", self, "--child=LookAtLock", document}), 10);
    const ToolAnswer checked = RunTool({"lock", "--check", folder / ""});
    EXPECT_EQ(checked.status, 0) << checked.output;
    EXPECT_EQ(std::count(checked.output.begin(), checked.output.end(), '\n'), 6) << checked.output;
    EXPECT_EQ(ToolStatus({"lock", "--check", folder / "missing"}), 1);
    EXPECT_TRUE(std::filesystem::is_empty(folder.Native()));
    CLockFile holder;
    holder.SetSourceFile(document);
    ASSERT_TRUE(holder.Lock(1));
    EXPECT_EQ(ToolStatus({"lock", document, "--", self, "--child=LookAtLock", document}), 1);
}

/// Reports that it runs, and ends with its input.
QV_CHILD(RunUntilTheInputEnds) {
    std::cout << "running" << std::endl;
    std::cin.get();
    return 0;
}

TEST(LockCommand, KeepsTheLockUntilTheCommandEndsEvenWhenKilled) {
    const TempFolder folder;
    const CString document = folder / "document", self(qv::platform::CurrentProgram());
    CProcess tool;
    tool.Start(ToolPath().c_str(),
               {"lock", CFileUtils::GetNativePath(document), "--", self, "--child=RunUntilTheInputEnds"},
               CProcess::pipeInput | CProcess::pipeOutput);
    ASSERT_EQ(LineFrom(tool), "running");
    tool.Kill();
    CLockFile lock;
    lock.SetSourceFile(document);
    EXPECT_FALSE(lock.TryLock());
    tool.CloseInput();
    EXPECT_EQ(LineFrom(tool), "");
    EXPECT_TRUE(lock.LockFor(60000));
}

}  // namespace
