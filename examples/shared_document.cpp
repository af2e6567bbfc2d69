// A document that several users change: whoever changes it holds its lock.
//
//   shared_document FILE LINE
//
// Adds the line to the document. Run it many times at once: no line is lost, and none is written over.

#include <clocale>
#include <cstdio>

#include "qvcommon/FileUtils.h"
#include "qvcommon/LockFile.h"

int main(int argc, char** argv) try {
    std::setlocale(LC_ALL, "");
    if (argc != 3) {
        std::fputs("usage: shared_document FILE LINE\n", stderr);
        return 2;
    }
    const CString document = CFileUtils::GetLibraryPath(argv[1]);  // paths from outside come in the system's own form

    // The lock is a file beside the document, with the extension "lck". It holds between processes and between machines,
    // and it ends with its process, however that dies: a lock file left behind is no lock.
    CLockFile lock;
    lock.SetSourceFile(document);
    if (!lock.Lock(10)) {  // ten attempts; between them it waits, longer each time
        CFileException why = lock.GetLockException();
        if (why.m_cause == CFileException::sharingViolation)
            std::fprintf(stderr, "%s is locked by %s\n", argv[1], lock.GetLockedBy().AsStd().c_str());
        else
            why.ReportError();  // shown in a message box; on Linux, without a handler of yours, on standard error
        return 1;
    }

    // Read, change, write: nobody else who asks for the lock can come in between.
    CStringArray lines;
    CFileUtils::ReadFile(document, lines);  // none when the document is new
    lines.Add(argv[2]);
    CFileUtils::WriteFile(document, lines, 1, 0);
    std::printf("%s has %d lines\n", argv[1], static_cast<int>(lines.GetSize()));

    lock.Unlock();  // the destructor would do it too
    return 0;
} catch (CException* error) {
    char reason[512] = {};
    error->GetErrorMessage(reason, sizeof reason - 1);
    error->Delete();
    std::fprintf(stderr, "%s\n", reason);
    return 1;
}
