#pragma once

/// @file Share modes over byte-range locks of the open file description, which network file systems keep too.
///
/// Four ranges far beyond the end of any file stand for "someone reads", "someone writes", "someone denies reading" and
/// "someone denies writing". An opener first marks its own presence in the ranges that say what it does and denies, then
/// looks for others in the ranges that forbid it. Whoever comes second sees the first, so two that exclude each other
/// never both get in. Two that come at once may both see the other and step back.

#include "platform/FileOpen.h"
#include "platform/posix/System.h"

namespace qv::platform {

enum class ShareOutcome {
    Granted,
    OthersSeen  ///< another descriptor's presence, or a lock of any other kind in these ranges, excludes the request
};

/// Marks what the request does and denies. The presence ends with the open file description. A failure is the file
/// system's, which may keep no locks.
/// @param mayReadLock  whether the descriptor is open for reading; else each mark is a byte of its own
Result<ShareOutcome> MarkPresence(int file, const OpenRequest& request, bool mayReadLock);

/// Marks presence, then looks for others who exclude the request, or whom the request excludes.
Result<ShareOutcome> AcquireShareMode(int file, const OpenRequest& request);

}  // namespace qv::platform
