#include "tools/qv/report/FolderTree.h"

#include <algorithm>
#include <chrono>

#include "qvcommon/framework/String.h"
#include "tools/qv/Utf8Path.h"

namespace qv::tool {
namespace {

namespace fs = std::filesystem;

struct Child {
    CString key;  // the name in lower case
    std::string name;
    fs::directory_entry entry;
    bool isFolder;
};

std::time_t ModificationTime(const fs::directory_entry& entry) {
    std::error_code failed;
    const auto time = entry.last_write_time(failed);
    if (failed) return 0;
    const auto seconds = std::chrono::floor<std::chrono::seconds>(std::chrono::file_clock::to_sys(time));
    return std::chrono::system_clock::to_time_t(seconds);
}

class TreeReader {
public:
    TreeReader(const std::vector<fs::path>& skipped, Progress& progress) : m_skipped(skipped), m_progress(progress) {}

    FolderTotals Read(const fs::path& folder, const std::string& path, int depth) {
        const std::size_t index = m_folders.size();
        m_folders.push_back({.path = path, .depth = depth});
        const std::vector<Child> children = ReadChildren(folder, m_folders[index]);
        FolderTotals totals;
        for (const Child& child : children)
            if (!child.isFolder) AddFile(m_folders[index], child);
        totals = m_folders[index].own;
        for (const Child& child : children)
            if (child.isFolder)
                totals.Add(Read(child.entry.path(), path.empty() ? child.name : path + '/' + child.name, depth + 1));
        m_folders[index].overall = totals;
        return totals;
    }

    std::vector<FolderEntry> Take() { return std::move(m_folders); }

private:
    bool IsSkipped(const fs::directory_entry& entry) const {
        if (entry.path().filename() == ".git") return true;
        return std::find(m_skipped.begin(), m_skipped.end(), entry.path()) != m_skipped.end();
    }

    // Neither files nor folders: devices, pipes, links that lead nowhere.
    static bool IsOther(const fs::directory_entry& entry) {
        std::error_code failed;
        return !entry.is_regular_file(failed) && !entry.is_directory(failed);
    }

    std::vector<Child> ReadChildren(const fs::path& folder, FolderEntry& into) const {
        std::vector<Child> children;
        std::error_code failed;
        for (fs::directory_iterator i(folder, failed), end; !failed && i != end; i.increment(failed)) {
            std::error_code unknown;
            const bool isLinkToFolder = i->is_symlink(unknown) && i->is_directory(unknown);
            if (IsSkipped(*i) || IsOther(*i) || isLinkToFolder) continue;
            const std::string name = Utf8(i->path().filename());
            CString key(name);
            key.MakeLower();
            children.push_back({key, name, *i, i->is_directory(unknown)});
        }
        into.isReadable = !failed;
        std::sort(children.begin(), children.end(),
                  [](const Child& a, const Child& b) { return a.key != b.key ? a.key < b.key : a.name < b.name; });
        return children;
    }

    void AddFile(FolderEntry& folder, const Child& child) {
        std::error_code failed;
        const std::uintmax_t size = child.entry.file_size(failed);
        folder.files.push_back({child.name, failed ? 0 : size, ModificationTime(child.entry)});
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
    reader.Read(folder, "", 0);
    return reader.Take();
}

}  // namespace qv::tool
