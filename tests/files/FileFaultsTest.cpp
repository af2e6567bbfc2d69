#include <gtest/gtest.h>

#include "qvcommon/CopyTree.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/framework/File.h"
#include "tests/support/FileFaults.h"
#include "tests/support/Raised.h"
#include "tests/support/RecordingPause.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Tree.h"

// Every operation that writes is run again and again, and each time another one of its calls to the system fails, as on a
// full disk. Either the operation says so, or it has done all that it should.

namespace {

using qv::FileCall;
using qv::platform::FileCause;
using qv::platform::FileFailure;
using Tree = std::map<std::string, std::string>;

struct Counting : ICopyProgress {
    int errors = 0;
    int OnError(DWORD, const char*) override { return ++errors; }
};

struct Operation {
    const char* name;
    std::initializer_list<const char*> before;
    /// Whether it said that something failed.
    std::function<bool(const TempFolder&)> run;
    Tree after;
    /// What has to be there after a failure that was reported.
    std::function<bool(const Tree&)> kept = [](const Tree&) { return true; };
};

/// Runs the action; true when it raised a file exception, which has to name a file of the folder.
template <class Action>
bool Raises(const TempFolder& folder, Action action) {
    const auto error = Raised<CFileException>(action);
    EXPECT_TRUE(!error || error->m_strFileName.Find(folder / "") == 0);
    return error != nullptr;
}

bool CopyReports(const TempFolder& folder) {
    Counting progress;
    CCopyTree copy;
    copy.SetProgressMonitor(&progress);
    copy.CopyTree(folder / "from", folder / "to");
    return progress.errors > 0;
}

bool IsOneOf(const Tree& tree, const std::string& name, std::initializer_list<const char*> contents) {
    const auto found = tree.find(name);
    return found != tree.end() && std::find(contents.begin(), contents.end(), found->second) != contents.end();
}

const Operation kOperations[] = {
    {"WriteFile",
     {},
     [](const TempFolder& f) { return Raises(f, [&] { CFileUtils::WriteFile(f / "new\\x", CString("text"), 1, 1); }); },
     {{"new/", ""}, {"new/x", "text"}}},
    {"WriteFile over",
     {"x"},
     [](const TempFolder& f) { return Raises(f, [&] { CFileUtils::WriteFile(f / "x", CString("text"), 0, 0); }); },
     {{"x", "text"}}},
    {"Log",
     {"x"},
     [](const TempFolder& f) { return !CFileUtils::Log(f / "x", "line", 0); },
     {{"x", "xline\r\n"}},
     [](const Tree& tree) {
         return IsOneOf(tree, "x", {"x", "xline\r\n"});
     }},
    {"BackupFile",
     {"x.a", "x.bak"},
     [](const TempFolder& f) { return Raises(f, [&] { CFileUtils::BackupFile(f / "x.a"); }); },
     {{"x.bak", "x.a"}},
     [](const Tree& tree) { return IsOneOf(tree, "x.a", {"x.a"}) || IsOneOf(tree, "x.bak", {"x.a"}); }},
    {"DelTree",
     {"t/a", "t/b/c", "t/b/d/e"},
     [](const TempFolder& f) { return Raises(f, [&] { CFileUtils::DelTree(f / "t", 0); }); },
     {{"t/", ""}}},
    {"CopyTree",
     {"from/a", "from/b/c", "to/a"},
     CopyReports,
     {{"from/", ""},
      {"from/a", "from/a"},
      {"from/b/", ""},
      {"from/b/c", "from/b/c"},
      {"to/", ""},
      {"to/a", "from/a"},
      {"to/b/", ""},
      {"to/b/c", "from/b/c"}},
     [](const Tree& tree) {
         return IsOneOf(tree, "to/a", {"to/a", "from/a"});
     }}};

/// Failures of which nobody needs to hear: a question without an answer means that nothing is there, and a folder that
/// cannot be deleted stays.
bool MaySayNothing(FileCall call, const CString& path) {
    return call == FileCall::Status || (call == FileCall::Remove && CFileUtils::IsDirectory(path));
}

/// Runs it with one call failing; false when it makes fewer calls.
bool RunWithFault(const Operation& operation, int failing) {
    const TempFolder folder;
    MakeTree(folder.Native(), operation.before);
    int calls = 0;
    bool silent = false;
    bool reported = false;
    {
        const RecordingPause pause;
        const FileFaults faults([&](FileCall call, const char* path) {
            if (++calls != failing) return FileFailure{};
            silent = MaySayNothing(call, path);
            return FileFailure{FileCause::DiskFull, 28};
        });
        reported = operation.run(folder);
    }
    if (calls < failing) return false;
    const Tree tree = ReadTree(folder.Native());
    EXPECT_TRUE(reported || tree == operation.after || silent) << operation.name << " call " << failing;
    EXPECT_TRUE(operation.kept(tree)) << operation.name << " call " << failing;
    return true;
}

TEST(FileFaults, AreNeverSilent) {
    for (const Operation& operation : kOperations) {
        int calls = 1;
        while (RunWithFault(operation, calls)) ++calls;
        EXPECT_GT(calls, 4) << operation.name;
        const TempFolder folder;
        MakeTree(folder.Native(), operation.before);
        EXPECT_FALSE(operation.run(folder)) << operation.name;
        EXPECT_EQ(ReadTree(folder.Native()), operation.after) << operation.name;
    }
}

TEST(FileFaults, OfReadingGiveNothingRatherThanAPart) {
    const TempFolder folder;
    folder.Write("x", std::string(100000, 'x') + "\ny");
    for (int failing = 1; failing < 6; ++failing) {
        int reads = 0;
        const FileFaults faults([&](FileCall call, const char*) {
            const bool fails = call == FileCall::Read && ++reads == failing;
            return fails ? FileFailure{FileCause::HardIO, 5} : FileFailure{};
        });
        CStringArray lines;
        const CString text = CFileUtils::ReadFile(folder / "x");
        EXPECT_EQ(text.IsEmpty(), reads >= failing) << failing;
        reads = 0;
        CFileUtils::ReadFile(folder / "x", lines);
        EXPECT_EQ(lines.IsEmpty(), reads >= failing) << failing;
    }
}

}  // namespace
