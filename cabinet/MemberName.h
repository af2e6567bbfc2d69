#pragma once

/// @file Names of members, in the cabinet and in the process's code page.

#include "qvcommon/framework/String.h"

namespace qv::cabinet {

/// Returns the path with all separators replaced by "\".
CString WithBackslashes(const char* path);
/// Whether the name is stored in UTF-8, and flagged so.
bool NeedsUtf8(const CString& name);
/// Truncates the name to what the format allows, at a character boundary if it is stored in UTF-8.
CString ToMemberName(const CString& name);
/// Converts a flagged name back. Characters that the code page lacks become "_".
CString FromMemberName(const CString& name);

}  // namespace qv::cabinet
