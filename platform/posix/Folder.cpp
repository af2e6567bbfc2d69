#include "platform/Folder.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <utility>

#include "platform/Path.h"

namespace qv::platform {
namespace {

constexpr int kFolderOnly = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK;
constexpr std::size_t kBufferSize = 32 * 1024;

int OpenAt(int parent, const char* name, int flags) {
    int folder = -1;
    do folder = ::openat(parent, name, kFolderOnly | flags);
    while (folder == -1 && errno == EINTR);
    return folder;
}

bool LeadsToFolder(int parent, const char* name) {
    struct stat status;
    return !::fstatat(parent, name, &status, AT_NO_AUTOMOUNT) && S_ISDIR(status.st_mode);
}

EntryKind KindOf(int parent, const char* name, unsigned char type) {
    struct stat status;
    if (type == DT_UNKNOWN && !::fstatat(parent, name, &status, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT))
        type = IFTODT(status.st_mode);
    if (type == DT_DIR) return EntryKind::Folder;
    return type == DT_LNK && LeadsToFolder(parent, name) ? EntryKind::FolderLink : EntryKind::File;
}

bool IsDots(const char* name) {
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

}  // namespace

Folder::Folder(Folder&& other) noexcept {
    *this = std::move(other);
}

Folder& Folder::operator=(Folder&& other) noexcept {
    if (this == &other) return *this;
    Close();
    m_handle = std::exchange(other.m_handle, kNoFile);
    m_volume = other.m_volume;
    m_number = other.m_number;
    return *this;
}

FileFailure Folder::Open(const char* path, LastName lastName) {
    Close();
    std::string native = NativePath(path);
    // A final separator would have the link before it followed.
    if (lastName == LastName::NoLink)
        while (native.size() > 1 && native.back() == '/') native.pop_back();
    m_handle = OpenAt(AT_FDCWD, native.c_str(), lastName == LastName::NoLink ? O_NOFOLLOW : 0);
    return m_handle == kNoFile ? LastFailureAt(path) : FileFailure{};
}

FileFailure Folder::OpenIn(const Folder& parent, const std::string& name) {
    const int folder = OpenAt(static_cast<int>(parent.m_handle), name.c_str(), O_NOFOLLOW);
    if (folder == -1) return LastFailure();
    Close();
    m_handle = folder;
    return {};
}

void Folder::Close() {
    if (m_handle != kNoFile) ::close(static_cast<int>(std::exchange(m_handle, kNoFile)));
}

FileFailure Folder::List(std::vector<FolderEntry>& entries) const {
    const int folder = static_cast<int>(m_handle);
    alignas(dirent64) char buffer[kBufferSize];
    for (;;) {
        const ssize_t size = ::getdents64(folder, buffer, sizeof buffer);
        if (size <= 0) return size < 0 ? LastFailure() : FileFailure{};
        for (const char* next = buffer; next < buffer + size;) {
            const auto& entry = *reinterpret_cast<const dirent64*>(next);
            if (!IsDots(entry.d_name)) entries.push_back({entry.d_name, KindOf(folder, entry.d_name, entry.d_type)});
            next += entry.d_reclen;
        }
    }
}

FileFailure Folder::Remove(const FolderEntry& entry) const {
    const int flags = entry.kind == EntryKind::Folder ? AT_REMOVEDIR : 0;
    return ::unlinkat(static_cast<int>(m_handle), entry.name.c_str(), flags) ? LastFailure() : FileFailure{};
}

FileFailure Folder::AllowRemoval() const {
    struct stat status;
    const int folder = static_cast<int>(m_handle);
    if (::fstat(folder, &status)) return LastFailure();
    return ::fchmod(folder, (status.st_mode & 07777) | S_IRWXU) ? LastFailure() : FileFailure{};
}

void Folder::LetGo() {
    struct stat status;
    if (::fstat(static_cast<int>(m_handle), &status)) return;
    m_volume = status.st_dev;
    m_number = status.st_ino;
    Close();
}

FileFailure Folder::TakeBack(const Folder& child) {
    if (m_handle != kNoFile) return {};
    struct stat status;
    Folder parent;
    parent.m_handle = OpenAt(static_cast<int>(child.m_handle), "..", O_NOFOLLOW);
    if (parent.m_handle == kNoFile || ::fstat(static_cast<int>(parent.m_handle), &status)) return LastFailure();
    if (status.st_dev != m_volume || status.st_ino != m_number) return {FileCause::BadPath, ESTALE};
    *this = std::move(parent);
    return {};
}

}  // namespace qv::platform
