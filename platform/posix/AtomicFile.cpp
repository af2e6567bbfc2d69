#include "platform/AtomicFile.h"

#include <cerrno>
#include <utility>

#include "platform/FileOpen.h"
#include "platform/Path.h"
#include "platform/SignalHold.h"
#include "platform/posix/FolderBody.h"
#include "platform/posix/OfdLock.h"
#include "platform/posix/RenameNoReplace.h"
#include "platform/posix/SameFile.h"
#include "platform/posix/attributes/FileAttributes.h"
#include "platform/posix/attributes/FolderAccess.h"

// A temporary name is in use as long as its file is locked. A process that finds the name taken and the lock free
// deletes the file, because its creator is dead. A new file is not locked yet, so its creator checks, once it holds the
// lock, that the name still refers to the file. If the file system does not support locks, nothing is deleted.

namespace qv::platform {
namespace {

constexpr int kMostTemporaryNames = 100;
constexpr mode_t kOwnerOnly = 0600, kAsUmaskSays = 0666;

/// No other lock of this library covers the byte: the committed file may be opened by others while its creator still
/// has it open.
constexpr ByteRange kInUse = {.start = (off_t{1} << 62) - 1, .length = 1};

Result<int> LockAsInUse(int file) {
    return SetOfdLock(file, OfdLockKind::Write, kInUse);
}

/// Deletes a temporary file whose process is dead. Returns false if it is in use, or not known to be a temporary file.
bool RemoveAbandoned(int folder, const char* name) {
    constexpr int kFlags = O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    const UniqueFd file(sys::openat(folder, name, kFlags, 0));
    struct stat status;
    if (!file || !sys::fstat(file.Get(), &status).ok()) return false;
    if (!S_ISREG(status.st_mode) || status.st_uid != ::geteuid()) return false;
    if (!LockAsInUse(file.Get()).ok()) return false;
    return LeadsTo(folder, name, status, AT_SYMLINK_NOFOLLOW) && sys::unlinkat(folder, name, 0).ok();
}

/// Locks a new file. Returns false if another process has mistaken it for an abandoned one.
bool ClaimName(int file, int folder, const char* name) {
    const auto locked = LockAsInUse(file);
    if (!locked.ok()) return !IsLockConflict(locked);
    struct stat made;
    return sys::fstat(file, &made).ok() && LeadsTo(folder, name, made, AT_SYMLINK_NOFOLLOW);
}

/// Network file systems, quotas and user-space file systems report on close what they cannot store. Closing a duplicate
/// triggers that while the target is still the old file.
Status FlushToFileSystem(int file) {
    const auto duplicate = sys::fcntl(file, F_DUPFD_CLOEXEC, 0);
    return duplicate.ok() ? UniqueFd(duplicate).Close() : duplicate.status();
}

/// A folder that is not readable has no descriptor to sync: its whole file system is synced then, through a file in it.
Status SyncFolder(const UniqueFd& folder, const UniqueFd& file) {
    return folder ? FlushToDisk(folder.Get()) : sys::syncfs(file.Get()).status();
}

}  // namespace

struct AtomicFile::Body {
    Body(int folder_, std::string target_, Access access_)
        : folder(folder_), access(access_), target(std::move(target_)), prefix(target, 0, target.rfind('/') + 1) {}
    ~Body() {
        // A file that cannot be deleted now is deleted by the next process that finds its name.
        if (!temporary.empty()) sys::unlinkat(folder, temporary.c_str(), 0).IgnoreError();
    }
    Body(const Body&) = delete;
    Body& operator=(const Body&) = delete;

    Status Create();
    Status Commit(IfExists ifExists, Durability durability);

    UniqueFd file;

private:
    Status StatusOf(const Result<int>& call) const {
        return folder == AT_FDCWD ? call.statusAt(LibraryPath(target).c_str()) : call.status();
    }

