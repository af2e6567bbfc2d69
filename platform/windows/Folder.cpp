#include "platform/Folder.h"

#include "platform/Path.h"
#include "platform/windows/FindData.h"
#include "platform/windows/FolderBody.h"
#include "platform/windows/WritableScope.h"

namespace qv::platform {
namespace {

/// Without the right to share its deletion, nobody can rename the folder or put another one in its place.
Result<HANDLE> OpenKept(const std::string& path) {
    return sys::CreateFileA_folder(path.c_str(), FILE_LIST_DIRECTORY | FILE_READ_ATTRIBUTES,
                                   FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                   FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
}

Status CheckFolder(const UniqueHandle& folder) {
    BY_HANDLE_FILE_INFORMATION info;
    const auto asked = sys::GetFileInformationByHandle(folder.Get(), &info);
    if (!asked.ok()) return asked.status();
    const bool plain =
        (info.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) && !(info.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT);
    return plain ? Status() : Status::OfError(ERROR_DIRECTORY);
}

std::string Terminated(std::string path) {
    if (!path.empty() && path.back() != '\\' && path.back() != '/') path += '\\';
    return path;
}

EntryKind KindOf(const FoundEntry& entry) {
    if (!entry.IsFolder()) return EntryKind::File;
    return entry.IsLink() ? EntryKind::FolderLink : EntryKind::Folder;
}

Status ClearReadOnly(const std::string& path) {
    const auto attributes = sys::GetFileAttributesA(path.c_str());
    const bool stays =
        !(attributes.value() & FILE_ATTRIBUTE_READONLY) || (attributes.value() & FILE_ATTRIBUTE_REPARSE_POINT);
    if (!attributes.ok() || stays) return attributes.status();
    return sys::SetFileAttributesA(path.c_str(), attributes.value() & ~DWORD{FILE_ATTRIBUTE_READONLY}).status();
}

}  // namespace

Folder::Folder() = default;
Folder::Folder(Folder&& other) noexcept = default;
Folder& Folder::operator=(Folder&& other) noexcept = default;
Folder::~Folder() = default;

Status Folder::Open(const char* path, LastName lastName, FolderUse) {
    Close();
    std::string native = NativePath(path);
    const auto opened = OpenKept(native);
    if (!opened.ok()) return opened.statusAt(path);
    UniqueHandle folder(opened);
    if (lastName == LastName::NoLink)
        if (const Status checked = CheckFolder(folder); !checked.ok()) return checked;
    m_body = std::make_unique<Body>(Body{std::move(folder), Terminated(std::move(native))});
    return {};
}

Status Folder::OpenIn(const Folder& parent, const std::string& name, FolderUse) {
    return Open(PathIn(parent, name).c_str(), LastName::NoLink);
}

Status Folder::MakeIn(const Folder& parent, const std::string& name, bool& made) {
    const auto created = sys::CreateDirectoryA(PathIn(parent, name).c_str(), nullptr);
    made = created.ok();
    return made || created.error() == ERROR_ALREADY_EXISTS ? OpenIn(parent, name, FolderUse::LookedUpIn)
                                                           : created.status();
}

void Folder::Close() {
    m_body.reset();
}

Status Folder::List(std::vector<FolderEntry>& entries) const {
    FileSearch search;
    if (const Status started = search.Start(PathIn(*this, "*").c_str()); !started.ok()) return started;
    for (FoundEntry entry; search.Next(entry);)
        if (!entry.IsDots()) entries.push_back({entry.name, KindOf(entry)});
    return search.LeftOut();
}

Status Folder::Remove(const FolderEntry& entry) const {
    const std::string path = PathIn(*this, entry.name);
    WritableScope removed(path);
    const Status status = entry.kind == EntryKind::File ? RemoveFile(path.c_str()) : RemoveFolder(path.c_str());
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
    WIN32_FIND_DATAA data;
    const auto found = sys::FindFirstFileA(PathIn(*this, entry.name).c_str(), &data);
    if (!found.ok()) return found.status();
    const UniqueSearch search(found);
    CopyFindData(data, entry);
    return {};
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

void Folder::LetGo() {}

Status Folder::TakeBack(const Folder&) {
    return {};
}

}  // namespace qv::platform
