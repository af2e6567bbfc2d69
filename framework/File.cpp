#include "qvcommon/framework/File.h"

#include <utility>

#include "framework/FileErrors.h"
#include "platform/FileOpen.h"
#include "platform/FileStatus.h"
#include "platform/Path.h"

IMPLEMENT_DYNAMIC(CFile, CObject)

using qv::ThrowIfFailed;
using qv::platform::Status;

static_assert(CFile::hFileNull == qv::platform::kNoFile);
static_assert(CFile::readOnly == qv::platform::kReadOnly && CFile::hidden == qv::platform::kHidden &&
              CFile::system == qv::platform::kSystem && CFile::directory == qv::platform::kDirectory &&
              CFile::archive == qv::platform::kArchive);

namespace {

qv::platform::OpenRequest RequestOf(UINT flags) {
    constexpr UINT kAccessBits = CFile::modeWrite | CFile::modeReadWrite, kShareBits = 0x0070;
    const UINT access = flags & kAccessBits, share = flags & kShareBits;
    qv::platform::OpenRequest request;
    request.read = access != CFile::modeWrite;
    request.write = access != CFile::modeRead;
    request.denyRead = share != CFile::shareDenyWrite && share != CFile::shareDenyNone;
    request.denyWrite = share != CFile::shareDenyRead && share != CFile::shareDenyNone;
    request.create = flags & CFile::modeCreate;
    request.truncate = request.create && !(flags & CFile::modeNoTruncate);
    request.inheritable = !(flags & CFile::modeNoInherit);
    request.folderAccess = flags & CFile::modeFolderAccess;
    return request;
}

bool CloseQuietly(CFile& file, CFileException* error) {
    try {
        file.Close();
        return true;
    } catch (CFileException* failed) {
        if (error) *error = *failed;
        failed->Delete();
        return false;
    }
}

void CopyInfo(const qv::platform::FileInfo& info, const char* path, CFileStatus& status) {
    status.m_ctime = info.created;
    status.m_mtime = info.modified;
    status.m_atime = info.accessed;
    status.m_size = info.size;
    status.m_attribute = static_cast<BYTE>(info.attributes);
    status.m_szFullName = CString(qv::platform::FullPath(path));
}

}  // namespace

CFile::CFile() = default;

CFile::CFile(Handle handle) : m_hFile(handle) {}

CFile::CFile(const char* fileName, UINT openFlags) {
    CFileException error;
    if (!OpenClosed(fileName, openFlags, &error))
        AfxThrowFileException(error.m_cause, error.m_lOsError, error.m_strFileName);
}

CFile::~CFile() {
    CFile::Abort();
}

BOOL CFile::Open(const char* fileName, UINT openFlags, CFileException* error) {
    const CString name = fileName;  // may be this object's own name, which the close clears
    return CloseQuietly(*this, error) && OpenClosed(name, openFlags, error);
}

BOOL CFile::OpenClosed(const char* fileName, UINT openFlags, CFileException* error) {
    const CString name = fileName;
    const Status status = qv::platform::OpenFile(name, RequestOf(openFlags), m_hFile);
    if (!status.ok() && error) qv::Describe(status, name, *error);
    if (!status.ok()) return 0;
    m_strFileName = name;
    return 1;
}

void CFile::Close() {
    if (!IsOpen()) return;
    const Status status = qv::platform::CloseFile(std::exchange(m_hFile, hFileNull));
    const CString name = std::exchange(m_strFileName, CString());
    ThrowIfFailed(status, name);
}

void CFile::Abort() {
    // The caller discards what was written.
    if (IsOpen()) qv::platform::CloseFile(std::exchange(m_hFile, hFileNull)).IgnoreError();
    m_strFileName.Empty();
}

bool CFile::CloseAndRemove() {
    if (!IsOpen()) return false;
    const CString name = std::exchange(m_strFileName, CString());
    return qv::platform::CloseAndRemove(std::exchange(m_hFile, hFileNull), name).ok();
}

UINT CFile::ReadSome(void* buffer, UINT count) {
    std::size_t got = 0;
    ThrowIfFailed(qv::platform::ReadBytes(m_hFile, buffer, count, got), m_strFileName);
    return static_cast<UINT>(got);
}

UINT CFile::Read(void* buffer, UINT count) {
    UINT total = 0;
    while (total < count) {
        const UINT got = ReadSome(static_cast<char*>(buffer) + total, count - total);
        if (got == 0) break;
        total += got;
    }
    return total;
}

void CFile::Write(const void* buffer, UINT count) {
    ThrowIfFailed(qv::platform::WriteBytes(m_hFile, buffer, count), m_strFileName);
}

void CFile::Flush() {
    ThrowIfFailed(qv::platform::FlushToDisk(m_hFile), m_strFileName);
}

std::uint64_t CFile::Seek(std::int64_t offset, UINT from) {
    if (from > end) AfxThrowFileException(CFileException::badSeek, -1, m_strFileName);
    std::uint64_t position = 0;
    const auto origin = static_cast<qv::platform::SeekFrom>(from);
    ThrowIfFailed(qv::platform::SeekTo(m_hFile, offset, origin, position), m_strFileName);
    return position;
}

std::uint64_t CFile::GetPosition() const {
    std::uint64_t position = 0;
    ThrowIfFailed(qv::platform::SeekTo(m_hFile, 0, qv::platform::SeekFrom::Current, position), m_strFileName);
    return position;
}

std::uint64_t CFile::GetLength() const {
    std::uint64_t length = 0;
    ThrowIfFailed(qv::platform::LengthOf(m_hFile, length), m_strFileName);
    return length;
}

void CFile::SetLength(std::uint64_t length) {
    ThrowIfFailed(qv::platform::Resize(m_hFile, length), m_strFileName);
}

bool CFile::GetStatus(CFileStatus& status) const {
    qv::platform::FileInfo info;
    if (!IsOpen() || !qv::platform::StatusOf(m_hFile, m_strFileName, info).ok()) return false;
    CopyInfo(info, m_strFileName, status);
    return true;
}

bool CFile::GetStatus(const char* fileName, CFileStatus& status) {
    const CString name = fileName;
    qv::platform::FileInfo info;
    if (!qv::platform::StatusOf(name, info).ok()) return false;
    CopyInfo(info, name, status);
    return true;
}

void CFile::SetStatus(const char* fileName, const CFileStatus& status) {
    ThrowIfFailed(qv::platform::ChangeStatus(fileName, status.m_mtime, status.m_attribute), fileName);
}

void CFile::Remove(const char* fileName) {
    ThrowIfFailed(qv::platform::RemoveFile(fileName), fileName);
}

void CFile::Rename(const char* oldName, const char* newName) {
    ThrowIfFailed(qv::platform::RenameFile(oldName, newName), oldName);
}
