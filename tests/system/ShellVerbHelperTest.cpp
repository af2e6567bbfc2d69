#include "qvcommon/ShellVerbHelper.h"

#include <algorithm>
#include <cerrno>

#include "platform/FolderWatch.h"
#include "platform/Process.h"
#include "qvcommon/Exceptions.h"
#include "qvcommon/NetUtils.h"
#include "qvcommon/RegHelper.h"
#include "tests/support/Child.h"
#include "tests/support/FileTests.h"
#include "tests/support/RecordingClock.h"

namespace {

/// Runs a verb in another process, which finds the stand-ins by its PATH. A system call may fail there, each time after
/// a second.
QV_CHILD(AskDesktop) {
    RecordingClock clock;
    const SystemFaults faults([&](const SystemFaults::Call& call) {
        if (call.name != arguments.at(2)) return SystemFaults::Fault{};
        clock.Sleep(std::chrono::seconds(1));
        return SystemFaults::Fault{.error = static_cast<unsigned long>(arguments[2] == "poll" ? EINTR : EMFILE)};
    });
    const auto verb = arguments.at(0) == "open"    ? &CShellVerbHelper::Open
                      : arguments.at(0) == "print" ? &CShellVerbHelper::Print
                                                   : &CShellVerbHelper::Reveal;
    const auto error = Raised<CVorbexException>([&] { verb(arguments.at(1).c_str()); });
    std::printf("%s\n", error ? error->GetText().c_str() : "done");
    return error ? 1 : 0;
}

struct Asked {
    std::string answer;  ///< of the library
    std::string called;  ///< the stand-ins with their arguments, a line each
};

class ShellVerbHelperTest : public testing::Test {
protected:
    void SetUp() override {
        if (qv::platform::HasDriveLetters()) GTEST_SKIP() << "the desktop's programs are not found by PATH";
        m_folder.Write(m_name, "document");
    }

    /// A program that records its arguments and ends with a status.
    void StandIn(const std::string& name, int status) {
        m_folder.Write(name, "#!/bin/sh\n{ printf '%s' \"${0##*/}\"; printf '|%s' \"$@\"; echo; } >> '" +
                                 m_folder.Native("calls").string() + "'\nexit " + std::to_string(status) + "\n");
        fs::permissions(m_folder.Native(name), fs::perms::owner_all);
    }

    Asked Ask(const char* verb, const char* failing = "") {
        fs::remove(m_folder.Native("calls"));
        CProcess asking;
        asking.Start(
            "env",
            {CString("PATH=" + m_folder.Native().string()), CString(fs::read_symlink("/proc/self/exe").string()),
             "--child=AskDesktop", verb, m_folder / m_name, failing},
            CProcess::pipeInput | CProcess::pipeOutput);
        const std::string answer = LineFrom(asking);
        asking.Wait();
        return {answer, m_folder.Read("calls")};
    }

