// A folder that is watched: the program says so when something in it changes, and ends when a file "stop" has appeared.
//
//   watched_folder FOLDER

#include <clocale>
#include <condition_variable>
#include <cstdio>
#include <mutex>

#include "qvcommon/ChangeWatchers.h"
#include "qvcommon/FileUtils.h"

class Watcher : public CDirChangeWatcher {
public:
    // A derived class stops in its own destructor: OnChange must not run in an object that is half gone.
    ~Watcher() override { Stop(); }

    // Runs on the watcher's thread, so it only leaves a note, and no exception may come out of it.
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

int main(int argc, char** argv) {
    std::setlocale(LC_ALL, "");
    if (argc != 2) {
        std::fputs("usage: watched_folder FOLDER\n", stderr);
        return 2;
    }
    const CString folder = CFileUtils::GetLibraryPath(argv[1]);  // paths from outside come in the system's own form

    Watcher watcher;
    watcher.SetDirectory(folder);
    watcher.SetCheckSubdirectories(1);
    if (!watcher.Start()) {
        std::fprintf(stderr, "%s cannot be watched\n", argv[1]);
        return 1;
    }
    std::puts("watching");
    std::fflush(stdout);

    // A watcher says that something changed, not what; changes that come together are told once. So look at the folder
    // itself each time. Whatever has changed since Start is never missed.
    do {
        watcher.WaitForChange();
        std::puts("changed");
        std::fflush(stdout);
    } while (!CFileUtils::IsExist(folder + "\\stop"));
}
