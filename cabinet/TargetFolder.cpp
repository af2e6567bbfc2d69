#include "cabinet/TargetFolder.h"

#include <cstdio>
#include <random>

#include "framework/FileFaults.h"
#include "platform/Ascii.h"
#include "qvcommon/FileUtils.h"

namespace qv::cabinet {

using platform::FileCause;
using platform::FileFailure;
using platform::Folder;

std::optional<std::vector<std::string>> SafeNames(std::string_view path) {
    constexpr const char* kSeparators = "\\/";
    if (path.size() >= 2 && path[1] == ':' && ascii::IsLetter(path[0])) return std::nullopt;
    if (path.ends_with('\\') || path.ends_with('/')) path.remove_suffix(1);
    std::vector<std::string> names;
    for (;;) {
        const std::size_t end = path.find_first_of(kSeparators);
        const std::string_view name = path.substr(0, end);
        if (name != ".") names.emplace_back(name);
        if (name != "." && !platform::IsPlainName(names.back())) return std::nullopt;
        if (end == path.npos) break;
        path.remove_prefix(end + 1);
    }
    if (names.empty()) return std::nullopt;
    return names;
}

void TargetFolder::SetRoot(const CString& root) {
    if (m_rootIsOpen && root == m_root) return;
    m_root = root;
    m_rootIsOpen = m_isIn = false;
}

FileFailure TargetFolder::OpenRoot(bool make) {
    if (m_rootIsOpen) return {};
    const CString path = m_root.IsEmpty() ? CString(".\\") : m_root;
    FileFailure failure = m_rootFolder.Open(path, platform::LastName::MayBeLink);
    if (failure && make && QvCreateDirectory(path)) failure = m_rootFolder.Open(path, platform::LastName::MayBeLink);
    m_rootIsOpen = !failure;
    return failure;
}

/// Opens the folder that the first `count` names lead to.
FileFailure TargetFolder::Enter(const std::vector<std::string>& names, std::size_t count, bool make) {
    const std::vector<std::string> wanted(names.begin(), names.begin() + static_cast<std::ptrdiff_t>(count));
    if (m_isIn && wanted == m_names) return {};
    m_isIn = false;
    if (const FileFailure failure = OpenRoot(make)) return failure;
    const Folder* parent = &m_rootFolder;
    for (const std::string& name : wanted) {
        Folder next;
        FileFailure failure = next.OpenIn(*parent, name);
        if (failure && make) {
            failure = platform::MakeFolderIn(*parent, name);
            if (!failure) failure = next.OpenIn(*parent, name);
        }
        if (failure) return failure;
        m_folder = std::move(next);
        parent = &m_folder;
    }
    m_names = wanted;
    m_isIn = true;
    return {};
}

FileFailure TargetFolder::MakeFolder(const std::vector<std::string>& names) {
    return CallSystem(FileCall::CreateFolder, m_root, [&] { return Enter(names, names.size(), true); });
}

FileFailure TargetFolder::Create(const std::vector<std::string>& names, platform::FileHandle& handle) {
    Discard();
    if (const FileFailure failure = Enter(names, names.size() - 1, true)) return failure;
    const Folder& folder = m_names.empty() ? m_rootFolder : m_folder;
    static const unsigned run = std::random_device()();
    FileFailure failure;
    for (int tries = 0; tries < 100; ++tries) {
        char own[32];
        std::snprintf(own, sizeof own, ".qv%08x.%x", run, m_count++);
        failure = CallSystem(FileCall::Open, own, [&] { return platform::CreateFileIn(folder, own, handle); });
        if (!failure) {
            m_stagedName = own;
            m_finalName = names.back();
            break;
        }
        if (failure.cause == FileCause::DiskFull || failure.cause == FileCause::TooManyOpenFiles) break;
    }
    return failure;
}

FileFailure TargetFolder::Commit() {
    if (m_stagedName.empty()) return {};
    const Folder& folder = m_names.empty() ? m_rootFolder : m_folder;
    const FileFailure failure = CallSystem(FileCall::Rename, m_finalName.c_str(),
                                           [&] { return platform::MoveOverIn(folder, m_stagedName, m_finalName); });
    if (failure)
        Discard();
    else
        m_stagedName.clear();
    return failure;
}

void TargetFolder::Discard() {
    if (m_stagedName.empty()) return;
    platform::RemoveFileIn(m_names.empty() ? m_rootFolder : m_folder, m_stagedName);
    m_stagedName.clear();
}

FileFailure TargetFolder::Stamp(const std::vector<std::string>& names, const platform::FileStamp& stamp) {
    if (const FileFailure failure = Enter(names, names.size() - 1, false)) return failure;
    return platform::StampFileIn(m_names.empty() ? m_rootFolder : m_folder, names.back(), stamp);
}

}  // namespace qv::cabinet
