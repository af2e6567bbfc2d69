#include <gtest/gtest.h>

#include "platform/Process.h"
#include "qvcommon/LockFile.h"
#include "tests/support/Child.h"
#include "tests/support/RecordingPause.h"
#include "tests/support/TempFolder.h"

namespace {

/// Whether someone holds the lock on the document: 10 or 11.
QV_CHILD(LookAtLock) {
    const RecordingPause pause;
    CLockFile lock;
    lock.SetSourceFile(arguments.at(0).c_str());
    return lock.Lock(1) ? 10 : 11;
}

int RunTool(CStringArray arguments) {
    const std::filesystem::path self = qv::platform::CurrentProgram();
    CProcess tool;
    tool.Start((self.parent_path() / "qv").string().c_str(), arguments, CProcess::pipeOutput);
    return tool.Wait();
}

TEST(LockCommand, RunsTheCommandUnderTheLockAndGivesItsStatus) {
    const TempFolder folder;
    const CString document = folder / "a document", self(qv::platform::CurrentProgram());
    EXPECT_EQ(RunTool({"lock", document, "--", self, "--child=LookAtLock", document}), 11);
    EXPECT_EQ(RunTool({"lock", folder / "other", "--", self, "--child=LookAtLock", document}), 10);
    EXPECT_EQ(RunTool({"lock", document, "--", "no-such-program-here"}), 1);
    EXPECT_EQ(RunTool({"lock", document}), 2);
    EXPECT_EQ(RunTool({"lock", document, "--attempts", "0", "--", self}), 2);
    EXPECT_TRUE(std::filesystem::is_empty(folder.Native()));
    CLockFile holder;
    holder.SetSourceFile(document);
    ASSERT_TRUE(holder.Lock(1));
    EXPECT_EQ(RunTool({"lock", document, "--", self, "--child=LookAtLock", document}), 1);
}

}  // namespace
