#include "platform/FileSearch.h"

#include <cerrno>

#include "platform/Path.h"
#include "platform/Text.h"
#include "platform/Time.h"
#include "platform/Wildcard.h"
#include "platform/posix/FolderBody.h"
#include "platform/posix/FolderEntries.h"
#include "platform/posix/FolderNames.h"

namespace qv::platform {
namespace {

std::uint64_t Ticks(const struct statx_timestamp& time) {
    const std::int64_t seconds = time.tv_sec + kSecondsFrom1601To1970;
    return seconds < 0 ? 0 : static_cast<std::uint64_t>(seconds) * kTicksPerSecond + time.tv_nsec / 100;
}

Result<int> Query(int folder, const char* path, int flags, struct statx& status) {
    return sys::statx(folder, path, flags | AT_NO_AUTOMOUNT, STATX_BASIC_STATS | STATX_BTIME, &status);
}

std::uint32_t AttributesOf(const struct statx& status, std::string_view name) {
    std::uint32_t attributes = 0;
    if (S_ISDIR(status.stx_mode))
        attributes |= kDirectory;
    else if (!S_ISREG(status.stx_mode) && !S_ISLNK(status.stx_mode))
        attributes |= kDevice;
    if (!(status.stx_mode & S_IWUSR)) attributes |= kReadOnly;
    if (name.size() > 1 && name[0] == '.' && name != "..") attributes |= kHidden;
    return attributes;
}

/// Fills all fields except the name for the path, relative to the folder. `name` is its last part.
Status Describe(int folder, const char* path, const char* name, FoundEntry& entry) {
    struct statx status {};
    const auto asked = Query(folder, path, AT_SYMLINK_NOFOLLOW, status);
    if (!asked.ok()) return asked.status();
    const bool link = S_ISLNK(status.stx_mode);
    if (struct statx target; link && Query(folder, path, 0, target).ok()) status = target;
    entry.attributes = AttributesOf(status, name) | (link ? kReparsePoint : 0);
    entry.tag = link ? kSymbolicLinkTag : 0;
    if (!entry.attributes) entry.attributes = kNormal;
    entry.created = Ticks(status.stx_mask & STATX_BTIME ? status.stx_btime : status.stx_ctime);
    entry.accessed = Ticks(status.stx_atime);
    entry.written = Ticks(status.stx_mtime);
    entry.size = entry.IsFolder() ? 0 : status.stx_size;
    return {};
}

/// Fills all fields except the name, as far as the kind determines them.
void DescribeKind(EntryKind kind, FoundEntry& entry) {
    const bool link = kind == EntryKind::FolderLink;
    entry.attributes = (kind == EntryKind::File ? 0u : +kDirectory) | (link ? kReparsePoint : 0);
    entry.tag = link ? kSymbolicLinkTag : 0;
    entry.created = entry.accessed = entry.written = entry.size = 0;
}

}  // namespace

Status Folder::Find(FoundEntry& entry) const {
    const std::string name = NativePath(entry.name);
    return Describe(DescriptorOf(*this), name.c_str(), name.c_str(), entry);
}

Detail GivenFor(Detail asked) {
    return asked;
}

Status FindEntry(const char* path, FoundEntry& entry) {
    const std::string native = NativePath(path);
    return Describe(AT_FDCWD, native.c_str(), native.c_str() + native.rfind('/') + 1, entry);
}

struct FileSearch::State {
    Folder opened;                   // opened by the search itself
    const Folder* folder = &opened;  // folder being searched
    Detail detail = Detail::All;
    FolderNames names;

    bool Exists(const std::string& name) const {
        struct stat status;
        return sys::fstatat(DescriptorOf(*folder), name.c_str(), &status, AT_SYMLINK_NOFOLLOW).ok();
    }

    /// Returns why entries were left out.
    Status Collect(const Wildcard& mask) {
        const int descriptor = DescriptorOf(*folder);
        const Status listed = ForEachEntry(descriptor, [&](const dirent64& entry) {
            const std::string_view native = entry.d_name;
            if (!(IsPlainInBothForms(native) ? mask.Matches(native) : mask.Matches(LibraryName(std::string(native)))))
                return;
            names.Add(native, detail == Detail::All ? std::nullopt : std::optional(KindOf(descriptor, entry)));
        });
        names.Sort();
        for (const char* const name : {".", ".."})
            if (mask.Matches(name)) names.AddInFront(name, EntryKind::Folder);
        return listed;
    }

    Status DescribeNext(const FolderNames::Entry& next, FoundEntry& entry) const {
        if (detail == Detail::All || !next.kind) return Describe(DescriptorOf(*folder), next.name, next.name, entry);
        DescribeKind(*next.kind, entry);
        return {};
    }
};

FileSearch::FileSearch() = default;
FileSearch::~FileSearch() = default;
FileSearch::FileSearch(FileSearch&&) noexcept = default;
FileSearch& FileSearch::operator=(FileSearch&&) noexcept = default;

Status FileSearch::Start(const char* pattern, LastName lastName, Detail detail) {
    m_state.reset();
    m_passedOver.clear();
    m_leftOut = {};
    const std::string whole = pattern;
    const std::size_t nameAt = whole.find_last_of("\\/") + 1;
    const std::string path = nameAt == 0 ? "." : whole.substr(0, nameAt), mask = whole.substr(nameAt);
    auto state = std::make_unique<State>();
    state->detail = detail;
    const Status opened = state->opened.Open(path.c_str(), lastName);
    // For a pattern the missing part is the folder, not the file.
    if (!opened.ok()) return opened.error() == ENOENT ? Status::OfErrorAt(ENOENT, pattern) : opened;

    const std::string named = NativePath(mask);
    if (!Wildcard::IsWild(mask) && state->Exists(named))
        state->names.Add(named, std::nullopt);
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
    while (const auto next = m_state->names.Next()) {
        const Status described = m_state->DescribeNext(*next, entry);
        entry.name.assign(next->name);
        if (!IsPlainInBothForms(entry.name)) entry.name = LibraryName(std::move(entry.name));
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