    template <class Take>
    Result<int> TakeTemporaryName(Take take);
    Result<int> CreateAs(const char* name);
    Result<int> LinkAs(const char* name) const;
    Status CreateFile();
    const char* Place() const { return prefix.empty() ? "." : prefix.c_str(); }
    mode_t Mode() const { return access == Access::Owner ? kOwnerOnly : kAsUmaskSays; }
    Result<int> TakeFreeTarget() const;
    Result<int> ReplaceTarget(bool exists);
    Status OpenTarget(IfExists ifExists, UniqueFd& existing) const;
    Status ClaimTarget(IfExists ifExists, UniqueFd& existing) const;

    const int folder;  // the base of the names; AT_FDCWD for a path
    const Access access;
    const std::string target;    // in the system's form
    const std::string prefix;    // the target's folder with its trailing separator; empty for the folder itself
    std::string temporary = {};  // the file's current name; empty while it has none
};

Status AtomicFile::Body::Create() {
    const Status created = CreateFile();
    if (created.ok() && access == Access::AsFolder) GrantAsFolder(file.Get(), folder, Place());
    return created;
}

Status AtomicFile::Body::CreateFile() {
    constexpr int kFlags = O_TMPFILE | O_RDWR | O_CLOEXEC;
    file = UniqueFd(sys::openat(folder, Place(), kFlags, Mode()));
    if (file) return {};
    return StatusOf(TakeTemporaryName([this](const char* name) { return CreateAs(name); }));
}

/// Takes the first temporary name that is free, or abandoned by a dead process. `take` fails with EEXIST for a name
/// that is taken.
template <class Take>
Result<int> AtomicFile::Body::TakeTemporaryName(Take take) {
    for (int number = 1; number <= kMostTemporaryNames; ++number) {
        std::string name = prefix + ".qv" + std::to_string(number) + ".tmp";
        auto taken = take(name.c_str());
        if (taken.error() == EEXIST && RemoveAbandoned(folder, name.c_str())) taken = take(name.c_str());
        if (taken.ok()) temporary = std::move(name);
        if (taken.error() != EEXIST) return taken;
    }
    return Result<int>::OfError(-1, EEXIST);
}

Result<int> AtomicFile::Body::CreateAs(const char* name) {
    constexpr int kFlags = O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC;
    const auto made = sys::openat(folder, name, kFlags, Mode());
    if (!made.ok()) return made;
    file = UniqueFd(made);
    return ClaimName(file.Get(), folder, name) ? made : Result<int>::OfError(-1, EEXIST);
}

Result<int> AtomicFile::Body::LinkAs(const char* name) const {
    const auto linked = sys::linkat(file.Get(), "", folder, name, AT_EMPTY_PATH);
    if (linked.ok() || linked.error() == EEXIST) return linked;
    // Linking a descriptor directly requires a privilege on older kernels.
    const std::string unnamed = "/proc/self/fd/" + std::to_string(file.Get());
    return sys::linkat(AT_FDCWD, unnamed.c_str(), folder, name, AT_SYMLINK_FOLLOW);
}

Result<int> AtomicFile::Body::TakeFreeTarget() const {
    return temporary.empty() ? LinkAs(target.c_str())
                             : RenameNoReplace(folder, temporary.c_str(), folder, target.c_str());
}

/// Signals that end the process are blocked for the few calls that need a temporary name, so that it is always removed.
/// @param exists  whether a target is known to exist; otherwise linking to the name is tried first
Result<int> AtomicFile::Body::ReplaceTarget(bool exists) {
    const SignalHold hold;
    if (temporary.empty()) {
        if (!exists)
            if (const auto linked = LinkAs(target.c_str()); linked.error() != EEXIST) return linked;
        // Before it has a name, so that it never looks abandoned. Without lock support nothing looks abandoned.
        LockAsInUse(file.Get()).IgnoreError();
        const auto named = TakeTemporaryName([this](const char* name) { return LinkAs(name); });
        if (!named.ok()) return named;
    }
    return sys::renameat(folder, temporary.c_str(), folder, target.c_str());
}

Status AtomicFile::Body::OpenTarget(IfExists ifExists, UniqueFd& existing) const {
    FileHandle handle = kNoFile;
    const Status opened = OpenFile(LibraryPath(target).c_str(), {.write = true, .denyWrite = true}, handle);
    if (opened.ok()) existing = UniqueFd(static_cast<int>(handle));
    if (ifExists != IfExists::UpdateEvenWithoutLocks || !MeansNoLocks(opened.error())) return opened;
    const auto plain = sys::openat(folder, target.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0);
    existing = UniqueFd(plain);
    return StatusOf(plain);
}

/// Opens the target as if for writing, and copies its attributes to the new version. Opens nothing if there is no
/// target.
Status AtomicFile::Body::ClaimTarget(IfExists ifExists, UniqueFd& existing) const {
    const Status opened = OpenTarget(ifExists, existing);
    if (!opened.ok()) return opened.cause() == FileCause::FileNotFound ? Status() : opened;
    struct stat status;
    if (const auto asked = sys::fstat(existing.Get(), &status); !asked.ok()) return asked.status();
    if (!S_ISREG(status.st_mode)) return {FileCause::AccessDenied, EPERM};
    CopyAttributes(existing.Get(), status, file.Get());
    return {};
}

Status AtomicFile::Body::Commit(IfExists ifExists, Durability durability) {
    UniqueFd existing;  // claimed until the new version is in place, whose attributes are synced with its data
    if (ifExists == IfExists::Update || ifExists == IfExists::UpdateEvenWithoutLocks)
        if (const Status claimed = ClaimTarget(ifExists, existing); !claimed.ok()) return claimed;
    if (const Status flushed = FlushToFileSystem(file.Get()); !flushed.ok()) return flushed;
    UniqueFd openedFolder;
    if (durability == Durability::Synced) {
        if (const Status flushed = FlushToDisk(file.Get()); !flushed.ok()) return flushed;
        openedFolder = UniqueFd(sys::openat_folder(folder, Place(), 0));
    }
    const auto placed = ifExists == IfExists::Fail ? TakeFreeTarget() : ReplaceTarget(static_cast<bool>(existing));
    if (!placed.ok()) return StatusOf(placed);
    temporary.clear();
    return durability == Durability::Synced ? SyncFolder(openedFolder, file) : Status();
}

AtomicFile::AtomicFile() = default;
AtomicFile::~AtomicFile() = default;
AtomicFile::AtomicFile(AtomicFile&&) noexcept = default;
AtomicFile& AtomicFile::operator=(AtomicFile&&) noexcept = default;

Status AtomicFile::Create(const char* target, Access access) {
    m_body = std::make_unique<Body>(AT_FDCWD, NativePath(target), access);
    const Status created = m_body->Create();
    if (!created.ok()) Drop();
    return created;
}

Status AtomicFile::CreateIn(const Folder& folder, const std::string& name, Access access) {
    m_body = std::make_unique<Body>(DescriptorOf(folder), name, access);
    const Status created = m_body->Create();
    if (!created.ok()) Drop();
    return created;
}

FileHandle AtomicFile::Handle() const {
    return m_body ? m_body->file.Get() : kNoFile;
}

Status AtomicFile::Commit(IfExists ifExists, Durability durability) {
    if (!m_body) return Status::OfError(EBADF);
    const Status committed = m_body->Commit(ifExists, durability);
    const bool stays = ifExists == IfExists::Fail && committed.error() == EEXIST;
    if (!stays) Drop();
    return committed;
}

void AtomicFile::Drop() {
    m_body.reset();
}

Status RemoveSynced(const char* path) {
    const std::string native = NativePath(path);
    const std::string place = native.substr(0, native.rfind('/') + 1);
    constexpr int kFlags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    const UniqueFd folder(sys::openat_folder(AT_FDCWD, place.empty() ? "." : place.c_str(), 0));
    UniqueFd file;
    if (!folder) file = UniqueFd(sys::openat(AT_FDCWD, native.c_str(), kFlags, 0));
    const auto removed = sys::unlinkat(AT_FDCWD, native.c_str(), 0);
    return removed.ok() ? SyncFolder(folder, file) : removed.statusAt(path);
}

}  // namespace qv::platform
