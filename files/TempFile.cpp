#include "qvcommon/TempFile.h"

#include <atomic>
#include <cstdlib>
#include <utility>

#include "framework/FileErrors.h"
#include "platform/Clock.h"
#include "platform/FileOpen.h"
#include "platform/FileStatus.h"
#include "platform/Path.h"
#include "qvcommon/framework/File.h"

namespace {

using qv::platform::FileCause;
using qv::platform::Status;

bool Exists(const CString& path) {
    CFileStatus status;
    return CFile::GetStatus(path, status);
}

Status EmptyOrMake(const CString& path) {
    qv::platform::FileHandle file = qv::platform::kNoFile;
    const Status opened = qv::platform::OpenFile(path, {.write = true, .create = true, .truncate = true}, file);
    return opened.ok() ? qv::platform::CloseFile(file) : opened;
}

void RaiseUnlessAnotherNameMayDo(const Status& failure, const CString& candidate, bool fixedName) {
    switch (failure.cause()) {
        case FileCause::TooManyOpenFiles:
        case FileCause::AccessDenied:
        case FileCause::DirectoryFull:
        case FileCause::DiskFull: qv::ThrowIfFailed(failure, candidate); break;
        default: break;
    }
    if (fixedName) AfxThrowFileException(CFileException::accessDenied);
}

}  // namespace

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

/// Creates a file and returns its name.
CString CTempFile::CreateCandidate() const {
    constexpr int kMostTaken = 1000;
    const bool isGiven = HasGivenName();
    for (int taken = 0; taken < kMostTaken;) {
        CString candidate = NextCandidate();
        bool isTaken = !isGiven && Exists(candidate);
        if (!isTaken) {
            const Status made = isGiven ? EmptyOrMake(candidate) : qv::platform::MakeFile(candidate);
            if (made.ok()) return candidate;
            isTaken = !isGiven && qv::platform::MeansNameTaken(made.error());
            if (!isTaken) RaiseUnlessAnotherNameMayDo(made, candidate, m_fixedName != 0);
        }
        taken += isTaken;
    }
    AfxThrowFileException(CFileException::accessDenied);
}

bool CTempFile::HasGivenName() const {
    return m_fixedName && !m_filename.IsEmpty();
}

CString CTempFile::NextCandidate() const {
    if (HasGivenName()) return m_filename;
    CString candidate;
    candidate.Format("%s%s%s.%s", m_directory, m_prefix, GetRandomName(), m_extension);
    return candidate;
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
    // Windows has a generator for each thread, Linux one for the process.
    constexpr unsigned kApart = 0x9E3779B9;
    static std::atomic<unsigned> threads = 0;
    thread_local bool isSeeded = false;
    if (!std::exchange(isSeeded, true))
        std::srand(static_cast<unsigned>(qv::platform::SecondsNow()) + threads++ * kApart);
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
