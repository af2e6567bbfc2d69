#include <map>
#include <memory>
#include <optional>

#include "qvcommon/FileFinder.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/framework/StandardStreams.h"
#include "tools/qv/Commands.h"
#include "tools/qv/LeftOuts.h"
#include "tools/qv/Progress.h"
#include "tools/qv/Visible.h"

namespace qv::tool {
namespace {

struct Options {
    std::string folder, mask = "*";
    bool recurse = false;
    int folders = 0;
};

class CountingFinder : public FileFinder {
public:
    void UpdateProgress(const char*) override { m_progress->Add(); }
    /// Results are printed where the progress was shown.
    void EndProgress() { m_progress.reset(); }

private:
    std::optional<Progress> m_progress{"entries looked at"};
};

void Find(const Options& options) {
    if (!CFileUtils::IsDirectory(options.folder.c_str())) throw FailedOn(options.folder, "not a folder");
    LeftOuts leftOuts;
    CountingFinder finder;
    finder.SetLeftOut(&leftOuts);
    finder.SetSearchPath(options.folder.c_str());
    finder.SetSearchMask(options.mask.c_str());
    finder.SetRecurse(options.recurse);
    finder.SetIncludeDirectories(options.folders);
    finder.Discover();
    finder.EndProgress();
    CString lines;
    for (int i = 0; i < finder.GetFileOffsets().GetSize(); ++i) {
        CString line;
        line.Format("%u\t%s\n", finder.GetOffsetDepths()[i], ForOutput(Native(finder.GetFileOffsets()[i].AsStd())));
        lines += line;
    }
    AfxWriteStandardOutput(lines);
    leftOuts.Check();
}

}  // namespace

void AddFind(Command app) {
    const auto options = std::make_shared<Options>();
    Command command = app.Add("find", "List what a folder holds: depth number, tab, relative path");
    command.AddPath("FOLDER", options->folder, "The folder to search").Require();
    command.AddOption("--mask", options->mask, "Which names, with * and ?").CallValue("MASK").ShowDefault();
    command.AddFlag("--recurse", options->recurse, "Search the folders below it too");
    const std::map<std::string, int> modes{{"none", 0}, {"only", 1}, {"too", 2}};
    command.AddOption("--folders", options->folders, modes, "Whether folders are listed: none, only or too")
        .CallValue("MODE");
    command.SetFooter(
        "The depth numbers siblings: the first folder below another has that one's number, each further one 1 more.\n"
        "Folders that cannot be searched are named on standard error; the exit status is 1 then.\n"
        "Example: qv find documents --mask '*.txt' --recurse");
    command.SetAction([options] { Find(*options); });
}

}  // namespace qv::tool
