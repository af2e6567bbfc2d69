#pragma once

#include "platform/FileSearch.h"
#include "qvcommon/framework/FileFind.h"

namespace qv {

/// The framework's record of an entry that the system found. Names longer than the record's are cut.
void CopyRecord(const platform::FoundEntry& from, QvFindData& to);

/// The absolute path of the folder that a search for the pattern lists, with its final separator.
CString SearchRoot(const CString& pattern);
/// What the search of such a folder reports of something that it passed over.
QvLeftOut LeftOutOf(const CString& root, const platform::PassedOver& passedOver);

}  // namespace qv
