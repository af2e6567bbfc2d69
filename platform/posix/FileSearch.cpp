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

std::uint32_t AttributesOf(const struct statx& status, const FoundEntry& entry) {
    std::uint32_t attributes = 0;
    if (S_ISDIR(status.stx_mode))
        attributes |= kDirectory;
    else if (!S_ISREG(status.stx_mode) && !S_ISLNK(status.stx_mode))
        attributes |= kDevice;
    if (!(status.stx_mode & S_IWUSR)) attributes |= kReadOnly;
    if (entry.name.size() > 1 && entry.name[0] == '.' && entry.name != "..") attributes |= kHidden;
    return attributes;
}

/// What cannot be asked for is described as a file without size and times.
Result<int> Describe(int folder, FoundEntry& entry) {
    struct statx status {};
    const auto asked = Query(folder, entry.name, AT_SYMLINK_NOFOLLOW, status);
    const bool link = S_ISLNK(status.stx_mode);
    if (struct statx target; link && Query(folder, entry.name, 0, target).ok()) status = target;
    entry.attributes = AttributesOf(status, entry) | (link ? kReparsePoint : 0);
    entry.tag = link ? kSymbolicLinkTag : 0;
    if (!entry.attributes) entry.attributes = kNormal;
    entry.created = Ticks(status.stx_mask & STATX_BTIME ? status.stx_btime : status.stx_ctime);
    entry.accessed = Ticks(status.stx_atime);
    entry.written = Ticks(status.stx_mtime);
    entry.size = entry.IsFolder() ? 0 : status.stx_size;
    return asked;
}

struct Name {
    std::string text, key;
};

bool ComesBefore(const Name& a, const Name& b) {
    const int order = a.key.compare(b.key);
    return order ? order < 0 : a.text < b.text;
}

}  // namespace

Status Folder::Find(FoundEntry& entry) const {
    return Describe(DescriptorOf(*this), entry).status();
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

    /// Returns why entries were skipped.
    Status Collect(const Wildcard& mask) {
        std::vector<FolderEntry> entries;
        Status leftOut = folder->List(entries);
        for (FolderEntry& entry : entries) {
            const bool unreachable = entry.name.find('\\') != entry.name.npos;
            if (unreachable) leftOut = leftOut.Or({FileCause::BadPath, EINVAL});
            if (!unreachable && mask.Matches(entry.name)) names.push_back({std::move(entry.name), {}});
        }
        for (Name& name : names) name.key = ToUpper(name.text);
        std::sort(names.begin(), names.end(), ComesBefore);
        std::size_t dots = 0;
        for (const char* const name : {".", ".."})
            if (mask.Matches(name)) names.insert(names.begin() + static_cast<std::ptrdiff_t>(dots++), {name, {}});
        return leftOut;
    }
};

FileSearch::FileSearch() = default;
FileSearch::~FileSearch() = default;
FileSearch::FileSearch(FileSearch&&) noexcept = default;
FileSearch& FileSearch::operator=(FileSearch&&) noexcept = default;

Status FileSearch::Start(const char* pattern, LastName lastName) {
    m_state.reset();
    m_leftOut = {};
    const std::string native = NativePath(pattern);
    const std::size_t slash = native.rfind('/');
    const std::string mask = slash == native.npos ? native : native.substr(slash + 1);
    auto state = std::make_unique<State>();
    const std::string path = slash == native.npos ? "." : native.substr(0, slash + 1);
    const Status opened = state->opened.Open(path.c_str(), lastName);
    // Of the pattern it is the folder that is missing, not the file.
    if (!opened.ok()) return opened.error() == ENOENT ? Status::OfErrorAt(ENOENT, pattern) : opened;

    if (!Wildcard::IsWild(mask) && state->Exists(mask))
        state->names.push_back({mask, {}});
    else
        m_leftOut = state->Collect(Wildcard(mask));
    m_state = std::move(state);
    return {};
}

Status FileSearch::StartIn(const Folder& folder) {
    m_state = std::make_unique<State>();
    m_state->folder = &folder;
    m_leftOut = m_state->Collect(Wildcard("*"));
    return {};
}

bool FileSearch::Next(FoundEntry& entry) {
    if (!m_state) return false;
    while (m_state->next < m_state->names.size()) {
        entry.name = std::move(m_state->names[m_state->next++].text);
        const auto described = Describe(DescriptorOf(*m_state->folder), entry);
        if (described.error() != ENOENT && described.error() != ENOTDIR) return true;
    }
    m_state.reset();
    return false;
}

}  // namespace qv::platform
