#include "qvcommon/TempFile.h"

#include <cstdlib>
#include <mutex>

#include "platform/Clock.h"
#include "platform/FileStatus.h"
#include "platform/Path.h"
#include "qvcommon/framework/File.h"

CTempFile::CTempFile() {
    CTempFile::SetTempDirectory();
}

CTempFile::~CTempFile() {
    if (m_deleteOnDtor) CTempFile::RemoveFile();
}

void CTempFile::Create(int useGivenName) {
    const BOOL fixedBefore = m_fixedName;
    if (useGivenName) m_fixedName = 1;
    try {
        RemoveFile();
        m_filename = CreateCandidate();
    } catch (...) {
        m_fixedName = fixedBefore;
        throw;
    }
    m_created = true;
    m_fixedName = fixedBefore;
}

/// Makes a file and returns its name.
CString CTempFile::CreateCandidate() const {
    constexpr int kMostTaken = 1000;
    for (int taken = 0; taken < kMostTaken;) {
        CString candidate = NextCandidate();
        CFileStatus status;
        if (!m_fixedName && CFile::GetStatus(candidate, status))
            ++taken;
        else if (TryCreate(candidate))
            return candidate;
    }
    AfxThrowFileException(CFileException::accessDenied);
}

CString CTempFile::NextCandidate() const {
    if (m_fixedName && !m_filename.IsEmpty()) return m_filename;
    CString candidate;
    candidate.Format("%s%s%s.%s", m_directory, m_prefix, GetRandomName(), m_extension);
    return candidate;
}

/// False when another name may do better.
bool CTempFile::TryCreate(const CString& candidate) const {
    CFile file;
    CFileException error;
    if (file.Open(candidate, CFile::modeCreate | CFile::modeWrite, &error)) return true;
    switch (error.m_cause) {
        case CFileException::tooManyOpenFiles:
        case CFileException::accessDenied:
        case CFileException::directoryFull:
        case CFileException::diskFull: AfxThrowFileException(error.m_cause, error.m_lOsError, candidate);
        default: break;
    }
    if (m_fixedName) AfxThrowFileException(CFileException::accessDenied);
    return false;
}

void CTempFile::RemoveFile() {
    if (!m_created || !qv::platform::RemoveFile(m_filename).ok() || m_fixedName) return;
    m_created = false;
    m_filename.Empty();
}

void CTempFile::SetFilename(const char* filename) {
    const CString name = filename;
    RemoveFile();
    m_filename = name;
    m_created = true;
    m_fixedName = 1;
}

CString CTempFile::GetRandomName() {
    static std::once_flag seeded;
    std::call_once(seeded, [] { std::srand(static_cast<unsigned>(qv::platform::SecondsNow())); });
    CString name;
    for (int i = 0; i < 6; ++i) name += static_cast<char>('A' + std::rand() % 26);
    return name;
}

void CTempFile::SetTempDirectory() {
    m_directory = CString(qv::platform::TempDirectory());
}

void CTempFile::SetDirectory(const char* directory) {
    m_directory = directory;
    if (m_directory.IsEmpty()) SetTempDirectory();
}

CString CTempFile::GetDirectory() const {
    return m_directory;
}

CString CTempFile::GetFilename() const {
    return m_filename;
}

CString CTempFile::GetExtension() const {
    return m_extension;
}

void CTempFile::SetExtension(const char* extension) {
    m_extension = extension;
}

void CTempFile::SetPrefix(const char* prefix) {
    m_prefix = prefix;
}

CString CTempFile::GetPrefix() const {
    return m_prefix;
}

void CTempFile::SetDeleteOnDtor(int deleteOnDtor) {
    m_deleteOnDtor = deleteOnDtor;
}
