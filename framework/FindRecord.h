#pragma once

#include "platform/FileSearch.h"
#include "qvcommon/framework/FileFind.h"

namespace qv {

/// Copies the system's entry to the framework's record. Names longer than the record's field are truncated.
void CopyRecord(const platform::FoundEntry& from, QvFindData& to);

/// Returns the absolute path of the folder that a search for the pattern lists, with its trailing separator.
CString SearchRoot(const CString& pattern);
/// Describes an item that the search of such a folder skipped.
QvLeftOut LeftOutOf(const CString& root, const platform::PassedOver& passedOver);

}  // namespace qv
