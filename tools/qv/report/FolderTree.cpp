#include "tools/qv/report/FolderTree.h"

#include <algorithm>

#include "qvcommon/Checksum.h"
#include "qvcommon/FileFinder.h"
#include "qvcommon/FileUtils.h"
#include "tools/qv/Utf8Path.h"

namespace qv::tool {
namespace {

namespace fs = std::filesystem;

struct Child {
    CString key;  // the name in lower case
    std::string name;
    CFoundInfo info;
    bool isFolder;
};

std::time_t ModificationTime(const CFoundInfo& info) {
    CTime time;
    info.GetLastWriteTime(time);
    return time.GetTime();
}

class TreeReader {
public:
    TreeReader(const std::vector<fs::path>& skipped, Progress& progress) : m_skipped(skipped), m_progress(progress) {}

    FolderTotals Read(const CString& folder, const std::string& path, int depth) {
        const std::size_t index = m_folders.size();
        m_folders.push_back({.path = path, .depth = depth});
        const std::vector<Child> children = ReadChildren(folder, m_folders[index]);
        FolderTotals totals;
        for (const Child& child : children)
            if (!child.isFolder) AddFile(m_folders[index], child);
        totals = m_folders[index].own;
        for (const Child& child : children)
            if (child.isFolder)
                totals.Add(
                    Read(child.info.GetFilePath(), path.empty() ? child.name : path + '/' + child.name, depth + 1));
        m_folders[index].overall = totals;
        return totals;
    }

    std::vector<FolderEntry> Take() { return std::move(m_folders); }

private:
    bool IsSkipped(const CFoundInfo& info) const {
        if (info.GetFileName() == ".git") return true;
        const fs::path path = PathFromArgument(info.GetFilePath().AsStd());
        return std::find(m_skipped.begin(), m_skipped.end(), path) != m_skipped.end();
    }

    // Neither files nor folders: devices, pipes, and links that lead nowhere or to folders.
    static bool IsOther(const CFoundInfo& info) {
        constexpr DWORD kDevice = 0x40, kReparsePoint = 0x400;
        if (!info.MatchesMask(kReparsePoint)) return info.MatchesMask(kDevice);
        return info.IsDirectory() || !CFileUtils::IsExist(info.GetFilePath());
    }

    std::vector<Child> ReadChildren(const CString& folder, FolderEntry& into) const {
        FileFinder finder;
        finder.SetSearchPath(folder);
        finder.SetSearchMask("*");
        finder.SetIncludeDirectories(2);
        finder.Discover();
        std::vector<Child> children;
        for (const CFoundInfo& info : finder.GetFoundInfo()) {
            if (IsSkipped(info) || IsOther(info)) continue;
            const std::string name = Utf8FromArgument(info.GetFileName().AsStd());
            CString key(name);
            key.MakeLower();
            children.push_back({key, name, info, info.IsDirectory()});
        }
        into.isReadable = CFileUtils::HasMatching(CFileUtils::TerminateDir(folder) + "*");
        std::sort(children.begin(), children.end(),
                  [](const Child& a, const Child& b) { return a.key != b.key ? a.key < b.key : a.name < b.name; });
        return children;
    }

    void AddFile(FolderEntry& folder, const Child& child) {
        const CFoundInfo& info = child.info;
        folder.files.push_back({child.name, info.GetLength64(), ModificationTime(info), FileCRC(info.GetFilePath())});
        folder.own.Add({1, folder.files.back().size});
        m_progress.Add();
    }

    const std::vector<fs::path>& m_skipped;
    Progress& m_progress;
    std::vector<FolderEntry> m_folders;
};

}  // namespace

std::vector<FolderEntry> ReadFolderTree(const fs::path& folder, const std::vector<fs::path>& skipped,
                                        Progress& progress) {
    TreeReader reader(skipped, progress);
    reader.Read(ArgumentFromPath(folder), "", 0);
    return reader.Take();
}

}  // namespace qv::tool
