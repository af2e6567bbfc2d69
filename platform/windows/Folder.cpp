#include "platform/Folder.h"

#include "platform/windows/FindData.h"
#include "platform/windows/FolderBody.h"
#include "platform/windows/WritableScope.h"

namespace qv::platform {
namespace {

/// Without sharing delete access, the folder cannot be renamed or replaced by others.
Result<HANDLE> OpenKept(const std::wstring& path) {
    return sys::CreateFileW_folder(path.c_str(), FILE_LIST_DIRECTORY | FILE_READ_ATTRIBUTES,
                                   FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                   FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
}

/// Queries by name, which refers to the open folder: layers over other file systems open the target of a link.
Status CheckFolder(const std::wstring& path) {
    const auto asked = LinkAttributesAt(path);
    if (!asked.ok()) return asked.status();
    const bool plain = (asked.value() & FILE_ATTRIBUTE_DIRECTORY) && !(asked.value() & FILE_ATTRIBUTE_REPARSE_POINT);
    return plain ? Status() : Status::OfError(ERROR_DIRECTORY);
}

EntryKind KindOf(const WIN32_FIND_DATAW& data) {
    if (!(data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) return EntryKind::File;
    return TagOf(data) & kStandsForAnotherPlace ? EntryKind::FolderLink : EntryKind::Folder;
}

Status ClearReadOnly(const std::wstring& path) {
    const auto attributes = LinkAttributesAt(path);
    const bool stays =
        !(attributes.value() & FILE_ATTRIBUTE_READONLY) || (attributes.value() & FILE_ATTRIBUTE_REPARSE_POINT);
    if (!attributes.ok() || stays) return attributes.status();
    return sys::SetFileAttributesW(path.c_str(), attributes.value() & ~DWORD{FILE_ATTRIBUTE_READONLY}).status();
}

}  // namespace

Folder::Folder() = default;
Folder::Folder(Folder&& other) noexcept = default;
Folder& Folder::operator=(Folder&& other) noexcept = default;
Folder::~Folder() = default;

Status Folder::Body::Open(std::wstring path, LastName lastName, std::unique_ptr<Body>& made) {
    const auto opened = OpenKept(path);
    if (!opened.ok()) return opened.status();
    UniqueHandle folder(opened);
    if (lastName == LastName::NoLink)
        if (const Status checked = CheckFolder(path); !checked.ok()) return checked;
    if (path.back() != L'\\') path += L'\\';
    made = std::make_unique<Body>(Body{std::move(folder), std::move(path)});
    return {};
}

Status Folder::Open(const char* path, LastName lastName, FolderUse) {
    Close();
    return Body::Open(ExtendedPath(path), lastName, m_body);
}

Status Folder::OpenIn(const Folder& parent, const std::string& name, FolderUse) {
    std::wstring path = PathIn(parent, name);
    Close();
    return Body::Open(std::move(path), LastName::NoLink, m_body);
}

Status Folder::MakeIn(const Folder& parent, const std::string& name, bool& made) {
    const auto created = sys::CreateDirectoryW(PathIn(parent, name).c_str(), nullptr);
    made = created.ok();
    return made || created.error() == ERROR_ALREADY_EXISTS ? OpenIn(parent, name, FolderUse::LookedUpIn)
                                                           : created.status();
}

void Folder::Close() {
    m_body.reset();
}

Status Folder::List(std::vector<FolderEntry>& entries) const {
    WIN32_FIND_DATAW data;
    const auto started = sys::FindFirstFileW(PathIn(*this, "*").c_str(), &data);
    if (!started.ok()) return started.error() == ERROR_FILE_NOT_FOUND ? Status() : started.status();
    const UniqueSearch search(started);
    for (;;) {
        if (!IsDots(data)) entries.push_back({EntryName(data.cFileName), KindOf(data)});
        const auto found = sys::FindNextFileW(search.Get(), &data);
        if (!found.ok()) return found.error() == ERROR_NO_MORE_FILES ? Status() : found.status();
    }
}

Status Folder::Remove(const FolderEntry& entry) const {
    const std::wstring path = PathIn(*this, entry.name);
    WritableScope removed(path);
    const Status status = entry.kind == EntryKind::File ? sys::DeleteFileW(path.c_str()).status()
                                                        : sys::RemoveDirectoryW(path.c_str()).status();
    if (status.ok()) removed.Dismiss();
    return status;
}

bool Folder::IsSame(const Folder& other) const {
    BY_HANDLE_FILE_INFORMATION mine, others;
    const bool open = m_body && other.m_body && sys::GetFileInformationByHandle(m_body->handle.Get(), &mine).ok() &&
                      sys::GetFileInformationByHandle(other.m_body->handle.Get(), &others).ok();
    return open && mine.dwVolumeSerialNumber == others.dwVolumeSerialNumber &&
           mine.nFileIndexHigh == others.nFileIndexHigh && mine.nFileIndexLow == others.nFileIndexLow;
}

Status Folder::Find(FoundEntry& entry) const {
    WIN32_FIND_DATAW data;
    const auto found = sys::FindFirstFileW(PathIn(*this, entry.name).c_str(), &data);
    if (!found.ok()) return found.status();
    const UniqueSearch search(found);
    return CopyFindData(data, entry);
}

Status Folder::MakeWritable(const std::string& name) const {
    return ClearReadOnly(PathIn(*this, name));
}

Status Folder::MakeWritable() const {
    return ClearReadOnly(PathIn(*this, std::string()));
}

Status Folder::AllowRemoval() const {
    return {};
}

void Folder::Suspend() {}

Status Folder::Resume(const Folder&) {
    return {};
}

}  // namespace qv::platform
