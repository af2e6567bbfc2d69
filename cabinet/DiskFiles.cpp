#include "cabinet/DiskFiles.h"

#include "framework/FileFaults.h"
#include "platform/FileStatus.h"

namespace qv::cabinet {

using platform::FileHandle;
using platform::kNoFile;

DiskFiles::~DiskFiles() {
    for (const Entry& entry : m_entries)
        if (entry.file != kNoFile) platform::CloseFile(entry.file);
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

Handle DiskFiles::Add(FileHandle file, const CString& path) {
    std::size_t free = 0;
    while (free < m_entries.size() && m_entries[free].file != kNoFile) ++free;
    if (free == m_entries.size()) m_entries.emplace_back();
    m_entries[free] = {file, path};
    return static_cast<Handle>(free + 1);
}

Handle DiskFiles::Open(const CString& path, OpenMode mode) {
    const bool create = mode == OpenMode::Create;
    const platform::OpenRequest request = {.read = true, .write = create, .create = create, .truncate = create};
    FileHandle file = kNoFile;
    const auto open = [&] { return platform::OpenFile(path, request, file); };
    return CallSystem(FileCall::Open, path, open) ? kNoHandle : Add(file, path);
}

std::int64_t DiskFiles::Read(Handle number, void* buffer, std::size_t size) {
    Entry* const entry = Find(number);
    if (!entry) return -1;
    std::size_t total = 0;
    while (total < size) {
        std::size_t count = 0;
        auto* const to = static_cast<char*>(buffer) + total;
        const auto read = [&] { return platform::ReadBytes(entry->file, to, size - total, count); };
        if (CallSystem(FileCall::Read, entry->path, read)) return -1;
        if (count == 0) break;
        total += count;
    }
    return static_cast<std::int64_t>(total);
}

bool DiskFiles::Write(Handle number, const void* data, std::size_t size) {
    Entry* const entry = Find(number);
    const auto write = [&] { return platform::WriteBytes(entry->file, data, size); };
    return entry && !CallSystem(FileCall::Write, entry->path, write);
}

bool DiskFiles::Close(Handle number) {
    Entry* const entry = Find(number);
    if (!entry) return false;
    const platform::FileFailure fault = FaultBefore(FileCall::Close, entry->path);
    const platform::FileFailure failure = platform::CloseFile(entry->file);
    entry->file = kNoFile;
    return !fault && !failure;
}

std::int64_t DiskFiles::Seek(Handle number, std::int64_t offset, Origin origin) {
    constexpr platform::SeekFrom kFrom[] = {platform::SeekFrom::Begin, platform::SeekFrom::Current,
                                            platform::SeekFrom::End};
    Entry* const entry = Find(number);
    std::uint64_t position = 0;
    const auto seek = [&] { return platform::SeekTo(entry->file, offset, kFrom[static_cast<int>(origin)], position); };
    if (!entry || CallSystem(FileCall::Seek, entry->path, seek)) return -1;
    return static_cast<std::int64_t>(position);
}

bool DiskFiles::Delete(const CString& path) {
    return !CallSystem(FileCall::Remove, path, [&] { return platform::RemoveFile(path); });
}

}  // namespace qv::cabinet
