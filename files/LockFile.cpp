#include "qvcommon/LockFile.h"

#include <algorithm>
#include <new>

#include "files/BackOff.h"
#include "files/PathParts.h"
#include "platform/AtomicFile.h"
#include "platform/FileStatus.h"
#include "platform/Process.h"
#include "platform/RemovalWatch.h"
#include "qvcommon/MultiUserFile.h"
#include "qvcommon/NetUtils.h"

namespace {

/// A side file holds a login name. Longer files are not side files and are not read.
constexpr std::uint64_t kLongestSideFile = 64 * 1024;

constexpr UINT kExclusive =
    CFile::modeReadWrite | CFile::shareExclusive | CFile::modeFolderAccess | CFile::modeNoInherit;

CString SideFileOf(const CString& lockFile) {
    return qv::WithExtension(lockFile, "lid");
}

/// Replaces any file of that name with a small file. Returns false if the existing file may not be replaced: another
/// user's file in a folder in which users may delete only their own.
bool ReplaceAtomically(const CString& path, std::string_view text) {
    qv::platform::AtomicFile file;
    return file.Create(path, qv::platform::Access::AsFolder).ok() &&
           qv::platform::WriteBytes(file.Handle(), text.data(), text.size()).ok() &&
           file.Commit(qv::platform::IfExists::Replace, qv::platform::Durability::Deferred).ok();
}

/// For side effects whose failures are not reported.
template <class Action>
void IgnoringFailure(Action action) {
    try {
        action();
    } catch (CException* error) {
        error->Delete();
    } catch (const std::bad_alloc&) {
    }
}

/// Returns after the pause, or sooner if the system reports that the lock file was removed. Short pauses are not worth
/// a watch.
void WaitForRelease(const CString& lockFile, std::chrono::nanoseconds pause) {
    constexpr std::chrono::milliseconds kWorthWatching{8};
    const auto watch =
        pause < kWorthWatching || !qv::platform::IsRealTime() ? nullptr : qv::platform::RemovalWatch::Open(lockFile);
    if (!watch) return qv::platform::Sleep(pause);
    watch->WaitFor(std::chrono::ceil<std::chrono::milliseconds>(pause));
    // Other changes also end the wait and may be frequent.
    qv::platform::Sleep(std::chrono::milliseconds(1));
}

}  // namespace

ILockObserver::~ILockObserver() = default;

BOOL ILockObserver::OnLockHeld(const CString&, std::int64_t) {
    return 1;
}

CLockFile::~CLockFile() {
    if (!m_locked || !CloseLock()) return;
    // A side file that stays names a former holder until the next one overwrites it.
    qv::platform::RemoveFile(SideFileOf(m_path)).IgnoreError();
}

CString CLockFile::GetFile() const {
    return m_path;
}

void CLockFile::SetFile(const char* path) {
    m_path = path;
}

void CLockFile::SetSourceFile(const char* documentPath) {
    SetFile(qv::WithExtension(documentPath, "lck"));
}

CLockFile::AfterFailure CLockFile::WhatNext() const {
    switch (m_lockException.m_cause) {
        case CFileException::directoryFull:
        case CFileException::sharingViolation:
        case CFileException::lockViolation:
        case CFileException::diskFull: return AfterFailure::Pause;
        case CFileException::generic: return AfterFailure::TryAtOnce;
        default: return AfterFailure::GiveUp;
    }
}

bool CLockFile::TryOnce() {
    m_locked = m_file.Open(m_path, kExclusive | CFile::modeCreate | CFile::modeNoTruncate, &m_lockException);
    // If this fails, the lock ends with this process, as if it were not inheritable.
    if (m_locked && m_inheritable) qv::platform::AllowInheritance(m_file.GetHandle()).IgnoreError();
    if (m_locked)
        WriteLockedBy();
    else
        ReadLockedBy();
    return m_locked;
}

bool CLockFile::Lock(int attempts) {
    qv::BackOff backOff;
    for (int i = 0; i < attempts && !m_locked; ++i) {
        if (TryOnce()) break;
        const AfterFailure next = WhatNext();
        if (next == AfterFailure::GiveUp) break;
        if (next == AfterFailure::Pause) backOff.Wait();
    }
    return m_locked;
}

bool CLockFile::TryLock() {
    return LockFor(0);
}

bool CLockFile::LockFor(UINT patience, ILockObserver* observer) {
    using std::chrono::milliseconds;
    constexpr milliseconds kLongestPause{250};
    const auto end = qv::platform::SteadyNow() + milliseconds(patience);
    const struct Pauses {
        bool& pauses;
        explicit Pauses(bool& variable) : pauses(variable) { pauses = false; }
        ~Pauses() { pauses = true; }
        Pauses(const Pauses&) = delete;
        Pauses& operator=(const Pauses&) = delete;
    } withoutPauses(m_pauses);
    for (milliseconds pause{1}; !m_locked && !TryOnce(); pause = std::min(2 * pause, kLongestPause)) {
        if (WhatNext() == AfterFailure::GiveUp) break;
        if (observer && !observer->OnLockHeld(m_lockedBy, m_lockedSince)) break;
        const auto left = end - qv::platform::SteadyNow();
        if (left <= left.zero()) break;
        WaitForRelease(m_path, std::min<std::chrono::nanoseconds>(pause, left));
    }
    return m_locked;
}

// Returns false if the lock has another holder: a program that inherited the lock would keep it on a deleted file,
// where no other program looks.
bool CLockFile::CloseLock() {
    qv::platform::RevokeInheritance(m_file.GetHandle());
    if (m_inheritable) {
        const CString path = m_file.GetFilePath();
        m_file.Abort();
        if (!m_file.Open(path, kExclusive)) return false;
    }
    m_file.CloseAndRemove();
    return true;
}

void CLockFile::SetInheritable(int inheritable) {
    m_inheritable = inheritable != 0;
}

bool CLockFile::IsLocked() const {
    return m_locked;
}

void CLockFile::Unlock() {
    if (!m_locked) return;
    m_locked = false;
    if (CloseLock()) RemoveLockedBy();
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
    // A side file that stays names a former holder until the next one overwrites it.
    qv::platform::RemoveFile(GetLockedByFileName()).IgnoreError();
}

void CLockFile::WriteLockedBy() {
    IgnoringFailure([this] {
        const CString path = GetLockedByFileName(), name = CNetUtils::GetCurrentUserName();
        if (ReplaceAtomically(path, name.AsStd())) return;
        CFile file;
        constexpr UINT kFlags = CFile::modeCreate | CFile::modeWrite | CFile::modeFolderAccess;
        if (!(m_pauses ? CMultiUserFile::Open(file, path, kFlags) : file.Open(path, kFlags))) return;
        file.Write(name, static_cast<UINT>(name.GetLength()));
        file.Close();
    });
}

void CLockFile::ReadLockedBy() {
    m_lockedBy.Empty();
    m_lockedSince = 0;
    IgnoringFailure([this] {
        const CString path = GetLockedByFileName();
        CFileStatus status;
        CFile file;
        if (!CFile::GetStatus(path, status) || status.m_size > kLongestSideFile) return;
        constexpr UINT kFlags = CFile::modeRead | CFile::shareDenyNone | CFile::modeFolderAccess;
        if (!(m_pauses ? CMultiUserFile::Open(file, path, kFlags) : file.Open(path, kFlags))) return;
        std::string name(static_cast<std::size_t>(status.m_size), '\0');
        name.resize(file.Read(name.data(), static_cast<UINT>(name.size())));
        m_lockedBy = CString(std::move(name));
        m_lockedSince = status.m_mtime;
    });
}
