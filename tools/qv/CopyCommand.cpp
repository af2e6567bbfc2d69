#include <cstdio>
#include <memory>

#include "qvcommon/CopyTree.h"
#include "qvcommon/FileUtils.h"
#include "tools/qv/Commands.h"
#include "tools/qv/Progress.h"

namespace qv::tool {
namespace {

struct Options {
    std::string source, target;
    bool laterOnly = false;
};

/// Counts what was copied, and tells of each failure by the name of what it was about.
class ReportedCopy : public CCopyTree, ICopyProgress {
public:
    explicit ReportedCopy(const Options& options) {
        SetSourceDirectory(options.source.c_str());
        SetDestinationDirectory(options.target.c_str());
        SetLaterOnly(options.laterOnly);
        SetProgressMonitor(this);
    }

    /// The number of failures.
    int Run() {
        Progress progress("files copied", static_cast<std::size_t>(GetFileCount()));
        m_progress = &progress;
        CCopyTree::CopyTree();
        m_progress = nullptr;
        return m_failures;
    }

protected:
    using CCopyTree::CopyTree;
    void CopyTree(CString source, CString destination) override {
        m_subject = source;
        const int length = source.GetLength();
        CCopyTree::CopyTree(std::move(source), std::move(destination));
        m_subject = m_subject.Left(length);  // of what was copied last, in this folder; a copy for each level adds up
    }
    int CopyFileA(const char* source, const char* target) override {
        m_subject = source;
        return CCopyTree::CopyFileA(source, target);
    }

private:
    void OnCopyFile(const char*) override { m_progress->Add(); }
    int OnError(DWORD, const char* message) override {
        std::fprintf(stderr, "qv: %s: %s\n", static_cast<const char*>(CFileUtils::GetNativePath(m_subject)), message);
        return ++m_failures;
    }

    Progress* m_progress = nullptr;
    CString m_subject;
    int m_failures = 0;
};

void Copy(const Options& options) {
    if (!CFileUtils::IsDirectory(options.source.c_str())) throw Failed(options.source + ": not a folder");
    if (const int failures = ReportedCopy(options).Run())
        throw Failed(std::to_string(failures) + (failures == 1 ? " failure" : " failures"));
}

}  // namespace

void AddCopy(Command app) {
    const auto options = std::make_shared<Options>();
    Command command = app.Add("copy", "Copy a folder tree, with times and attributes");
    command.AddOption("SOURCE", options->source, "The folder to copy").Require();
    command.AddOption("TARGET", options->target, "The folder that gets what SOURCE holds; made when missing").Require();
    command.AddFlag("--later-only", options->laterOnly, "Leave files alone that are as new or newer in TARGET");
    command.SetFooter(
        "A file that cannot be copied is named, and the others are copied all the same.\n"
        "Example: qv copy documents backup --later-only");
    command.SetAction([options] { Copy(*options); });
}

}  // namespace qv::tool
