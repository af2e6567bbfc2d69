#include "tools/qv/report/FolderTree.h"

#include <algorithm>

#include "qvcommon/FileFinder.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/framework/File.h"
#include "tools/qv/Crc.h"
#include "tools/qv/Utf8Path.h"

namespace qv::tool {
namespace {

namespace fs = std::filesystem;

struct Child {
    CString key;  // the name in lower case
    std::string name;
    CFoundInfo info;
    LinkKind link;

    bool IsFolder() const { return info.IsDirectory() && link == LinkKind::None; }
};

std::int64_t ModificationTime(const CFoundInfo& info) {
    CTime time;
    info.GetLastWriteTime(time);
    return time.GetTime();
}

LinkKind LinkKindOf(const CFoundInfo& info) {
    constexpr DWORD kReparsePoint = 0x400;
    if (!info.MatchesMask(kReparsePoint)) return LinkKind::None;
    if (info.IsDirectory()) return LinkKind::ToFolder;
    return CFileUtils::IsExist(info.GetFilePath()) ? LinkKind::ToFile : LinkKind::Broken;
}

bool IsDevice(const CFoundInfo& info) {
    constexpr DWORD kDevice = 0x40;
    return info.MatchesMask(kDevice);
}

class TreeReader : private ILeftOut {
public:
    TreeReader(const CString& root, const std::vector<fs::path>& skipped, Progress& progress, ILeftOut& observer)
        : m_root(CFileUtils::TerminateDir(root)), m_skipped(skipped), m_progress(progress), m_observer(observer) {}

    FolderTotals Read(const CString& folder, const std::string& path, int depth) {
        const std::size_t index = m_tree.folders.size();
        m_tree.folders.push_back({.path = path, .depth = depth});
        const std::vector<Child> children = ReadChildren(folder, m_tree.folders[index]);
        FolderTotals totals;
        for (const Child& child : children)
            if (!child.IsFolder()) AddFile(m_tree.folders[index], child);
        totals = m_tree.folders[index].own;
        for (const Child& child : children)
            if (child.IsFolder())
                totals.Add(
                    Read(child.info.GetFilePath(), path.empty() ? child.name : path + '/' + child.name, depth + 1));
        m_tree.folders[index].overall = totals;
        return totals;
    }

    FolderTree Take() { return std::move(m_tree); }

private:
    void OnLeftOut(const QvLeftOut& entry) override {
        Note(entry.path, entry.reason);
        m_observer.OnLeftOut(entry);
    }

    void Note(const CString& path, const CString& reason) {
        const bool isBelow = path.AsStd().starts_with(m_root.AsStd());
        m_tree.leftOut.push_back({isBelow ? Utf8FromLibrary(path.Mid(m_root.GetLength())) : ".", reason.AsStd()});
    }

    bool IsSkipped(const CFoundInfo& info) const {
        const fs::path path = PathFromArgument(info.GetFilePath().AsStd());
        return std::find(m_skipped.begin(), m_skipped.end(), path) != m_skipped.end();
    }

    /// Whether the pages show the entry. If not, reports why.
    bool IsShown(const CFoundInfo& info) {
        if (IsSkipped(info) || info.IsDots()) return false;
        if (info.GetFileName() == ".git")
            Note(info.GetFilePath(), "version control data, never shown");
        else if (IsDevice(info))
            OnLeftOut(QvLeftOut::OfCause(info.GetFilePath(), QvLeftOut::device));
        else
            return true;
        return false;
    }

    std::vector<Child> ReadChildren(const CString& folder, FolderEntry& into) {
        FileFinder finder;
        finder.SetSearchPath(folder);
        finder.SetSearchMask("*");
        finder.SetIncludeDirectories(2);
        finder.SetLeftOut(this);
        const std::size_t leftOutBefore = m_tree.leftOut.size();
        finder.Discover();
        into.isReadable = m_tree.leftOut.size() == leftOutBefore;
        std::vector<Child> children;
        for (const CFoundInfo& info : finder.GetFoundInfo()) {
            if (!IsShown(info)) continue;
            const std::string name = Utf8FromLibrary(info.GetFileName());
            CString key(name);
            key.MakeLower();
            children.push_back({key, name, info, LinkKindOf(info)});
        }
        std::sort(children.begin(), children.end(),
                  [](const Child& a, const Child& b) { return a.key != b.key ? a.key < b.key : a.name < b.name; });
        return children;
    }

    void AddFile(FolderEntry& folder, const Child& child) {
        const CFoundInfo& info = child.info;
        FileEntry file{child.name, info.GetLength64(), ModificationTime(info), child.link};
        AddChecksum(file, info.GetFilePath());
        folder.files.push_back(std::move(file));
        folder.own.Add({1, folder.files.back().size});
        m_progress.Add();
    }

    void AddChecksum(FileEntry& file, const CString& path) {
        if (file.link == LinkKind::ToFolder) {
            file.noChecksum = "folder";
        } else if (file.link == LinkKind::Broken) {
            file.noChecksum = "leads nowhere";
            file.size = 0;
            OnLeftOut(QvLeftOut::OfCause(path, QvLeftOut::brokenLink));
        } else {
            ReadChecksum(file, path);
        }
    }

    void ReadChecksum(FileEntry& file, const CString& path) {
        try {
            file.checksum = CrcOf(path.AsStd(), m_progress);
        } catch (CFileException* error) {
            const LONG number = error->m_lOsError;
            error->Delete();
            const auto leftOut = QvLeftOut::OfError(path, static_cast<DWORD>(number > 0 ? number : 0));
            file.noChecksum = "unreadable: " + leftOut.reason.AsStd();
            OnLeftOut(leftOut);
        }
    }

    const CString m_root;
    const std::vector<fs::path>& m_skipped;
    Progress& m_progress;
    ILeftOut& m_observer;
    FolderTree m_tree;
};

}  // namespace

FolderTree ReadFolderTree(const fs::path& folder, const std::vector<fs::path>& skipped, Progress& progress,
                          ILeftOut& observer) {
    const CString root = ArgumentFromPath(folder);
    TreeReader reader(root, skipped, progress, observer);
    reader.Read(root, "", 0);
    return reader.Take();
}

}  // namespace qv::tool
