#include <algorithm>
#include <memory>

#include "qvcommon/FileFinder.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/framework/File.h"
#include "qvcommon/framework/StandardStreams.h"
#include "tools/qv/Commands.h"
#include "tools/qv/LeftOuts.h"
#include "tools/qv/Lines.h"
#include "tools/qv/Visible.h"

namespace qv::tool {
namespace {

Command AddFileCommand(Command app, const char* name, const char* description, const char* argument, std::string& value,
                       const char* help, const char* example) {
    Command command = app.Add(name, description);
    command.AddPath(argument, value, help).Require();
    command.AddExample(example);
    return command;
}

void PrintName(const CString& path) {
    Lines lines;
    lines.AddName(Native(path.AsStd()));
    lines.Write();
}

// Prints the content of a folder, and the folder itself unless it is kept.
void PrintTree(const std::string& folder, bool keepRoot) {
    FileFinder finder;
    finder.SetSearchPath(folder.c_str());
    finder.SetSearchMask("*");
    finder.SetRecurse(1);
    finder.SetIncludeDirectories(2);
    finder.Discover();
    Lines lines;
    for (const CString& path : finder.GetFiles()) lines.AddName(Native(path.AsStd()));
    if (!keepRoot) lines.AddName(Native(folder));
    lines.Write();
}

// Whether this is a folder that is only deleted by mistake, as with "rm": the current one, its parent, or the root.
bool IsGuarded(const std::string& folder) {
    std::string path = Native(folder);
    const auto isSeparator = [](char c) { return c == '/' || c == '\\'; };
    while (!path.empty() && isSeparator(path.back())) path.pop_back();
    const auto name = std::find_if(path.rbegin(), path.rend(), isSeparator).base();
    const std::string last(name, path.end());
    const bool isDrive = last.size() == 2 && last[1] == ':' && name == path.begin();
    return last.empty() || last == "." || last == ".." || isDrive;
}

}  // namespace

void AddDelete(Command app) {
    struct Options {
        std::string folder;
        bool keepRoot = false, dryRun = false;
    };
    const auto options = std::make_shared<Options>();
    Command command = AddFileCommand(app, "delete", "Delete a folder and everything in it; links are not followed",
                                     "FOLDER", options->folder, "The folder", "qv delete build --keep-root");
    command.AddFlag("-k,--keep-root", options->keepRoot, "Keep the folder itself, empty");
    command.AddFlag("-n,--dry-run", options->dryRun, "Print what would be deleted, and delete nothing");
    command.SetAction([options] {
        const char* const folder = options->folder.c_str();
        if (IsGuarded(options->folder)) throw FailedOn(options->folder, "refusing to delete this folder");
        if (!CFileUtils::IsDirectory(folder)) throw FailedOn(options->folder, "not a folder");
        if (options->dryRun) return PrintTree(options->folder, options->keepRoot);
        LeftOuts leftOuts;
        CFileUtils::DelTree(folder, !options->keepRoot, leftOuts);
        leftOuts.Check();
        if (!options->keepRoot && CFileUtils::IsExist(folder)) throw FailedOn(options->folder, "could not be deleted");
    });
}

void AddBackup(Command app) {
    struct Options {
        std::string file;
        bool replace = false, dryRun = false;
    };
    const auto options = std::make_shared<Options>();
    Command command = AddFileCommand(app, "backup", "Rename a file to the same name with the extension \"bak\"", "FILE",
                                     options->file, "The file", "qv backup letter.txt");
    command.AddFlag("--replace", options->replace, "Replace an earlier backup, which may be another file's");
    command.AddFlag("-n,--dry-run", options->dryRun, "Print the backup's name, and rename nothing");
    command.SetAction([options] {
        if (!CFileUtils::IsExist(options->file.c_str())) throw FailedOn(options->file, "no such file");
        const CString backup = CFileUtils::GetBackupName(options->file.c_str());
        if (!options->replace && CFileUtils::IsExist(backup))
            throw FailedOn(backup.AsStd(), "exists, and may be the backup of another file; --replace overwrites it");
        if (options->dryRun) return PrintName(backup);
        CFileUtils::BackupFile(options->file.c_str());
    });
}

void AddLog(Command app) {
    struct Options {
        std::string file, text;
        bool stamp = false;
    };
    const auto options = std::make_shared<Options>();
    Command command =
        AddFileCommand(app, "log", "Append a line to a log that several programs write", "FILE", options->file,
                       "The log; created if missing", "qv log night.log \"backup done\" --stamp");
    command.AddOption("TEXT", options->text, "The line").Require();
    command.AddFlag("-s,--stamp", options->stamp, "Prepend the time");
    command.SetAction([options] {
        if (!CFileUtils::Log(options->file.c_str(), options->text.c_str(), options->stamp))
            throw FailedOn(options->file, "the line could not be written");
    });
}

}  // namespace qv::tool
