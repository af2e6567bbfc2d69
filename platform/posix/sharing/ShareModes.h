#pragma once

/// @file Share modes implemented by byte-range locks of the open file description, which network file systems support
/// too.
///
/// Four ranges far beyond the end of any file represent "read by someone", "written by someone", "reading denied" and
/// "writing denied". An opener first marks its own presence in the ranges for what it does and denies, then checks for
/// others in the ranges that conflict. The later one always sees the earlier, so two that exclude each other never both
/// succeed. Two simultaneous ones may see each other and both back off.

#include "platform/FileOpen.h"
#include "platform/posix/System.h"

namespace qv::platform {

enum class ShareOutcome {
    Granted,
    OthersSeen  ///< another descriptor's presence, or any other lock in these ranges, excludes the request
};

/// Marks what the request does and denies. The presence is released with the open file description. A failure is the
/// file system's, which may not support locks.
/// @param mayReadLock  whether the descriptor is open for reading; otherwise each mark is a separate byte
Result<ShareOutcome> MarkPresence(int file, const OpenRequest& request, bool mayReadLock);

/// Marks presence, then checks for conflicting openers in both directions.
Result<ShareOutcome> AcquireShareMode(int file, const OpenRequest& request);

}  // namespace qv::platform
