#pragma once

/// @file Child programs.

#include "qvcommon/framework/Collections.h"
#include "qvcommon/framework/StdioFile.h"

/// A program that runs beside this one, started without a shell: its arguments arrive as they are given.
///
/// One object, one thread; yet one thread may read Output() while another one works with the rest.
class QVCOMMON_API CProcess {
public:
    /// Which of the child's standard streams are pipes to this program.
    enum Pipes : UINT {
        noPipes = 0,
        pipeInput = 1,  ///< the child reads what WriteInput writes
        pipeOutput = 2  ///< the child's standard output is read from Output()
    };

    CProcess() = default;
    /// Kills a child that still runs, and waits for its end.
    ~CProcess();
    CProcess(const CProcess&) = delete;
    CProcess& operator=(const CProcess&) = delete;

    /// Starts a program; a name without a separator is looked for where the system looks for programs (PATH). Standard
    /// streams without a pipe are shared with this program. The child keeps locks that say so (CLockFile::SetInheritable);
    /// on Windows it gets no other handle, on Linux also those of files that were opened without CFile::modeNoInherit. A
    /// child started before is ended as by the destructor.
    /// @throws CFileException* naming the program when it cannot be started.
    void Start(const char* program, const CStringArray& arguments, UINT pipes = noPipes);
    /// Whether a child was started that nobody has waited for; it may have ended.
    bool IsRunning() const { return m_process != kNone; }

    /// Writes all of it to the child's standard input; false when the child no longer reads it, or has no such pipe.
    bool WriteInput(std::string_view text);
    /// Ends the child's standard input.
    void CloseInput();
    /// The child's standard output, as text. Closed when there is no such pipe.
    CStdioFile& Output() { return m_output; }

    /// Ends the child's input, waits until the child has ended, and returns its exit status. A child that a signal ended on
    /// Linux gives 128 plus the signal's number; one that Kill ended gives any status but 0. -1 when there is no child.
    int Wait();
    /// The same for a child that has the terminal: its interrupt and quit keys end the child and not this program, and on Linux
    /// SIGTERM and SIGHUP are passed on to the child. Only for a program with one thread.
    int WaitInForeground();
    /// Ends the child at once, wherever it stands; Wait waits for that.
    void Kill();

private:
    static constexpr std::intptr_t kNone = -1;

    void End();

    std::intptr_t m_process = kNone;
    std::intptr_t m_input = kNone;
    CStdioFile m_output;
};
