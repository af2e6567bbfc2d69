#pragma once

/// @file The one wrapper through which the file classes call the system, and the seam by which tests make a call fail.

#include "platform/FileCause.h"

namespace qv {

enum class FileCall {
    Open,
    Read,
    Write,
    Flush,
    Seek,
    Resize,
    Close,
    Status,
    ChangeStatus,
    Remove,
    Rename,
    Copy,
    CreateFolder,
    OpenFolder,
    ListFolder
};

/// Asked before each call to the system; a failure that it gives takes the call's place.
class IFileFaults {
public:
    virtual ~IFileFaults() = default;
    virtual platform::FileFailure Before(FileCall call, const char* path) = 0;
};

/// Puts a handler in force for the whole process, null for none, and returns the one before. The caller keeps its life.
IFileFaults* SetFileFaults(IFileFaults* faults);

platform::FileFailure FaultBefore(FileCall call, const char* path);

template <class Action>
platform::FileFailure CallSystem(FileCall call, const char* path, Action action) {
    const platform::FileFailure fault = FaultBefore(call, path);
    return fault ? fault : action();
}

}  // namespace qv
