#include <algorithm>
#include <atomic>
#include <limits>
#include <memory>
#include <new>

#include "files/BackOff.h"
#include "files/PathParts.h"
#include "framework/FileErrors.h"
#include "framework/WriteInParts.h"
#include "platform/Clock.h"
#include "platform/FileStatus.h"
#include "platform/Memory.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/MultiUserFile.h"
#include "qvcommon/SaveFile.h"
#include "qvcommon/framework/DateTime.h"
#include "qvcommon/framework/StdioFile.h"
#include "threads/Executor.h"

namespace {

constexpr UINT kToRead = CFile::modeRead | CFile::shareDenyWrite;
constexpr UINT kToMake = CFile::modeCreate | CFile::modeWrite;
// Binary: the line end is written unchanged.
constexpr UINT kToAdd = kToMake | CFile::modeNoTruncate | CFile::typeBinary;

/// Runs an action and ignores its failure. Returns whether it succeeded.
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

/// Makes another thread allocate the pages of a large text while it is being written, until destroyed.
class MemoryAhead {
public:
    MemoryAhead(char* memory, std::size_t size) {
        if (size < 4 * kStep || m_executor.Threads() == 0) return;
        m_task = m_executor.Start([this, memory, size] {
            for (std::size_t at = 0; at < size && !m_stop; at += kStep)
                if (!qv::platform::PopulateMemory(memory + at, std::min(kStep, size - at))) return false;
            return true;
        });
    }
    ~MemoryAhead() { m_stop = true; }
    MemoryAhead(const MemoryAhead&) = delete;
    MemoryAhead& operator=(const MemoryAhead&) = delete;

private:
    static constexpr std::size_t kStep = 4 << 20;

    std::atomic<bool> m_stop = false;
    qv::Executor m_executor{std::min(qv::Executor::SpareProcessors(), 1u)};
    qv::Task<bool> m_task;
};

/// Reads up to `size` bytes through a small buffer that stays in the processor's cache: the text's memory is touched
/// only once and need not be zeroed first.
void ReadInto(std::string& text, CFile& file, std::size_t size) {
    constexpr std::size_t kStep = 256 * 1024;
    if (size > text.max_size()) throw std::bad_alloc();  // about 1 GB in 32-bit programs
    text.reserve(size);
    qv::platform::AdviseLargePages(text.data(), size);
    const MemoryAhead ahead(text.data(), size);
    const auto buffer = std::make_unique_for_overwrite<char[]>(std::min(size, kStep));
    while (text.size() < size) {
        const UINT count = file.Read(buffer.get(), static_cast<UINT>(std::min(size - text.size(), kStep)));
        if (count == 0) return;
        text.append(buffer.get(), count);
    }
}

/// Writes a text of any length.
void WriteAll(CFile& file, std::string_view text) {
    qv::WriteInParts(text, [&file](const char* data, UINT size) { file.Write(data, size); });
}

bool OpenToMake(CFile& file, const CString& path, int multiUser, int createDirectory, CFileException* error) {
    if (createDirectory) QvCreateDirectory(qv::FolderOf(path));
    CFileUtils::MakeWritable(path);
    return multiUser ? CMultiUserFile::Open(file, path, kToMake, error) : file.Open(path, kToMake, error);
}

/// Others hold a log only for a moment, so this retries at short intervals and for a long time.
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

/// Appends the whole line to the file or nothing.
void Append(CStdioFile& file, const CString& line) {
    std::uint64_t end = 0;
    qv::ThrowIfFailed(qv::platform::SeekToServerEnd(file.GetHandle(), end), file.GetFilePath());
    try {
        file.WriteString(line);
        file.Seek(0, CFile::current);  // flushes it to the system
        qv::ThrowIfFailed(qv::platform::FlushToServer(file.GetHandle()), file.GetFilePath());
    } catch (CFileException*) {
        Try([&] { file.SetLength(end); });
        throw;
    }
    file.Close();
}

/// Whether both paths, which differ at most in their extension, lead to the same entry of one folder. Two hard links
/// are different entries.
bool HaveOneName(const CString& path, const CString& other) {
    return path == other || (path.CompareNoCase(other) == 0 && qv::platform::IsSame(path, other));
}

}  // namespace

CString CFileUtils::ReadFile(const char* path) {
    constexpr std::uint64_t kLongest = std::numeric_limits<int>::max();
    const CString name = path;
    qv::platform::FileInfo info;
    CFile file;
    if (!qv::platform::StatusOf(name, info).ok() || !info.isRegular || info.size > kLongest) return {};
    if (!CMultiUserFile::Open(file, name, kToRead)) return {};
    std::string text;
    const bool whole = Try([&] {
        // Another program may have rewritten the file meanwhile.
        const std::uint64_t size = file.GetLength();
        if (size <= kLongest) ReadInto(text, file, static_cast<std::size_t>(size));
    });
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
    WriteAll(file, text);
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

void CFileUtils::SaveFile(const char* path, const CString& text) {
    constexpr int kTries = 9;
    qv::BackOff backOff;
    for (int tries = 1;; ++tries) {
        try {
            CSaveFile file(path);
            WriteAll(file, text);
            file.Commit();
            return;
        } catch (CFileException* error) {
            if (error->m_cause != CFileException::sharingViolation || tries == kTries) throw;
            error->Delete();
        }
        backOff.Wait();
    }
}

int CFileUtils::Log(const char* path, const char* text, int stamp) {
    CString line = stamp ? COleDateTime::GetCurrentTime().Format("%c ") : CString();
    (line += text) += "\r\n";
    CStdioFile file;
    return OpenToLog(file, path) && Try([&] { Append(file, line); });
}

CString CFileUtils::GetBackupName(const char* path) {
    return qv::WithExtension(path, "bak");
}

void CFileUtils::BackupFile(const char* path) {
    const CString name = path;
    if (!IsExist(name)) return;
    const CString backup = GetBackupName(name);
    if (HaveOneName(name, backup)) AfxThrowFileException(CFileException::accessDenied, -1, name);
    MakeWritable(name);
    if (IsExist(backup)) MakeWritable(backup);
    Try([&] { CFile::Remove(backup); });  // also a dangling link
    CFile::Rename(name, backup);
}
