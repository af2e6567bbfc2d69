#include "platform/Process.h"

#include <algorithm>
#include <mutex>

#include "platform/Ascii.h"
#include "platform/CommandLine.h"
#include "platform/windows/UniqueHandle.h"
#include "platform/windows/names/WidePath.h"

namespace qv::platform {
namespace {

struct Pipe {
    UniqueHandle read, write;

    Status Make() {
        HANDLE readEnd = nullptr, writeEnd = nullptr;
        const auto made = sys::CreatePipe(&readEnd, &writeEnd, nullptr, 0);
        if (!made.ok()) return made.status();
        read = UniqueHandle(readEnd);
        write = UniqueHandle(writeEnd);
        return {};
    }
};

/// Up to Windows 7 the handles of a console are not those of the kernel, whose two low bits are 0. They are inherited
/// with the console, and must not be listed.
bool IsListable(HANDLE handle) {
    return (reinterpret_cast<UINT_PTR>(handle) & 3) == 0;
}

/// The standard streams of a child, which inherits them; empty for missing streams.
struct Streams {
    UniqueHandle input, output, errors;

    bool HasAny() const { return input || output || errors; }

    std::vector<HANDLE> Listable() const {
        std::vector<HANDLE> handles;
        for (const UniqueHandle* const handle : {&input, &output, &errors})
            if (*handle && IsListable(handle->Get())) handles.push_back(handle->Get());
        return handles;
    }
};

Status Duplicate(HANDLE handle, UniqueHandle& inheritable) {
    HANDLE copy = nullptr;
    const HANDLE self = ::GetCurrentProcess();
    const auto made = sys::DuplicateHandle(self, handle, self, &copy, 0, TRUE, DUPLICATE_SAME_ACCESS);
    if (made.ok()) inheritable = UniqueHandle(copy);
    return made.status();
}

Status MakeStream(const UniqueHandle& pipe, DWORD own, UniqueHandle& stream) {
    if (pipe) return Duplicate(pipe.Get(), stream);
    // If this program has no such stream, neither has the child.
    // INVALID_HANDLE_VALUE would be the process itself.
    const auto handle = sys::GetStdHandle(own);
    if (handle.ok() && handle.value()) Duplicate(handle.value(), stream).IgnoreError();
    return {};
}

/// Files that children inherit besides their streams.
struct InheritedFiles {
    std::mutex mutex;
    std::vector<HANDLE> handles;
};

InheritedFiles& Inherited() {
    static InheritedFiles inherited;
    return inherited;
}

/// The list of exactly the handles that a child inherits.
class Inheritance {
public:
    Inheritance() = default;
    ~Inheritance() {
        if (m_initialized) ::DeleteProcThreadAttributeList(List());
    }
    Inheritance(const Inheritance&) = delete;
    Inheritance& operator=(const Inheritance&) = delete;

    Status Fill(std::vector<HANDLE> handles) {
        m_handles = std::move(handles);
        SIZE_T size = 0;
        // Fails because there is no buffer, and returns its size.
        sys::InitializeProcThreadAttributeList(nullptr, 1, 0, &size).IgnoreError();
        m_buffer.resize(size);
        const auto initialized = sys::InitializeProcThreadAttributeList(List(), 1, 0, &size);
        if (!initialized.ok()) return initialized.status();
        m_initialized = true;
        return sys::UpdateProcThreadAttribute(List(), 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, m_handles.data(),
                                              m_handles.size() * sizeof(HANDLE), nullptr, nullptr)
            .status();
    }

