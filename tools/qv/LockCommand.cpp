#include <memory>

#include "qvcommon/FileUtils.h"
#include "qvcommon/LockFile.h"
#include "qvcommon/framework/Process.h"
#include "tools/qv/Commands.h"
#include "tools/qv/Lines.h"
#include "tools/qv/LockCheck.h"
#include "tools/qv/Progress.h"
#include "tools/qv/Visible.h"

namespace qv::tool {
namespace {

struct Options {
    std::string document, folderToCheck;
    int attempts = 1;
    int wait = -1;
    std::vector<std::string> command;
};

std::string ReasonOf(const CLockFile& lock, const std::string& document) {
    if (!lock.GetLockedBy().IsEmpty()) return Native(document) + " is locked by " + lock.GetLockedBy().AsStd();
    CFileException error = lock.GetLockException();
    return Native(document) + " could not be locked: " + MessageOf(error);
}

/// Prints a line for each property of the folder; returns false if one does not hold.
bool Check(const std::string& folder) {
    bool holds = true;
    Lines lines;
    for (const LockCheck& check : CheckLocks(folder)) {
        lines.Add((check.holds ? "ok      " : "FAILED  ") + check.text);
        holds = holds && check.holds;
    }
    lines.Add("note    " + DescribeReach(folder));
    lines.Write();
    return holds;
}

// Returns the status that shells use for a command that could not be started.
int NotStarted(const std::string& command, CFileException* error) {
    constexpr int kNotExecutable = 126, kNotFound = 127;
    const bool isMissing = error->m_cause == CFileException::fileNotFound || error->m_cause == CFileException::badPath;
    Complain(command + " could not be started: " + MessageOf(*error));
    error->Delete();
    return isMissing ? kNotFound : kNotExecutable;
}

int RunLocked(const Options& options) {
    if (!options.folderToCheck.empty()) return Check(options.folderToCheck) ? 0 : 1;
    if (options.command.empty()) throw WrongUsage("DOCUMENT and COMMAND are required");
    CLockFile lock;
    lock.SetSourceFile(options.document.c_str());
    // The command keeps the lock until it has ended, even if this program ends earlier.
    lock.SetInheritable(1);
    const bool held =
        options.wait < 0 ? lock.Lock(options.attempts) : lock.LockFor(static_cast<UINT>(options.wait) * 1000);
    if (!held) throw CommandError(ReasonOf(lock, options.document));
    CStringArray arguments;
    for (std::size_t i = 1; i < options.command.size(); ++i) arguments.Add(options.command[i]);
    CProcess command;
    try {
        command.Start(CFileUtils::GetLibraryPath(options.command[0].c_str()), arguments);
    } catch (CFileException* error) {
        return NotStarted(options.command[0], error);
    }
    return command.WaitInForeground();
}

}  // namespace

void AddLockCommand(Command app) {
    Command command = app.Add("lock", "Run a command while holding the lock on a shared document");
    const auto options = std::make_shared<Options>();
    command.AddPath("DOCUMENT", options->document, "The document; its lock file is beside it");
    command.AddOption("--attempts", options->attempts, "The number of attempts, with growing pauses from 500 ms on")
        .Between(1, 1000)
        .ShowDefault();
    command.AddOption("--wait", options->wait, "Wait for the lock up to this many seconds, instead of --attempts")
        .Between(0, 1000000);
    command.AddOption("COMMAND", options->command, "The command and its arguments, after --");
    command.AddPath("--check", options->folderToCheck, "Test what locks guarantee in this folder, and run nothing")
        .CallValue("FOLDER");
    command.SetNotes(
        "The command holds the lock until it exits, even if qv exits earlier.\n"
        "The exit status is the command's; 127 or 126 if it is missing or cannot be run; 1 if the lock cannot be\n"
        "acquired, and the holder's name is printed.");
    command.AddExample("qv lock plan.doc --attempts 3 -- editor plan.doc");
    command.AddExample("qv lock --check /srv/shared");
    command.SetAction([options] {
        if (const int status = RunLocked(*options)) throw CommandExit{status};
    });
}

}  // namespace qv::tool
