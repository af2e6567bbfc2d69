#include "platform/AtomicFile.h"

#include "platform/Path.h"
#include "platform/windows/FolderBody.h"
#include "platform/windows/WritableScope.h"

// A file under construction is marked for deletion: the system deletes it once its last handle is closed, however the
// process ends. Commit takes the mark back. Only where the file system keeps no such mark, or the process is killed within
// Commit, a file is left. No process has that one open, and so the next that encounters its name can delete it.

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

bool Exists(unsigned long error) {
    return error == ERROR_FILE_EXISTS || error == ERROR_ALREADY_EXISTS;
}

/// A file that is about to vanish denies all access. A folder that takes no files does so too, but has no such name.
bool IsTaken(const Result<HANDLE>& made, const std::string& path) {
    return Exists(made.error()) || (made.error() == ERROR_ACCESS_DENIED &&
                                    sys::GetFileAttributesA(path.c_str()).error() == ERROR_ACCESS_DENIED);
}

}  // namespace

struct AtomicFile::Body {
    /// @param target_  an absolute path: the current folder may change before Commit
    explicit Body(std::string target_) : target(std::move(target_)) {}
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
    Result<HANDLE> CreateTemporary();
    Status MoveToTarget(DWORD flags) const;
    Status UpdateTarget(DWORD flags);

    const std::string target;
    std::string temporary;
};

Status AtomicFile::Body::Create() {
    const auto made = CreateTemporary();
    file = UniqueHandle(made);
    // Without the mark the destructor still deletes the file.
    if (file) MarkForDeletion(file, true).IgnoreError();
    return made.statusAt(target.c_str());
}

/// Takes the first temporary name that is free, or that a dead process has left.
Result<HANDLE> AtomicFile::Body::CreateTemporary() {
    const std::string folder = target.substr(0, target.find_last_of("\\/") + 1);
    for (int number = 1; number <= kMostTemporaryNames; ++number) {
        temporary = folder + ".qv" + std::to_string(number) + ".tmp";
        auto made = CreateAs(temporary);
        if (Exists(made.error()) && RemoveAbandoned(temporary)) made = CreateAs(temporary);
        if (made.ok() || !IsTaken(made, temporary)) return made;
    }
    return Result<HANDLE>::OfError(nullptr, ERROR_FILE_EXISTS);
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

/// The system's own replacing call, which wants the new version closed. Marked no more and open no more, it may be taken for
/// an abandoned one for this moment; the call fails then, and the target stays.
Status AtomicFile::Body::UpdateTarget(DWORD flags) {
    const auto attributes = sys::GetFileAttributesA(target.c_str());
    if (!attributes.ok()) return MoveToTarget(flags);
    if (attributes.value() & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY))
        return Status::OfError(ERROR_ACCESS_DENIED);
    // Asked beforehand, while the new version is still ours: the system's call would be refused for the same reason.
    if (const Status claimed = AskToReplace(target); !claimed.ok()) return claimed;
    if (const Status closed = file.Close(); !closed.ok()) return closed;
    const auto replaced = sys::ReplaceFileA(target.c_str(), temporary.c_str(), nullptr,
                                            DWORD{REPLACEFILE_IGNORE_MERGE_ERRORS}, nullptr, nullptr);
    // What cannot be deleted now is deleted by the next that encounters its name.
    if (!replaced.ok()) sys::DeleteFileA(temporary.c_str()).IgnoreError();
    return replaced.statusAt(target.c_str());
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
    const bool stays = ifExists == IfExists::Fail && Exists(committed.error());
    if (!stays) Drop();
    return committed;
}

void AtomicFile::Drop() {
    m_body.reset();
}

}  // namespace qv::platform
