#include <memory>

#include "qvcommon/CopyTree.h"
#include "qvcommon/FileUtils.h"
#include "tools/qv/Commands.h"
#include "tools/qv/LeftOuts.h"
#include "tools/qv/Lines.h"
#include "tools/qv/Progress.h"
#include "tools/qv/Visible.h"

namespace qv::tool {
namespace {

struct Options {
    std::string source, target;
    bool laterOnly = false, dryRun = false;
};

/// Counts the copied files.
class CountedFiles : public ICopyProgress {
public:
    explicit CountedFiles(const Options& options) {
        if (m_progress.IsShown()) m_progress.SetTotalBytes(BytesIn(options.source, true));
    }

    void OnCopyFile(const char*) override { m_progress.Add(); }
    void OnCopyBytes(std::uint64_t bytes) override { m_progress.AddBytes(bytes); }

private:
    Progress m_progress{"files copied"};
};

/// Prints the files that would be written.
class DryCopy : public CCopyTree {
public:
    DryCopy() { SetDryRun(1); }

    void Finish() { m_lines.Write(); }

protected:
    int CopyFileA(const char* source, const char* target) override {
        const int succeeds = CCopyTree::CopyFileA(source, target);
        if (succeeds) m_lines.AddName(Native(target));
        return succeeds;
    }

private:
    Lines m_lines;
};

void Prepare(CCopyTree& copy, const Options& options, ILeftOut& leftOuts) {
    copy.SetSourceDirectory(options.source.c_str());
    copy.SetDestinationDirectory(options.target.c_str());
    copy.SetLaterOnly(options.laterOnly);
    copy.SetLeftOut(&leftOuts);
}

void Copy(const Options& options) {
    if (!CFileUtils::IsDirectory(options.source.c_str())) throw FailedOn(options.source, "not a folder");
    LeftOuts leftOuts;
    if (options.dryRun) {
        DryCopy copy;
        Prepare(copy, options, leftOuts);
        copy.CopyTree();
        copy.Finish();
    } else {
        CCopyTree copy;
        CountedFiles files(options);
        Prepare(copy, options, leftOuts);
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
    command.AddPath("TARGET", options->target, "The folder that receives the content of SOURCE; created if missing")
        .Require();
    command.AddFlag("-l,--later-only", options->laterOnly, "Skip files that are as new or newer in TARGET");
    command.AddFlag("-n,--dry-run", options->dryRun, "Print the files that would be written, and write nothing");
    AddQuiet(command);
    command.SetNotes(
        "Entries that cannot be copied, such as links to folders, are reported and skipped; the exit status is then "
        "1.");
    command.AddExample("qv copy documents backup --later-only");
    command.SetAction([options] { Copy(*options); });
}

}  // namespace qv::tool
