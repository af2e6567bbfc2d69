#include "platform/Folder.h"

#include <cerrno>
#include <utility>

#include "platform/Path.h"
#include "platform/posix/FolderBody.h"
#include "platform/posix/FolderEntries.h"

namespace qv::platform {
namespace {

Result<int> OpenAt(int parent, const char* name, int flags) {
    return sys::openat_folder(parent, name, flags);
}

int FlagsOf(LastName lastName) {
    return lastName == LastName::NoLink ? O_NOFOLLOW : 0;
}

int FlagsOf(FolderUse use) {
    return use == FolderUse::LookedUpIn ? O_PATH : 0;
}

bool LeadsToFolder(int parent, const char* name) {
    struct stat status;
    return sys::fstatat(parent, name, &status, AT_NO_AUTOMOUNT).ok() && S_ISDIR(status.st_mode);
}

}  // namespace

EntryKind KindOf(int folder, const dirent64& entry) {
    struct stat status;
    unsigned char type = entry.d_type;
    const int noFollow = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT;
    if (type == DT_UNKNOWN && sys::fstatat(folder, entry.d_name, &status, noFollow).ok()) type = IFTODT(status.st_mode);
    if (type == DT_DIR) return EntryKind::Folder;
    return type == DT_LNK && LeadsToFolder(folder, entry.d_name) ? EntryKind::FolderLink : EntryKind::File;
}

Folder::Folder() = default;
Folder::Folder(Folder&& other) noexcept = default;
Folder& Folder::operator=(Folder&& other) noexcept = default;
Folder::~Folder() = default;

Status Folder::Open(const char* path, LastName lastName, FolderUse use) {
    Close();
    std::string native = NativePath(path);
    // A trailing separator would make the system follow a link.
    if (lastName == LastName::NoLink)
        while (native.size() > 1 && native.back() == '/') native.pop_back();
    const auto folder = OpenAt(AT_FDCWD, native.c_str(), FlagsOf(lastName) | FlagsOf(use));
    if (!folder.ok()) return folder.statusAt(path);
    m_body = std::make_unique<Body>(Body{.descriptor = UniqueFd(folder), .use = use});
    return {};
}

Status Folder::OpenIn(const Folder& parent, const std::string& name, FolderUse use) {
    const auto folder = OpenAt(DescriptorOf(parent), name.c_str(), O_NOFOLLOW | FlagsOf(use));
    if (!folder.ok()) return folder.status();
    m_body = std::make_unique<Body>(Body{.descriptor = UniqueFd(folder), .use = use});
    return {};
}

Status Folder::MakeIn(const Folder& parent, const std::string& name, bool& made) {
    const auto created = sys::mkdirat(DescriptorOf(parent), name.c_str(), 0777);
    made = created.ok();
    if (!made && created.error() != EEXIST) return created.status();
    return OpenIn(parent, name, FolderUse::LookedUpIn);
}

void Folder::Close() {
    m_body.reset();
}

Status Folder::List(std::vector<FolderEntry>& entries) const {
    const int folder = DescriptorOf(*this);
    return ForEachEntry(folder, [&](const dirent64& entry) {
        entries.push_back({entry.d_name, KindOf(folder, entry)});
    });
}

Status Folder::Remove(const FolderEntry& entry) const {
    const int flags = entry.kind == EntryKind::Folder ? AT_REMOVEDIR : 0;
    return sys::unlinkat(DescriptorOf(*this), entry.name.c_str(), flags).status();
}

bool Folder::IsSame(const Folder& other) const {
    const auto identify = [](const Folder& folder, FileIdentity& identity) {
        struct stat status;
        if (folder.m_body) identity = folder.m_body->identity;
        const bool open = sys::fstat(DescriptorOf(folder), &status).ok();
        if (open) identity = FileIdentity(status);
        return open || identity != FileIdentity();
    };
    FileIdentity mine, others;
    return identify(*this, mine) && identify(other, others) && mine == others;
}

Status Folder::MakeWritable(const std::string& name) const {
    struct stat status;
    const int folder = DescriptorOf(*this);
    const auto asked = sys::fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW);
    if (!asked.ok() || (status.st_mode & S_IWUSR)) return asked.status();
    return sys::fchmodat(folder, name.c_str(), (status.st_mode & 07777) | S_IWUSR, AT_SYMLINK_NOFOLLOW).status();
}

Status Folder::MakeWritable() const {
    struct stat status;
    const int folder = DescriptorOf(*this);
    const auto asked = sys::fstat(folder, &status);
    if (!asked.ok() || (status.st_mode & S_IWUSR)) return asked.status();
    return sys::fchmod(folder, (status.st_mode & 07777) | S_IWUSR).status();
}

Status Folder::AllowRemoval() const {
    struct stat status;
    const int folder = DescriptorOf(*this);
    if (const auto asked = sys::fstat(folder, &status); !asked.ok()) return asked.status();
    return sys::fchmod(folder, (status.st_mode & 07777) | S_IRWXU).status();
}

void Folder::Suspend() {
    struct stat status;
    if (!m_body || !sys::fstat(m_body->descriptor.Get(), &status).ok()) return;
    *m_body = {.descriptor = UniqueFd(), .identity = FileIdentity(status), .use = m_body->use};
}

Status Folder::Resume(const Folder& child) {
    if (m_body && m_body->descriptor) return {};
    const auto opened =
        OpenAt(DescriptorOf(child), "..", O_NOFOLLOW | FlagsOf(m_body ? m_body->use : FolderUse::Listed));
    if (!opened.ok()) return opened.status();
    UniqueFd parent(opened);
    struct stat status;
    if (const auto asked = sys::fstat(parent.Get(), &status); !asked.ok()) return asked.status();
    if (!m_body || m_body->identity != FileIdentity(status)) return {FileCause::BadPath, ESTALE};
    m_body->descriptor = std::move(parent);
    return {};
}

}  // namespace qv::platform
