#include <memory>

#include "qvcommon/FileUtils.h"
#include "qvcommon/framework/File.h"
#include "qvcommon/framework/StandardStreams.h"
#include "tools/qv/Commands.h"
#include "tools/qv/Crc.h"
#include "tools/qv/LeftOuts.h"
#include "tools/qv/Visible.h"

namespace qv::tool {
namespace {

Command AddFileCommand(Command app, const char* name, const char* description, const char* argument, std::string& value,
                       const char* help, const char* example) {
    Command command = app.Add(name, description);
    command.AddPath(argument, value, help).Require();
    command.SetFooter(std::string("Example: ") + example);
    return command;
}

void PrintCrcs(const std::vector<std::string>& paths) {
    int failures = 0;
    for (const std::string& path : paths) try {
            CString line;
            line.Format("%08X  %s\n", CrcOf(path), ForOutput(Native(path)));
            AfxWriteStandardOutput(line);
        } catch (CFileException* error) {
            char text[512];
            error->GetErrorMessage(text, sizeof text);
            error->Delete();
            Complain(text);
            ++failures;
        }
    if (failures) throw Failed(std::to_string(failures) + " of " + std::to_string(paths.size()) + " could not be read");
}

}  // namespace

void AddDelete(Command app) {
    struct Options {
        std::string folder;
        bool keepRoot = false;
    };
    const auto options = std::make_shared<Options>();
    Command command = AddFileCommand(app, "delete", "Delete a folder with all that it holds; links are not followed",
                                     "FOLDER", options->folder, "The folder", "qv delete build --keep-root");
    command.AddFlag("--keep-root", options->keepRoot, "Keep the folder itself, empty");
    command.SetAction([options] {
        const char* const folder = options->folder.c_str();
        if (!CFileUtils::IsDirectory(folder)) throw FailedOn(options->folder, "not a folder");
        LeftOuts leftOuts;
        CFileUtils::DelTree(folder, !options->keepRoot, leftOuts);
        leftOuts.Check();
        if (!options->keepRoot && CFileUtils::IsExist(folder)) throw FailedOn(options->folder, "could not be deleted");
    });
}

void AddBackup(Command app) {
    const auto file = std::make_shared<std::string>();
    AddFileCommand(app, "backup", "Rename a file to the same name with the extension \"bak\"", "FILE", *file,
                   "The file", "qv backup letter.txt")
        .SetAction([file] {
            if (!CFileUtils::IsExist(file->c_str())) throw FailedOn(*file, "no such file");
            CFileUtils::BackupFile(file->c_str());
        });
}

void AddLog(Command app) {
    struct Options {
        std::string file, text;
        bool stamp = false;
    };
    const auto options = std::make_shared<Options>();
    Command command = AddFileCommand(app, "log", "Add a line to a file that others log to, too", "FILE", options->file,
                                     "The log; made when missing", "qv log night.log \"backup done\" --stamp");
    command.AddOption("TEXT", options->text, "The line").Require();
    command.AddFlag("--stamp", options->stamp, "Put the time in front");
    command.SetAction([options] {
        if (!CFileUtils::Log(options->file.c_str(), options->text.c_str(), options->stamp))
            throw FailedOn(options->file, "the line could not be written");
    });
}

void AddCrc(Command app) {
    const auto files = std::make_shared<std::vector<std::string>>();
    Command command = app.Add("crc", "Print the CRC-32 of files: 8 hex digits, two blanks, name");
    command.AddPath("FILE", *files, "The files").Require();
    command.SetFooter("Example: qv crc *.zip");
    command.SetAction([files] { PrintCrcs(*files); });
}

}  // namespace qv::tool
