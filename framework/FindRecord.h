#pragma once

#include "platform/FileSearch.h"
#include "qvcommon/framework/FileFind.h"

namespace qv {

/// The framework's record of an entry that the system found. Names longer than the record's are cut.
void CopyRecord(const platform::FoundEntry& from, QvFindData& to);

}  // namespace qv
