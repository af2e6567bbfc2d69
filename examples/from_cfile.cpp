// Code for the framework's CFile, as in an old Windows program, and the same job with what this library adds.
//
//   from_cfile FILE
//
// Counts the runs of the program in the file, twice: once with the old code and once with the new.

#include <clocale>
#include <cstdio>
#include <cstdlib>

#include "qvcommon/Exceptions.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/LockFile.h"
#include "qvcommon/SaveFile.h"

// Unchanged. CFile, CString, the flags and CFileException keep their names and meaning; the sharing flags also work on
// Linux, between programs that use this library.
static int CountAsBefore(const char* path) {
    CFile file;
    CFileException why;
    if (!file.Open(path, CFile::modeReadWrite | CFile::modeCreate | CFile::modeNoTruncate | CFile::shareExclusive,
                   &why))
        AfxThrowFileException(why.m_cause, why.m_lOsError, why.m_strFileName);
    char digits[16] = {};
    file.Read(digits, sizeof digits - 1);
    CString text;
    text.Format("%d\n", std::atoi(digits) + 1);
    file.Seek(0, CFile::begin);
    file.Write(text, static_cast<UINT>(text.GetLength()));
    file.SetLength(static_cast<std::uint64_t>(text.GetLength()));
    file.Close();
    return std::atoi(text);
}

// New: CLockFile excludes others during the whole job and names the holder, and CSaveFile replaces the file atomically,
// so that a full disk or a killed program leaves the old version.
static int CountSafely(const CString& path) {
    CLockFile lock;
    lock.SetSourceFile(path);
    if (!lock.Lock(10)) AfxThrowFileException(lock.GetLockException().m_cause, -1, path);
    CString text;
    text.Format("%d\n", std::atoi(CFileUtils::ReadFile(path)) + 1);
    CSaveFile file(path);
    file.Write(text, static_cast<UINT>(text.GetLength()));
    file.Commit();
    return std::atoi(text);
}

int main(int argc, char** argv) {
    QvReportUncaught();  // prints "from_cfile: none/a.txt does not exist. (No such file or directory)"
    std::setlocale(LC_ALL, "");
    if (argc != 2) {
        std::fputs("usage: from_cfile FILE\n", stderr);
        return 2;
    }
    const CString path = CFileUtils::GetLibraryPath(argv[1]);  // the only line needed for paths from outside
    std::printf("before: %d\n", CountAsBefore(path));
    std::printf("now: %d\n", CountSafely(path));
}
