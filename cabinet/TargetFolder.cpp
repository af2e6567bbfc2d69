#include "cabinet/TargetFolder.h"

#include "framework/PathText.h"
#include "platform/Ascii.h"
#include "platform/Path.h"
#include "qvcommon/FileUtils.h"

namespace qv::cabinet {

using platform::Folder;
using platform::Status;

std::optional<std::vector<std::string>> SafeNames(std::string_view path) {
    if (path.size() >= 2 && path[1] == ':' && ascii::IsLetter(path[0])) return std::nullopt;
    if (EndsWithOneOf(path, kSeparators)) path.remove_suffix(1);
    std::vector<std::string> names;
    for (;;) {
        const std::size_t end = FindFirstOf(path, kSeparators);
        const std::string_view name = path.substr(0, end);
        if (name != ".") names.push_back(platform::NativePath(name));
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

Status TargetFolder::OpenRoot(bool make) {
    if (m_rootIsOpen) return {};
    const CString path = m_root.IsEmpty() ? CString(".\\") : m_root;
    Status status = m_rootFolder.Open(path, platform::LastName::MayBeLink);
    if (!status.ok() && make && QvCreateDirectory(path))
        status = m_rootFolder.Open(path, platform::LastName::MayBeLink);
    m_rootIsOpen = status.ok();
    return status;
}

/// Opens the folder at the first `count` names.
Status TargetFolder::Enter(const std::vector<std::string>& names, std::size_t count, bool make) {
    const std::vector<std::string> wanted(names.begin(), names.begin() + static_cast<std::ptrdiff_t>(count));
    if (m_isIn && wanted == m_names) return {};
    m_isIn = false;
    if (const Status status = OpenRoot(make); !status.ok()) return status;
    const Folder* parent = &m_rootFolder;
    for (const std::string& name : wanted) {
        Folder next;
        Status status = next.OpenIn(*parent, name);
        if (!status.ok() && make) {
            status = platform::MakeFolderIn(*parent, name);
            if (status.ok()) status = next.OpenIn(*parent, name);
        }
        if (!status.ok()) return status;
        m_folder = std::move(next);
        parent = &m_folder;
    }
    m_names = wanted;
    m_isIn = true;
    return {};
}

Status TargetFolder::MakeFolder(const std::vector<std::string>& names) {
    return Enter(names, names.size(), true);
}

Status TargetFolder::Create(const std::vector<std::string>& names, platform::FileHandle& handle) {
    Discard();
    if (const Status status = Enter(names, names.size() - 1, true); !status.ok()) return status;
    const Status status =
        m_member.CreateIn(m_names.empty() ? m_rootFolder : m_folder, names.back(), platform::Access::AsUmaskSays);
    handle = m_member.Handle();
    return status;
}

Status TargetFolder::Commit() {
    if (m_member.Handle() == platform::kNoFile) return {};
    return m_member.Commit(platform::IfExists::Replace, platform::Durability::Deferred);
}

void TargetFolder::Discard() {
    m_member.Drop();
}

Status TargetFolder::Stamp(const std::vector<std::string>& names, const platform::FileStamp& stamp) {
    if (const Status status = Enter(names, names.size() - 1, false); !status.ok()) return status;
    return platform::StampFileIn(m_names.empty() ? m_rootFolder : m_folder, names.back(), stamp);
}

}  // namespace qv::cabinet
