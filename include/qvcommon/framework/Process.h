#pragma once

/// @file Child programs.

#include "qvcommon/framework/Collections.h"
#include "qvcommon/framework/StdioFile.h"

/// A child program, started without a shell: its arguments arrive verbatim. What cannot arrive so is refused on Windows:
/// texts that are not well-formed in the code page, and for batch files (.bat, .cmd), which the command interpreter
/// runs, control characters and any of "%!^&|<>.
///
/// Not thread-safe; but one thread may read Output() while another one uses the other members.
class QVCOMMON_API CProcess {
public:
    /// Which of the child's standard streams are pipes to this program.
    enum Pipes : UINT {
        noPipes = 0,
        pipeInput = 1,  ///< the child reads what WriteInput writes
        pipeOutput = 2  ///< the child's standard output is read from Output()
    };

    CProcess() = default;
    /// Kills a child that is still running, and waits for its end.
    ~CProcess();
    CProcess(const CProcess&) = delete;
    CProcess& operator=(const CProcess&) = delete;

    /// Starts a program; a name without a separator is searched for as the system does (PATH). Standard streams without
    /// a pipe are shared with this program. The child keeps inheritable locks (CLockFile::SetInheritable); on Windows
    /// it inherits no other handle, on Linux also those of files that were opened without CFile::modeNoInherit. A
    /// previous child is ended as by the destructor.
    /// @throws CFileException* naming the program if it cannot be started.
    void Start(const char* program, const CStringArray& arguments, UINT pipes = noPipes);
    /// Returns whether a child was started and not yet waited for; it may have ended.
    bool IsRunning() const { return m_process != kNone; }

    /// Writes the whole text to the child's standard input; returns false if the child no longer reads it, or there is
    /// no such pipe.
    bool WriteInput(std::string_view text);
    /// Closes the child's standard input.
    void CloseInput();
    /// Returns the child's standard output, as text. Closed if there is no such pipe.
    CStdioFile& Output() { return m_output; }

    /// Closes the child's input, waits until the child has ended, and returns its exit status. A child terminated by a
    /// signal on Linux gives 128 plus the signal's number; one terminated by Kill gives any status but 0. -1 if there
    /// is no child, or if this program ignores SIGCHLD (AfxPrepareConsole).
    int Wait();
    /// Does the same for a child that controls the terminal: its interrupt and quit keys end the child and not this
    /// program, and on Linux SIGTERM and SIGHUP are passed on to the child. Only for a single-threaded program.
    int WaitInForeground();
    /// Terminates the child at once; Wait waits until it has ended.
    void Kill();

private:
    static constexpr std::intptr_t kNone = -1;

    void End();

    std::intptr_t m_process = kNone;
    std::intptr_t m_input = kNone;
    CStdioFile m_output;
};
