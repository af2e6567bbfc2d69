// Code for the framework's CFile, as an old Windows program has it, and the same job with what this library adds.
//
//   from_cfile FILE
//
// Counts the runs of the program in the file, twice: once by the old code and once by the new.

#include <clocale>
#include <cstdio>
#include <cstdlib>

#include "qvcommon/Exceptions.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/LockFile.h"
#include "qvcommon/SaveFile.h"

// As it was. CFile, CString, the flags and CFileException have the names and the meaning that they had; the flags of
// sharing hold on Linux too, between programs that use this library.
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

// What is new: CLockFile keeps others out for the whole job and says who they are, and CSaveFile puts a whole new version in
// the file's place, so that a full disk or a killed program leaves the old one.
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
    QvReportUncaught();  // prints "from_cfile: none/a.txt does not exist. (No such file or directory)" where it has to
    std::setlocale(LC_ALL, "");
    if (argc != 2) {
        std::fputs("usage: from_cfile FILE\n", stderr);
        return 2;
    }
    const CString path = CFileUtils::GetLibraryPath(argv[1]);  // the one line that paths from outside need
    std::printf("before: %d\n", CountAsBefore(path));
    std::printf("now: %d\n", CountSafely(path));
}
