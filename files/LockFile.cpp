#include "qvcommon/LockFile.h"

#include <new>

#include "files/BackOff.h"
#include "platform/FileStatus.h"
#include "qvcommon/FilePath.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/MultiUserFile.h"
#include "qvcommon/NetUtils.h"

namespace {

/// A side file holds a login name. Longer ones are no side files, and are not read.
constexpr std::uint64_t kLongestSideFile = 64 * 1024;

CString WithExtension(const char* path, const char* extension) {
    CFilePath parts(path);
    parts.SetExt(extension);
    return parts.GetFullPath();
}

CString SideFileOf(const char* lockFile) {
    return WithExtension(lockFile, "lid");
}

enum class AfterFailure { Pause, TryAtOnce, GiveUp };

AfterFailure WhatToDo(int cause) {
    switch (cause) {
        case CFileException::directoryFull:
        case CFileException::sharingViolation:
        case CFileException::lockViolation:
        case CFileException::diskFull: return AfterFailure::Pause;
        case CFileException::generic: return AfterFailure::TryAtOnce;
        default: return AfterFailure::GiveUp;
    }
}

/// For the side activities, whose failures nobody hears of.
template <class Action>
void IgnoringFailure(Action action) {
    try {
        action();
    } catch (CException* error) {
        error->Delete();
    } catch (const std::bad_alloc&) {
    }
}

}  // namespace

CLockFile::~CLockFile() {
    if (!m_locked) return;
    m_file.CloseAndRemove();
    // A side file that stays names a holder that is gone, until the next one overwrites it.
    qv::platform::RemoveFile(SideFileOf(m_path)).IgnoreError();
}

CString CLockFile::GetFile() const {
    return m_path;
}

void CLockFile::SetFile(const char* path) {
    m_path = path;
}

void CLockFile::SetSourceFile(const char* documentPath) {
    SetFile(WithExtension(documentPath, "lck"));
}

bool CLockFile::Lock(int attempts) {
    // The handle stays with this process: a program that it starts must not keep the lock alive.
    constexpr UINT kFlags =
        CFile::modeCreate | CFile::modeNoTruncate | CFile::modeReadWrite | CFile::shareExclusive | CFile::modeNoInherit;
    qv::BackOff backOff;
    for (int i = 0; i < attempts && !m_locked; ++i) {
        m_locked = m_file.Open(m_path, kFlags, &m_lockException);
        if (m_locked) {
            WriteLockedBy();
            break;
        }
        ReadLockedBy();
        const AfterFailure next = WhatToDo(m_lockException.m_cause);
        if (next == AfterFailure::GiveUp) break;
        if (next == AfterFailure::Pause) backOff.Wait();
    }
    return m_locked;
}

bool CLockFile::IsLocked() const {
    return m_locked;
}

void CLockFile::Unlock() {
    if (!m_locked) return;
    m_file.CloseAndRemove();
    m_locked = false;
    RemoveLockedBy();
}

const CFileException& CLockFile::GetLockException() const {
    return m_lockException;
}

CString CLockFile::GetLockedBy() const {
    return m_lockedBy;
}

CString CLockFile::GetLockedByFileName() const {
    return SideFileOf(m_path);
}

void CLockFile::RemoveLockedBy() {
    // A side file that stays names a holder that is gone, until the next one overwrites it.
    qv::platform::RemoveFile(GetLockedByFileName()).IgnoreError();
}

void CLockFile::WriteLockedBy() {
    IgnoringFailure([this] {
        const CString path = GetLockedByFileName(), name = CNetUtils::GetCurrentUserName();
        CFileUtils::MakeWritable(path);
        CFile file;
        if (!CMultiUserFile::Open(file, path, CFile::modeCreate | CFile::modeWrite)) return;
        file.Write(name, static_cast<UINT>(name.GetLength()));
        file.Close();
    });
}

void CLockFile::ReadLockedBy() {
    m_lockedBy.Empty();
    IgnoringFailure([this] {
        const CString path = GetLockedByFileName();
        CFileStatus status;
        CFile file;
        if (!CFile::GetStatus(path, status) || status.m_size > kLongestSideFile) return;
        if (!CMultiUserFile::Open(file, path, CFile::modeRead)) return;
        std::string name(static_cast<std::size_t>(status.m_size), '\0');
        name.resize(file.Read(name.data(), static_cast<UINT>(name.size())));
        m_lockedBy = CString(std::move(name));
    });
}
