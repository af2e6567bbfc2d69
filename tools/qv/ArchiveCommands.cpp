#include <memory>

#include "qvcommon/Cabinet.h"
#include "qvcommon/FileUtils.h"
#include "tools/qv/Commands.h"
#include "tools/qv/Lines.h"
#include "tools/qv/Progress.h"

namespace qv::tool {
namespace {

struct Options {
    std::string archive, folder;
    bool noRecurse = false, noManifest = false;
};

class ReportedPack : public CMakeCab {
public:
    void AddFile(const char* path) override {
        CMakeCab::AddFile(path);
        m_progress.Add();
    }

private:
    Progress m_progress{"files packed"};
};

class ReportedUnpack : public CReadCab {
protected:
    int NotifyCloseFileInfo(QvCabinetNotification& member) override {
        m_progress.Add();
        return CReadCab::NotifyCloseFileInfo(member);
    }

private:
    Progress m_progress{"files unpacked"};
};

/// Opens no member.
class Listing : public CReadCab {
public:
    explicit Listing(const std::string& archive) {
        ReadCab(archive.c_str());
        m_lines.Write();
    }

protected:
    int NotifyCopyFile(QvCabinetNotification& member) override {
        const unsigned date = member.date, time = member.time;
        CString line;
        line.Format("%u\t%04u-%02u-%02u %02u:%02u:%02u\t%s", static_cast<unsigned>(member.size), 1980 + (date >> 9),
                    (date >> 5) & 15, date & 31, time >> 11, (time >> 5) & 63, (time & 31) * 2,
                    static_cast<const char*>(member.name));
        m_lines.Add(line.AsStd());
        return 0;
    }

private:
    Lines m_lines;
};

void Pack(const Options& options) {
    if (!CFileUtils::IsDirectory(options.folder.c_str())) throw Failed(options.folder + ": no such folder");
    ReportedPack().Pack(options.folder.c_str(), options.archive.c_str(), !options.noRecurse);
}

void Unpack(const Options& options) {
    ReportedUnpack unpack;
    unpack.SetRestoreTimes(1);
    if (!options.noManifest) return unpack.Unpack(options.folder.c_str(), options.archive.c_str());
    unpack.SetDestPath(options.folder.c_str());
    unpack.ReadCab(options.archive.c_str());
}

void AddPack(CLI::App& app) {
    auto* const command = app.add_subcommand("pack", "Pack a folder into a cabinet archive");
    const auto options = std::make_shared<Options>();
    command->add_option("FOLDER", options->folder, "The folder")->required();
    command->add_option("ARCHIVE", options->archive, "The archive; its extension becomes .cab")->required();
    command->add_flag("--no-recurse", options->noRecurse, "Leave out what subfolders hold");
    command->footer("Example:\n  qv pack photos photos.cab");
    command->callback([options] { Pack(*options); });
}

void AddUnpack(CLI::App& app) {
    auto* const command = app.add_subcommand("unpack", "Unpack a cabinet archive into a folder");
    const auto options = std::make_shared<Options>();
    command->add_option("ARCHIVE", options->archive, "The archive")->required();
    command->add_option("FOLDER", options->folder, "Where to; made when it is missing")->required();
    command->add_flag("--no-manifest", options->noManifest, "For archives of other makers: members by their own names");
    command->footer("Example:\n  qv unpack photos.cab copy-of-photos");
    command->callback([options] { Unpack(*options); });
}

void AddList(CLI::App& app) {
    auto* const command = app.add_subcommand("list", "List the members of a cabinet archive");
    const auto options = std::make_shared<Options>();
    command->add_option("ARCHIVE", options->archive, "The archive")->required();
    command->footer("Lines: SIZE<tab>DATE TIME<tab>NAME\nExample:\n  qv list photos.cab");
    command->callback([options] { Listing{options->archive}; });
}

}  // namespace

void AddArchiveCommands(CLI::App& app) {
    AddPack(app);
    AddUnpack(app);
    AddList(app);
}

}  // namespace qv::tool
