#include "platform/posix/sharing/ShareModes.h"

#include <random>

#include "platform/posix/OfdLock.h"

namespace qv::platform {
namespace {

using ShareResult = Result<ShareOutcome>;

enum Range : int { kReads, kWrites, kDeniesReading, kDeniesWriting };
constexpr off_t kFirstRange = off_t{1} << 62;
constexpr off_t kRangeSize = off_t{1} << 32;

constexpr int kTriesForAFreeByte = 8;

off_t StartOf(Range range) {
    return kFirstRange + range * kRangeSize;
}

bool IsGranted(const ShareResult& outcome) {
    return outcome.ok() && outcome.value() == ShareOutcome::Granted;
}

ShareResult LockFailure(unsigned long error) {
    return ShareResult::OfError(ShareOutcome::OthersSeen, error);
}

/// A conflicting lock of another program, of any kind, counts as another opener.
ShareResult LockByte(int file, OfdLockKind kind, off_t at) {
    const auto set = SetOfdLock(file, kind, {.start = at, .length = 1});
    if (set.ok()) return ShareOutcome::Granted;
    return IsLockConflict(set) ? ShareResult(ShareOutcome::OthersSeen) : LockFailure(set.error());
}

/// Uses the processor: children of a fork must not draw the same numbers. Detecting the processor's features costs more
/// than everything else in opening a file, on virtual machines.
off_t RandomByteOfARange() {
    thread_local std::random_device device;
    return device() | 1;
}

/// Readers share a read lock on the first byte. A write-only descriptor cannot hold a read lock: it locks a random
/// byte, but never the first.
ShareResult Mark(int file, Range range, bool mayReadLock) {
    if (mayReadLock) return LockByte(file, OfdLockKind::Read, StartOf(range));
    ShareResult outcome = ShareOutcome::OthersSeen;
    for (int tries = 0; outcome.ok() && !IsGranted(outcome) && tries < kTriesForAFreeByte; ++tries)
        outcome = LockByte(file, OfdLockKind::Write, StartOf(range) + RandomByteOfARange());
    return outcome;
}

ShareResult LookForOthers(int file, Range range) {
    const auto conflict = HasLockConflict(file, OfdLockKind::Write, {.start = StartOf(range), .length = kRangeSize});
    if (!conflict.ok()) return LockFailure(conflict.error());
    return conflict.value() ? ShareOutcome::OthersSeen : ShareOutcome::Granted;
}

ShareResult LookForOthers(int file, const OpenRequest& request) {
    ShareResult outcome = ShareOutcome::Granted;
    if (request.read) outcome = LookForOthers(file, kDeniesReading);
    if (request.write && IsGranted(outcome)) outcome = LookForOthers(file, kDeniesWriting);
    if (request.denyRead && IsGranted(outcome)) outcome = LookForOthers(file, kReads);
    if (request.denyWrite && IsGranted(outcome)) outcome = LookForOthers(file, kWrites);
    return outcome;
}

}  // namespace

Result<ShareOutcome> MarkPresence(int file, const OpenRequest& request, bool mayReadLock) {
    // Every opener reads or writes, and so checks one of the two marks of an exclusively open file. Marks of the access
    // itself would not exclude any further program.
    const bool exclusive = request.denyRead && request.denyWrite;
    ShareResult outcome = ShareOutcome::Granted;
    if (request.read && !exclusive) outcome = Mark(file, kReads, mayReadLock);
    if (request.write && !exclusive && IsGranted(outcome)) outcome = Mark(file, kWrites, mayReadLock);
    if (request.denyRead && IsGranted(outcome)) outcome = Mark(file, kDeniesReading, mayReadLock);
    if (request.denyWrite && IsGranted(outcome)) outcome = Mark(file, kDeniesWriting, mayReadLock);
    return outcome;
}

Result<ShareOutcome> AcquireShareMode(int file, const OpenRequest& request) {
    const ShareResult marked = MarkPresence(file, request, request.read);
    return IsGranted(marked) ? LookForOthers(file, request) : marked;
}

}  // namespace qv::platform
