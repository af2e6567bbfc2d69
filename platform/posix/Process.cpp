#include "platform/Process.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "platform/Path.h"
#include "platform/posix/Owned.h"

namespace qv::platform {
namespace {

struct Pipe {
    Owned read, write;

    bool Make() {
        int ends[2];
        if (::pipe2(ends, O_CLOEXEC)) return false;
        read = Owned(ends[0]);
        write = Owned(ends[1]);
        return true;
    }
};

/// What the child does between its birth and the program's start.
struct Actions {
    Actions() { ::posix_spawn_file_actions_init(&list); }
    ~Actions() { ::posix_spawn_file_actions_destroy(&list); }
    Actions(const Actions&) = delete;
    Actions& operator=(const Actions&) = delete;

    void Use(const Owned& file, int as) {
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

}  // namespace

FileFailure StartProcess(const char* program, const std::vector<std::string>& arguments, bool pipeInput,
                         bool pipeOutput, ChildProcess& child) {
    Pipe input, output;
    if ((pipeInput && !input.Make()) || (pipeOutput && !output.Make())) return LastFailure();
    Actions actions;
    actions.Use(input.read, STDIN_FILENO);
    actions.Use(output.write, STDOUT_FILENO);
    std::vector<std::string> words = {NativePath(program)};
    words.insert(words.end(), arguments.begin(), arguments.end());
    pid_t id = -1;
    errno = ::posix_spawnp(&id, words[0].c_str(), &actions.list, nullptr, Pointers(words).data(), environ);
    if (errno) return LastFailureAt(program);
    child = {id, input.write.Release(), output.read.Release()};
    return {};
}

FileFailure WaitForProcess(std::intptr_t process, int& exitStatus) {
    int status = 0;
    while (::waitpid(static_cast<pid_t>(process), &status, 0) == -1)
        if (errno != EINTR) return LastFailure();
    exitStatus = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
    return {};
}

void KillProcess(std::intptr_t process) {
    ::kill(static_cast<pid_t>(process), SIGKILL);
}

FileFailure WriteToPipe(FileHandle pipe, const void* data, std::size_t size) {
    sigset_t broken, before, pending;
    sigemptyset(&broken);
    sigaddset(&broken, SIGPIPE);
    ::sigpending(&pending);
    ::pthread_sigmask(SIG_BLOCK, &broken, &before);
    const FileFailure failure = WriteBytes(pipe, data, size);
    constexpr timespec kAtOnce{};
    if (failure.error == EPIPE && !sigismember(&pending, SIGPIPE)) ::sigtimedwait(&broken, nullptr, &kAtOnce);
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return failure;
}

int CurrentProcessId() {
    return ::getpid();
}

std::string CurrentProgram() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).native();
}

}  // namespace qv::platform
