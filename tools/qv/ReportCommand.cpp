#include <chrono>

#include "qvcommon/FileUtils.h"
#include "qvcommon/HtmlAssets.h"
#include "qvcommon/StringHelper.h"
#include "tools/qv/Commands.h"
#include "tools/qv/LeftOuts.h"
#include "tools/qv/Utf8Path.h"
#include "tools/qv/report/ReportAssets.h"
#include "tools/qv/report/ReportPage.h"

namespace qv::tool {
namespace {

namespace fs = std::filesystem;

struct Options {
    std::string folder, output, title;
};

fs::path ExistingFolder(const std::string& argument) {
    std::error_code failed;
    fs::path folder = fs::canonical(PathFromArgument(argument), failed);
    if (failed) throw FailedOn(argument, failed.message());
    if (!fs::is_directory(folder)) throw FailedOn(argument, "not a folder");
    return folder;
}

fs::path OutputFolder(const std::string& argument) {
    std::error_code failed;
    const fs::path folder = PathFromArgument(argument);
    fs::create_directories(folder, failed);
    if (failed) throw FailedOn(argument, failed.message());
    return fs::canonical(folder);
}

// Returns the folder's address relative to the page, or its "file:" address if no relative path exists (another drive).
CString LinkPrefix(const fs::path& folder, const fs::path& output) {
    const fs::path relative = folder.lexically_relative(output);
    if (relative == ".") return "";
    if (relative.empty()) return "file:///" + CStringHelper::EscapePath(Utf8(folder)) + '/';
    return CStringHelper::EscapePath(Utf8(relative)) + '/';
}

// Returns the paths that the report leaves out: its own.
std::vector<fs::path> OwnPaths(const fs::path& output) {
    return {output, output / ReportPage::kAssetFolder, output / ReportPage::kFileName};
}

void WriteAssets(const fs::path& output, const CString& outputName) {
    const CString folder = outputName + ReportPage::kAssetFolder + "\\";
    std::error_code failed;
    fs::create_directory(output / ReportPage::kAssetFolder, failed);
    CHtmlAssets::CopyTo(folder);
    for (const auto& [name, text] : ReportAssets()) CFileUtils::SaveFile(folder + name, CString(text));
}

FolderTree ReadTree(const fs::path& folder, const fs::path& output, ILeftOut& leftOut) {
    Progress progress("files read");
    if (progress.IsShown()) progress.SetTotalBytes(BytesIn(ArgumentFromPath(folder).AsStd(), true));
    return ReadFolderTree(folder, OwnPaths(output), progress, leftOut);
}

void WriteReport(const Options& options) {
    const fs::path folder = ExistingFolder(options.folder), output = OutputFolder(options.output);
    LeftOuts leftOuts;
    const FolderTree tree = ReadTree(folder, output, leftOuts);

    const std::string name = Utf8(folder.filename());
    const ReportHeader header{.title = options.title.empty() ? "Report of " + name : Utf8FromArgument(options.title),
                              .folder = Utf8(folder),
                              .written = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now()),
                              .linkPrefix = LinkPrefix(folder, output)};
    const CString outputName = CString(options.output) + "\\";
    WriteAssets(output, outputName);
    ReportPage page(header, tree);
    page.Write();
    CFileUtils::SaveFile(outputName + ReportPage::kFileName, page.GetHtml());
    leftOuts.Check();
}

}  // namespace

void AddReport(Command app) {
    const auto options = std::make_shared<Options>();
    Command command = app.Add("report", "Write a browsable HTML report of a folder");
    command.AddPath("FOLDER", options->folder, "The folder to report on").Require();
    command.AddPath("-o,--output", options->output, "The folder for index.html and its assets; created if missing")
        .Require()
        .CallValue("OUTDIR");
    command.AddOption("-t,--title", options->title, "The page's title").CallValue("TEXT");
    AddQuiet(command);
    command.SetNotes(
        "Entries that cannot be read are reported on standard error and on the pages; the exit status is then 1.");
    command.AddExample("qv report pictures -o report --title \"Our pictures\"");
    command.SetAction([options] { WriteReport(*options); });
}

}  // namespace qv::tool
