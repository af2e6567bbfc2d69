#include <memory>

#include "qvcommon/Cabinet.h"
#include "qvcommon/FilePath.h"
#include "qvcommon/FileUtils.h"
#include "tools/qv/Commands.h"
#include "tools/qv/Documents.h"
#include "tools/qv/Json.h"
#include "tools/qv/LeftOuts.h"
#include "tools/qv/Lines.h"
#include "tools/qv/Progress.h"
#include "tools/qv/Visible.h"

namespace qv::tool {
namespace {

struct Options {
    std::string archive, folder;
    bool noRecurse = false, noManifest = false, json = false, zero = false, dryRun = false;
};

class ReportedPack : public CMakeCab {
public:
    explicit ReportedPack(const Options& options) {
        if (m_progress.IsShown()) m_progress.SetTotalBytes(BytesIn(options.folder, !options.noRecurse));
    }

    long Status(UINT type, DWORD first, DWORD second) override {
        if (type == 0) m_progress.AddBytes(second);  // the size of a compressed block
        return CMakeCab::Status(type, first, second);
    }
    void AddFile(const char* path) override {
        CMakeCab::AddFile(path);
        m_progress.Add();
    }

private:
    Progress m_progress{"files packed"};
};

/// Prints the files that would be packed.
class DryPack : public CMakeCab {
public:
    void CreateNewCab() override {
        const CString folder = GetDestPath();
        if (!folder.IsEmpty() && !CFileUtils::IsDirectory(folder))
            throw FailedOn(CFileUtils::UnterminateDir(folder).AsStd(), "no such folder");
    }
    void AddManifest(const CStringArray&) override {}
    void AddFile(const char* path) override { m_lines.AddName(Native(path)); }
    void Commit() override { m_lines.Write(); }

private:
    Lines m_lines;
};

/// Sums the sizes of members without opening them.
class SizeReader : public CReadCab {
public:
    std::uint64_t bytes = 0;

protected:
    int NotifyCopyFile(QvCabinetNotification& member) override {
        bytes += member.size;
        return 0;
    }
};

class ReportedUnpack : public CReadCab {
public:
    explicit ReportedUnpack(const CString& archive) {
        if (!m_progress.IsShown()) return;
        SizeReader sizes;
        sizes.ReadCab(archive);
        m_progress.SetTotalBytes(sizes.bytes);
    }

protected:
    void NotifyWritten(DWORD bytes) override { m_progress.AddBytes(bytes); }
    int NotifyCloseFileInfo(QvCabinetNotification& member) override {
        m_progress.Add();
        return CReadCab::NotifyCloseFileInfo(member);
    }

private:
    Progress m_progress{"files unpacked"};
};

/// Prints the files that would be written.
class DryUnpack : public CReadCab {
public:
    DryUnpack() { SetDryRun(1); }

    void Finish() { m_lines.Write(); }

protected:
    int NotifyCopyFile(QvCabinetNotification& member) override {
        const int opened = CReadCab::NotifyCopyFile(member);
        const CString path = GetTargetPath();
        if (!path.IsEmpty()) m_lines.AddName(Native(path.AsStd()));
        return opened;
    }

private:
    Lines m_lines;
};

/// Opens no members.
class Listing : public CReadCab {
public:
    explicit Listing(const Options& options) : m_options(options), m_lines(options.zero ? '\0' : '\n') {
        ReadCab(FindFirstCabinet(options.archive.c_str()));
        m_lines.Write();
    }

protected:
    int NotifyCopyFile(QvCabinetNotification& member) override {
        if (m_options.json)
            m_lines.Add(JsonOf(member));
        else
            m_lines.AddName(Native(member.name.AsStd()),
                            std::to_string(member.size) + '\t' + TimeOf(member, ' ') + '\t');
        return 0;
    }

private:
    static std::string TimeOf(const QvCabinetNotification& member, char between) {
        const unsigned date = member.date, time = member.time;
        CString text;
        text.Format("%04u-%02u-%02u%c%02u:%02u:%02u", 1980 + (date >> 9), (date >> 5) & 15, date & 31, between,
                    time >> 11, (time >> 5) & 63, (time & 31) * 2);
        return text.AsStd();
    }

    static std::string JsonOf(const QvCabinetNotification& member) {
        JsonObject json;
        json.Path("name", member.name.AsStd()).Number("size", member.size).Text("modified", TimeOf(member, 'T'));
        return json.Line();
    }

