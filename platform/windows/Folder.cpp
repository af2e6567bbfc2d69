#include "platform/Folder.h"

#include <windows.h>

#include <utility>

namespace qv::platform {
namespace {

HANDLE OpenKept(const std::string& path) {
    // Without the right to share its deletion, nobody can rename the folder or put another one in its place.
    return ::CreateFileA(path.c_str(), FILE_LIST_DIRECTORY | FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE,
                         nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
}

FileFailure CheckFolder(HANDLE folder) {
    BY_HANDLE_FILE_INFORMATION info;
    if (!::GetFileInformationByHandle(folder, &info)) return LastFailure();
    const bool plain =
        (info.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) && !(info.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT);
    return plain ? FileFailure{} : FileFailure{FileCause::BadPath, ERROR_DIRECTORY};
}

std::string Terminated(std::string path) {
    if (!path.empty() && path.back() != '\\' && path.back() != '/') path += '\\';
    return path;
}

EntryKind KindOf(const FoundEntry& entry) {
    if (!entry.IsFolder()) return EntryKind::File;
    return entry.IsLink() ? EntryKind::FolderLink : EntryKind::Folder;
}

}  // namespace

Folder::Folder(Folder&& other) noexcept {
    *this = std::move(other);
}

Folder& Folder::operator=(Folder&& other) noexcept {
    if (this == &other) return *this;
    Close();
    m_handle = std::exchange(other.m_handle, kNoFile);
    m_path = std::move(other.m_path);
    return *this;
}

FileFailure Folder::Open(const char* path, LastName lastName) {
    Close();
    const HANDLE folder = OpenKept(path);
    if (folder == INVALID_HANDLE_VALUE) return LastFailureAt(path);
    m_handle = reinterpret_cast<FileHandle>(folder);
    m_path = Terminated(path);
    const FileFailure failure = lastName == LastName::NoLink ? CheckFolder(folder) : FileFailure{};
    if (failure) Close();
    return failure;
}

FileFailure Folder::OpenIn(const Folder& parent, const std::string& name) {
    return Open((parent.m_path + name).c_str(), LastName::NoLink);
}

void Folder::Close() {
    if (m_handle != kNoFile) ::CloseHandle(reinterpret_cast<HANDLE>(std::exchange(m_handle, kNoFile)));
}

FileFailure Folder::List(std::vector<FolderEntry>& entries) const {
    FileSearch search;
    if (const FileFailure failure = search.Start((m_path + "*").c_str())) return failure;
    for (FoundEntry entry; search.Next(entry);)
        if (!entry.IsDots()) entries.push_back({entry.name, KindOf(entry)});
    return search.LeftOut();
}

FileFailure Folder::Remove(const FolderEntry& entry) const {
    const std::string path = m_path + entry.name;
    const DWORD attributes = ::GetFileAttributesA(path.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY))
        ::SetFileAttributesA(path.c_str(), attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY));
    const BOOL removed = entry.kind == EntryKind::File ? ::DeleteFileA(path.c_str()) : ::RemoveDirectoryA(path.c_str());
    return removed ? FileFailure{} : LastFailure();
}

FileFailure Folder::AllowRemoval() const {
    return {};
}

void Folder::LetGo() {}

FileFailure Folder::TakeBack(const Folder&) {
    return {};
}

}  // namespace qv::platform
