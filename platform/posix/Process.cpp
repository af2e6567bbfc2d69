#include "platform/Process.h"

#include <cerrno>
#include <climits>

#include "platform/Path.h"
#include "platform/posix/BlockedSignals.h"
#include "platform/posix/UniqueFd.h"

namespace qv::platform {
namespace {

struct Pipe {
    UniqueFd read, write;

    Status Make() {
        int ends[2];
        const auto made = sys::pipe2(ends, O_CLOEXEC);
        if (!made.ok()) return made.status();
        read = UniqueFd(ends[0]);
        write = UniqueFd(ends[1]);
        return {};
    }
};

/// The actions of the child before the program starts.
struct Actions {
    Actions() { ::posix_spawn_file_actions_init(&list); }
    ~Actions() { ::posix_spawn_file_actions_destroy(&list); }
    Actions(const Actions&) = delete;
    Actions& operator=(const Actions&) = delete;

    void Use(const UniqueFd& file, int as) {
        if (file) ::posix_spawn_file_actions_adddup2(&list, file.Get(), as);
    }

    posix_spawn_file_actions_t list;
};

std::vector<char*> Pointers(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

/// Blocks SIGPIPE for the calling thread during the lifetime of the object.
class BrokenPipeSignals {
public:
    BrokenPipeSignals() { sys::sigpending(&m_pending).IgnoreError(); }  // cannot fail

    /// Consumes the signal raised by a write, keeping one that was pending before.
    void TakeOwn() const {
        constexpr timespec kAtOnce{};
        // Another thread of the program may have consumed it already.
        if (!::sigismember(&m_pending, SIGPIPE)) sys::sigtimedwait(&m_blocked.Set(), nullptr, &kAtOnce).IgnoreError();
    }

private:
    sigset_t m_pending{};
    const BlockedSignals m_blocked{SIGPIPE};
};

int ExitStatusOf(int status) {
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

}  // namespace

Status StartProcess(const char* program, const std::vector<std::string>& arguments, bool pipeInput, bool pipeOutput,
                    ChildProcess& child) {
    Pipe input, output;
    const Status madeInput = pipeInput ? input.Make() : Status();
    const Status made = madeInput.ok() && pipeOutput ? output.Make() : madeInput;
    if (!made.ok()) return made;
    Actions actions;
    actions.Use(input.read, STDIN_FILENO);
    actions.Use(output.write, STDOUT_FILENO);
    std::vector<std::string> words = {NativePath(program)};
    words.insert(words.end(), arguments.begin(), arguments.end());
    pid_t id = -1;
    const auto started = sys::posix_spawnp(&id, words[0].c_str(), &actions.list, Pointers(words).data());
    if (!started.ok()) return started.statusAt(program);
    child = {id, input.write.Release(), output.read.Release()};
    return {};
}

Status AllowInheritance(FileHandle file) {
    return sys::fcntl(static_cast<int>(file), F_SETFD, 0).status();
}

// The caller closes the descriptor next, which discards the flag.
void RevokeInheritance(FileHandle) {}

Status WaitForProcess(std::intptr_t process, int& exitStatus) {
    int status = 0;
    const auto ended = sys::waitpid(static_cast<pid_t>(process), &status, 0);
    if (ended.ok()) exitStatus = ExitStatusOf(status);
    return ended.status();
}

Status WaitForForegroundProcess(std::intptr_t process, int& exitStatus) {
    constexpr timespec kOneSecond{.tv_sec = 1, .tv_nsec = 0};
    const auto child = static_cast<pid_t>(process);
    const BlockedSignals blocked({SIGINT, SIGQUIT, SIGTERM, SIGHUP, SIGCHLD});
    for (;;) {
        int status = 0;
        const auto ended = sys::waitpid(child, &status, WNOHANG);
        if (!ended.ok()) return ended.status();
        if (ended.value() == child) {
            exitStatus = ExitStatusOf(status);
            return {};
        }
        siginfo_t info{};
        const auto taken = sys::sigtimedwait(&blocked.Set(), &info, &kOneSecond);
        // The terminal also sends its signals directly to the child.
        if (taken.ok() && taken.value() != SIGCHLD && info.si_code != SI_KERNEL)
            sys::kill(child, taken.value()).IgnoreError();  // a dead child is detected above
    }
}

void ResetChildSignal() {
    struct sigaction action {};
    if (!sys::sigaction(SIGCHLD, nullptr, &action).ok() || action.sa_handler != SIG_IGN) return;
    action.sa_handler = SIG_DFL;
    sys::sigaction(SIGCHLD, &action, nullptr).IgnoreError();  // these arguments are valid
}

void KillProcess(std::intptr_t process) {
    sys::kill(static_cast<pid_t>(process), SIGKILL).IgnoreError();  // a process that cannot be killed has ended
}

Status WriteToPipe(FileHandle pipe, const void* data, std::size_t size) {
    const BrokenPipeSignals blocked;
    const Status written = WriteBytes(pipe, data, size);
    if (written.error() == EPIPE) blocked.TakeOwn();
    return written;
}

int CurrentProcessId() {
    return ::getpid();
}

std::string CurrentProgram() {
    char path[PATH_MAX];
    const auto size = sys::readlink("/proc/self/exe", path, sizeof path);
    return size.ok() ? std::string(path, static_cast<std::size_t>(size.value())) : "";
}

}  // namespace qv::platform
