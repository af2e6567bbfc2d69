#include "tools/qv/LockCheck.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <random>

#include "qvcommon/FileUtils.h"
#include "qvcommon/LockFile.h"
#include "qvcommon/SaveFile.h"
#include "tools/qv/Command.h"
#include "tools/qv/Visible.h"

namespace qv::tool {
namespace {

/// Runs one trial, which raises an exception if the property does not hold.
LockCheck Try(const std::string& text, const std::function<void()>& trial) {
    try {
        trial();
        return {text, true};
    } catch (const CommandError& failure) {
        return {text + ": " + failure.what(), false};
    } catch (CException* error) {
        const std::string reason = MessageOf(*error);
        error->Delete();
        return {text + ": " + reason, false};
    }
}

/// The access of an opener, and the access that it denies to others.
struct Mode {
    UINT flags;
    bool reads, writes, deniesReading, deniesWriting;

    bool Excludes(const Mode& other) const { return (deniesReading && other.reads) || (deniesWriting && other.writes); }
};

std::vector<Mode> AllModes() {
    std::vector<Mode> modes;
    for (const Mode access :
         {Mode{CFile::modeRead, true, false, false, false}, Mode{CFile::modeWrite, false, true, false, false},
          Mode{CFile::modeReadWrite, true, true, false, false}})
        for (const Mode deny : {Mode{CFile::shareDenyNone, false, false, false, false},
                                Mode{CFile::shareDenyRead, false, false, true, false},
                                Mode{CFile::shareDenyWrite, false, false, false, true},
                                Mode{CFile::shareExclusive, false, false, true, true}})
            modes.push_back(
                {access.flags | deny.flags, access.reads, access.writes, deny.deniesReading, deny.deniesWriting});
    return modes;
}

/// Opens the file twice in each pair of modes: the second must succeed exactly when neither excludes the other.
void TryShareModes(const CString& path) {
    int wrong = 0, cells = 0;
    for (const Mode& first : AllModes()) {
        const CFile holder(path, first.flags);
        for (const Mode& second : AllModes()) {
            CFile opener;
            const bool opened = opener.Open(path, second.flags) != 0;
            wrong += opened == (first.Excludes(second) || second.Excludes(first));
            ++cells;
        }
    }
    if (wrong)
        throw CommandError(std::to_string(wrong) + " of " + std::to_string(cells) + " pairs of openers are wrong");
}

void TryLock(const CString& document) {
    CLockFile holder, other;
    holder.SetSourceFile(document);
    other.SetSourceFile(document);
    if (!holder.TryLock()) throw new CFileException(holder.GetLockException());
    if (other.TryLock()) throw CommandError("two hold it at once");
    if (other.GetLockedBy().IsEmpty()) throw CommandError("the holder's name cannot be read");
    holder.Unlock();
    if (!other.TryLock()) throw new CFileException(other.GetLockException());
    other.Unlock();
    if (CFileUtils::IsExist(other.GetFile())) throw CommandError("the lock file stays");
}

void TrySaving(const CString& document) {
    CFileUtils::SaveFile(document, "first");
    CFileUtils::SaveFile(document, "second");
    {
        CSaveFile dropped(document);
        dropped.Write("half", 4);
    }
    if (CFileUtils::ReadFile(document) != "second") throw CommandError("the file has other contents");
}

/// File systems that several machines share and whose servers enforce the locks.
constexpr const char* kKeptByServers[] = {"nfs", "nfs4", "cifs", "smb3", "ceph", "gfs2", "ocfs2", "fuse.glusterfs"};

bool IsKeptByServer(const CString& kind) {
    return std::any_of(std::begin(kKeptByServers), std::end(kKeptByServers),
                       [&](const char* known) { return kind == known; });
}

}  // namespace

std::vector<LockCheck> CheckLocks(const std::string& folder) {
    if (!CFileUtils::IsDirectory(folder.c_str())) throw FailedOn(folder, "not a folder");
    const CString place = CFileUtils::TerminateDir(folder.c_str());
    const CString path = place + ".qv-check-" + std::to_string(std::random_device()()) + ".doc";
    const auto make = [&] { CFile(path, CFile::modeCreate | CFile::modeWrite).Close(); };
    std::vector<LockCheck> checks{Try("files can be made here", make)};
    if (!checks.back().holds) return checks;
    checks.push_back(Try("who opens a file keeps others out as asked", [&] { TryShareModes(path); }));
    checks.push_back(Try("a document's lock has one holder, who is named", [&] { TryLock(path); }));
    checks.push_back(Try("a document is saved whole or stays as it was", [&] { TrySaving(path); }));
    checks.push_back(Try("files can be deleted again", [&] { CFile::Remove(path); }));
    return checks;
}

std::string DescribeReach(const std::string& folder) {
    const CString kind = CFileUtils::GetFileSystem(folder.c_str());
    if (kind.IsEmpty()) return "the kind of the file system is not known";
    const std::string name = "the file system is " + kind.AsStd() + ": ";
    if (IsKeptByServer(kind)) return name + "locks bind all machines, as far as the server keeps them";
    if (kind == "fuse" || kind.AsStd().starts_with("fuse."))
        return name + "locks bind the programs that use this mount, and no others";
    return name + "locks bind the programs of this machine";
}

}  // namespace qv::tool