    const Options& m_options;
    Lines m_lines;
};

// An archive is read at random positions, and the other cabinets of its set are found in its folder.
void CheckIsFile(const std::string& archive) {
    if (IsStandardStream(archive)) throw WrongUsage("ARCHIVE must be a file, not standard input or output");
    if (archive.empty()) throw WrongUsage("ARCHIVE must have a name");
}

/// Archives always get the extension ".cab".
void NoteOtherName(const CString& archive) {
    const CString extension = CFilePath(archive).GetExt();
    if (extension.IsEmpty() || extension.CompareNoCase(".cab") == 0) return;
    const CString name = archive.Left(archive.GetLength() - extension.GetLength()) + ".cab";
    Note("the archive is called " + Native(name.AsStd()));
}

/// Runs an action on an archive and replaces the text of its exception by the full description.
template <class Action>
void Run(Action action) {
    try {
        action();
    } catch (CCabinetException* error) {
        const std::string reason = error->Describe().AsStd();
        error->Delete();
        throw CommandError(reason);
    }
}

void Pack(const Options& options) {
    CheckIsFile(options.archive);
    if (!CFileUtils::IsDirectory(options.folder.c_str())) throw FailedOn(options.folder, "no such folder");
    NoteOtherName(CString(options.archive));
    LeftOuts leftOuts;
    const auto packBy = [&](CMakeCab&& pack) {
        pack.SetLeftOut(&leftOuts);
        pack.Pack(options.folder.c_str(), options.archive.c_str(), !options.noRecurse);
    };
    options.dryRun ? packBy(DryPack()) : packBy(ReportedPack(options));
    leftOuts.Check();
}

void UnpackBy(CReadCab& unpack, const CString& first, const Options& options, ILeftOut& leftOuts) {
    unpack.SetLeftOut(&leftOuts);
    unpack.SetRestoreTimes(1);
    const bool hasManifest = CReadCab::HasManifest(first);
    if (hasManifest && !options.noManifest) return unpack.Unpack(options.folder.c_str(), first);
    if (!hasManifest && !options.noManifest)
        Note(Native(first.AsStd()) + " has no manifest: members are unpacked by their own names");
    if (!options.dryRun && !QvCreateDirectory(options.folder.c_str()))
        throw FailedOn(options.folder, "the folder cannot be created");
    unpack.SetDestPath(options.folder.c_str());
    unpack.ReadCab(first);
}

void Unpack(const Options& options, ILeftOut& leftOuts) {
    CheckIsFile(options.archive);
    const CString first = CReadCab::FindFirstCabinet(options.archive.c_str());
    if (options.dryRun) {
        DryUnpack unpack;
        UnpackBy(unpack, first, options, leftOuts);
        unpack.Finish();
    } else {
        ReportedUnpack unpack(first);
        UnpackBy(unpack, first, options, leftOuts);
    }
}

void AddPack(Command app) {
    Command command = app.Add("pack", "Pack a folder into a cabinet archive");
    const auto options = std::make_shared<Options>();
    command.AddPath("FOLDER", options->folder, "The folder").Require();
    command.AddPath("ARCHIVE", options->archive, "The archive; its extension becomes .cab").Require();
    command.AddFlag("--no-recurse", options->noRecurse, "Do not pack subfolders");
    command.AddFlag("-n,--dry-run", options->dryRun, "Print the files that would be packed, and write nothing");
    AddQuiet(command);
    command.SetNotes(
        "Names, contents, times and the read-only attribute are stored. Owners, access lists and the\n"
        "executable bit are not: unpacked files get the permissions of new files. Entries that cannot be\n"
        "packed are reported and skipped; the exit status is then 1.");
    command.AddExample("qv pack photos photos.cab");
    command.SetAction([options] { Run([&] { Pack(*options); }); });
}

void AddUnpack(Command app) {
    Command command = app.Add("unpack", "Unpack a cabinet archive into a folder");
    const auto options = std::make_shared<Options>();
    command.AddPath("ARCHIVE", options->archive, "The archive").Require();
    command.AddPath("FOLDER", options->folder, "The target folder; created if missing").Require();
    command.AddFlag("--no-manifest", options->noManifest,
                    "Use the members' own names, as for archives of other programs");
    command.AddFlag("-n,--dry-run", options->dryRun, "Print the files that would be written, and write nothing");
    AddQuiet(command);
    command.SetNotes(
        "Any cabinet of a set can be given. Stored, MSZIP and LZX data are read; members with Quantum data are left "
        "out.");
    command.AddExample("qv unpack photos.cab copy-of-photos");
    command.SetAction([options] {
        LeftOuts leftOuts;
        Run([&] { Unpack(*options, leftOuts); });
        leftOuts.Check();
    });
}

void AddList(Command app) {
    Command command = app.Add("list", "List the members of a cabinet archive");
    const auto options = std::make_shared<Options>();
    command.AddPath("ARCHIVE", options->archive, "The archive").Require();
    command.AddFlag("-0,--null", options->zero, "End each line with a zero byte");
    command.AddFlag("-j,--json", options->json, "Print one JSON object per line: name, size, modified (local time)");
    command.SetNotes("Lines: SIZE<tab>DATE TIME<tab>NAME");
    command.AddExample("qv list photos.cab");
    command.SetAction([options] {
        Run([&] {
            CheckIsFile(options->archive);
            Listing{*options};
        });
    });
}

}  // namespace

void AddArchiveCommands(Command app) {
    AddPack(app);
    AddUnpack(app);
    AddList(app);
}

}  // namespace qv::tool
