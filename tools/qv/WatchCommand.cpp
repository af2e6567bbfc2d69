#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

#include "qvcommon/ChangeWatchers.h"
#include "tools/qv/Commands.h"
#include "tools/qv/Json.h"
#include "tools/qv/Lines.h"

namespace qv::tool {
namespace {

struct Options {
    std::string folder;
    bool flat = false, names = false, attributes = false, writes = false;
    unsigned count = 0;
    bool json = false;
};

// Prints a line for each change.
class Printer : public CDirChangeWatcher {
public:
    explicit Printer(const Options& options) : m_options(options), m_left(options.count) {}
    ~Printer() override { Stop(); }

    void OnChange() override {
        const std::scoped_lock lock(m_mutex);
        if (m_done) return;
        m_done = !m_lines.Write(Line()) || (m_left > 0 && --m_left == 0);
        m_finished.notify_one();
    }

    // Returns false if the watch ended before that. @throws CFileException* if a line could not be written.
    bool WaitUntilDone() {
        constexpr auto look = std::chrono::milliseconds(200);
        std::unique_lock lock(m_mutex);
        while (!m_finished.wait_for(lock, look, [this] { return m_done; }))
            if (!IsWatching()) return false;
        m_lines.Check();
        return true;
    }

private:
    std::string Line() const {
        return m_options.json ? JsonObject().Path("folder", m_options.folder).TimeNow("time").Line() : "changed";
    }

    const Options& m_options;
    std::mutex m_mutex;
    std::condition_variable m_finished;
    unsigned m_left;  // 0 for no limit
    bool m_done = false;
    LiveLines m_lines;
};

// Without flags, the watcher's own filter applies.
DWORD FilterOf(const Options& options) {
    return (options.names ? 0x03U : 0U) | (options.attributes ? 0x04U : 0U) | (options.writes ? 0x18U : 0U);
}

void Watch(const Options& options) {
    Printer watcher(options);
    watcher.SetDirectory(options.folder.c_str());
    watcher.SetCheckSubdirectories(!options.flat);
    if (const DWORD filter = FilterOf(options)) watcher.SetFilter(filter);
    if (!watcher.Start()) throw FailedOn(options.folder, "cannot be watched");
    if (!watcher.WaitUntilDone()) throw FailedOn(options.folder, "no longer exists");
}

}  // namespace

void AddWatch(Command app) {
    Command command = app.Add("watch", "Print a line \"changed\" for each change in a folder");
    const auto options = std::make_shared<Options>();
    command.AddPath("FOLDER", options->folder, "The folder").Require();
    command.AddFlag("--flat", options->flat, "Do not watch subfolders");
    command.AddFlag("--names", options->names, "Report files and folders created, deleted or renamed");
    command.AddFlag("--attributes", options->attributes, "Report changes of attributes");
    command.AddFlag("--writes", options->writes, "Report changes of contents");
    command.AddOption("-c,--count", options->count, "Exit after this many lines");
    command.AddFlag("-j,--json", options->json, "Print one JSON object per change: folder, time");
    command.SetNotes("By default, names of files and contents are reported. Simultaneous changes print one line.");
    command.AddExample("qv watch inbox --names --count 1 && ls -l inbox");
    command.SetAction([options] { Watch(*options); });
}

}  // namespace qv::tool
