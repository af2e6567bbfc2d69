#include <algorithm>

#include "cabinet/CabinetReader.h"
#include "cabinet/MemberName.h"

namespace qv::cabinet {

unsigned CabinetReader::FolderOf(const MemberEntry& member, const OpenCabinet& cabinet) const {
    const std::size_t folders = cabinet.Folders().size();
    const bool exists = member.IsContinued() ? folders > 0 && cabinet.Info().hasPrevious
                        : member.Continues() ? folders > 0 && cabinet.Info().hasNext
                                             : member.folder < folders;
    const bool spans = !member.IsContinued() || !member.Continues() || (folders == 1 && cabinet.Info().hasNext);
    if (!exists || !spans) throw EngineFailure{ReadError::Corrupt};
    if (member.IsContinued()) return 0;
    return member.Continues() ? static_cast<unsigned>(folders - 1) : member.folder;
}

/// Requires ascending order, so that data is read once. The first listed member may continue from the previous cabinet.
void CabinetReader::CheckOrder(const MemberEntry& member, unsigned folder) {
    if (static_cast<int>(folder) < m_lastFolder) throw EngineFailure{ReadError::Corrupt};
    if (static_cast<int>(folder) > m_lastFolder)
        m_lastEnd = m_lastFolder < 0 && member.IsContinued() ? member.offset : 0;
    if (m_limits.coverage != Coverage::Any && member.offset != m_lastEnd) throw EngineFailure{ReadError::Corrupt};
    m_lastFolder = static_cast<int>(folder);
    if (member.size == 0) return;
    if (member.offset < m_lastEnd) throw EngineFailure{ReadError::Corrupt};
    m_lastEnd = std::uint64_t{member.offset} + member.size;
    if (m_lastEnd > 0xFFFFFFFF) throw EngineFailure{ReadError::Corrupt};
}

bool CabinetReader::ExpandsTooFar() const {
    return m_totalSize / std::max<std::uint64_t>(m_limits.expansion, 1) > m_cabinetSizes;
}

/// Opens further cabinets of the set only while their size decides.
void CabinetReader::Count(const MemberEntry& member) {
    ++m_members;
    m_totalSize += member.size;
    if (m_members > m_limits.members || m_totalSize > m_limits.totalSize) throw EngineFailure{ReadError::Corrupt};
    if (!ExpandsTooFar()) return;
    const CString path = m_where.cabinet;
    while (ExpandsTooFar() && m_places.back().hasNext) OpenPlace(static_cast<Serial>(m_places.size()));
    m_where.cabinet = path;
    if (ExpandsTooFar()) throw EngineFailure{ReadError::Corrupt};
}

void CabinetReader::CopyMember(const MemberEntry& member, const OpenCabinet& cabinet) {
    m_where.member = member.attributes & kNameIsUtf8 ? FromMemberName(member.name) : member.name;
    const unsigned folder = FolderOf(member, cabinet);
    CheckOrder(member, folder);
    if (member.IsContinued()) {
        // In later cabinets it has already been copied.
        m_goesOn = m_present > 0;
        if (m_present == 0) ReportPartial(member, cabinet);
        m_streamEnd = member.offset + member.size;
        return;
    }
    Count(member);
    if (!m_goesOn || folder > 0) SelectFolder(folder);
    m_streamEnd = member.offset + member.size;
    QvCabinetNotification notification;
    notification.size = member.size;
    notification.name = member.name;
    notification.date = member.date;
    notification.time = member.time;
    notification.attributes = member.attributes;
    notification.setId = cabinet.Info().setId;
    notification.cabinetNumber = cabinet.Info().cabinetNumber;
    notification.folder = member.folder;
    const Handle target = Notify(QvCabinetNotification::copyFile, notification);
    if (target == 0 || !TryExtract(member, cabinet, target)) return;
    notification.file = target;
    if (Notify(QvCabinetNotification::closeFileInfo, notification) == 0)
        throw EngineFailure{ReadError::CannotWriteTarget};
}

void CabinetReader::SelectFolder(unsigned folder) {
    if (m_stream->IsOn(m_present, folder)) return;
    FinishFolder();
    m_stream->Select(m_present, folder);
    m_skipsFolder = false;
}

void CabinetReader::FinishFolder() {
    if (m_limits.coverage == Coverage::All && !m_skipsFolder) m_stream->RequireEnd(m_streamEnd);
}

/// Returns false for a skipped member.
bool CabinetReader::TryExtract(const MemberEntry& member, const OpenCabinet& cabinet, Handle target) {
    try {
        Extract(member, target);
        return true;
    } catch (const EngineFailure& failure) {
        if (failure.error != NumberOf(ReadError::UnknownCompression)) throw;
        m_skipsFolder = true;
        m_callbacks.PassOver(m_where.member);
        if (m_skippedMembers++ > 0) return false;
        m_skipped = m_where;
        m_skipped.method = cabinet.Folders()[FolderOf(member, cabinet)].compression & kCompressionMask;
        return false;
    }
}

void CabinetReader::Extract(const MemberEntry& member, Handle target) {
    try {
        if (member.size > 0) m_stream->MoveTo(member.offset);
        for (std::uint32_t left = member.size; left > 0;) {
            const Bytes bytes = m_stream->Read(left);
            if (!m_callbacks.Write(target, bytes.data(), bytes.size()))
                throw EngineFailure{ReadError::CannotWriteTarget};
            left -= static_cast<std::uint32_t>(bytes.size());
        }
    } catch (...) {
        m_callbacks.Close(target);
        throw;
    }
}

void CabinetReader::ReportPartial(const MemberEntry& member, const OpenCabinet& cabinet) {
    QvCabinetNotification notification;
    notification.name = member.name;
    notification.attributes = member.attributes;
    notification.disk = cabinet.PreviousName();
    Notify(QvCabinetNotification::partialFile, notification);
}

}  // namespace qv::cabinet
