#include "cabinet/CabinetIndex.h"

#include <algorithm>
#include <cstring>

namespace qv::cabinet {
namespace {

constexpr std::size_t kInputBuffer = 64 * 1024;
/// The size of the first read at a new position; each sequential read doubles it.
constexpr std::size_t kFirstRead = 4096;

}  // namespace

Input::Input(IFiles& files, const CString& path)
    : m_files(files),
      m_file(files, files.Open(path, OpenMode::Read)),
      m_buffer(files, kInputBuffer, ReadError::NoMemory) {
    if (!m_file) throw EngineFailure{ReadError::NotFound};
    m_length = static_cast<std::uint64_t>(std::max<std::int64_t>(files.Seek(m_file.Get(), 0, Origin::End), 0));
    if (!MoveTo(0)) throw EngineFailure{ReadError::NotACabinet};
}

bool Input::MoveTo(std::uint64_t offset) {
    const std::uint64_t start = m_end - m_filled;
    if (offset >= start && offset < m_end) {
        m_next = static_cast<std::size_t>(offset - start);
        return true;
    }
    m_next = m_filled = 0;
    m_ahead = kFirstRead;
    m_end = offset;
    const auto wanted = static_cast<std::int64_t>(offset);
    return m_files.Seek(m_file.Get(), wanted, Origin::Begin) == wanted;
}

bool Input::Read(void* to, std::size_t size) {
    for (auto* next = static_cast<unsigned char*>(to); size > 0;) {
        if (m_next == m_filled) {
            const std::int64_t count = m_files.Read(m_file.Get(), m_buffer.Get(), m_ahead);
            if (count <= 0) return false;
            m_ahead = std::min(2 * m_ahead, kInputBuffer);
            m_next = 0;
            m_filled = static_cast<std::size_t>(count);
            m_end += m_filled;
        }
        const std::size_t part = std::min(size, m_filled - m_next);
        std::memcpy(next, m_buffer.Get() + m_next, part);
        m_next += part;
        next += part;
        size -= part;
    }
    return true;
}

OpenCabinet::OpenCabinet(IFiles& files, const CString& path, Depth depth) : m_input(files, path) {
    ReadHead();
    if (depth == Depth::Head) return;
    if (m_info.size > m_input.Length()) throw EngineFailure{ReadError::Corrupt};
    ReadFolders();
    const bool inFile = m_filesOffset >= m_offset && m_filesOffset <= m_info.size;
    if (!inFile || !m_input.MoveTo(m_filesOffset)) throw EngineFailure{ReadError::Corrupt};
    m_offset = m_filesOffset;
}

/// Reads within the size that the cabinet states.
void OpenCabinet::ReadRequired(void* to, std::size_t size) {
    m_offset += size;
    if (m_offset > m_info.size || !m_input.Read(to, size)) throw EngineFailure{ReadError::Corrupt};
}

void OpenCabinet::ReadHead() {
    unsigned char header[kHeaderSize];
    if (!m_input.Read(header, sizeof header) || Get32(header) != kSignature)
        throw EngineFailure{ReadError::NotACabinet};
    if (header[24] != kMinorVersion || header[25] != kMajorVersion) throw EngineFailure{ReadError::UnknownVersion};
    m_offset = sizeof header;
    m_info.size = Get32(header + 8);
    m_filesOffset = Get32(header + 16);
    m_info.folders = Get16(header + 26);
    m_info.files = Get16(header + 28);
    m_info.setId = Get16(header + 32);
    m_info.cabinetNumber = Get16(header + 34);
    const unsigned flags = Get16(header + 30);
    m_info.hasReserve = (flags & kHasReserve) != 0;
    m_info.hasPrevious = (flags & kHasPrevious) != 0;
    m_info.hasNext = (flags & kHasNext) != 0;
    if (flags & kHasReserve) {
        unsigned char sizes[kReserveSizesSize];
        ReadRequired(sizes, sizeof sizes);
        m_folderReserve = sizes[2];
        m_dataReserve = sizes[3];
        m_offset += Get16(sizes);
        if (m_offset > m_info.size || !m_input.MoveTo(m_offset)) throw EngineFailure{ReadError::Corrupt};
    }
    if (flags & kHasPrevious) {
        m_previousName = ReadName();
        ReadName();
    }
    if (flags & kHasNext) {
        m_nextName = ReadName();
        m_nextDisk = ReadName();
    }
}

CString OpenCabinet::ReadName() {
    char name[kLongestName];
    for (std::size_t length = 0; length < kLongestName; ++length) {
        ReadRequired(name + length, 1);
        if (name[length] == '\0') return CString(std::string_view(name, length));
    }
    throw EngineFailure{ReadError::Corrupt};
}

void OpenCabinet::ReadFolders() {
    m_folders.reserve(m_info.folders);
    for (unsigned i = 0; i < m_info.folders; ++i) {
        unsigned char entry[kFolderSize + 255];
        ReadRequired(entry, kFolderSize + m_folderReserve);
        m_folders.push_back({Get32(entry), Get16(entry + 4), Get16(entry + 6)});
        const FolderEntry& folder = m_folders.back();
        if (folder.blocks > 0 && folder.offset >= m_info.size) throw EngineFailure{ReadError::Corrupt};
    }
}

bool OpenCabinet::NextMember(MemberEntry& member) {
    if (m_membersRead == m_info.files) return false;
    ++m_membersRead;
    unsigned char entry[kFileSize];
    ReadRequired(entry, sizeof entry);
    member.size = Get32(entry);
    member.offset = Get32(entry + 4);
    member.folder = Get16(entry + 8);
    member.date = Get16(entry + 10);
    member.time = Get16(entry + 12);
    member.attributes = Get16(entry + 14);
    member.name = ReadName();
    return true;
}

}  // namespace qv::cabinet
