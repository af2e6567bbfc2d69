#pragma once

/// @file What the cabinet engine asks of its user: all memory, files and decisions come through here. All calls are made
/// on the thread that called the engine. What a callback raises leaves the engine's operation, which then ends like a
/// failed one.

#include <cstddef>
#include <utility>

#include "cabinet/Errors.h"
#include "qvcommon/CabinetRecords.h"

namespace qv::cabinet {

using Handle = std::intptr_t;
inline constexpr Handle kNoHandle = -1;

class IMemory {
public:
    virtual ~IMemory() = default;
    /// Null when there is none.
    virtual void* Allocate(std::size_t size) = 0;
    virtual void Free(void* memory) = 0;
};

enum class OpenMode { Read, Create };
enum class Origin { Begin, Current, End };

/// Paths are in the library's form. Failed calls answer kNoHandle, -1 or false.
class IFiles : public IMemory {
public:
    virtual Handle Open(const CString& path, OpenMode mode) = 0;
    /// As many bytes as asked for; fewer at the end of the file only.
    virtual std::int64_t Read(Handle file, void* buffer, std::size_t size) = 0;
    virtual bool Write(Handle file, const void* data, std::size_t size) = 0;
    virtual bool Close(Handle file) = 0;
    /// The new position.
    virtual std::int64_t Seek(Handle file, std::int64_t offset, Origin origin) = 0;
};

enum class StatusType {
    File = 0,    ///< a block was compressed: its size afterwards and before
    Folder = 1,  ///< data is brought into the cabinet: bytes so far, and of all
    Cabinet = 2  ///< a cabinet is complete: its size as planned, and as it is
};

class IMakerCallbacks : public IFiles {
public:
    /// A file for what waits for its cabinet, to be written and read; it is gone once it is closed.
    virtual Handle CreateStore() = 0;
    /// A new cabinet file. It replaces what has its name when it is committed, and is dropped when it is closed before.
    virtual Handle CreateCabinet(const CString& path) = 0;
    /// Gives a new cabinet file its name. The handle is gone; after false the file too.
    virtual bool Commit(Handle file) = 0;
    /// A member was entered into a cabinet. -1 stops.
    virtual int FilePlaced(const QvCabinetDescription& cabinet, const CString& name, std::uint32_t size,
                           BOOL continued) = 0;
    /// -1 stops.
    virtual long Status(StatusType type, std::uint32_t first, std::uint32_t second) = 0;
    /// Another cabinet is needed: its number is set, its name is to be. 0 stops.
    virtual int GetNextCabinet(QvCabinetDescription& cabinet, std::uint32_t previousSize) = 0;
    /// Opens a file that is to be stored, and tells of it.
    virtual Handle GetOpenInfo(const CString& path, std::uint16_t& date, std::uint16_t& time,
                               std::uint16_t& attributes) = 0;
};

class IReaderCallbacks : public IFiles {
public:
    virtual std::intptr_t Notify(QvCabinetNotification::Type type, QvCabinetNotification& notification) = 0;
    /// A member was not extracted because of its compression.
    virtual void PassOver(const CString&) {}
    /// How a cabinet of a set is called in a folder, where that may differ from the name in the set in case.
    virtual CString FindName(const CString&, const CString& name) { return name; }
};

/// Memory that is given back at the end of its scope.
class Buffer {
public:
    /// @throws EngineFailure the one given, without memory.
    Buffer(IMemory& memory, std::size_t size, EngineFailure failure)
        : m_memory(memory), m_bytes(static_cast<unsigned char*>(memory.Allocate(size))) {
        if (!m_bytes) throw failure;
    }
    ~Buffer() { m_memory.Free(m_bytes); }
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;

    unsigned char* Get() const { return m_bytes; }

private:
    IMemory& m_memory;
    unsigned char* m_bytes;
};

/// A handle that is closed at the end of its scope.
class OpenedFile {
public:
    explicit OpenedFile(IFiles& files, Handle handle = kNoHandle) : m_files(files), m_handle(handle) {}
    ~OpenedFile() { Close(); }
    OpenedFile(const OpenedFile&) = delete;
    OpenedFile& operator=(const OpenedFile&) = delete;

    explicit operator bool() const { return m_handle != kNoHandle; }
    Handle Get() const { return m_handle; }
    void Take(Handle handle) {
        Close();
        m_handle = handle;
    }
    Handle Release() { return std::exchange(m_handle, kNoHandle); }
    bool Close() {
        if (m_handle == kNoHandle) return true;
        return m_files.Close(Release());
    }

private:
    IFiles& m_files;
    Handle m_handle;
};

}  // namespace qv::cabinet
