// Watches a folder: reports changes in it, also to another program, and ends when a file "stop" appears.
//
//   watched_folder FOLDER [NAME]
//
// NAME is the one to which the other program listens, such as the example `answer`.

#include <clocale>
#include <condition_variable>
#include <cstdio>
#include <mutex>

#include "qvcommon/ChangeWatchers.h"
#include "qvcommon/Exceptions.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/UserMessages.h"

class Watcher : public CDirChangeWatcher {
public:
    // A derived class stops in its own destructor: OnChange must not run in a partly destroyed object.
    ~Watcher() override { Stop(); }

    // Runs on the watcher's thread, so it only sets a flag; no exception may leave it.
    void OnChange() override {
        const std::scoped_lock guard(m_guard);
        m_noted = true;
        m_note.notify_one();
    }

    void WaitForChange() {
        std::unique_lock guard(m_guard);
        m_note.wait(guard, [this] { return m_noted; });
        m_noted = false;
    }

private:
    std::mutex m_guard;
    std::condition_variable m_note;
    bool m_noted = false;
};

// Returns when the other program has handled the text; a missing listener is not a reason to stop watching.
static void Notify(const char* name, const char* text) {
    std::puts(text);
    std::fflush(stdout);
    if (name && !CUserMessageListener::SendUserMessage(name, 0, text))
        std::fprintf(stderr, "no listener has the name %s\n", name);
}

int main(int argc, char** argv) {
    QvReportUncaught();
    std::setlocale(LC_ALL, "");
    if (argc != 2 && argc != 3) {
        std::fputs("usage: watched_folder FOLDER [NAME]\n", stderr);
        return 2;
    }
    const CString folder = CFileUtils::GetLibraryPath(argv[1]);  // paths from outside have the system's form
    const char* const name = argv[2];                            // null if missing

    Watcher watcher;
    watcher.SetDirectory(folder);
    watcher.SetCheckSubdirectories(1);
    if (!watcher.Start()) {
        std::fprintf(stderr, "%s cannot be watched\n", argv[1]);
        return 1;
    }
    Notify(name, "watching");

    // A watcher reports that something changed, not what, and merges simultaneous changes. So examine the folder itself
    // each time. No change since Start is missed.
    do {
        watcher.WaitForChange();
        Notify(name, "changed");
    } while (!CFileUtils::IsExist(folder + "\\stop"));
    Notify(name, "bye");
}
