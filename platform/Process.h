#pragma once

/// @file Child programs.

#include <string>
#include <vector>

#include "platform/File.h"

namespace qv::platform {

struct ChildProcess {
    std::intptr_t process = kNoFile;  ///< process handle on Windows, process id on Linux
    FileHandle input = kNoFile;       ///< our end of the pipe to its standard input
    FileHandle output = kNoFile;      ///< our end of the pipe from its standard output
};

/// Starts a program, without a shell. A name without a separator is looked for as the system does (PATH). Standard streams
/// without a pipe are this program's own. The child gets what LetChildrenKeep says; on Windows no other handle of this
/// program, on Linux the descriptors too that are marked inheritable.
Status StartProcess(const char* program, const std::vector<std::string>& arguments, bool pipeInput, bool pipeOutput,
                    ChildProcess& child);

/// Lets child programs that are started from now on keep an open file, until LetChildrenDrop; to be called before the file is
/// closed. Safe from any thread.
Status LetChildrenKeep(FileHandle file);
void LetChildrenDrop(FileHandle file);

/// Waits for the end of the program and frees its record; to be called once. A program that a signal ended on Linux gives
/// 128 plus the signal's number.
Status WaitForProcess(std::intptr_t process, int& exitStatus);
/// The same for a program that this one lends its terminal: interrupts from there do not end this program meanwhile, and a
/// request to end it is passed on. Only for programs with one thread.
Status WaitForForegroundProcess(std::intptr_t process, int& exitStatus);
/// Ends the program at once, wherever it stands; it is still to be waited for.
void KillProcess(std::intptr_t process);

/// WriteBytes into a pipe: a reader that is gone is a failure, never a signal.
Status WriteToPipe(FileHandle pipe, const void* data, std::size_t size);

/// The system's number of the running program.
int CurrentProcessId();

/// The path of the running program, in the system's own form.
std::string CurrentProgram();

}  // namespace qv::platform
