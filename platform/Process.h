#pragma once

/// @file Child programs.

#include <string>
#include <vector>

#include "platform/File.h"

namespace qv::platform {

struct ChildProcess {
    std::intptr_t process = kNoFile;  ///< process handle on Windows, process id on Linux
    FileHandle input = kNoFile;       ///< this program's end of the pipe to its standard input
    FileHandle output = kNoFile;      ///< this program's end of the pipe from its standard output
};

/// Starts a program, without a shell. A name without a separator is searched for as the system does (PATH). Standard
/// streams without a pipe are shared with this program. The child inherits files passed to AllowInheritance; on Windows
/// no other handle of this program, on Linux also descriptors that are marked inheritable.
Status StartProcess(const char* program, const std::vector<std::string>& arguments, bool pipeInput, bool pipeOutput,
                    ChildProcess& child);

/// Lets child programs started from now on inherit an open file, until RevokeInheritance, which must be called before
/// the file is closed. Thread-safe.
Status AllowInheritance(FileHandle file);
void RevokeInheritance(FileHandle file);

/// Waits until the program ends and frees its record; must be called once. A program terminated by a signal on Linux
/// gives 128 plus the signal's number.
Status WaitForProcess(std::intptr_t process, int& exitStatus);
/// Does the same for a program that uses this one's terminal: interrupts from there do not end this program meanwhile,
/// and a request to terminate is passed on. Only for single-threaded programs.
Status WaitForForegroundProcess(std::intptr_t process, int& exitStatus);
/// On Linux, resets SIGCHLD to its default if it is ignored, which a program inherits: the waits would fail. No-op on
/// Windows.
void ResetChildSignal();
/// Terminates the program at once; WaitForProcess must still be called.
void KillProcess(std::intptr_t process);

/// WriteBytes to a pipe: a closed reader is reported as a failure, never as a signal.
Status WriteToPipe(FileHandle pipe, const void* data, std::size_t size);

/// Returns the process id of the running program.
int CurrentProcessId();

/// Returns the path of the running program, in the system's form.
std::string CurrentProgram();

}  // namespace qv::platform
