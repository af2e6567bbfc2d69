#include "framework/PathText.h"
#include "qvcommon/FileFinder.h"
#include "qvcommon/FilePath.h"

CFoundInfo::CFoundInfo(const QvFindData* record, const char* root)
    : m_record(record ? std::make_shared<const qv::FoundRecord>(qv::FoundRecord{*record, {}}) : nullptr),
      m_root(std::make_shared<const CString>(root)) {}

CFoundInfo::CFoundInfo(std::shared_ptr<const qv::FoundRecord> record, std::shared_ptr<const CString> root)
    : m_record(std::move(record)), m_root(std::move(root)) {}

bool CFoundInfo::MatchesMask(DWORD mask) const {
    return m_record && (m_record->dwFileAttributes & mask);
}

bool CFoundInfo::IsDots() const {
    if (!IsDirectory()) return false;
    const std::string_view name = m_record->cFileName;
    return name == "." || name == "..";
}

bool CFoundInfo::IsLink() const {
    return m_record && qv::IsLink(*m_record);
}

CString CFoundInfo::GetFileName() const {
    return m_record ? m_record->Name() : CString();
}

CString CFoundInfo::GetFilePath() const {
    CString path = m_root ? *m_root : CString();
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
    return m_record ? m_record->nFileSizeLow : 0;
}

std::uint64_t CFoundInfo::GetLength64() const {
    return m_record ? std::uint64_t{m_record->nFileSizeHigh} << 32 | m_record->nFileSizeLow : 0;
}

bool CFoundInfo::GetTime(QvFileTime QvFindData::*which, QvFileTime* time) const {
    if (m_record) *time = (*m_record).*which;
    return m_record != nullptr;
}

bool CFoundInfo::GetTime(QvFileTime QvFindData::*which, CTime& time) const {
    if (m_record) time = CTime((*m_record).*which);
    return m_record != nullptr;
}
