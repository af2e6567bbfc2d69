#include "platform/Desktop.h"

#include <algorithm>
#include <chrono>
#include <mutex>
#include <vector>

#include "platform/Ascii.h"
#include "platform/Clock.h"
#include "platform/Path.h"
#include "platform/PercentCode.h"
#include "platform/Process.h"
#include "platform/posix/UniqueFd.h"

// The programs are those of xdg-utils, CUPS, GLib and D-Bus. The file manager implements the freedesktop.org File
// Manager DBus Interface.

namespace qv::platform {
namespace {

constexpr const char kManager[] = "org.freedesktop.FileManager1", kManagerPath[] = "/org/freedesktop/FileManager1",
                     kShowItems[] = "org.freedesktop.FileManager1.ShowItems";

/// Programs that were still running when their call returned. The next call reaps them.
struct Unended {
    std::mutex mutex;
    std::vector<pid_t> processes;
};

Unended& Left() {
    static auto* const unended = new Unended;  // never destroyed: threads may still be running
    return *unended;
}

void ReapEnded() {
    Unended& left = Left();
    const std::lock_guard lock(left.mutex);
    std::erase_if(left.processes, [](pid_t process) {
        const auto ended = sys::waitpid(process, nullptr, WNOHANG);
        return !ended.ok() || ended.value() == process;
    });
}

/// Whether the program has ended, and can be waited for without blocking.
bool HasEnded(pid_t process) {
    siginfo_t info{};
    const auto waited = sys::waitid(P_PID, static_cast<id_t>(process), &info, WEXITED | WNOHANG | WNOWAIT);
    return !waited.ok() || info.si_pid == process;  // a failure: the program's own handlers have reaped it
}

/// Whether the program ends within the time that callers wait for the desktop.
bool EndsSoon(pid_t process) {
    using std::chrono::milliseconds, std::chrono::nanoseconds;
    const auto end = SteadyNow() + std::chrono::seconds(3);
    const UniqueFd watched(sys::pidfd_open(process, 0u));  // may fail: older kernels, or too many open files
    pollfd ended{.fd = watched.Get(), .events = POLLIN, .revents = 0};
    while (!HasEnded(process)) {
        const nanoseconds left = end - SteadyNow();
        if (left <= left.zero()) return false;
        if (watched)
            // A signal handler of the program may have interrupted it.
            sys::poll(&ended, 1, static_cast<int>(std::chrono::ceil<milliseconds>(left).count())).IgnoreError();
        else
            Sleep(std::min<nanoseconds>(left, milliseconds(10)));
    }
    return true;
}

struct Outcome {
    bool started = false, refused = false;
    std::string problem = {};
};

/// Output of the message bus programs is hidden; the others may be the program for the document itself.
enum class Output { Shown, Hidden };

Outcome Run(const char* program, const std::vector<std::string>& arguments, Output output) {
    ReapEnded();
    ChildProcess child;
    const Status started = StartProcess(program, arguments, false, output == Output::Hidden, child);
    const UniqueFd hidden(static_cast<int>(child.output));
    if (!started.ok()) return {.problem = std::string(program) + " cannot be started. Is it installed?"};
    const auto process = static_cast<pid_t>(child.process);
    if (!EndsSoon(process)) {
        Unended& left = Left();
        const std::lock_guard lock(left.mutex);
        left.processes.push_back(process);
        return {.started = true};
    }
    int status = 0;
    WaitForProcess(child.process, status).IgnoreError();  // the program's own handlers may have reaped it
    return {.started = true,
            .refused = status != 0,
            .problem = std::string(program) + " failed with status " + std::to_string(status) + "."};
}

bool Succeeds(const char* program, const std::vector<std::string>& arguments, std::string& problem,
              Output output = Output::Shown) {
    Outcome outcome = Run(program, arguments, output);
    if (outcome.started && !outcome.refused) return true;
    problem = std::move(outcome.problem);
    return false;
}

/// Escapes the characters with a special meaning in lists of texts, as parsed by dbus-send and gdbus.
std::string UriOf(const std::string& native) {
    std::string uri = "file://";
    for (const char c : native) {
        const bool plain =
            ascii::IsLetter(c) || ascii::IsDigit(c) || std::string_view("-._~/").find(c) != std::string_view::npos;
        if (plain)
            uri += c;
        else
            AppendPercent(uri, c);
    }
    return uri;
}

bool IsShownByManager(const std::string& native) {
    const std::string uri = UriOf(native);
    std::string unused;
    return Succeeds("gdbus",
                    {"call", "--session", "--timeout", "2", "--dest", kManager, "--object-path", kManagerPath,
                     "--method", kShowItems, "['" + uri + "']", "''"},
                    unused, Output::Hidden) ||
           Succeeds("dbus-send",
                    {"--session", "--type=method_call", "--print-reply=literal", "--reply-timeout=2000",
                     std::string("--dest=") + kManager, kManagerPath, kShowItems, "array:string:" + uri, "string:"},
                    unused, Output::Hidden);
}

std::string FolderOf(const std::string& native) {
    const std::size_t slash = native.find_last_of('/');
    return slash == 0 ? "/" : native.substr(0, slash);
}

}  // namespace

bool RunDesktopVerb(DesktopVerb verb, const std::string& path, std::string& problem) {
    const std::string native = NativePath(path);
    switch (verb) {
        case DesktopVerb::Open: return Succeeds("xdg-open", {native}, problem);
        case DesktopVerb::Print: return Succeeds("lp", {"--", native}, problem);
        case DesktopVerb::Reveal: break;
    }
    return IsShownByManager(native) || Succeeds("xdg-open", {FolderOf(native)}, problem);
}

}  // namespace qv::platform
