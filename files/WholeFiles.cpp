#include <algorithm>
#include <limits>
#include <memory>

#include "platform/Clock.h"
#include "platform/FileStatus.h"
#include "platform/Memory.h"
#include "qvcommon/FilePath.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/MultiUserFile.h"
#include "qvcommon/framework/DateTime.h"
#include "qvcommon/framework/StdioFile.h"

namespace {

constexpr UINT kToRead = CFile::modeRead | CFile::shareDenyWrite;
constexpr UINT kToMake = CFile::modeCreate | CFile::modeWrite;
// Binary: the line end is written as it is.
constexpr UINT kToAdd = kToMake | CFile::modeNoTruncate | CFile::typeBinary;

/// Runs an action that may fail without anybody hearing of it. False when it did.
template <class Action>
bool Try(Action action) {
    try {
        action();
        return true;
    } catch (CFileException* error) {
        error->Delete();
        return false;
    }
}

/// CFilePath cuts long paths, and a cut path is another file's.
bool FitsFilePath(const CString& path) {
    return CFilePath(path).GetFullPath() == path;
}

/// Up to `size` bytes, by way of a small buffer that stays in the processor's own memory: so the text's memory is touched
/// once only, and need not be filled before.
void ReadInto(std::string& text, CFile& file, std::size_t size) {
    constexpr std::size_t kStep = 256 * 1024;
    text.reserve(size);
    qv::platform::ExpectWriting(text.data(), size);
    const auto buffer = std::make_unique_for_overwrite<char[]>(std::min(size, kStep));
    while (text.size() < size) {
        const UINT count = file.Read(buffer.get(), static_cast<UINT>(std::min(size - text.size(), kStep)));
        if (count == 0) return;
        text.append(buffer.get(), count);
    }
}

bool OpenToMake(CFile& file, const CString& path, int multiUser, int createDirectory, CFileException* error) {
    if (createDirectory && FitsFilePath(path)) QvCreateDirectory(CFilePath(path).GetPath(0));
    CFileUtils::MakeWritable(path);
    return multiUser ? CMultiUserFile::Open(file, path, kToMake, error) : file.Open(path, kToMake, error);
}

/// Others hold a log for a moment only, so this asks again soon, and long.
bool OpenToLog(CFile& file, const CString& path) {
    constexpr int kTries = 700;
    constexpr int kLongestPause = 32;
    CFileException error;
    for (int i = 0; i < kTries; ++i) {
        if (file.Open(path, kToAdd, &error)) return true;
        if (error.m_cause != CFileException::sharingViolation) return false;
        qv::platform::Sleep(std::chrono::milliseconds(std::min(kLongestPause, 1 + i / 2)));
    }
    return false;
}

/// Brings all of the line into the file, or nothing.
void Append(CStdioFile& file, const CString& line) {
    const std::uint64_t end = file.Seek(0, CFile::end);
    try {
        file.WriteString(line);
        file.Seek(0, CFile::current);  // hands it to the system
    } catch (CFileException*) {
        Try([&] { file.SetLength(end); });
        throw;
    }
    file.Close();
}

}  // namespace

CString CFileUtils::ReadFile(const char* path) {
    const CString name = path;
    CFileStatus status;
    CFile file;
    if (!CFile::GetStatus(name, status) || (status.m_attribute & CFile::directory)) return {};
    if (status.m_size > std::numeric_limits<int>::max() || status.m_size == 0) return {};
    if (!CMultiUserFile::Open(file, name, kToRead)) return {};
    std::string text;
    const bool whole = Try([&] { ReadInto(text, file, static_cast<std::size_t>(status.m_size)); });
    return whole ? CString(std::move(text)) : CString();
}

void CFileUtils::ReadFile(const char* path, CStringArray& lines) {
    const CString name = path;
    lines.RemoveAll();
    CStdioFile file;
    if (!CMultiUserFile::Open(file, name, kToRead)) return;
    const bool whole = Try([&] {
        for (CString line; file.ReadString(line);) lines.Add(std::move(line));
    });
    if (!whole) lines.RemoveAll();
}

void CFileUtils::WriteFile(const char* path, const CString& text, int multiUser, int createDirectory) {
    CFile file;
    CFileException error;
    if (!OpenToMake(file, path, multiUser, createDirectory, &error))
        AfxThrowFileException(error.m_cause, error.m_lOsError, error.m_strFileName);
    file.Write(text, static_cast<UINT>(text.GetLength()));
    file.Close();
}

void CFileUtils::WriteFile(const char* path, const CStringArray& lines, int multiUser, int createDirectory) {
    CStdioFile file;
    if (!OpenToMake(file, path, multiUser, createDirectory, nullptr)) return;
    for (const CString& line : lines) {
        file.WriteString(line);
        file.WriteString("\n");
    }
    file.Close();
}

int CFileUtils::Log(const char* path, const char* text, int stamp) {
    CString line = stamp ? COleDateTime::GetCurrentTime().Format("%c ") : CString();
    (line += text) += "\r\n";
    CStdioFile file;
    return OpenToLog(file, path) && Try([&] { Append(file, line); });
}

void CFileUtils::BackupFile(const char* path) {
    const CString name = path;
    if (!IsExist(name)) return;
    CFilePath parts(name);
    parts.SetExt("bak");
    const CString backup = parts.GetFullPath();
    if (!FitsFilePath(name)) AfxThrowFileException(CFileException::badPath, -1, name);
    if (qv::platform::IsSame(name, backup)) AfxThrowFileException(CFileException::accessDenied, -1, name);
    MakeWritable(name);
    if (IsExist(backup)) {
        MakeWritable(backup);
        Try([&] { CFile::Remove(backup); });
    }
    CFile::Rename(name, backup);
}
