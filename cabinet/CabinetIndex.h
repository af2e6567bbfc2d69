#pragma once

/// @file An opened cabinet: its header, its folders, and its members one by one.

#include <vector>

#include "cabinet/Callbacks.h"
#include "cabinet/Format.h"

namespace qv::cabinet {

/// A buffered sequential file reader.
class Input {
public:
    /// @throws EngineFailure NotFound if the file cannot be opened, NoMemory.
    Input(IFiles& files, const CString& path);

    /// Returns false if the file cannot be positioned.
    bool MoveTo(std::uint64_t offset);
    /// Returns false if fewer bytes are left.
    bool Read(void* to, std::size_t size);
    std::uint64_t Length() const { return m_length; }

private:
    IFiles& m_files;
    OpenedFile m_file;
    Buffer m_buffer;
    std::size_t m_next = 0, m_filled = 0;
    std::size_t m_ahead = 0;  ///< the size of the next read
    std::uint64_t m_end = 0;  ///< the file position after the buffer
    std::uint64_t m_length = 0;
};

struct FolderEntry {
    std::uint32_t offset;  ///< of the first block
    std::uint16_t blocks;  ///< in this cabinet
    std::uint16_t compression;
};

struct MemberEntry {
    std::uint32_t size, offset;
    std::uint16_t folder, date, time, attributes;
    CString name;

    bool IsContinued() const { return folder == kFromPrevious || folder == kPreviousAndNext; }
    bool Continues() const { return folder == kToNext || folder == kPreviousAndNext; }
};

/// Every number read is checked against the file's length before it is used.
class OpenCabinet {
public:
    enum class Depth { Head, Everything };

    /// @throws EngineFailure NotFound, NotACabinet, UnknownVersion, Corrupt, NoMemory.
    OpenCabinet(IFiles& files, const CString& path, Depth depth = Depth::Everything);

    const QvCabinetInfo& Info() const { return m_info; }
    const std::vector<FolderEntry>& Folders() const { return m_folders; }
    std::uint8_t DataReserve() const { return m_dataReserve; }
    const CString& PreviousName() const { return m_previousName; }
    const CString& NextName() const { return m_nextName; }
    const CString& NextDisk() const { return m_nextDisk; }

    /// Reads the members in order; returns false after the last. Data must not be read in between.
    /// @throws EngineFailure Corrupt
    bool NextMember(MemberEntry& member);
    /// The bytes of the cabinet. No members can be read after this call.
    Input& Data() { return m_input; }

private:
    void ReadHead();
    void ReadFolders();
    CString ReadName();
    void ReadRequired(void* to, std::size_t size);

    Input m_input;
    QvCabinetInfo m_info;
    std::uint32_t m_filesOffset = 0;
    std::uint64_t m_offset = 0;  ///< the position up to which the header was read
    std::uint8_t m_folderReserve = 0, m_dataReserve = 0;
    CString m_previousName, m_nextName, m_nextDisk;
    std::vector<FolderEntry> m_folders;
    std::uint32_t m_membersRead = 0;
};

}  // namespace qv::cabinet
