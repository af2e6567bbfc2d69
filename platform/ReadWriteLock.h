#pragma once

/// @file A lock of many readers or one writer that prefers writers; its rules stand with CReadWriteLock. All waits are
/// without limit.

#include <memory>

namespace qv::platform {

class ReadWriteLock;

std::shared_ptr<ReadWriteLock> MakeReadWriteLock();
void StartRead(ReadWriteLock& lock);
void EndRead(ReadWriteLock& lock);
void StartWrite(ReadWriteLock& lock);
void EndWrite(ReadWriteLock& lock);

}  // namespace qv::platform
