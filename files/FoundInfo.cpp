#include "files/FoundFolder.h"
#include "framework/PathText.h"
#include "qvcommon/FileFinder.h"
#include "qvcommon/FilePath.h"

namespace {

std::shared_ptr<const qv::FoundFolder> FolderOf(const QvFindData* record, std::string_view name, const CString& root) {
    auto folder = std::make_shared<qv::FoundFolder>(root);
    if (!record) return folder;
    qv::platform::FoundEntry entry;
    entry.attributes = record->dwFileAttributes;
    entry.created = record->ftCreationTime.Steps();
    entry.accessed = record->ftLastAccessTime.Steps();
    entry.written = record->ftLastWriteTime.Steps();
    entry.size = std::uint64_t{record->nFileSizeHigh} << 32 | record->nFileSizeLow;
    entry.tag = record->dwReserved0;
    entry.name = name;
    folder->Add(entry);
    folder->Close();
    return folder;
}

}  // namespace

CFoundInfo::CFoundInfo(const QvFindData* record, const char* root)
    : m_folder(FolderOf(record, record ? record->cFileName : "", root)) {}

CFoundInfo::CFoundInfo(const qv::FoundRecord* record, const CString& root)
    : m_folder(FolderOf(record, record ? record->Name() : CString(), root)) {}

bool CFoundInfo::HasRecord() const {
    return m_folder && m_index < m_folder->Size();
}

bool CFoundInfo::MatchesMask(DWORD mask) const {
    if (!HasRecord()) return false;
    if (mask == qv::platform::kDirectory) return m_folder->IsFolder(m_index);
    return m_folder->RecordOf(m_index).attributes & mask;
}

bool CFoundInfo::IsDots() const {
    return HasRecord() && m_folder->IsDots(m_index);
}

bool CFoundInfo::IsLink() const {
    if (!HasRecord()) return false;
    const auto record = m_folder->RecordOf(m_index);
    return (record.attributes & qv::platform::kReparsePoint) && (record.tag & qv::platform::kStandsForAnotherPlace);
}

CString CFoundInfo::GetFileName() const {
    return HasRecord() ? CString(m_folder->NameOf(m_index)) : CString();
}

CString CFoundInfo::GetFilePath() const {
    CString path = m_folder ? m_folder->Root() : CString();
    if (!qv::EndsWithOneOf(path, qv::kSeparators)) path += '\\';
    return path + GetFileName();
}

CString CFoundInfo::GetFileTitle() const {
    return CFilePath(GetFileName()).GetFile();
}

CString CFoundInfo::GetFileURL() const {
    return "file://" + GetFilePath();
}

DWORD CFoundInfo::GetLength() const {
    return static_cast<DWORD>(GetLength64() & 0xFFFFFFFF);
}

std::uint64_t CFoundInfo::GetLength64() const {
    return HasRecord() ? m_folder->RecordOf(m_index).size : 0;
}

bool CFoundInfo::GetTime(Time which, QvFileTime* time) const {
    if (!HasRecord()) return false;
    const auto record = m_folder->RecordOf(m_index);
    *time = QvFileTime::FromSteps(which == Time::Creation     ? record.created
                                  : which == Time::LastAccess ? record.accessed
                                                              : record.written);
    return true;
}

bool CFoundInfo::GetTime(Time which, CTime& time) const {
    QvFileTime stamp;
    const bool has = GetTime(which, &stamp);
    if (has) time = CTime(stamp);
    return has;
}
