#pragma once

/// @file The cabinet engine's callbacks: all memory, files and decisions. All calls are made on the thread that called
/// the engine. An exception from a callback leaves the engine's operation, which ends as after a failure.

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
    /// Returns null if there is no memory.
    virtual void* Allocate(std::size_t size) = 0;
    virtual void Free(void* memory) = 0;
};

enum class OpenMode { Read, Create };
enum class Origin { Begin, Current, End };

/// Paths are in the library's form. Failed calls return kNoHandle, -1 or false.
class IFiles : public IMemory {
public:
    virtual Handle Open(const CString& path, OpenMode mode) = 0;
    /// Returns the requested number of bytes; fewer only at the end of the file.
    virtual std::int64_t Read(Handle file, void* buffer, std::size_t size) = 0;
    virtual bool Write(Handle file, const void* data, std::size_t size) = 0;
    virtual bool Close(Handle file) = 0;
    /// Returns the new position.
    virtual std::int64_t Seek(Handle file, std::int64_t offset, Origin origin) = 0;
};

enum class StatusType {
    File = 0,    ///< a block was compressed: its size after and before
    Folder = 1,  ///< data is copied to the cabinet: bytes so far, and in total
    Cabinet = 2  ///< a cabinet is complete: its planned and actual size
};

class IMakerCallbacks : public IFiles {
public:
    /// Creates a file for pending data, to be written and read; it is deleted when closed.
    virtual Handle CreateStore() = 0;
    /// Creates a cabinet file. Commit replaces any file of that name; closing it before discards it.
    virtual Handle CreateCabinet(const CString& path) = 0;
    /// Gives a new cabinet file its name and closes the handle; on failure the file is discarded.
    virtual bool Commit(Handle file) = 0;
    /// A member was added to a cabinet. -1 stops.
    virtual int FilePlaced(const QvCabinetDescription& cabinet, const CString& name, std::uint32_t size,
                           BOOL continued) = 0;
    /// -1 stops.
    virtual long Status(StatusType type, std::uint32_t first, std::uint32_t second) = 0;
    /// Another cabinet is needed: its number is set, the callee sets its name and may change sizes and reserves, except
    /// that another dataReserve is refused (error 6). 0 stops.
    virtual int GetNextCabinet(QvCabinetDescription& cabinet, std::uint32_t previousSize) = 0;
    /// Opens a file to be stored and returns its date, time and attributes.
    virtual Handle GetOpenInfo(const CString& path, std::uint16_t& date, std::uint16_t& time,
                               std::uint16_t& attributes) = 0;
};

class IReaderCallbacks : public IFiles {
public:
    virtual std::intptr_t Notify(QvCabinetNotification::Type type, QvCabinetNotification& notification) = 0;
    /// A member was not extracted because of its compression.
    virtual void PassOver(const CString&) {}
    /// Returns the name of a cabinet of the set in a folder, where its case may differ.
    virtual CString FindName(const CString&, const CString& name) { return name; }
};

/// Memory owned by its scope.
class Buffer {
public:
    /// @throws EngineFailure the given one, if there is no memory.
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

/// A handle that its scope closes.
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
