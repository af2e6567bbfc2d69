#pragma once

#include <string>
#include <vector>

namespace qv::tool {

/// A property of a folder that shared documents require.
struct LockCheck {
    std::string text;  ///< describes the property, and the failure if it does not hold
    bool holds;
};

/// Tests what locks and saving require, using its own files in the folder, which it deletes.
std::vector<LockCheck> CheckLocks(const std::string& folder);

/// Describes whom a lock in the folder excludes, judged by the kind of file system.
std::string DescribeReach(const std::string& folder);

}  // namespace qv::tool
