#include "qvcommon/SaveFile.h"

#include <utility>

#include "files/InPlace.h"
#include "framework/FileErrors.h"
#include "platform/AtomicFile.h"
#include "platform/FileStatus.h"

using qv::platform::Status;

struct CSaveFile::Version {
    qv::platform::AtomicFile file;
    CString target;
};

namespace {

bool IsMissing(const CString& path) {
    qv::platform::FileInfo info;
    return qv::platform::StatusOf(path, info).cause() == qv::platform::FileCause::FileNotFound;
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
    const CString name = fileName;  // `fileName` may point into this object, which Abort clears
    CSaveFile::Abort();
    auto version = std::make_unique<Version>();
    version->target = CString(qv::platform::LinkTarget(name));
    const auto access = qv::platform::AccessForUpdate(version->target, qv::platform::Access::AsUmaskSays);
    const Status created = version->file.Create(version->target, access);
    if (!created.ok() && error) qv::Describe(created, name, *error);
    if (!created.ok()) return 0;
    m_version = std::move(version);
    m_hFile = m_version->file.Handle();
    m_strFileName = name;
    return 1;
}

void CSaveFile::Commit() {
    if (!m_version) AfxThrowFileException(CFileException::invalidFile, -1, m_strFileName);
    const CString name = m_strFileName;
    const auto version = std::move(m_version);
    CSaveFile::Abort();                  // the handle belongs to the version
    qv::RestoreBackup(version->target);  // otherwise a later restore would overwrite this version
    qv::ThrowIfFailed(version->file.Commit(qv::platform::IfExists::Update, qv::platform::Durability::Synced), name);
}

void CSaveFile::CommitInPlace() {
    if (!m_version || IsMissing(m_version->target)) return Commit();
    const auto version = std::move(m_version);
    CSaveFile::Abort();
    qv::OverwriteInPlace(version->target, version->file.Handle());
}

BOOL CSaveFile::Recover(const char* fileName) {
    return qv::RestoreBackup(CString(qv::platform::LinkTarget(fileName)));
}

void CSaveFile::Close() {
    Abort();
}

void CSaveFile::Abort() {
    m_hFile = hFileNull;
    m_strFileName.Empty();
    m_version.reset();
}
