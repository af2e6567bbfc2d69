#include <memory>
#include <utility>

#include "qvcommon/CopyTree.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/framework/File.h"
#include "tools/qv/Commands.h"
#include "tools/qv/LeftOuts.h"
#include "tools/qv/Progress.h"

namespace qv::tool {
namespace {

struct Options {
    std::string source, target;
    bool laterOnly = false;
};

/// Counts what was copied. A file is named before it is copied, so its bytes count when the next one comes.
class CountedFiles : public ICopyProgress {
public:
    explicit CountedFiles(const Options& options) {
        if (m_progress.IsShown()) m_progress.SetTotalBytes(BytesIn(options.source, true));
    }

    void OnCopyFile(const char* path) override {
        if (!m_progress.IsShown()) return;
        m_progress.Add();
        m_progress.AddBytes(std::exchange(m_size, SizeOf(path)));
    }

private:
    static std::uint64_t SizeOf(const char* path) {
        CFileStatus status;
        return CFile::GetStatus(path, status) ? static_cast<std::uint64_t>(status.m_size) : 0;
    }

    Progress m_progress{"files copied"};
    std::uint64_t m_size = 0;
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
        CountedFiles files(options);
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
