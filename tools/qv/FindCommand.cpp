#include <map>
#include <memory>

#include "qvcommon/FileFinder.h"
#include "qvcommon/FileUtils.h"
#include "tools/qv/Commands.h"
#include "tools/qv/Json.h"
#include "tools/qv/LeftOuts.h"
#include "tools/qv/Lines.h"
#include "tools/qv/Progress.h"
#include "tools/qv/Visible.h"

namespace qv::tool {
namespace {

struct Options {
    std::string folder;
    std::vector<std::string> masks, excluded;
    bool recurse = false, json = false, zero = false;
    int folders = 0;
};

std::string JsonOf(const FileFinder& finder, int index) {
    const CFoundInfo& entry = finder.GetFoundInfo()[index];
    QvFileTime modified{};
    JsonObject json;
    json.Path("path", finder.GetFileOffsets()[index].AsStd()).Number("depth", finder.GetOffsetDepths()[index]);
    json.Text("type", entry.IsLink() ? "link" : entry.IsDirectory() ? "folder" : "file");
    if (!entry.IsDirectory()) json.Number("size", entry.GetLength64());
    if (entry.GetLastWriteTime(&modified)) json.Time("modified", modified.UnixSeconds());
    return json.Line();
}

/// Prints each match as it is found.
class PrintingFinder : public FileFinder {
public:
    explicit PrintingFinder(const Options& options) : m_options(options), m_lines(options.zero ? '\0' : '\n') {}

    void UpdateProgress(const char*) override { m_progress.Add(); }
    void StopProgress() override { Print(); }
    void Finish() { m_lines.Write(); }

private:
    void Print() {
        const CStringArray& offsets = GetFileOffsets();
        const CUIntArray& depths = GetOffsetDepths();
        for (; m_printed < offsets.GetSize(); ++m_printed)
            if (m_options.json)
                m_lines.Add(JsonOf(*this, m_printed));
            else
                m_lines.AddName(Native(offsets[m_printed].AsStd()), std::to_string(depths[m_printed]) + '\t');
    }

    const Options& m_options;
    Progress m_progress{"entries looked at"};
    Lines m_lines;
    int m_printed = 0;
};

CStringArray ArrayOf(const std::vector<std::string>& texts) {
    CStringArray array;
    for (const std::string& text : texts) array.Add(text);
    return array;
}

void Find(const Options& options) {
    if (!CFileUtils::IsDirectory(options.folder.c_str())) throw FailedOn(options.folder, "not a folder");
    LeftOuts leftOuts;
    PrintingFinder finder(options);
    finder.SetLeftOut(&leftOuts);
    finder.SetSearchPath(options.folder.c_str());
    finder.SetSearchMask("*");
    if (options.masks.size() == 1) finder.SetSearchMask(options.masks[0].c_str());
    if (options.masks.size() > 1) finder.SetSearchMasks(ArrayOf(options.masks));
    if (!options.excluded.empty()) finder.SetExcludedMasks(ArrayOf(options.excluded));
    finder.SetRecordsOnDemand(!options.json);
    finder.SetRecurse(options.recurse);
    finder.SetIncludeDirectories(options.folders);
    finder.Discover();
    finder.Finish();
    leftOuts.Check();
}

}  // namespace

void AddFind(Command app) {
    const auto options = std::make_shared<Options>();
    Command command = app.Add("find", "List the content of a folder: depth number, tab, relative path");
    command.AddPath("FOLDER", options->folder, "The folder to search").Require();
    command.AddOption("-m,--mask", options->masks, "List only names that match, with * and ?; may be repeated")
        .CallValue("MASK")
        .TakeOneEach();
    command
        .AddOption("-x,--exclude", options->excluded,
                   "Skip matching names, and folders with all their contents; may be repeated")
        .CallValue("MASK")
        .TakeOneEach();
    command.AddFlag("-r,--recurse", options->recurse, "Search subfolders as well");
    const std::map<std::string, int> modes{{"none", 0}, {"only", 1}, {"too", 2}};
    command.AddOption("-f,--folders", options->folders, modes, "Whether folders are listed: none, only or too")
        .CallValue("MODE");
    command.AddFlag("-0,--null", options->zero, "End each line with a zero byte");
    command.AddFlag("-j,--json", options->json, "Print one JSON object per line: path, depth, type, size, modified");
    AddQuiet(command);
    command.SetNotes(
        "The first subfolder of a folder has the folder's depth number, each further one that number plus 1.\n"
        "Folders that cannot be searched are reported on standard error; the exit status is then 1.");
    command.AddExample("qv find documents --mask '*.txt' --recurse");
    command.SetAction([options] { Find(*options); });
}

}  // namespace qv::tool
