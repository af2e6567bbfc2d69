#include <memory>

#include "qvcommon/CopyTree.h"
#include "qvcommon/FileUtils.h"
#include "tools/qv/Commands.h"
#include "tools/qv/LeftOuts.h"
#include "tools/qv/Progress.h"

namespace qv::tool {
namespace {

struct Options {
    std::string source, target;
    bool laterOnly = false;
};

/// Counts what was copied.
class CountedFiles : public ICopyProgress {
public:
    explicit CountedFiles(int total) : m_progress("files copied", static_cast<std::size_t>(total)) {}
    void OnCopyFile(const char*) override { m_progress.Add(); }

private:
    Progress m_progress;
};

void Copy(const Options& options) {
    if (!CFileUtils::IsDirectory(options.source.c_str())) throw FailedOn(options.source, "not a folder");
    LeftOuts leftOuts;
    CCopyTree copy;
    copy.SetSourceDirectory(options.source.c_str());
    copy.SetDestinationDirectory(options.target.c_str());
    copy.SetLaterOnly(options.laterOnly);
    copy.SetLeftOut(&leftOuts);
    {
        CountedFiles files(copy.GetFileCount());
        copy.SetProgressMonitor(&files);
        copy.CopyTree();
    }
    leftOuts.Check();
}

}  // namespace

void AddCopy(Command app) {
    const auto options = std::make_shared<Options>();
    Command command = app.Add("copy", "Copy a folder tree, with times and attributes");
    command.AddPath("SOURCE", options->source, "The folder to copy").Require();
    command.AddPath("TARGET", options->target, "The folder that gets what SOURCE holds; made when missing").Require();
    command.AddFlag("--later-only", options->laterOnly, "Leave files alone that are as new or newer in TARGET");
    command.SetFooter(
        "What cannot be copied is named, links to folders too, and all else is copied; the exit status is 1 then.\n"
        "Example: qv copy documents backup --later-only");
    command.SetAction([options] { Copy(*options); });
}

}  // namespace qv::tool
