#pragma once

/// @file Waiting until a file loses its name.

#include <chrono>
#include <memory>

namespace qv::platform {

/// Waits for the removal of a file, for one thread.
class RemovalWatch {
public:
    virtual ~RemovalWatch() = default;

    /// Null where the system cannot watch the file, which may be missing already.
    static std::unique_ptr<RemovalWatch> Open(const char* path);

    /// Returns once the file has been removed since Open, and after `limit` otherwise. May return sooner: on Linux when
    /// the file's attributes change, on Windows when any name in its folder does. What another machine removes is not
    /// seen on network file systems of Linux.
    virtual void WaitFor(std::chrono::milliseconds limit) = 0;
};

}  // namespace qv::platform
