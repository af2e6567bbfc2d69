#pragma once

/// @file The clock behind every pause that the library promises, and the seam by which tests take its place.

namespace qv {

class IPause {
public:
    virtual ~IPause() = default;
    virtual void Pause(unsigned long long milliseconds) = 0;
};

/// Stops the calling thread for that long.
void Pause(unsigned long long milliseconds);

/// Puts a handler in force for the whole process, null for the real clock, and returns the one before. The caller keeps
/// its life. Safe from any thread.
IPause* SetPause(IPause* handler);

}  // namespace qv
