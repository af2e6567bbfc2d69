#include "platform/Process.h"

#include <windows.h>

#include "platform/CommandLine.h"
#include "platform/windows/Owned.h"

namespace qv::platform {
namespace {

struct Pipe {
    Owned read, write;

    bool Make() {
        HANDLE ends[2];
        if (!::CreatePipe(&ends[0], &ends[1], nullptr, 0)) return false;
        read = Owned(ends[0]);
        write = Owned(ends[1]);
        return true;
    }
};

/// A copy that children inherit; none for a stream that this program does not have.
Owned Inheritable(HANDLE handle) {
    HANDLE copy = nullptr;
    const HANDLE self = ::GetCurrentProcess();
    ::DuplicateHandle(self, handle, self, &copy, 0, TRUE, DUPLICATE_SAME_ACCESS);
    return Owned(copy);
}

Owned StandardStream(const Owned& pipe, DWORD stream) {
    return Inheritable(pipe ? pipe.Get() : ::GetStdHandle(stream));
}

/// The list of exactly the handles that a child gets.
class Inheritance {
public:
    explicit Inheritance(std::vector<HANDLE> handles) : m_handles(std::move(handles)) {
        SIZE_T size = 0;
        ::InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
        m_buffer.resize(size);
        m_valid = ::InitializeProcThreadAttributeList(List(), 1, 0, &size) &&
                  ::UpdateProcThreadAttribute(List(), 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, m_handles.data(),
                                              m_handles.size() * sizeof(HANDLE), nullptr, nullptr);
    }
    ~Inheritance() { ::DeleteProcThreadAttributeList(List()); }
    Inheritance(const Inheritance&) = delete;
    Inheritance& operator=(const Inheritance&) = delete;

    bool IsValid() const { return m_valid; }
    LPPROC_THREAD_ATTRIBUTE_LIST List() { return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(m_buffer.data()); }

private:
    std::vector<HANDLE> m_handles;
    std::vector<char> m_buffer;
    bool m_valid = false;
};

FileFailure Create(std::string commandLine, const Owned& input, const Owned& output, const Owned& errors,
                   Owned& process) {
    std::vector<HANDLE> handles;
    for (const Owned* handle : {&input, &output, &errors})
        if (*handle) handles.push_back(handle->Get());
    Inheritance inheritance(handles);
    if (!handles.empty() && !inheritance.IsValid()) return LastFailure();
    STARTUPINFOEXA start = {};
    start.StartupInfo.cb = sizeof start;
    start.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
    start.StartupInfo.hStdInput = input.Get();
    start.StartupInfo.hStdOutput = output.Get();
    start.StartupInfo.hStdError = errors.Get();
    start.lpAttributeList = handles.empty() ? nullptr : inheritance.List();
    PROCESS_INFORMATION created;
    if (!::CreateProcessA(nullptr, commandLine.data(), nullptr, nullptr, !handles.empty(), EXTENDED_STARTUPINFO_PRESENT,
                          nullptr, nullptr, &start.StartupInfo, &created))
        return LastFailure();
    ::CloseHandle(created.hThread);
    process = Owned(created.hProcess);
    return {};
}

FileHandle OurEnd(Owned& pipe) {
    return pipe ? reinterpret_cast<FileHandle>(pipe.Release()) : kNoFile;
}

}  // namespace

FileFailure StartProcess(const char* program, const std::vector<std::string>& arguments, bool pipeInput,
                         bool pipeOutput, ChildProcess& child) {
    Pipe input, output;
    if ((pipeInput && !input.Make()) || (pipeOutput && !output.Make())) return LastFailure();
    std::string commandLine;
    AppendArgument(commandLine, program);
    for (const std::string& argument : arguments) AppendArgument(commandLine, argument);
    Owned process;
    const FileFailure failure =
        Create(std::move(commandLine), StandardStream(input.read, STD_INPUT_HANDLE),
               StandardStream(output.write, STD_OUTPUT_HANDLE), StandardStream(Owned(), STD_ERROR_HANDLE), process);
    if (failure) return failure;
    child = {reinterpret_cast<std::intptr_t>(process.Release()), OurEnd(input.write), OurEnd(output.read)};
    return {};
}

FileFailure WaitForProcess(std::intptr_t process, int& exitStatus) {
    const Owned handle(reinterpret_cast<HANDLE>(process));
    DWORD code = 0;
    if (::WaitForSingleObject(handle.Get(), INFINITE) != WAIT_OBJECT_0) return LastFailure();
    if (!::GetExitCodeProcess(handle.Get(), &code)) return LastFailure();
    exitStatus = static_cast<int>(code);
    return {};
}

void KillProcess(std::intptr_t process) {
    ::TerminateProcess(reinterpret_cast<HANDLE>(process), 1);
}

FileFailure WriteToPipe(FileHandle pipe, const void* data, std::size_t size) {
    return WriteBytes(pipe, data, size);
}

int CurrentProcessId() {
    return static_cast<int>(::GetCurrentProcessId());
}

std::string CurrentProgram() {
    std::string path(32768, '\0');
    path.resize(::GetModuleFileNameA(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return path;
}

}  // namespace qv::platform
