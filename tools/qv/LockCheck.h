#pragma once

#include <string>
#include <vector>

namespace qv::tool {

/// One thing that shared documents need of a folder.
struct LockCheck {
    std::string text;  ///< in words, with what went wrong where it does not hold
    bool holds;
};

/// Tries what locks and saving need, with files of its own in the folder, which it deletes again.
std::vector<LockCheck> CheckLocks(const std::string& folder);

/// Who is kept out by a lock in the folder, as far as the kind of its file system tells.
std::string DescribeReach(const std::string& folder);

}  // namespace qv::tool
