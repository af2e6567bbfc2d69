// A document that several users change: each holds its lock while changing it, and saves it atomically.
//
//   shared_document FILE LINE
//
// Adds the line to the document. Run it many times at once: no line is lost or overwritten.

#include <clocale>
#include <cstdio>

#include "qvcommon/Exceptions.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/LockFile.h"
#include "qvcommon/SaveFile.h"
#include "qvcommon/StringHelper.h"

// Shows who holds the document while waiting for the lock.
class Patience : public ILockObserver {
    BOOL OnLockHeld(const CString& holder, std::int64_t) override {
        if (m_holder != holder) std::fprintf(stderr, "waiting for %s\n", holder.AsStd().c_str());
        m_holder = holder;
        return 1;  // 0 gives up
    }
    CString m_holder;
};

static bool Lock(CLockFile& lock, const CString& document) {
    // The lock is a file beside the document, with the extension "lck". It works between processes and between
    // machines, and ends with its process, even in a crash: a lock file that remains is not a lock.
    Patience patience;
    lock.SetSourceFile(document);
    if (lock.LockFor(60'000, &patience)) return true;
    CFileException why = lock.GetLockException();
    if (why.m_cause == CFileException::sharingViolation)
        std::fprintf(stderr, "the document is locked by %s\n", lock.GetLockedBy().AsStd().c_str());
    else
        why.ReportError();  // shows a message box; on Linux, without your own handler, prints to standard error
    return false;
}

// Readers find the old version or the new one, even if the disk is full or the program is killed.
static void Save(const CString& document, const CStringArray& lines) {
    const CString text = CStringHelper::MakeString(lines, "\n", -1, 1) + "\n";
    CSaveFile file(document);
    file.Write(text, static_cast<UINT>(text.GetLength()));
    file.Commit();
}

int main(int argc, char** argv) {
    QvReportUncaught();
    std::setlocale(LC_ALL, "");
    if (argc != 3) {
        std::fputs("usage: shared_document FILE LINE\n", stderr);
        return 2;
    }
    const CString document = CFileUtils::GetLibraryPath(argv[1]);  // paths from outside have the system's form

    CLockFile lock;
    if (!Lock(lock, document)) return 1;
    try {
        // Read, change, save: no other program that uses the lock can interfere.
        CStringArray lines;
        CFileUtils::ReadFile(document, lines);  // empty for a new document
        lines.Add(argv[2]);
        Save(document, lines);
        std::printf("%s has %d lines\n", argv[1], lines.GetSize());
    } catch (CFileException* error) {
        // Catching lets the destructors run: the unfinished version is deleted, and the lock is released.
        error->ReportError();
        error->Delete();
        return 1;
    }
}