    LPPROC_THREAD_ATTRIBUTE_LIST List() { return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(m_buffer.data()); }

private:
    std::vector<HANDLE> m_handles;
    std::vector<char> m_buffer;
    bool m_initialized = false;
};

Status Create(std::wstring commandLine, const Streams& streams, UniqueHandle& process) {
    std::vector<HANDLE> handles = streams.Listable();
    const std::lock_guard lock(Inherited().mutex);  // prevents closing them meanwhile
    handles.insert(handles.end(), Inherited().handles.begin(), Inherited().handles.end());
    const bool inherits = !handles.empty();
    Inheritance inheritance;
    if (inherits)
        if (const Status filled = inheritance.Fill(handles); !filled.ok()) return filled;
    STARTUPINFOEXW start = {};
    start.StartupInfo.cb = sizeof start;
    // Streams that are all of a console are those that the child has by default.
    start.StartupInfo.dwFlags = inherits || !streams.HasAny() ? STARTF_USESTDHANDLES : 0;
    start.StartupInfo.hStdInput = streams.input.Get();
    start.StartupInfo.hStdOutput = streams.output.Get();
    start.StartupInfo.hStdError = streams.errors.Get();
    start.lpAttributeList = inherits ? inheritance.List() : nullptr;
    PROCESS_INFORMATION created{};  // Wine returns no handles for programs of its host
    const auto made = sys::CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, inherits,
                                          EXTENDED_STARTUPINFO_PRESENT, nullptr, nullptr, &start.StartupInfo, &created);
    if (!made.ok()) return made.status();
    const UniqueHandle thread(created.hThread);
    process = UniqueHandle(created.hProcess);
    return {};
}

FileHandle OurEnd(UniqueHandle& pipe) {
    return pipe ? ContractHandle(pipe.Release()) : kNoFile;
}

/// The system runs batch files by the command interpreter, which has other rules for arguments.
bool IsBatchFile(std::string program) {
    while (program.ends_with('.') || program.ends_with(' ')) program.pop_back();
    const std::string end = program.substr(program.size() - std::min<std::size_t>(program.size(), 4));
    return ascii::EqualsIgnoreCase(end, ".bat") || ascii::EqualsIgnoreCase(end, ".cmd");
}

/// Appends a text to a batch file's command line, in quotes. Returns false if these do not protect it from the
/// interpreter, or would not in a line of the batch file that uses an argument without them.
bool AppendToBatch(std::wstring& commandLine, std::wstring_view text) {
    const std::wstring_view refused = commandLine.empty() ? L"\"%!" : L"\"%!^&|<>";
    const auto isRefused = [=](wchar_t c) { return c < L' ' || refused.find(c) != refused.npos; };
    if (std::ranges::any_of(text, isRefused)) return false;
    if (!commandLine.empty()) commandLine += L' ';
    (commandLine += L'"').append(text) += L'"';
    return true;
}

Status CommandLine(const std::string& program, const std::vector<std::string>& arguments, std::wstring& line) {
    const bool isBatch = IsBatchFile(program);
    const auto append = [&](const std::string& text) -> Status {
        const auto wide = ToSystemExactly(text);
        if (!wide) return Status::OfError(ERROR_NO_UNICODE_TRANSLATION);
        if (isBatch) return AppendToBatch(line, *wide) ? Status() : Status::OfError(ERROR_BAD_ARGUMENTS);
        AppendArgument(line, *wide);
        return {};
    };
    Status appended = append(program);
    for (auto next = arguments.begin(); appended.ok() && next != arguments.end(); ++next) appended = append(*next);
    return appended;
}

}  // namespace

Status StartProcess(const char* program, const std::vector<std::string>& arguments, bool pipeInput, bool pipeOutput,
                    ChildProcess& child) {
    std::wstring commandLine;
    if (const Status made = CommandLine(program, arguments, commandLine); !made.ok()) return made;
    Pipe input, output;
    if (pipeInput)
        if (const Status made = input.Make(); !made.ok()) return made;
    if (pipeOutput)
        if (const Status made = output.Make(); !made.ok()) return made;
    Streams streams;
    const Status made = MakeStream(input.read, STD_INPUT_HANDLE, streams.input)
                            .Or(MakeStream(output.write, STD_OUTPUT_HANDLE, streams.output))
                            .Or(MakeStream(UniqueHandle(), STD_ERROR_HANDLE, streams.errors));
    if (!made.ok()) return made;
    UniqueHandle process;
    if (const Status started = Create(std::move(commandLine), streams, process); !started.ok()) return started;
    child = {ContractHandle(process.Release()), OurEnd(input.write), OurEnd(output.read)};
    return {};
}

Status AllowInheritance(FileHandle file) {
    const HANDLE handle = SystemHandle(file);
    const auto marked = sys::SetHandleInformation(handle, DWORD{HANDLE_FLAG_INHERIT}, DWORD{HANDLE_FLAG_INHERIT});
    if (!marked.ok()) return marked.status();
    const std::lock_guard lock(Inherited().mutex);
    Inherited().handles.push_back(handle);
    return {};
}

void RevokeInheritance(FileHandle file) {
    const std::lock_guard lock(Inherited().mutex);
    std::erase(Inherited().handles, SystemHandle(file));
}

Status WaitForProcess(std::intptr_t process, int& exitStatus) {
    const UniqueHandle handle(SystemHandle(process));
    const auto waited = sys::WaitForSingleObject(handle.Get(), INFINITE);
    if (!waited.ok()) return waited.status();
    DWORD code = 0;
    const auto ended = sys::GetExitCodeProcess(handle.Get(), &code);
    if (ended.ok()) exitStatus = static_cast<int>(code);
    return ended.status();
}

Status WaitForForegroundProcess(std::intptr_t process, int& exitStatus) {
    // Without a console there is nothing to ignore.
    sys::SetConsoleCtrlHandler(nullptr, TRUE).IgnoreError();
    const Status waited = WaitForProcess(process, exitStatus);
    sys::SetConsoleCtrlHandler(nullptr, FALSE).IgnoreError();
    return waited;
}

void ResetChildSignal() {}

void KillProcess(std::intptr_t process) {
    sys::TerminateProcess(SystemHandle(process), 1).IgnoreError();  // it may have ended by itself
}

Status WriteToPipe(FileHandle pipe, const void* data, std::size_t size) {
    return WriteBytes(pipe, data, size);
}

int CurrentProcessId() {
    return static_cast<int>(::GetCurrentProcessId());
}

std::string CurrentProgram() {
    std::wstring path(32768, L'\0');
    path.resize(sys::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())).value());
    return ReachablePath(path).value_or(std::string());
}

}  // namespace qv::platform
