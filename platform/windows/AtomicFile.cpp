#include "platform/AtomicFile.h"

#include "platform/Path.h"
#include "platform/windows/FolderBody.h"
#include "platform/windows/WritableScope.h"

// A file under construction is marked for deletion: the system deletes it once its last handle is closed, however the
// process ends. Commit takes the mark back. Only where the file system keeps no such mark, or the process is killed within
// Commit, a file is left. No process has that one open, and so the next that encounters its name can delete it.
//
// The system's replacing call wants the new version closed, when it would look abandoned. So it gets another name first,
// ".qvN.new", which belongs to whoever has ".qvN.tmp" open; what a killed process left under it is overwritten.

namespace qv::platform {
namespace {

constexpr int kMostTemporaryNames = 100;

Status MarkForDeletion(const UniqueHandle& file, bool marked) {
    FILE_DISPOSITION_INFO info{};
    info.DeleteFile = marked;
    return sys::SetFileInformationByHandle(file.Get(), FileDispositionInfo, &info, DWORD{sizeof info}).status();
}

/// Others may do nothing with the file but delete or rename it, which Commit needs: the system renames files by a handle
/// of its own.
Result<HANDLE> CreateAs(const std::string& path) {
    return sys::CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE | DELETE, FILE_SHARE_DELETE, nullptr, CREATE_NEW,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
}

/// Deletes a temporary file whose process is dead. False when it is in use: sharing nothing, it cannot be opened then.
bool RemoveAbandoned(const std::string& path) {
    UniqueHandle file(
        sys::CreateFileA(path.c_str(), DELETE, 0, nullptr, OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    return file && MarkForDeletion(file, true).ok() && file.Close().ok();
}

/// Fails while another handle denies writing or deleting the file.
Status AskToReplace(const std::string& path) {
    constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const auto opened =
        sys::CreateFileA(path.c_str(), GENERIC_WRITE | DELETE, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr);
    return opened.ok() ? UniqueHandle(opened).Close() : opened.statusAt(path.c_str());
}

/// A file that is about to vanish denies all access. A folder that takes no files does so too, but has no such name.
bool IsTaken(const Result<HANDLE>& made, const std::string& path) {
    return MeansNameTaken(made.error()) || (made.error() == ERROR_ACCESS_DENIED &&
                                            sys::GetFileAttributesA(path.c_str()).error() == ERROR_ACCESS_DENIED);
}

struct TemporaryFile {
    UniqueHandle file;
    std::string path;
};

/// Takes the first temporary name that is free, or that a dead process has left.
Result<HANDLE> CreateTemporaryFile(const std::string& folder, TemporaryFile& temporary) {
    for (int number = 1; number <= kMostTemporaryNames; ++number) {
        const std::string path = folder + ".qv" + std::to_string(number) + ".tmp";
        auto made = CreateAs(path);
        if (MeansNameTaken(made.error()) && RemoveAbandoned(path)) made = CreateAs(path);
        if (!made.ok() && IsTaken(made, path)) continue;
        temporary = {UniqueHandle(made), path};
        // Without the mark the owner still deletes the file.
        if (made.ok()) MarkForDeletion(temporary.file, true).IgnoreError();
        return made;
    }
    return Result<HANDLE>::OfError(nullptr, ERROR_FILE_EXISTS);
}

/// The new version is closed. When the call fails half-way, the target may have no name any more.
Status ReplaceTarget(const std::string& target, const std::string& version) {
    const auto replaced = sys::ReplaceFileA(target.c_str(), version.c_str(), nullptr,
                                            DWORD{REPLACEFILE_IGNORE_MERGE_ERRORS}, nullptr, nullptr);
    if (replaced.ok()) return {};
    if (sys::GetFileAttributesA(target.c_str()).error() == ERROR_FILE_NOT_FOUND)
        return sys::MoveFileExA(version.c_str(), target.c_str(), 0).statusAt(target.c_str());
    // What cannot be deleted now is overwritten by the next that has the name.
    sys::DeleteFileA(version.c_str()).IgnoreError();
    return replaced.statusAt(target.c_str());
}

}  // namespace

struct AtomicFile::Body {
    /// @param target_  an absolute path: the current folder may change before Commit
    explicit Body(std::string target_)
        : target(std::move(target_)), folder(target.substr(0, target.find_last_of("\\/") + 1)) {}
    ~Body() {
        // What cannot be deleted now is deleted by the next that encounters its name.
        if (file) MarkForDeletion(file, true).IgnoreError();
    }
    Body(const Body&) = delete;
    Body& operator=(const Body&) = delete;

    Status Create();
    Status Commit(IfExists ifExists, Durability durability);

    UniqueHandle file;

private:
    Status MoveToTarget(DWORD flags) const;
    Status UpdateTarget(DWORD flags);

    const std::string target;
    const std::string folder;  // with its final separator
    std::string temporary;
};

Status AtomicFile::Body::Create() {
    TemporaryFile made;
    const auto created = CreateTemporaryFile(folder, made);
    file = std::move(made.file);
    temporary = std::move(made.path);
    return created.statusAt(target.c_str());
}

/// The file stays open meanwhile, so that it never looks abandoned.
Status AtomicFile::Body::MoveToTarget(DWORD flags) const {
    if (!(flags & MOVEFILE_REPLACE_EXISTING))
        return sys::MoveFileExA(temporary.c_str(), target.c_str(), flags).status();
    WritableScope replaced(target);
    const auto moved = sys::MoveFileExA(temporary.c_str(), target.c_str(), flags);
    if (moved.ok()) replaced.Dismiss();
    return moved.statusAt(target.c_str());
}

/// By the system's own replacing call, which keeps what belongs to the target.
Status AtomicFile::Body::UpdateTarget(DWORD flags) {
    const auto attributes = sys::GetFileAttributesA(target.c_str());
    if (!attributes.ok()) return MoveToTarget(flags);
    if (attributes.value() & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY))
        return Status::OfError(ERROR_ACCESS_DENIED);
    // Asked beforehand, while the new version is still ours: the system's call would be refused for the same reason.
    if (const Status claimed = AskToReplace(target); !claimed.ok()) return claimed;
    TemporaryFile guard;
    if (const auto made = CreateTemporaryFile(folder, guard); !made.ok()) return made.status();
    const std::string closed = guard.path.substr(0, guard.path.rfind('.')) + ".new";
    const auto renamed = sys::MoveFileExA(temporary.c_str(), closed.c_str(), DWORD{MOVEFILE_REPLACE_EXISTING});
    if (!renamed.ok()) return renamed.status();
    if (const Status kept = file.Close(); !kept.ok()) return kept;
    const Status replaced = ReplaceTarget(target, closed);
    // Where the file system keeps no mark; else it goes with its handle.
    MarkForDeletion(guard.file, true).IgnoreError();
    return replaced;
}

Status AtomicFile::Body::Commit(IfExists ifExists, Durability durability) {
    const bool synced = durability == Durability::Synced;
    if (synced)
        if (const Status flushed = FlushToDisk(ContractHandle(file.Get())); !flushed.ok()) return flushed;
    // A file that is marked cannot be renamed.
    if (const Status kept = MarkForDeletion(file, false); !kept.ok()) return kept;
    const DWORD flags =
        (synced ? MOVEFILE_WRITE_THROUGH : 0) | (ifExists == IfExists::Replace ? MOVEFILE_REPLACE_EXISTING : 0);
    const Status moved = ifExists == IfExists::Update ? UpdateTarget(flags) : MoveToTarget(flags);
    if (moved.ok())
        // All that was written is in the file already, and the target is the new version.
        file.Close().IgnoreError();
    else if (file)
        // As in Create: the destructor deletes the file nevertheless.
        MarkForDeletion(file, true).IgnoreError();
    return moved;
}

AtomicFile::AtomicFile() = default;
AtomicFile::~AtomicFile() = default;
AtomicFile::AtomicFile(AtomicFile&&) noexcept = default;
AtomicFile& AtomicFile::operator=(AtomicFile&&) noexcept = default;

Status AtomicFile::Create(const char* target, Access) {
    m_body = std::make_unique<Body>(FullPath(NativePath(target).c_str()));
    const Status created = m_body->Create();
    if (!created.ok()) Drop();
    return created;
}

Status AtomicFile::CreateIn(const Folder& folder, const std::string& name, Access access) {
    if (!folder.GetBody()) return Status::OfError(ERROR_INVALID_HANDLE);
    return Create(PathIn(folder, name).c_str(), access);
}

FileHandle AtomicFile::Handle() const {
    return m_body ? ContractHandle(m_body->file.Get()) : kNoFile;
}

Status AtomicFile::Commit(IfExists ifExists, Durability durability) {
    if (!m_body) return Status::OfError(ERROR_INVALID_HANDLE);
    const Status committed = m_body->Commit(ifExists, durability);
    const bool stays = ifExists == IfExists::Fail && MeansNameTaken(committed.error());
    if (!stays) Drop();
    return committed;
}

void AtomicFile::Drop() {
    m_body.reset();
}

Status RemoveSynced(const char* path) {
    constexpr DWORD kFlags = FILE_FLAG_WRITE_THROUGH | FILE_FLAG_OPEN_REPARSE_POINT;
    const auto opened = sys::CreateFileA(NativePath(path).c_str(), DELETE, 0, nullptr, OPEN_EXISTING, kFlags, nullptr);
    if (!opened.ok()) return opened.statusAt(path);
    UniqueHandle file(opened);
    const Status marked = MarkForDeletion(file, true);
    return marked.ok() ? file.Close() : marked;
}

}  // namespace qv::platform
