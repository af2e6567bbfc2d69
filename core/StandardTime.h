#pragma once

#include <cstdint>
#include <optional>

#include "qvcommon/framework/FileTime.h"

namespace qv {

/// CTimeHelper::FileTimeToUnixTime for times of any size: nullopt if the zone does not cover it.
std::optional<std::int64_t> StandardSeconds(const QvFileTime& time);

}  // namespace qv
