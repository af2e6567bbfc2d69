#pragma once

/// @file Waiting until a file is removed.

#include <chrono>
#include <memory>

namespace qv::platform {

/// Waits for the removal of a file. Not thread-safe.
class RemovalWatch {
public:
    virtual ~RemovalWatch() = default;

    /// Returns null if the system cannot watch the file, for example because it is already missing.
    static std::unique_ptr<RemovalWatch> Open(const char* path);

    /// Returns once the file has been removed since Open, otherwise after `limit`. May return earlier: on Linux if the
    /// file's attributes change, on Windows if any name in its folder does. Removal by another machine is not detected
    /// on network file systems of Linux.
    virtual void WaitFor(std::chrono::milliseconds limit) = 0;
};

}  // namespace qv::platform
