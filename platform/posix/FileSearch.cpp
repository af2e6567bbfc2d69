#include "platform/FileSearch.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "platform/Path.h"
#include "platform/Text.h"
#include "platform/Time.h"
#include "platform/Wildcard.h"
#include "platform/posix/FolderBody.h"

namespace qv::platform {
namespace {

std::uint64_t Ticks(const struct statx_timestamp& time) {
    const std::int64_t seconds = time.tv_sec + kSecondsFrom1601To1970;
    return seconds < 0 ? 0 : static_cast<std::uint64_t>(seconds) * kTicksPerSecond + time.tv_nsec / 100;
}

Result<int> Query(int folder, const std::string& name, int flags, struct statx& status) {
    return sys::statx(folder, name.c_str(), flags | AT_NO_AUTOMOUNT, STATX_BASIC_STATS | STATX_BTIME, &status);
}

std::uint32_t AttributesOf(const struct statx& status, const std::string& name) {
    std::uint32_t attributes = 0;
    if (S_ISDIR(status.stx_mode))
        attributes |= kDirectory;
    else if (!S_ISREG(status.stx_mode) && !S_ISLNK(status.stx_mode))
        attributes |= kDevice;
    if (!(status.stx_mode & S_IWUSR)) attributes |= kReadOnly;
    if (name.size() > 1 && name[0] == '.' && name != "..") attributes |= kHidden;
    return attributes;
}

/// All but the name.
Status Describe(int folder, const std::string& native, FoundEntry& entry) {
    struct statx status {};
    const auto asked = Query(folder, native, AT_SYMLINK_NOFOLLOW, status);
    if (!asked.ok()) return asked.status();
    const bool link = S_ISLNK(status.stx_mode);
    if (struct statx target; link && Query(folder, native, 0, target).ok()) status = target;
    entry.attributes = AttributesOf(status, native) | (link ? kReparsePoint : 0);
    entry.tag = link ? kSymbolicLinkTag : 0;
    if (!entry.attributes) entry.attributes = kNormal;
    entry.created = Ticks(status.stx_mask & STATX_BTIME ? status.stx_btime : status.stx_ctime);
    entry.accessed = Ticks(status.stx_atime);
    entry.written = Ticks(status.stx_mtime);
    entry.size = entry.IsFolder() ? 0 : status.stx_size;
    return {};
}

struct Name {
    std::string native, key;
};

bool ComesBefore(const Name& a, const Name& b) {
    const int order = a.key.compare(b.key);
    return order ? order < 0 : a.native < b.native;
}

}  // namespace

Status Folder::Find(FoundEntry& entry) const {
    return Describe(DescriptorOf(*this), NativePath(entry.name), entry);
}

struct FileSearch::State {
    Folder opened;                   // by the search itself
    const Folder* folder = &opened;  // where it searches
    std::vector<Name> names;
    std::size_t next = 0;

    bool Exists(const std::string& name) const {
        struct stat status;
        return sys::fstatat(DescriptorOf(*folder), name.c_str(), &status, AT_SYMLINK_NOFOLLOW).ok();
    }

    /// Returns why some were not listed.
    Status Collect(const Wildcard& mask) {
        std::vector<FolderEntry> entries;
        const Status listed = folder->List(entries);
        const auto matches = [&](const std::string& native) {
            return IsPlainInBothForms(native) ? mask.Matches(native) : mask.Matches(LibraryName(native));
        };
        for (FolderEntry& entry : entries)
            if (matches(entry.name)) names.push_back({std::move(entry.name), {}});
        for (Name& name : names) name.key = ToUpper(name.native);
        std::sort(names.begin(), names.end(), ComesBefore);
        std::size_t dots = 0;
        for (const char* const name : {".", ".."})
            if (mask.Matches(name)) names.insert(names.begin() + static_cast<std::ptrdiff_t>(dots++), {name, {}});
        return listed;
    }
};

FileSearch::FileSearch() = default;
FileSearch::~FileSearch() = default;
FileSearch::FileSearch(FileSearch&&) noexcept = default;
FileSearch& FileSearch::operator=(FileSearch&&) noexcept = default;

Status FileSearch::Start(const char* pattern, LastName lastName) {
    m_state.reset();
    m_passedOver.clear();
    m_leftOut = {};
    const std::string whole = pattern;
    const std::size_t nameAt = whole.find_last_of("\\/") + 1;
    const std::string path = nameAt == 0 ? "." : whole.substr(0, nameAt), mask = whole.substr(nameAt);
    auto state = std::make_unique<State>();
    const Status opened = state->opened.Open(path.c_str(), lastName);
    // Of the pattern it is the folder that is missing, not the file.
    if (!opened.ok()) return opened.error() == ENOENT ? Status::OfErrorAt(ENOENT, pattern) : opened;

    std::string named = NativePath(mask);
    if (!Wildcard::IsWild(mask) && state->Exists(named))
        state->names.push_back({std::move(named), {}});
    else if (const Status listed = state->Collect(Wildcard(mask)); !listed.ok())
        PassOver("", listed);
    m_state = std::move(state);
    return {};
}

void FileSearch::StartIn(const Folder& folder) {
    m_passedOver.clear();
    m_leftOut = {};
    m_state = std::make_unique<State>();
    m_state->folder = &folder;
    if (const Status listed = m_state->Collect(Wildcard("*")); !listed.ok()) PassOver("", listed);
}

bool FileSearch::Next(FoundEntry& entry) {
    if (!m_state) return false;
    while (m_state->next < m_state->names.size()) {
        std::string& native = m_state->names[m_state->next++].native;
        const Status described = Describe(DescriptorOf(*m_state->folder), native, entry);
        entry.name = LibraryName(std::move(native));
        if (described.ok()) return true;
        PassOver(entry.name, described);
    }
    m_state.reset();
    return false;
}

void FileSearch::PassOver(std::string name, const Status& status) {
    if (status.cause() != FileCause::FileNotFound) m_leftOut = m_leftOut.Or(status);
    m_passedOver.push_back({std::move(name), status});
}

}  // namespace qv::platform