    const TempFolder m_folder;
    const std::string m_name = "-a 'b\",$(c).txt";
    const std::string m_path = m_folder.Native(m_name).string();
};

TEST_F(ShellVerbHelperTest, PassesNamesUnchanged) {
    StandIn("xdg-open", 0);
    StandIn("lp", 0);
    const Asked opened = Ask("open"), printed = Ask("print");
    EXPECT_EQ(opened.answer, "done");
    EXPECT_EQ(opened.called, "xdg-open|" + m_path + "\n");
    EXPECT_EQ(printed.called, "lp|--|" + m_path + "\n");
}

TEST_F(ShellVerbHelperTest, RevealPrefersFileManager) {
    const std::string folder = m_folder.Native("x").parent_path().string();
    const std::string uri = "file://" + folder + "/-a%20%27b%22%2C%24%28c%29.txt";
    StandIn("xdg-open", 0);
    EXPECT_EQ(Ask("reveal").called, "xdg-open|" + folder + "\n");
    StandIn("dbus-send", 0);
    EXPECT_THAT(Ask("reveal").called, testing::AllOf(testing::StartsWith("dbus-send|--session"),
                                                     testing::HasSubstr("|array:string:" + uri + "|string:\n")));
    StandIn("gdbus", 1);
    EXPECT_THAT(Ask("reveal").called, testing::AllOf(testing::StartsWith("gdbus|call|--session"),
                                                     testing::HasSubstr("|['" + uri + "']|''\ndbus-send|")));
    StandIn("gdbus", 0);
    EXPECT_THAT(Ask("reveal").called, testing::EndsWith("|['" + uri + "']|''\n"));
}

TEST_F(ShellVerbHelperTest, ReportsReasonForFailureButDoesNotWait) {
    const std::string path = (m_folder / m_name).AsStd();
    EXPECT_EQ(Ask("open").answer, path + ": xdg-open cannot be started. Is it installed?");
    StandIn("xdg-open", 3);
    EXPECT_EQ(Ask("open").answer, path + ": xdg-open failed with status 3.");
    m_folder.Write("xdg-open", "#!/bin/sh\nread line\n");
    for (const char* const failing : {"poll", "pidfd_open"}) EXPECT_EQ(Ask("open", failing).answer, "done") << failing;
}

TEST(ShellVerbHelper, RejectsMissingFiles) {
    const TempFolder folder;
    for (const auto verb : {&CShellVerbHelper::Open, &CShellVerbHelper::Print, &CShellVerbHelper::Reveal}) {
        const auto error = Raised<CFileException>([&] { verb(folder / "none"); });
        ASSERT_TRUE(error);
        EXPECT_EQ(error->m_cause, CFileException::fileNotFound);
        EXPECT_EQ(error->m_strFileName, folder / "none");
    }
}

/// The program for the documents of the next test. A second file shows that the first is complete; a rename
/// instead would hold it open, and a reader would get a sharing violation.
QV_CHILD(NoteDocument) {
    const std::string& calls = arguments.at(0);
    std::ofstream(calls) << arguments.at(1) << ' ' << arguments.at(2);
    std::ofstream(calls + ".complete");
    return 0;
}

TEST(ShellVerbHelper, StartsRegisteredProgram) {
    if (!qv::platform::HasDriveLetters()) GTEST_SKIP() << "kinds of documents are the desktop's business";
    const TempFolder folder;
    const CString document = folder / "a & b.qvcommontest";
    folder.Write("a & b.qvcommontest", "document");
    // Wine does not look for them among the user's settings.
    CRegHelper extension("Software\\Classes\\.qvcommontest", CRegHelper::localMachine);
    CRegHelper kind("Software\\Classes\\QvCommon.Test", CRegHelper::localMachine);
    if (Raised<CFileException>([&] { extension.SetString("", "QvCommon.Test"); }))
        GTEST_SKIP() << "only an administrator may set it for all users";
    for (const char* const verb : {"open", "print"})
        CRegHelper(kind.GetKey() + "\\shell\\" + verb + "\\command", CRegHelper::localMachine)
            .SetString("", '"' + CString(qv::platform::CurrentProgram()) + "\" --child=NoteDocument \"" +
                               folder.Native(verb).string() + "\" " + verb + " \"%1\"");
    const auto watch = qv::platform::FolderWatch::Open(folder / "", false, qv::platform::kFileNames);
    ASSERT_TRUE(watch);
    for (const char* const verb : {"open", "print"}) {
        (*verb == 'o' ? CShellVerbHelper::Open : CShellVerbHelper::Print)(document);
        while (!folder.Has(verb + std::string(".complete"))) {
            watch->Wait();
            watch->Rearm();
        }
        EXPECT_EQ(folder.Read(verb), verb + (" " + document.AsStd()));
    }
    kind.DeleteKey();
    extension.DeleteKey();
    const auto error = Raised<CVorbexException>([&] { CShellVerbHelper::Print(document); });
    ASSERT_TRUE(error) << "no program prints it";
    EXPECT_GT(error->GetText().GetLength(), document.GetLength() + 4) << "gives a reason";
}

TEST(NetUtils, ReturnsUserAndMachineNames) {
    CStringArray names = {"old"};
    EXPECT_TRUE(CNetUtils::GetUserNames(names));
    EXPECT_THAT(names.AsStd(), testing::Not(testing::Contains("old")));
    EXPECT_TRUE(std::is_sorted(names.begin(), names.end()));
    for (const CString& name : names) EXPECT_FALSE(CNetUtils::GetDisplayName(name).IsEmpty());
    EXPECT_EQ(CNetUtils::GetDisplayName("no such user"), "no such user");
    EXPECT_FALSE(CNetUtils::GetMachineName().IsEmpty());
    EXPECT_EQ(CNetUtils::GetMachineName().Find('.'), -1);
    if (!qv::platform::HasDriveLetters()) {
        EXPECT_EQ(CNetUtils::GetDisplayName("root"), "root");
    }
}

}  // namespace
