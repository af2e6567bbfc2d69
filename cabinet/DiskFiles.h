#pragma once

/// @file The engine's files on disk.

#include <new>
#include <vector>

#include "cabinet/Callbacks.h"
#include "platform/AtomicFile.h"
#include "platform/FileOpen.h"

namespace qv::cabinet {

/// Opened files by numbers from 1 on.
class DiskFiles {
public:
    DiskFiles() = default;
    ~DiskFiles();
    DiskFiles(const DiskFiles&) = delete;
    DiskFiles& operator=(const DiskFiles&) = delete;

    Handle Open(const CString& path, OpenMode mode);
    /// A file that is gone once it is closed, in the folder.
    Handle CreateTemporary(const CString& folder);
    /// A new version of a file: Commit puts it in the old one's place, Close drops it. kNoHandle also while another
    /// program uses the old one so that it could not be written.
    Handle CreateReplacement(const CString& path);
    bool Commit(Handle number);
    /// Takes over a file that was opened elsewhere.
    Handle Add(platform::FileHandle file);
    /// Forgets a file without closing it.
    void Release(Handle number);
    std::int64_t Read(Handle number, void* buffer, std::size_t size);
    bool Write(Handle number, const void* data, std::size_t size);
    bool Close(Handle number);
    std::int64_t Seek(Handle number, std::int64_t offset, Origin origin);
    /// The system's handle; kNoFile for no number of this object.
    platform::FileHandle SystemHandle(Handle number) const;

    /// Keeps a failure. @return whether the call succeeded.
    bool Note(const platform::Status& status);
    /// The last failure of any file; a success if no file has failed yet.
    const platform::Status& LastFailure() const { return m_lastFailure; }

private:
    struct Entry {
        platform::FileHandle file = platform::kNoFile;
        platform::AtomicFile replacement = {};  ///< owns the handle, for those that were created
    };

    Entry* Find(Handle number);
    Handle Add(Entry entry);

    std::vector<Entry> m_entries;
    platform::Status m_lastFailure;
};

/// The calls of an engine's interface that have to do with memory and files.
template <class Interface>
class OnDisk : public Interface {
public:
    void* Allocate(std::size_t size) override { return ::operator new(size, std::nothrow); }
    void Free(void* memory) override { ::operator delete(memory); }
    Handle Open(const CString& path, OpenMode mode) override { return m_files.Open(path, mode); }
    std::int64_t Read(Handle file, void* buffer, std::size_t size) override { return m_files.Read(file, buffer, size); }
    bool Write(Handle file, const void* data, std::size_t size) override { return m_files.Write(file, data, size); }
    bool Close(Handle file) override { return m_files.Close(file); }
    std::int64_t Seek(Handle file, std::int64_t offset, Origin origin) override {
        return m_files.Seek(file, offset, origin);
    }

    /// The system's number for the last failure of a file; 0 if no file has failed.
    unsigned long SystemError() const { return m_files.LastFailure().error(); }

protected:
    DiskFiles m_files;
};

/// How a file is called in its folder: the name as it stands where there is such a file, else one that differs in case
/// alone, else the name again.
CString FindNameOnDisk(const CString& folder, const CString& name);

}  // namespace qv::cabinet
