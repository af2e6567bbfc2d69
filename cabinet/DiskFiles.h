#pragma once

/// @file The engine's files on disk.

#include <new>
#include <vector>

#include "cabinet/Callbacks.h"
#include "platform/AtomicFile.h"
#include "platform/FileOpen.h"

namespace qv::cabinet {

/// Opened files, numbered from 1.
class DiskFiles {
public:
    DiskFiles() = default;
    ~DiskFiles();
    DiskFiles(const DiskFiles&) = delete;
    DiskFiles& operator=(const DiskFiles&) = delete;

    Handle Open(const CString& path, OpenMode mode);
    /// Creates a file in the folder that is deleted when closed.
    Handle CreateTemporary(const CString& folder);
    /// Creates a new version of a file: Commit replaces the old one, Close discards the new one. Also kNoHandle if
    /// another program uses the old one so that it could not be written.
    Handle CreateReplacement(const CString& path);
    bool Commit(Handle number);
    /// Takes ownership of a file that was opened elsewhere.
    Handle Add(platform::FileHandle file);
    /// Releases ownership of a file without closing it.
    void Release(Handle number);
    std::int64_t Read(Handle number, void* buffer, std::size_t size);
    bool Write(Handle number, const void* data, std::size_t size);
    bool Close(Handle number);
    std::int64_t Seek(Handle number, std::int64_t offset, Origin origin);
    /// The system's handle; kNoFile for an unknown number.
    platform::FileHandle SystemHandle(Handle number) const;

    /// Records a failure. @return whether the call succeeded.
    bool Note(const platform::Status& status);
    /// The last failure of any file; a success if no file has failed yet.
    const platform::Status& LastFailure() const { return m_lastFailure; }

private:
    struct Entry {
        platform::FileHandle file = platform::kNoFile;
        platform::AtomicFile replacement = {};  ///< owns the handle of a created file
    };

    Entry* Find(Handle number);
    Handle Add(Entry entry);

    std::vector<Entry> m_entries;
    platform::Status m_lastFailure;
};

/// The memory and file calls of an engine's interface.
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

/// Returns the name of a file in its folder: the exact name if it exists, else one that differs only in case, else the
/// given name.
CString FindNameOnDisk(const CString& folder, const CString& name);

}  // namespace qv::cabinet
