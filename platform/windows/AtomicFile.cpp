#include "platform/AtomicFile.h"

#include "platform/FolderFiles.h"
#include "platform/windows/FolderBody.h"
#include "platform/windows/WritableScope.h"

// A file under construction is marked for deletion: the system deletes it once its last handle is closed, regardless of
// how the process ends. Commit removes the mark. A file remains only if the file system does not support such marks, or
// if the process is killed within Commit. No process has it open then, so the next one that finds its name can delete
// it.
//
// ReplaceFile requires the new version to be closed, when it would look abandoned. So it is first renamed to
// ".qvN.new", which belongs to the process that has ".qvN.tmp" open; what a killed process left there is overwritten.

namespace qv::platform {
namespace {

constexpr int kMostTemporaryNames = 100;

Status MarkForDeletion(const UniqueHandle& file, bool marked) {
    FILE_DISPOSITION_INFO info{};
    info.DeleteFile = marked;
    return sys::SetFileInformationByHandle(file.Get(), FileDispositionInfo, &info, DWORD{sizeof info}).status();
}

/// Others may only delete or rename the file, which Commit needs: the system renames files by a separate handle.
Result<HANDLE> CreateAs(const std::wstring& path) {
    return sys::CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE | DELETE, FILE_SHARE_DELETE, nullptr, CREATE_NEW,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
}

/// Deletes a temporary file whose process is dead. Returns false if it is in use: it is not shared, so it cannot be
/// opened then.
bool RemoveAbandoned(const std::wstring& path) {
    UniqueHandle file(
        sys::CreateFileW(path.c_str(), DELETE, 0, nullptr, OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    if (!file) return false;
    WritableScope removed(path);  // a read-only file cannot be marked
    const bool gone = MarkForDeletion(file, true).ok() && file.Close().ok();
    if (gone) removed.Dismiss();
    return gone;
}

/// Fails while another handle denies writing or deleting the file.
Status AskToReplace(const std::wstring& path) {
    constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const auto opened =
        sys::CreateFileW(path.c_str(), GENERIC_WRITE | DELETE, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr);
    return opened.ok() ? UniqueHandle(opened).Close() : opened.status();
}

/// A file that is being deleted denies all access. So does a folder without write permission, but there the name does
/// not exist.
bool IsTaken(const Result<HANDLE>& made, const std::wstring& path) {
    return MeansNameTaken(made.error()) || (made.error() == ERROR_ACCESS_DENIED &&
                                            sys::GetFileAttributesW(path.c_str()).error() == ERROR_ACCESS_DENIED);
}

Result<HANDLE> TakeName(const std::wstring& path) {
    const auto made = CreateAs(path);
    // Access may have been denied by a file that has lost the name since.
    const bool isFree = made.error() == ERROR_ACCESS_DENIED && !IsTaken(made, path);
    const bool again = MeansNameTaken(made.error()) ? RemoveAbandoned(path) : isFree;
    return again ? CreateAs(path) : made;
}

struct TemporaryFile {
    UniqueHandle file;
    std::wstring path;
};

/// Takes the first temporary name that is free, or abandoned by a dead process.
Result<HANDLE> CreateTemporaryFile(const std::wstring& folder, TemporaryFile& temporary) {
    for (int number = 1; number <= kMostTemporaryNames; ++number) {
        const std::wstring path = folder + L".qv" + std::to_wstring(number) + L".tmp";
        const auto made = TakeName(path);
        if (!made.ok() && IsTaken(made, path)) continue;
        temporary = {UniqueHandle(made), path};
        // Without the mark the owner still deletes the file.
        if (made.ok()) MarkForDeletion(temporary.file, true).IgnoreError();
        return made;
    }
    return Result<HANDLE>::OfError(nullptr, ERROR_FILE_EXISTS);
}

/// The new version is closed. If the call fails half-way, the target may have lost its name.
Status ReplaceTarget(const std::wstring& target, const std::wstring& version) {
    const auto replaced = sys::ReplaceFileW(target.c_str(), version.c_str(), nullptr,
                                            DWORD{REPLACEFILE_IGNORE_MERGE_ERRORS}, nullptr, nullptr);
    if (replaced.ok()) return {};
    if (sys::GetFileAttributesW(target.c_str()).error() == ERROR_FILE_NOT_FOUND)
        return sys::MoveFileExW(version.c_str(), target.c_str(), 0).status();
    // A file that cannot be deleted now is overwritten by the next one with the name.
    sys::DeleteFileW(version.c_str()).IgnoreError();
    return replaced.status();
}

/// ReplaceFile has no option for it. A file that cannot be opened for that is in use already.
Status FlushName(const std::wstring& target) {
    constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const UniqueHandle file(
        sys::CreateFileW(target.c_str(), GENERIC_WRITE, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
    return file ? FlushToDisk(ContractHandle(file.Get())) : Status();
}

}  // namespace

struct AtomicFile::Body {
    /// @param target_  in the extended form, which is absolute: the current folder may change before Commit
    explicit Body(std::wstring target_)
        : target(std::move(target_)), folder(target.substr(0, target.rfind(L'\\') + 1)) {}
    ~Body() {
        if (!file) return;
        // The owner may have made it read-only, and such a file cannot be marked.
        StampFile(ContractHandle(file.Get()), {.time = -1, .attributes = 0}).IgnoreError();
        // A file that cannot be deleted now is deleted by the next process that finds its name.
        MarkForDeletion(file, true).IgnoreError();
    }
    Body(const Body&) = delete;
    Body& operator=(const Body&) = delete;

    static Status Make(std::wstring target, std::unique_ptr<Body>& made);
    Status Commit(IfExists ifExists, Durability durability);

    UniqueHandle file;

private:
    Status Create();
    Status MoveToTarget(DWORD flags) const;
    Status UpdateTarget(DWORD flags);

    const std::wstring target;
    const std::wstring folder;  // with its trailing separator
    std::wstring temporary;
};

Status AtomicFile::Body::Make(std::wstring target, std::unique_ptr<Body>& made) {
    made = std::make_unique<Body>(std::move(target));
    const Status created = made->Create();
    if (!created.ok()) made.reset();
    return created;
}

Status AtomicFile::Body::Create() {
    if (target.empty()) return Status::OfError(ERROR_PATH_NOT_FOUND);
    TemporaryFile made;
    const auto created = CreateTemporaryFile(folder, made);
    file = std::move(made.file);
    temporary = std::move(made.path);
    return created.status();
}

/// The file stays open, so that it never looks abandoned.
Status AtomicFile::Body::MoveToTarget(DWORD flags) const {
    if (!(flags & MOVEFILE_REPLACE_EXISTING))
        return sys::MoveFileExW(temporary.c_str(), target.c_str(), flags).status();
    WritableScope replaced(target);
    const auto moved = sys::MoveFileExW(temporary.c_str(), target.c_str(), flags);
    if (moved.ok()) replaced.Dismiss();
    return moved.status();
}

/// Uses ReplaceFile, which keeps the target's attributes.
Status AtomicFile::Body::UpdateTarget(DWORD flags) {
    const auto attributes = sys::GetFileAttributesW(target.c_str());
    if (!attributes.ok()) return MoveToTarget(flags);
    if (attributes.value() & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY))
        return Status::OfError(ERROR_ACCESS_DENIED);
    // Checked beforehand, while the new version is still open here: ReplaceFile would fail for the same reason.
    if (const Status claimed = AskToReplace(target); !claimed.ok()) return claimed;
    TemporaryFile guard;
    if (const auto made = CreateTemporaryFile(folder, guard); !made.ok()) return made.status();
    const std::wstring closed = guard.path.substr(0, guard.path.rfind(L'.')) + L".new";
    const auto renamed = sys::MoveFileExW(temporary.c_str(), closed.c_str(), DWORD{MOVEFILE_REPLACE_EXISTING});
    if (!renamed.ok()) return renamed.status();
    if (const Status kept = file.Close(); !kept.ok()) return kept;
    Status replaced = ReplaceTarget(target, closed);
    if (replaced.ok() && (flags & MOVEFILE_WRITE_THROUGH)) replaced = FlushName(target);
    // If marks are not supported; otherwise it is deleted with its handle.
    MarkForDeletion(guard.file, true).IgnoreError();
    return replaced;
}

Status AtomicFile::Body::Commit(IfExists ifExists, Durability durability) {
    const bool synced = durability == Durability::Synced;
    if (synced)
        if (const Status flushed = FlushToDisk(ContractHandle(file.Get())); !flushed.ok()) return flushed;
    // A marked file cannot be renamed.
    if (const Status kept = MarkForDeletion(file, false); !kept.ok()) return kept;
    const DWORD flags =
        (synced ? MOVEFILE_WRITE_THROUGH : 0) | (ifExists == IfExists::Replace ? MOVEFILE_REPLACE_EXISTING : 0);
    const bool updates = ifExists == IfExists::Update || ifExists == IfExists::UpdateEvenWithoutLocks;
    const Status moved = updates ? UpdateTarget(flags) : MoveToTarget(flags);
    if (moved.ok())
        // All data is in the file already, and the target is the new version.
        file.Close().IgnoreError();
    else if (file)
        // As in Create: the destructor deletes the file anyway.
        MarkForDeletion(file, true).IgnoreError();
    return moved;
}

AtomicFile::AtomicFile() = default;
AtomicFile::~AtomicFile() = default;
AtomicFile::AtomicFile(AtomicFile&&) noexcept = default;
AtomicFile& AtomicFile::operator=(AtomicFile&&) noexcept = default;

Status AtomicFile::Create(const char* target, Access) {
    return Body::Make(ExtendedPath(target), m_body);
}

Status AtomicFile::CreateIn(const Folder& folder, const std::string& name, Access) {
    if (!folder.GetBody()) return Status::OfError(ERROR_INVALID_HANDLE);
    return Body::Make(PathIn(folder, name), m_body);
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
    const auto opened = sys::CreateFileW(WidePath(path).c_str(), DELETE, 0, nullptr, OPEN_EXISTING, kFlags, nullptr);
    if (!opened.ok()) return opened.statusAt(path);
    UniqueHandle file(opened);
    const Status marked = MarkForDeletion(file, true);
    return marked.ok() ? file.Close() : marked;
}

}  // namespace qv::platform
