#include "qvcommon/SaveFile.h"

#include <utility>

#include "framework/FileErrors.h"
#include "platform/AtomicFile.h"
#include "platform/FileStatus.h"

using qv::platform::Status;

struct CSaveFile::Version {
    qv::platform::AtomicFile file;
};

namespace {

/// The new version of a private document must not be readable meanwhile; it gets the document's permissions at the end.
qv::platform::Access AccessFor(const std::string& target) {
    qv::platform::FileInfo info;
    const bool exists = qv::platform::StatusOf(target.c_str(), info).ok();
    return exists ? qv::platform::Access::Owner : qv::platform::Access::AsUmaskSays;
}

}  // namespace

CSaveFile::CSaveFile() = default;

CSaveFile::CSaveFile(const char* fileName) {
    CFileException error;
    if (!CSaveFile::Open(fileName, modeCreate | modeReadWrite, &error))
        AfxThrowFileException(error.m_cause, error.m_lOsError, error.m_strFileName);
}

CSaveFile::~CSaveFile() {
    CSaveFile::Abort();
}

BOOL CSaveFile::Open(const char* fileName, UINT, CFileException* error) {
    const CString name = fileName;  // which may be this object's own, gone after the drop
    CSaveFile::Abort();
    auto version = std::make_unique<Version>();
    const std::string target = qv::platform::LinkTarget(name);
    const Status created = version->file.Create(target.c_str(), AccessFor(target));
    if (!created.ok() && error) qv::Describe(created, name, *error);
    if (!created.ok()) return 0;
    m_version = std::move(version);
    m_hFile = m_version->file.Handle();
    m_strFileName = name;
    return 1;
}

void CSaveFile::Commit() {
    if (!m_version) AfxThrowFileException(CFileException::invalidFile, -1, m_strFileName);
    m_hFile = hFileNull;  // the version's own
    const CString name = std::exchange(m_strFileName, CString());
    const auto version = std::move(m_version);
    qv::ThrowIfFailed(version->file.Commit(qv::platform::IfExists::Update, qv::platform::Durability::Synced), name);
}

void CSaveFile::Close() {
    Abort();
}

void CSaveFile::Abort() {
    m_hFile = hFileNull;
    m_strFileName.Empty();
    m_version.reset();
}
