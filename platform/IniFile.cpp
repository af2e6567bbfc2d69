#include "platform/IniFile.h"

#include <utility>

#include "platform/FileLock.h"
#include "platform/FileOpen.h"
#include "platform/FileStatus.h"

namespace qv::platform {
namespace {

/// A file that is open for reading.
class OpenedFile {
public:
    explicit OpenedFile(const char* path) : m_status(OpenFile(path, {.read = true}, m_handle)) {}
    ~OpenedFile() {
        if (m_status.ok()) CloseFile(m_handle).IgnoreError();  // nothing was written
    }
    OpenedFile(const OpenedFile&) = delete;
    OpenedFile& operator=(const OpenedFile&) = delete;

    const Status& Opened() const { return m_status; }
    FileHandle Handle() const { return m_handle; }

private:
    FileHandle m_handle = kNoFile;
    Status m_status;
};

/// Reads a file that may change its size meanwhile, up to its original size.
Status ReadWhole(FileHandle file, std::size_t size, std::string& text) {
    text.resize(size);
    std::size_t filled = 0;
    while (filled < size) {
        std::size_t count = 0;
        if (const Status read = ReadBytes(file, text.data() + filled, size - filled, count); !read.ok()) return read;
        if (count == 0) break;
        filled += count;
    }
    text.resize(filled);
    return {};
}

Status ReadOpened(const std::string& path, std::string& text) {
    text.clear();
    const OpenedFile file(path.c_str());
    const FileCause cause = file.Opened().cause();
    if (cause == FileCause::FileNotFound || cause == FileCause::BadPath) return {};
    if (!file.Opened().ok()) return file.Opened();
    FileInfo info;
    if (const Status asked = StatusOf(file.Handle(), path.c_str(), info); !asked.ok()) return asked;
    if (!info.isRegular) return {FileCause::AccessDenied, 0};
    if (info.size > kLargestIniFile) return {FileCause::InvalidFile, 0};
    return ReadWhole(file.Handle(), static_cast<std::size_t>(info.size), text);
}

Status ReplaceText(const std::string& path, const std::string& text, Access access) {
    if (text.size() > kLargestIniFile) return {FileCause::InvalidFile, 0};
    AtomicFile file;
    if (const Status created = file.Create(path.c_str(), AccessForUpdate(path, access)); !created.ok()) return created;
    if (const Status written = WriteBytes(file.Handle(), text.data(), text.size()); !written.ok()) return written;
    return file.Commit(IfExists::UpdateEvenWithoutLocks, Durability::Synced);
}

}  // namespace

Status ReadIniFile(const std::string& path, std::string& text) {
    FileLock lock;
    // The text may be read without a lock: users who cannot create files in the folder cannot take one.
    lock.Take(LinkTarget(path.c_str()), FileLockKind::Read).IgnoreError();
    return ReadOpened(path, text);
}

Status ChangeIniFile(const std::string& path, const std::function<std::string(std::string text)>& change,
                     Access access) {
    const std::string target = LinkTarget(path.c_str());
    FileLock lock;
    if (const Status taken = lock.Take(target, FileLockKind::Write); !taken.ok()) return taken;
    std::string text;
    if (const Status read = ReadOpened(target, text); !read.ok()) return read;
    const std::string changed = change(text);
    return changed == text ? Status() : ReplaceText(target, changed, access);
}

}  // namespace qv::platform
