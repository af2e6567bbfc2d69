#include "cabinet/DiskFiles.h"

#include <utility>

#include "platform/FileSearch.h"

namespace qv::cabinet {

using platform::FileHandle;
using platform::kNoFile;

DiskFiles::~DiskFiles() {
    for (std::size_t i = 1; i <= m_entries.size(); ++i) Close(static_cast<Handle>(i));
}

DiskFiles::Entry* DiskFiles::Find(Handle number) {
    if (number < 1 || number > static_cast<Handle>(m_entries.size())) return nullptr;
    Entry& entry = m_entries[static_cast<std::size_t>(number - 1)];
    return entry.file == kNoFile ? nullptr : &entry;
}

FileHandle DiskFiles::SystemHandle(Handle number) const {
    const Entry* const entry = const_cast<DiskFiles*>(this)->Find(number);
    return entry ? entry->file : kNoFile;
}

Handle DiskFiles::Add(Entry entry) {
    std::size_t free = 0;
    while (free < m_entries.size() && m_entries[free].file != kNoFile) ++free;
    if (free == m_entries.size()) m_entries.emplace_back();
    m_entries[free] = std::move(entry);
    return static_cast<Handle>(free + 1);
}

Handle DiskFiles::Add(FileHandle file) {
    return Add(Entry{.file = file});
}

void DiskFiles::Release(Handle number) {
    if (Entry* const entry = Find(number)) entry->file = kNoFile;
}

Handle DiskFiles::Open(const CString& path, OpenMode mode) {
    const bool create = mode == OpenMode::Create;
    const platform::OpenRequest request = {.read = true, .write = create, .create = create, .truncate = create};
    FileHandle file = kNoFile;
    return Note(platform::OpenFile(path, request, file)) ? Add(file) : kNoHandle;
}

Handle DiskFiles::CreateTemporary(const CString& folder) {
    platform::AtomicFile file;
    if (!Note(file.Create(folder + "temporary"))) return kNoHandle;
    const FileHandle handle = file.Handle();
    return Add(Entry{.file = handle, .replacement = std::move(file)});
}

Handle DiskFiles::CreateReplacement(const CString& path) {
    FileHandle old = kNoFile;
    const platform::Status use = platform::OpenFile(path, {.write = true}, old);
    if (use.cause() != platform::FileCause::FileNotFound && !Note(use)) return kNoHandle;
    // Nothing was written through it.
    if (use.ok()) platform::CloseFile(old).IgnoreError();
    platform::AtomicFile file;
    if (!Note(file.Create(path, platform::Access::AsUmaskSays))) return kNoHandle;
    const FileHandle handle = file.Handle();
    return Add(Entry{.file = handle, .replacement = std::move(file)});
}

bool DiskFiles::Commit(Handle number) {
    Entry* const entry = Find(number);
    if (!entry) return false;
    entry->file = kNoFile;
    return Note(entry->replacement.Commit(platform::IfExists::Replace, platform::Durability::Deferred));
}

std::int64_t DiskFiles::Read(Handle number, void* buffer, std::size_t size) {
    Entry* const entry = Find(number);
    if (!entry) return -1;
    std::size_t total = 0;
    while (total < size) {
        std::size_t count = 0;
        auto* const to = static_cast<char*>(buffer) + total;
        if (!Note(platform::ReadBytes(entry->file, to, size - total, count))) return -1;
        if (count == 0) break;
        total += count;
    }
    return static_cast<std::int64_t>(total);
}

bool DiskFiles::Write(Handle number, const void* data, std::size_t size) {
    Entry* const entry = Find(number);
    return entry && Note(platform::WriteBytes(entry->file, data, size));
}

bool DiskFiles::Close(Handle number) {
    Entry* const entry = Find(number);
    if (!entry) return false;
    const FileHandle file = std::exchange(entry->file, kNoFile);
    if (entry->replacement.Handle() == kNoFile) return Note(platform::CloseFile(file));
    entry->replacement.Drop();
    return true;
}

std::int64_t DiskFiles::Seek(Handle number, std::int64_t offset, Origin origin) {
    constexpr platform::SeekFrom kFrom[] = {platform::SeekFrom::Begin, platform::SeekFrom::Current,
                                            platform::SeekFrom::End};
    Entry* const entry = Find(number);
    std::uint64_t position = 0;
    if (!entry) return -1;
    if (!Note(platform::SeekTo(entry->file, offset, kFrom[static_cast<int>(origin)], position))) return -1;
    return static_cast<std::int64_t>(position);
}

bool DiskFiles::Note(const platform::Status& status) {
    if (!status.ok()) m_lastFailure = status;
    return status.ok();
}

CString FindNameOnDisk(const CString& folder, const CString& name) {
    platform::FileInfo info;
    if (platform::StatusOf(folder + name, info).ok() || name.FindOneOf("*?") >= 0) return name;
    platform::FileSearch search;
    platform::FoundEntry entry;
    if (!search.Start(folder + name).ok()) return name;
    while (search.Next(entry))
        if (!entry.IsFolder()) return CString(entry.name);
    return name;
}

}  // namespace qv::cabinet
